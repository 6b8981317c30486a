// `check` finds nothing where nothing is wrong.

#include <algorithm>

#include "clean_documents.hh"
#include "finding_support.hh"
#include "own_locale.hh"
#include "zrt4xml.hh"

using test::check_of;
using test::check_result;
using test::clean_documents;

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

namespace {

constexpr unsigned documents_checked = 10'000 / test::random_share;

class CheckClean : public testing::Test {
  const test::own_locale with_every_character{LC_CTYPE, "C.UTF-8"};
  const zrt4::xml_session session;
};

/// Returns the number of records.
std::size_t expect_clean(const std::string& document) {
  const check_result result = check_of(document);
  EXPECT_EQ(result.errors, 0) << document;
  for (const finding& each : result.found) {
    ADD_FAILURE() << each.place.line << ":" << each.place.column << " " << each.text << "\n"
                  << document;
  }
  return result.records;
}

/// Bits and dimensions are read in the variable dialect only from channels of the size that it
/// takes them for; those of others get lost.
bool has_room_for_all(const chan_descr_2010* channel) {
  return (channel->bits.empty() || channel->max_size == 1) &&
         (channel->dims.empty() || channel->max_size != 1);
}

/// A document of the library's writers, which write texts as the records hold them, declared as
/// what it is.
std::string in_utf8(std::string document) {
  const std::string declared = "ISO-8859-1";
  return document.replace(document.find(declared), declared.size(), "UTF-8");
}

}  // namespace

TEST_F(CheckClean, TenThousandRandomDocuments) {
  clean_documents documents(2026);
  std::size_t records = 0;
  for (unsigned i = 0; i != documents_checked && !testing::Test::HasFailure(); ++i) {
    const auto kind = static_cast<clean_documents::format>(i % clean_documents::formats);
    records += expect_clean(documents.next(kind));
  }
  EXPECT_GT(records, 4 * documents_checked);  // they are not empty
}

// Whatever the records hold that they should.
TEST_F(CheckClean, WhatTheWritersWrite) {
  const test::kept_leak of_the_readers;
  clean_documents documents(7);
  std::size_t records[2] = {};
  for (unsigned i = 0; i != 700 && !testing::Test::HasFailure(); ++i) {
    zrt4::channel_list channels;
    ASSERT_EQ(channels.read_text(documents.next(clean_documents::elements)), 0);
    for (const int dialect : {ZRT4_FORMAT, MORV_FORMAT}) {
      const bool is_whole =
          std::all_of(channels.get()->begin(), channels.get()->end(), has_room_for_all);
      if (dialect == MORV_FORMAT && !is_whole) continue;
      std::string document;
      dump_chan_desr(channels.get(), nullptr, DUMP_XML_FILE, dialect, -1, &document, nullptr);
      document = in_utf8(document);
      if (document.find('&') == document.npos)
        records[dialect == MORV_FORMAT] += expect_clean(document);
    }
    zrt4::env_dictionary_2010 dictionary;
    ASSERT_EQ(dictionary.read_text(documents.next(clean_documents::dictionary)), 0);
    std::string document;
    dump_env_index_dict_2010(dictionary.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &document);
    document = in_utf8(document);
    if (document.find('&') == document.npos) expect_clean(document);
  }
  EXPECT_GT(records[0], 300U);
  EXPECT_GT(records[1], 50U);
}
