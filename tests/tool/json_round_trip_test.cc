// What is shown as JSON and read back: the same records, and the same document made of them.

#include <clocale>
#include <nlohmann/json.hpp>

#include "any_list.hh"
#include "bad_document.hh"
#include "input_file.hh"
#include "json_reading.hh"
#include "own_locale.hh"
#include "random_documents.hh"
#include "row_json.hh"
#include "rows.hh"
#include "support.hh"
#include "without_date.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

namespace {

class as_the_tool : public testing::Environment {
 public:
  void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }

 private:
  const zrt4::xml_session in_use;
};
const auto* const environment = testing::AddGlobalTestEnvironment(new as_the_tool);

json records_of_list(any_list& list) {
  const held_records records = records_of(list);
  json array = json::array();
  for (std::size_t i = 0; i < records.size(); ++i) {
    array.push_back(to_json(row_of(records.type(), records[i])));
  }
  return array;
}

/// What is read of an XML document of that kind, and of its JSON.
struct both {
  any_list xml;
  any_list json;
};

std::string shown(any_list& list, document_kind kind) {
  return json{{"documents", {{{"kind", traits_of(kind).name}, {"records", records_of_list(list)}}}}}
      .dump();
}

both read(const std::string& document, document_kind kind) {
  const test::temporary_file xml(document);
  both result{list_for(kind), list_for(kind)};
  input_file xml_file(xml.path());
  read_into(result.xml, xml_file, kind);
  const test::temporary_file as_json(shown(result.xml, kind));
  input_file json_file(as_json.path());
  EXPECT_EQ(read_into(result.json, json_file, kind).errors, 0);
  return result;
}

std::string written(zrt4::channel_list& list, int dialect) {
  std::string document;
  dump_chan_desr(list.get(), nullptr, DUMP_XML_FILE, dialect, -1, &document, nullptr);
  return test::without_date(document);
}
std::string written(zrt4::env_dictionary_2010& list) {
  std::string document;
  dump_env_index_dict_2010(list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &document);
  return test::without_date(document);
}

// Enough of each format to meet every oddity; they take some seconds.
constexpr int random_ones = 2500 / test::random_share;

void expect_round_trips(test::random_documents::format format, document_kind kind,
                        const std::function<void(both&)>& expect_same) {
  test::random_documents documents(20261122U + static_cast<unsigned>(format));
  std::size_t records = 0;
  for (int i = 0; i < random_ones; ++i) {
    const std::string document = documents.next(format);
    const test::kept_leak of_the_readers;
    both lists = read(document, kind);
    ASSERT_EQ(records_of_list(lists.xml).dump(), records_of_list(lists.json).dump()) << document;
    expect_same(lists);
    if (testing::Test::HasFailure()) {
      std::fputs(document.c_str(), stderr);
      return;
    }
    records += records_of(lists.xml).size();
  }
  EXPECT_GT(records, static_cast<std::size_t>(random_ones) / 4);
}

}  // namespace

TEST(JsonRoundTrip, RandomEventLists) {
  expect_round_trips(test::random_documents::event_list, document_kind::events, [](both&) {});
}

TEST(JsonRoundTrip, RandomChannelsOfTheElementDialect) {
  expect_round_trips(test::random_documents::elements, document_kind::channels, [](both& lists) {
    for (const int dialect : {ZRT4_FORMAT, MORV_FORMAT}) {
      EXPECT_EQ(written(std::get<zrt4::channel_list>(lists.xml), dialect),
                written(std::get<zrt4::channel_list>(lists.json), dialect));
    }
  });
}

TEST(JsonRoundTrip, RandomChannelsOfTheVariableDialect) {
  expect_round_trips(test::random_documents::variables, document_kind::variables, [](both& lists) {
    for (const int dialect : {ZRT4_FORMAT, MORV_FORMAT}) {
      EXPECT_EQ(written(std::get<zrt4::channel_list>(lists.xml), dialect),
                written(std::get<zrt4::channel_list>(lists.json), dialect));
    }
  });
}

TEST(JsonRoundTrip, RandomDictionaries) {
  expect_round_trips(test::random_documents::dictionary, document_kind::dictionary,
                     [](both& lists) {
                       EXPECT_EQ(written(std::get<zrt4::env_dictionary_2010>(lists.xml)),
                                 written(std::get<zrt4::env_dictionary_2010>(lists.json)));
                     });
}

TEST(JsonRoundTrip, EveryExample) {
  std::size_t examples = 0;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(ZRT4_SOURCE_DIR "/examples")) {
    if (entry.path().extension() != ".xml") continue;
    input_file file(entry.path());
    const document_kind kind = kind_of(file);
    both lists = read(file.content(), kind);
    EXPECT_EQ(records_of_list(lists.xml).dump(), records_of_list(lists.json).dump());
    EXPECT_GT(records_of(lists.json).size(), 0U) << entry.path();
    ++examples;
  }
  EXPECT_GE(examples, 11U);
}

TEST(JsonReading, CharactersThatTheCodePageLacksAreRefused) {
  const test::own_locale ascii(LC_CTYPE, "C");
  ASSERT_TRUE(ascii.set());
  EXPECT_EQ(read_json("x", R"({"kind": "channels", "records": [{"property": "A", "units": "mm"}]})")
                .size(),
            1U);
  try {
    read_json("x", R"({"kind": "channels", "records": [{"property": "A", "units": "\u03a9"}]})");
    ADD_FAILURE() << "it was read";
  } catch (const bad_document& reason) {
    EXPECT_STREQ(reason.what(),
                 "records[0].units: the text holds U+03A9, which the code page of this locale "
                 "lacks");
  }
}
