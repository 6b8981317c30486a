// Random documents and records through every form and back: what is read then is what was written,
// or a loss is told of each record that differs.

#include <algorithm>
#include <clocale>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "arrival.hh"
#include "bad_document.hh"
#include "handmade_channels.hh"
#include "input_file.hh"
#include "random_documents.hh"
#include "reading.hh"
#include "row_json.hh"
#include "support.hh"
#include "writing.hh"

namespace {

std::multiset<std::string> records_in(const row_list& rows) {
  std::multiset<std::string> records;
  for (const row& record : rows) records.insert(to_json(record).dump());
  return records;
}

std::string property_in(const std::string& record) {
  return json::parse(record)["property"];
}

/// What of `sent` is not in `arrived`, by property.
std::set<std::string> missing(std::multiset<std::string> sent,
                              const std::multiset<std::string>& arrived) {
  for (const std::string& record : arrived) {
    const auto same = sent.find(record);
    if (same != sent.end()) sent.erase(same);
  }
  std::set<std::string> properties;
  for (const std::string& record : sent) properties.insert(property_in(record));
  return properties;
}

std::set<std::string> told(const std::vector<loss>& losses) {
  std::set<std::string> properties;
  for (const loss& each : losses) {
    properties.insert(to_utf8(each.property));
    EXPECT_FALSE(each.text.empty());
  }
  return properties;
}

/// Counts of what was seen, so that the tests cannot pass by seeing nothing.
struct seen {
  int whole = 0;
  int lossy = 0;
};

template <class List, class... How>
void write_and_read(List& list, document_form form, seen& counts, How... how) {
  const auto sent = records_in(rows_of(list));
  const composition made = compose(list, form);
  const std::vector<loss> losses = losses_between(made.sent, made.arriving, "record", form);
  const std::string content = made.content();
  input_file file("written", std::string_view(content));
  List arrived;
  EXPECT_EQ(read_into(arrived, file, how...).errors, 0) << content;
  const auto read = records_in(rows_of(arrived));
  const std::set<std::string> lost = missing(sent, read);
  const std::set<std::string> told_of = told(losses);
  std::set<std::string> differing = missing(read, sent);  // as something else, or under another key
  differing.insert(lost.begin(), lost.end());
  EXPECT_TRUE(std::includes(told_of.begin(), told_of.end(), lost.begin(), lost.end())) << content;
  EXPECT_TRUE(std::includes(differing.begin(), differing.end(), told_of.begin(), told_of.end()))
      << content;
  EXPECT_EQ(losses.empty(), sent == read) << content;
  ++(losses.empty() ? counts.whole : counts.lossy);
}

class Lossless : public testing::Test {
 protected:
  Lossless() { std::setlocale(LC_CTYPE, "C.UTF-8"); }
  ~Lossless() override { std::setlocale(LC_CTYPE, "C"); }

  const zrt4::xml_session session;
};

/// Records whose texts hold everything that XML or a reader stumbles over.
class random_records {
 public:
  explicit random_records(unsigned seed) : random(seed) {}

  zrt4::channel_list channels() {
    zrt4::channel_list list;
    for (unsigned i = below(8); i != 0; --i) list.get()->push_back(channel().release());
    return list;
  }

  template <class Entry>
  zrt4::basic_env_dictionary<Entry> dictionary() {
    zrt4::basic_env_dictionary<Entry> list;
    for (unsigned i = below(8); i != 0; --i) {
      auto* entry = static_cast<Entry*>(std::calloc(1, sizeof(Entry)));
      list.get()->push_back(entry);
      entry->index = number();
      test::set(entry->data.env_prop, property());
      entry->data.env_ch_abs_delta = threshold();
      entry->data.env_ch_rel_delta = threshold();
    }
    return list;
  }

 private:
  unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

  std::int32_t number() {
    static const std::int32_t some[] = {0, 1, -1, 4, 31, 32, 40, 2147483647, -2147483647 - 1};
    return some[below(9)];
  }
  float threshold() {
    static const float some[] = {0.0F,  0.05F,       1e-7F,    1e30F,
                                 -2.5F, 16777217.0F, 3.0e-39F, 1.0F / 3.0F};
    return some[below(8)];
  }
  std::string text() {
    static const std::string parts[] = {"a",
                                        "&",
                                        "<",
                                        ">",
                                        "]]>",
                                        "]",
                                        "\t",
                                        "\n",
                                        "\r",
                                        " ",
                                        "\"",
                                        "'",
                                        "x",
                                        "word",
                                        "\xc3\xa9",
                                        "\xce\xa9",
                                        "\xf0\x9d\x84\x9e",
                                        "\x01",
                                        "\xc3"};
    std::string result;
    for (unsigned i = below(6); i != 0; --i) result += parts[below(19)];
    return result;
  }
  std::string property() { return "P" + std::to_string(below(10)) + (below(3) == 0 ? text() : ""); }

  std::unique_ptr<chan_descr_2010> channel() {
    auto one = std::make_unique<chan_descr_2010>();
    test::set(one->prop_name, property());
    test::set(one->daq_name, text());
    test::set(one->prop_desc, text());
    test::set(one->units, text());
    test::set(one->subsystem, text());
    if (below(2) == 0) {
      one->stream = number();
      one->dtype = static_cast<std::uint32_t>(number());
      one->db_key = number();
      one->count = number();
      test::set(one->sb_name, text());
    }
    one->ev_type = static_cast<std::uint32_t>(number());
    one->set_point = number();
    if (below(2) == 0) one->max_size = number();
    for (unsigned i = below(3); i != 0; --i, ++one->nbits) {
      one->bits.push_back(new bit_descr);
      one->bits.back()->bit = number();
      test::set(one->bits.back()->bit_name, text());
      if (below(2) == 0) test::set(one->bits.back()->bit_desc, text());
    }
    for (unsigned i = below(4) == 0 ? 2 : 0; i != 0; --i, ++one->ndims) {
      one->dims.push_back(new dim_descr);
      dim_descr& dim = *one->dims.back();
      dim.dim = number();
      test::set(dim.dim_name, text());
      test::set(dim.dim_desc, text());
      test::set(dim.units, text());
      if (below(2) == 0) continue;
      dim.stats.push_back(new stat_descr);
      ++dim.nstats;
      dim.stats.back()->stat = number();
      test::set(dim.stats.back()->stat_name, text());
      test::set(dim.stats.back()->stat_desc, text());
      test::set(dim.stats.back()->units, text());
    }
    return one;
  }

  std::mt19937 random;
};

constexpr unsigned rounds = 1000 / test::random_share;

}  // namespace

TEST_F(Lossless, RandomChannelsInBothDialects) {
  const test::kept_leak of_the_readers;
  seen elements;
  seen variables;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    SCOPED_TRACE(seed);
    zrt4::channel_list list = random_records(seed).channels();
    write_and_read(list, document_form::xml, elements, ZRT4_FORMAT, zrt4::types::numbers);
    write_and_read(list, document_form::variables, variables, MORV_FORMAT, zrt4::types::numbers);
    if (HasFailure()) break;
  }
  EXPECT_GT(elements.whole, 50);
  EXPECT_GT(elements.lossy, 50);
  EXPECT_GT(variables.whole, 20);
  EXPECT_GT(variables.lossy, 50);
}

TEST_F(Lossless, RandomDictionariesOfBothWidths) {
  const test::kept_leak of_the_readers;
  seen counts;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    SCOPED_TRACE(seed);
    auto narrow = random_records(seed).dictionary<zrt4_env_index_dictionary_entry>();
    write_and_read(narrow, document_form::xml, counts);
    auto wide = random_records(seed + rounds).dictionary<zrt4_env_index_dictionary_entry_2010>();
    write_and_read(wide, document_form::xml, counts);
    if (HasFailure()) break;
  }
  EXPECT_GT(counts.whole, 100);
  EXPECT_GT(counts.lossy, 100);
}

TEST_F(Lossless, RandomDocumentsInBothDialects) {
  const test::kept_leak of_the_readers;
  seen counts;
  test::random_documents documents(1);
  for (unsigned i = 0; i < 2 * rounds; ++i) {
    const bool variables = i % 2 == 1;
    const std::string text = documents.next(variables ? test::random_documents::variables
                                                      : test::random_documents::elements);
    SCOPED_TRACE(text);
    input_file file("random", std::string_view(text));
    zrt4::channel_list list;
    read_into(list, file, variables ? MORV_FORMAT : ZRT4_FORMAT, zrt4::types::numbers);
    write_and_read(list, document_form::xml, counts, ZRT4_FORMAT, zrt4::types::numbers);
    write_and_read(list, document_form::variables, counts, MORV_FORMAT, zrt4::types::numbers);
    if (HasFailure()) break;
  }
  EXPECT_GT(counts.whole, 500);
  EXPECT_GT(counts.lossy, 100);
}

TEST_F(Lossless, TheVariableDialectIsStableFromTheFirstConversionOn) {
  const test::kept_leak of_the_readers;
  for (unsigned seed = 0; seed < rounds / 4; ++seed) {
    zrt4::channel_list list = random_records(seed).channels();
    std::string before = compose(list, document_form::variables).content();
    for (int conversion = 0; conversion < 3; ++conversion) {
      input_file file("written", std::string_view(before));
      zrt4::channel_list read;
      read_into(read, file, MORV_FORMAT, zrt4::types::numbers);
      const std::string after = compose(read, document_form::variables).content();
      EXPECT_TRUE(conversion == 0 || after == before);
      before = after;
    }
  }
}

TEST_F(Lossless, TablesHaveTheirLinesWhateverTheTextsHold) {
  const test::kept_leak of_the_readers;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    SCOPED_TRACE(seed);
    zrt4::channel_list list = random_records(seed).channels();
    std::set<std::string> properties;
    std::ptrdiff_t lines = 0;
    for (const chan_descr_2010& channel : list) {
      std::string in_line = channel.prop_name;
      if (!properties.insert(in_line).second) continue;
      lines += 1 + channel.nbits + 2 * channel.ndims;
      for (const dim_descr* dim : channel.dims) lines += dim->nstats;
    }
    const std::string table = compose(list, document_form::text).content();
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), lines) << table;
    EXPECT_EQ(table.find('\r'), table.npos);
    if (HasFailure()) break;
  }
}
