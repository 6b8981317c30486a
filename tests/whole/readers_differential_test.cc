// The library's readers against the plainest readers that do the same, over random documents:
// result, every byte of every field, everything printed.

#include <string_view>
#include <xercesc/util/PlatformUtils.hpp>

#include "own_locale.hh"
#include "plain_readers.hh"
#include "random_documents.hh"
#include "support.hh"

namespace {

constexpr unsigned documents_of_each = 500;

template <std::size_t Size>
std::string_view whole(const char (&field)[Size]) {
  return {field, Size};
}

std::string shown(const std::vector<zrt4_ev_entry*>& list) {
  std::ostringstream text;
  for (const zrt4_ev_entry* entry : list) {
    text << entry->evtype << " " << entry->tmask << " " << entry->min_ev_time.timeup << " "
         << entry->min_ev_time.timelow << " " << entry->priority;
    for (const zrt4_ev_sb_list* block : *entry->sb_list) {
      text << " [" << whole(block->sb_list);
      for (const char* channel : *block->ch_list) text << "|" << channel;
    }
    text << "\n";
  }
  return text.str();
}

std::string shown(const std::vector<chan_descr_2010*>& list) {
  std::ostringstream text;
  const chan_descr_2010* before = nullptr;
  for (const chan_descr_2010* c : list) {
    text << (c == before) << c->stream << " " << c->ev_type << " " << c->count << " " << c->dtype
         << " " << c->db_key << whole(c->prop_name) << whole(c->daq_name) << whole(c->prop_desc)
         << whole(c->units) << c->max_size << " " << c->nbits << " " << c->ndims
         << whole(c->sb_name) << c->set_point << whole(c->subsystem);
    for (const bit_descr* b : c->bits) text << b->bit << whole(b->bit_name) << whole(b->bit_desc);
    for (const dim_descr* d : c->dims) {
      text << d->dim << whole(d->dim_name) << whole(d->dim_desc) << whole(d->units) << d->nstats;
      for (const stat_descr* s : d->stats) {
        text << s->stat << whole(s->stat_name) << whole(s->stat_desc) << whole(s->units);
      }
    }
    text << "\n";
    before = c;
  }
  return text.str();
}

template <class Entry>
std::string shown(const std::vector<Entry*>& list) {
  std::string text;
  const Entry* before = nullptr;
  for (const Entry* entry : list) {
    text += entry == before ? "again" : "new";
    text.append(reinterpret_cast<const char*>(entry), sizeof(Entry));
    before = entry;
  }
  return text;
}

struct ReadersDifferential : testing::Test {
  ReadersDifferential() { xercesc::XMLPlatformUtils::Initialize(); }
  ~ReadersDifferential() override { xercesc::XMLPlatformUtils::Terminate(); }

  test::own_locale utf8{LC_CTYPE, "C.UTF-8"};

  /// `plain` and `ours` read `source`, a text or a file's name, into a list of their own.
  template <class Record, class Plain, class Ours>
  void compare(const std::string& document, bool from_file, unsigned times, Plain plain,
               Ours ours) {
    const test::temporary_file file(from_file ? document : "");
    std::string source = from_file ? file.path() : document;
    std::vector<Record*> expected;
    std::vector<Record*> read;
    const test::kept_leak records;  // both sides keep theirs: some are listed twice
    test::plain_result wanted;
    int code = 0;
    test::output said;
    for (unsigned i = 0; i < times; ++i) {
      wanted = plain(source, expected);
      said = test::captured([&] { code = ours(source.data(), &read); });
    }
    ASSERT_EQ(code, wanted.code) << document;
    ASSERT_EQ(said.out, wanted.out) << document;
    ASSERT_EQ(said.err, wanted.err) << document;
    ASSERT_TRUE(shown(read) == shown(expected)) << document;
    records_read += read.size();
  }

  std::size_t records_read = 0;
};

}  // namespace

TEST_F(ReadersDifferential, EventLists) {
  for (unsigned seed = 0; seed < documents_of_each; ++seed) {
    test::random_documents random(seed);
    const std::string document = random.next(random.event_list);
    const bool file = random.one_in(2);
    compare<zrt4_ev_entry>(
        document, file, 1 + random.below(2),
        [&](const std::string& source, auto& list) {
          return test::plain_event_list(source, file, list);
        },
        file ? zrt4_parse_ev_list_readf : zrt4_parse_ev_list_read);
  }
  EXPECT_GT(records_read, documents_of_each / 4);
}

TEST_F(ReadersDifferential, ChannelDescriptions) {
  for (unsigned seed = 0; seed < 2 * documents_of_each; ++seed) {
    test::random_documents random(seed);
    const std::string document = random.next(seed % 2 == 0 ? random.elements : random.variables);
    const bool file = random.one_in(2);
    const bool shift = random.one_in(2);
    const bool merge = random.one_in(2);
    compare<chan_descr_2010>(
        document, file, 1 + random.below(2),
        [&](const std::string& source, auto& list) {
          return test::plain_channel_reader(file, shift, merge, list).read(source);
        },
        [&](char* source, auto* list) {
          return file ? parse_descr_list_readf(source, list, shift, merge)
                      : parse_descr_list_read(source, list, shift, merge);
        });
  }
  EXPECT_GT(records_read, documents_of_each / 4);
}

TEST_F(ReadersDifferential, Dictionaries) {
  for (unsigned seed = 0; seed < documents_of_each; ++seed) {
    test::random_documents random(seed);
    const std::string document = random.next(random.dictionary);
    const bool file = random.one_in(2);
    const unsigned times = 1 + random.below(2);
    const auto plain = [&](const std::string& source, auto& list) {
      return test::plain_dictionary(source, file, list);
    };
    compare<zrt4_env_index_dictionary_entry>(
        document, file, times, plain,
        file ? parse_env_index_dict_readf : parse_env_index_dict_list_read);
    compare<zrt4_env_index_dictionary_entry_2010>(
        document, file, times, plain,
        file ? parse_env_index_dict_readf_2010 : parse_env_index_dict_list_read_2010);
  }
  EXPECT_GT(records_read, documents_of_each / 4);
}
