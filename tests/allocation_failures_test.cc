// Memory exhaustion: this program's own operator new fails at the n-th request, once or from there
// on, for every n. The library's own requests and those of its XML scanner come through here.

#include <cstdlib>
#include <functional>
#include <new>
#include <vector>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "SAX_Memory_Parser.hh"
#include "chan_selector.hh"
#include "env_dictionary_support.hh"
#include "parse_chan_descr.hh"
#include "parse_ev_list.hh"
#include "zrt4_gige_descr.hh"

namespace {

long requests_left = -1;  // none fails while negative
bool fails_for_ever = false;
bool failed = false;
long leaked = 0;
long blocks = 0;

void* request(std::size_t size) {
  if (requests_left == 0) {
    failed = true;
    if (!fails_for_ever) requests_left = -1;
    return nullptr;
  }
  if (requests_left > 0) --requests_left;
  void* block = std::malloc(size != 0 ? size : 1);
  if (block != nullptr) ++blocks;
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  --blocks;
  std::free(block);
}

}  // namespace

[[gnu::visibility("default")]] void* operator new(std::size_t size) {
  if (void* block = request(size)) return block;
  throw std::bad_alloc();
}
[[gnu::visibility("default")]] void* operator new(std::size_t size,
                                                  const std::nothrow_t& /*tag*/) noexcept {
  return request(size);
}
[[gnu::visibility("default")]] void* operator new[](std::size_t size) {
  return operator new(size);
}
[[gnu::visibility("default")]] void operator delete(void* block) noexcept {
  release(block);
}
[[gnu::visibility("default")]] void operator delete(void* block, std::size_t /*size*/) noexcept {
  release(block);
}
[[gnu::visibility("default")]] void operator delete[](void* block) noexcept {
  release(block);
}
[[gnu::visibility("default")]] void operator delete[](void* block, std::size_t /*size*/) noexcept {
  release(block);
}

namespace {

using channels = std::vector<chan_descr_2010*>;

const std::string channel_text = R"(<CHANDESCRIPTIONS>
<CHANNEL><PROP>A.B/C/D/E</PROP><NAME>first</NAME><DTYPE>4</DTYPE><UNITS>mm</UNITS>
<BIT><NUM>1</NUM><DESC>on</DESC></BIT></CHANNEL>
<CHANNEL><PROP>A.B/C/D/F</PROP><NAME>second</NAME><DTYPE>4</DTYPE></CHANNEL>
</CHANDESCRIPTIONS>)";
const std::string event_text = R"(<BMR><EVENT><NUM>1</NUM><MASK>0x10</MASK><SERVER><NAME>s</NAME>
<CHAN>c</CHAN></SERVER></EVENT></BMR>)";
const std::string dictionary_text =
    "<ENVINDEXDICT><CHAN><INDEX>1</INDEX><PROP>A.B/C/D/E</PROP><ADELTA>0.5</ADELTA></CHAN>"
    "<CHAN><INDEX>2</INDEX><PROP>A.B/C/D/F</PROP></CHAN></ENVINDEXDICT>";
const std::string camera_text =
    "<r><Integer Name='a'><ToolTip>t</ToolTip></Integer><Float Name='b'/></r>";
const std::string declared_text =
    "<!DOCTYPE BMR [<!ELEMENT BMR ANY><!ENTITY % p '<!ELEMENT e (f|g)*>'>%p;<!ENTITY x 'text'>"
    "<!ATTLIST BMR a CDATA 'd'>]><BMR>&x;</BMR>";

struct operation {
  const char* name;
  std::function<void()> run;
};

void read_channels(std::string text, bool merge) {
  channels list;
  try {
    parse_descr_list_read(text.data(), &list, true, merge);
  } catch (...) {
    clean_chan_desr_list(&list);
    throw;
  }
  clean_chan_desr_list(&list);
}

void read_events(std::string text) {
  std::vector<zrt4_ev_entry*> list;
  try {
    zrt4_parse_ev_list_read(text.data(), &list);
  } catch (...) {
    zrt4_clean_ev_list(&list);
    throw;
  }
  zrt4_clean_ev_list(&list);
}

std::vector<operation> operations() {
  return {
      {"channels", [] { read_channels(channel_text, false); }},
      {"channels, merged", [] { read_channels(channel_text, true); }},
      {"channels of a file",
       [] {
         static const test::temporary_file file(channel_text);
         std::string name = file.path();
         channels list;
         try {
           parse_descr_list_readf(name.data(), &list, true, false);
         } catch (...) {
           clean_chan_desr_list(&list);
           throw;
         }
         clean_chan_desr_list(&list);
       }},
      {"channels written",
       [] {
         std::string text = channel_text;
         std::string name = "/dev/null";
         dump_chan_desr_from_xml(text.data(), name.data(), 0, 0, -1);
         dump_chan_desr_from_xml(text.data(), name.data(), 1, 0, -1);
         dump_chan_desr_from_xml(text.data(), name.data(), 1, 1, -1);
       }},
      {"events", [] { read_events(event_text); }},
      {"declarations", [] { read_events(declared_text); }},
      {"broken document", [] { read_events(event_text.substr(0, 60)); }},
      {"dictionary",
       [] {
         std::string text = dictionary_text;
         test::owned_list<zrt4_env_index_dictionary_entry> list;
         parse_env_index_dict_list_read(text.data(), &list);
       }},
      {"dictionary written",
       [] {
         std::string text = dictionary_text;
         std::string name = "/dev/null";
         dump_env_index_dict(text.data(), name.data(), 0, -1);
         dump_env_index_dict(text.data(), name.data(), 1, -1);
       }},
      {"camera",
       [] {
         static const test::temporary_file file(camera_text);
         std::string name = file.path();
         std::vector<ZRT4GigEFeature*> list;
         try {
           zrt4_fill_gige_descr(name.data(), &list);
         } catch (...) {
           zrt4_clean_gige_descr(&list);
           throw;
         }
         zrt4_clean_gige_descr(&list);
       }},
      {"selector",
       [] {
         static const test::temporary_file file(channel_text);
         static std::string name = file.path();
         chan_selector selector;
         std::vector<char*> names{name.data()};
         int total = 0;
         selector.set_descriptions(&names, &total);
         selector.find_channel(1, name.data());
       }},
  };
}

/// Runs with the n-th request failing; false when there were not that many.
bool fails(const operation& each, long n, bool for_ever) {
  const long before = blocks;
  failed = false;
  fails_for_ever = for_ever;
  requests_left = n;
  try {
    each.run();
  } catch (const std::bad_alloc&) {
  } catch (const xercesc::OutOfMemoryException&) {
  }
  requests_left = -1;
  leaked = blocks - before;
  return failed;
}

void fail_every_request(bool for_ever) {
  // One use of the XML library stays: its own set-up ends the process when there is no memory.
  xercesc::XMLPlatformUtils::Initialize();
  for (const operation& each : operations()) {
    SCOPED_TRACE(each.name);
    test::captured(each.run);  // what is made once and kept
    long n = 0;
    std::string leaks;
    test::captured([&] {
      for (; fails(each, n, for_ever); ++n) {
        if (leaked != 0) leaks += std::to_string(n) + ":" + std::to_string(leaked) + " ";
      }
      each.run();
    });
    EXPECT_EQ(leaks, "");
    EXPECT_GT(n, 25) << each.name;
  }
  xercesc::XMLPlatformUtils::Terminate();
}

}  // namespace

TEST(AllocationFailures, EachRequestOnce) {
  fail_every_request(false);
}

TEST(AllocationFailures, EachRequestAndAllAfter) {
  fail_every_request(true);
}
