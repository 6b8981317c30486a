// The table of docs/measurements/performance.md: what reading, writing and looking up cost, as
// ratios to a reference. Normal heap, one process, one thread; scripts/bench builds and runs it.

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "bare_scan.hh"
#include "chan_selector.hh"
#include "comparison.hh"
#include "documents.hh"
#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "peers.hh"
#include "temporary_document.hh"
#include "zrt4_gige_descr.hh"

namespace {

using bench::add;
using bench::channel_list;
using bench::measure;
using bench::seconds;
using xercesc::XMLPlatformUtils;

void must(bool good) {
  if (good) return;
  std::fputs("what is measured failed\n", stderr);
  std::abort();
}

/// A document that is made when it is first needed, in memory and as a file.
class lazy_document {
 public:
  lazy_document(std::string (*maker)(int), int count) : make(maker), parts(count) {}
  std::string& text() {
    if (made.empty()) made = make(parts);
    return made;
  }

  char* file() {
    if (!written) written.emplace(text());
    return written->path();
  }

  const int& size() const { return parts; }

 private:
  std::string (*make)(int);
  int parts;
  std::string made;
  std::optional<bench::temporary_document> written;
};
using document = std::shared_ptr<lazy_document>;

document make(std::string (*maker)(int), int parts) {
  return std::make_shared<lazy_document>(maker, parts);
}

measure scan(const document& of) {
  return [of] {
    const std::string& text = of->text();
    return seconds([&] { bench::bare_scan(text); });
  };
}

measure scan_file(const document& of) {
  return [of] {
    const char* name = of->file();
    return seconds([&] { bench::bare_scan_of_file(name); });
  };
}

// Readers: each is measured into a new list, which is released afterwards. The first read of a
// program gets its memory from the kernel, page by page; later ones get what earlier ones released.

void release(channel_list& list) {
  clean_chan_desr_list(&list);
}
void release(std::vector<zrt4_ev_entry*>& list) {
  zrt4_clean_ev_list(&list);
}
void release(std::vector<ZRT4GigEFeature*>& list) {
  zrt4_clean_gige_descr(&list);
}
template <class Entry>
void release(std::vector<Entry*>& list) {
  for (Entry* entry : list) std::free(entry);
}

enum class from { text, file };
enum class memory { reused, first };

/// `read(source, list)` returns 0 or false when it went well; the list must then have a record for
/// every part.
template <class Record, class Read>
measure reading(const document& of, from where, Read read, memory used = memory::reused) {
  return [of, where, read, used] {
    char* source = where == from::file ? of->file() : of->text().data();
    std::vector<Record*> list;
    if (used == memory::first) malloc_trim(0);
    const double taken = seconds([&] { must(!read(source, &list)); });
    must(list.size() == static_cast<std::size_t>(of->size()));
    release(list);
    return taken;
  };
}

int read_channels(char* text, channel_list* list) {
  return parse_descr_list_read(text, list, true, true);
}
int read_channels_of_file(char* file, channel_list* list) {
  return parse_descr_list_readf(file, list, true, true);
}

measure reading_channels(const document& of) {
  return reading<chan_descr_2010>(of, from::text, read_channels);
}

/// Reads the document into a list that has all its channels already.
measure reading_known_channels(const document& of) {
  return [of] {
    channel_list list;
    must(parse_descr_list_read(of->text().data(), &list, true, true) == 0);
    const double taken =
        seconds([&] { must(parse_descr_list_read(of->text().data(), &list, true, true) == 0); });
    must(list.size() == static_cast<std::size_t>(of->size()));
    release(list);
    return taken;
  };
}

template <class Parser>
void pull_all(Parser& parser) {
  char* tag = nullptr;
  char* value = nullptr;
  while (parser.parse(&tag, &value) == 0) continue;
  must(parser.get_error_counter() == 0);
}

measure pulling(const document& of) {
  return [of] {
    char* text = of->text().data();
    return seconds([&] {
      SAX_Memory_Parser parser(text);
      must(parser.init_ok() && !parser.start());
      pull_all(parser);
    });
  };
}

measure pulling_file(const document& of) {
  return [of] {
    char* name = of->file();
    return seconds([&] {
      SAX_File_Parser parser;
      must(parser.init_ok() && !parser.start(name));
      pull_all(parser);
    });
  };
}

/// Both with reused memory and as the first read.
template <class Record, class Read>
void add_reader(const std::string& name, double limit, const document& of, Read read) {
  const auto with = [&](memory used) { return reading<Record>(of, from::text, read, used); };
  add({name, limit, of->size(), scan(of), with(memory::reused)});
  add({"- first read", limit, of->size(), scan(of), with(memory::first)});
}

void add_readers() {
  constexpr int many = 10000;
  const document channels = make(bench::element_channels, many);
  add({"pull parser, memory", 1.2, many, scan(channels), pulling(channels)});
  add({"pull parser, file", 1.2, many, scan_file(channels), pulling_file(channels)});
  for (const int parts : {1000, 10000, 100000}) {
    const std::string size = ", " + std::to_string(parts) + " channels";
    const document elements = make(bench::element_channels, parts);
    add_reader<chan_descr_2010>("channel reader, element dialect" + size, 1.4, elements,
                                read_channels);
    add_reader<chan_descr_2010>("the same, six elements each" + size, 1.4,
                                make(bench::short_element_channels, parts), read_channels);
    add({"the same, all known before" + size, 1.4, parts, scan(elements),
         reading_known_channels(elements)});
    const document variables = make(bench::variable_channels, parts);
    add_reader<chan_descr_2010>("channel reader, variable dialect" + size, 1.4, variables,
                                read_channels);
    add({"the same, all known before" + size, 1.4, parts, scan(variables),
         reading_known_channels(variables)});
  }
  add({"channel reader, element dialect, file", 1.4, many, scan_file(channels),
       reading<chan_descr_2010>(channels, from::file, read_channels_of_file)});
  const document dictionary = make(bench::dictionary, many);
  add_reader<zrt4_env_index_dictionary_entry>("dictionary reader, 80 characters", 1.35, dictionary,
                                              parse_env_index_dict_list_read);
  add_reader<zrt4_env_index_dictionary_entry_2010>("dictionary reader, 256 characters", 1.35,
                                                   dictionary, parse_env_index_dict_list_read_2010);
  add_reader<zrt4_ev_entry>("event list reader", 1.4, make(bench::event_list, many),
                            zrt4_parse_ev_list_read);
}

// What others would need for the same channels.

void add_peers() {
  constexpr int many = 10000;
  const document channels = make(bench::element_channels, many);
  const auto peer = [&](const char* name, bool (*read)(std::string&, channel_list&)) {
    const auto reading_by = [channels, read](char* /*source*/, channel_list* list) {
      return !read(channels->text(), *list);
    };
    add({name, 0, many, scan(channels),
         reading<chan_descr_2010>(channels, from::text, reading_by)});
  };
  peer("same channels by libxml2's reader", bench::read_by_libxml2_reader);
  peer("same channels by TinyXML2", bench::read_by_tinyxml2);
  peer("same channels by expat", bench::read_by_expat);
  peer("same channels by pugixml", bench::read_by_pugixml);
}

// Writers, against a scan of what they write. The string is a new one each time; as with readers,
// its memory may be new, too.

template <class Record, class Read, class Write>
measure writing(const document& of, Read read, Write write, memory used = memory::reused) {
  return [=] {
    std::vector<Record*> list;
    must(read(of->text().data(), &list) == 0);
    if (used == memory::first) malloc_trim(0);
    const double taken = seconds([&] { must(write(&list) == 0); });
    release(list);
    return taken;
  };
}

template <class Record, class Read, class Write>
void add_writer(const char* name, double limit, const document& of, Read read, Write write) {
  add({name, limit, of->size(), scan(of), writing<Record>(of, read, write)});
}

int read_unshifted(char* text, channel_list* list) {
  return parse_descr_list_read(text, list, false, false);
}

template <int Mode, int Format>
int dump_channels(channel_list* list) {
  constexpr bool to_string = Mode == DUMP_XML_FILE;
  char nowhere[] = "/dev/null";
  std::string text;
  return dump_chan_desr(list, to_string ? nullptr : nowhere, Mode, Format, -1,
                        to_string ? &text : nullptr, nullptr);
}

int dump_dictionary(std::vector<zrt4_env_index_dictionary_entry*>* list) {
  std::string text;
  return dump_env_index_dict(list, nullptr, ENV_INDX_DUMP_XML_STRING, -1, &text);
}
int dump_dictionary_2010(std::vector<zrt4_env_index_dictionary_entry_2010*>* list) {
  std::string text;
  return dump_env_index_dict_2010(list, nullptr, ENV_INDX_DUMP_XML_STRING, -1, &text);
}

void add_writers() {
  constexpr int many = 10000;
  const document elements = make(bench::element_channels, many);
  const document variables = make(bench::variable_channels, many);
  const document dictionary = make(bench::dictionary, many);
  const auto channels = [&](const char* name, double limit, const document& of, auto dump) {
    add_writer<chan_descr_2010>(name, limit, of, read_unshifted, dump);
  };
  const auto into_new_memory = [&](const document& of, auto dump) {
    add({"- into new memory", 0.35, of->size(), scan(of),
         writing<chan_descr_2010>(of, read_unshifted, dump, memory::first)});
  };
  channels("channel XML dump into a string, element dialect", 0.35, elements,
           dump_channels<DUMP_XML_FILE, ZRT4_FORMAT>);
  into_new_memory(elements, dump_channels<DUMP_XML_FILE, ZRT4_FORMAT>);
  channels("channel XML dump into a string, variable dialect", 0.35, variables,
           dump_channels<DUMP_XML_FILE, MORV_FORMAT>);
  into_new_memory(variables, dump_channels<DUMP_XML_FILE, MORV_FORMAT>);
  channels("channel text dump", 0, elements, dump_channels<DUMP_TXT_FILE, ZRT4_FORMAT>);
  channels("channel text dump, short", 0, elements,
           dump_channels<DUMP_TXT_FILE_SHORT, ZRT4_FORMAT>);
  add_writer<zrt4_env_index_dictionary_entry>("dictionary XML dump, 80 characters", 0, dictionary,
                                              parse_env_index_dict_list_read, dump_dictionary);
  add_writer<zrt4_env_index_dictionary_entry_2010>("dictionary XML dump, 256 characters", 0,
                                                   dictionary, parse_env_index_dict_list_read_2010,
                                                   dump_dictionary_2010);
}

// The 100-byte document, many times over: with the XML library held, or not, by the caller.

measure repeated(int times, void (*once)(std::string& text), bool held) {
  return [times, once, held] {
    std::string text = bench::smallest_channels();
    if (!held) XMLPlatformUtils::Terminate();
    const double taken = seconds([&] {
      for (int n = 0; n < times; ++n) once(text);
    });
    if (!held) XMLPlatformUtils::Initialize();
    return taken;
  };
}

void scan_once(std::string& text) {
  XMLPlatformUtils::Initialize();
  bench::bare_scan(text);
  XMLPlatformUtils::Terminate();
}

void read_once(std::string& text) {
  channel_list list;
  must(parse_descr_list_read(text.data(), &list, true, true) == 0);
  release(list);
}

void add_small_documents() {
  const auto small = [](const char* name, double limit, int times, bool held) {
    add({name, limit, times, repeated(times, scan_once, held), repeated(times, read_once, held)});
  };
  small("100-byte document, XML library held", 1.2, 1000, true);
  small("100-byte document, XML library not held", 0, 50, false);
}

// The camera reader.

void parse_dom(const char* name) {
  using xercesc::XercesDOMParser;
  XercesDOMParser parser;
  parser.setValidationScheme(XercesDOMParser::Val_Never);
  parser.setDoNamespaces(false);
  parser.setDoSchema(false);
  parser.setCreateEntityReferenceNodes(false);
  parser.parse(name);
}

measure parsing_dom(const document& of) {
  return [of] {
    const char* name = of->file();
    return seconds([&] { parse_dom(name); });
  };
}

measure reading_features(const document& of) {
  return reading<ZRT4GigEFeature>(of, from::file, zrt4_fill_gige_descr);
}

void add_camera() {
  constexpr int many = 10000;
  const document features = make(bench::camera, many);
  add({"camera reader against a bare DOM parse", 1.15, many, parsing_dom(features),
       reading_features(features)});
}

// The selector, against a hash table of the same names.

struct loaded_selector {
  explicit loaded_selector(int channels) : text(bench::element_channels(channels)) {
    selector.set_mode(EXTR_FROM_XML);
    std::vector<char*> sources{text.data()};
    int total = 0;
    must(!selector.set_descriptions(&sources, &total) && selector.size() == channels);
    for (int n = 0; n < channels; ++n) {
      names.push_back(bench::daq_name(n));
      properties.push_back(bench::property(n));
    }
    std::mt19937 order(1);
    std::shuffle(names.begin(), names.end(), order);
    std::shuffle(properties.begin(), properties.end(), order);
    for (int n = 0; n < channels; ++n) {
      by_name.emplace(selector.get_channel(n), n);
      by_property.emplace(selector.get_prop(n), n);
    }
  }

  using table = std::unordered_map<std::string_view, int>;
  std::string text;
  chan_selector selector;
  std::vector<std::string> names, properties;
  table by_name, by_property;
};

template <class Find>
double seconds_to_find(std::vector<std::string>& names, Find find) {
  std::size_t found = 0;
  const double taken = seconds([&] {
    for (std::string& name : names) found += find(name.data()) ? 1U : 0U;
  });
  must(found == names.size());
  return taken;
}

void add_selector() {
  static constexpr int many = 100000;
  const auto loaded = std::make_shared<std::unique_ptr<loaded_selector>>();
  const auto all = [loaded]() -> loaded_selector& {
    if (!*loaded) *loaded = std::make_unique<loaded_selector>(many);
    return **loaded;
  };
  const auto in_table = [all](auto names, auto table) {
    return [=] {
      const auto& known = all().*table;
      return seconds_to_find(all().*names,
                             [&](char* name) { return known.find(name) != known.end(); });
    };
  };
  add({"selector, get_data_type", 1.0, many,
       in_table(&loaded_selector::names, &loaded_selector::by_name), [all] {
         return seconds_to_find(
             all().names, [&](char* name) { return all().selector.get_data_type(name) != 0; });
       }});
  add({"selector, find_channel", 1.0, many,
       in_table(&loaded_selector::properties, &loaded_selector::by_property), [all] {
         return seconds_to_find(all().properties, [&](char* name) {
           return all().selector.find_channel(ZRT4_EV_NORMAL, name);
         });
       }});
}

// How the cost of a part grows with the document: the ratio to the scan at 1,000,000 parts against
// that at 1,000. Both are measured in each turn, as the fastest of several runs: a run takes so
// long that the machine is not the same from one to the next.

template <class Make>
void add_growth(const std::string& name, std::string (*maker)(int), Make measured,
                measure (*reference)(const document& of) = scan, int turns = 3) {
  constexpr int few = 1000;
  constexpr int many = 1000000;
  const auto ratio = [maker, measured, reference](int parts) {
    // The document is made anew: a million channels are not kept in memory between turns.
    return [=] {
      const document of = make(maker, parts);
      (void)measured(of)();  // has the memory of later ones
      double scanning = std::numeric_limits<double>::max();
      double working = scanning;
      for (int n = 0; n < many / parts / 20 + 3; ++n) {
        scanning = std::min(scanning, reference(of)());
        working = std::min(working, measured(of)());
      }
      return working / scanning;
    };
  };
  add({"growth to 1,000,000, " + name, 1.25, 0, ratio(few), ratio(many)}, turns);
}

void add_growths() {
  add_growth("element dialect", bench::element_channels,
             [](const document& of) { return reading_channels(of); });
  add_growth("variable dialect", bench::variable_channels,
             [](const document& of) { return reading_channels(of); });
  add_growth("dictionary", bench::dictionary, [](const document& of) {
    return reading<zrt4_env_index_dictionary_entry_2010>(of, from::text,
                                                         parse_env_index_dict_list_read_2010);
  });
  add_growth("event list", bench::event_list, [](const document& of) {
    return reading<zrt4_ev_entry>(of, from::text, zrt4_parse_ev_list_read);
  });
  add_growth("camera reader", bench::camera, reading_features, parsing_dom, 2);
  add_growth("channel XML dump, element dialect", bench::element_channels, [](const document& of) {
    return writing<chan_descr_2010>(of, read_unshifted, dump_channels<DUMP_XML_FILE, ZRT4_FORMAT>);
  });
  add_growth("channel XML dump, variable dialect", bench::variable_channels,
             [](const document& of) {
               return writing<chan_descr_2010>(of, read_unshifted,
                                               dump_channels<DUMP_XML_FILE, MORV_FORMAT>);
             });
  add_growth("channel text dump", bench::element_channels, [](const document& of) {
    return writing<chan_descr_2010>(of, read_unshifted, dump_channels<DUMP_TXT_FILE, ZRT4_FORMAT>);
  });
  add_growth("dictionary XML dump", bench::dictionary, [](const document& of) {
    return writing<zrt4_env_index_dictionary_entry_2010>(of, parse_env_index_dict_list_read_2010,
                                                         dump_dictionary_2010);
  });
}

}  // namespace

int main(int argc, char** argv) {
  // Memory that was released stays with the program: whether the heap gives it back otherwise
  // depends on its size and on what happens to lie behind it.
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  mallopt(M_MMAP_MAX, 0);
  XMLPlatformUtils::Initialize();
  add_readers();
  add_peers();
  add_writers();
  add_small_documents();
  add_camera();
  add_selector();
  add_growths();
  const int result = bench::run(argc, argv);
  XMLPlatformUtils::Terminate();
  return result;
}
