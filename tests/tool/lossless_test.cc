// Random documents and records through every form and back: what is read then is what was written,
// or a loss is told of each record that differs.

#include <algorithm>
#include <set>
#include <utility>

#include "lossless_support.hh"
#include "random_documents.hh"
#include "random_records.hh"

namespace {

using test::random_records;
using test::seen;
using test::write_and_read;

class Lossless : public test::in_utf8 {};

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
  EXPECT_GT(elements.whole, 50 / test::random_share);
  EXPECT_GT(elements.lossy, 50 / test::random_share);
  EXPECT_GT(variables.whole, 20 / test::random_share);
  EXPECT_GT(variables.lossy, 50 / test::random_share);
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
  EXPECT_GT(counts.whole, 100 / test::random_share);
  EXPECT_GT(counts.lossy, 100 / test::random_share);
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
  EXPECT_GT(counts.whole, 500 / test::random_share);
  EXPECT_GT(counts.lossy, 100 / test::random_share);
}

// A client reads event types as masks, in which none is another value than type 0.
TEST_F(Lossless, ClientsGetTheEventTypesThatTheyGotBefore) {
  const test::kept_leak of_the_readers;
  const auto masks_in = [](const std::string& document) {
    std::multiset<std::pair<std::string, std::uint32_t>> masks;
    zrt4::channel_list list;
    (void)list.read_text(document, zrt4::types::masks);  // some records are damaged
    for (const chan_descr_2010& each : list) masks.emplace(each.prop_name, each.ev_type);
    return masks;
  };
  test::random_documents documents(2);
  int without_type = 0;
  for (unsigned i = 0; i < rounds; ++i) {
    const std::string text = documents.next(i % 2 == 1 ? test::random_documents::variables
                                                       : test::random_documents::elements);
    input_file file("random", std::string_view(text));
    zrt4::channel_list list;
    read_into(list, file, i % 2 == 1 ? MORV_FORMAT : ZRT4_FORMAT, zrt4::types::numbers);
    const composition made = compose(list, document_form::xml);
    if (!test::losses_of(made, document_form::xml).empty()) continue;
    const auto masks = masks_in(text);
    EXPECT_EQ(masks_in(made.content()), masks) << text;
    without_type += static_cast<int>(
        std::count_if(masks.begin(), masks.end(), [](const auto& one) { return one.second == 0; }));
    if (HasFailure()) break;
  }
  EXPECT_GT(without_type, 0);
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
