// How records become columns of JSON.

#include "columns.hh"

#include "support.hh"

namespace {

row with_key(std::string_view key, std::int64_t number = 0) {
  return {{{"key", key, ""}, {"number", number, ""}}, {}};
}

std::string table_of(const std::vector<row>& rows) {
  std::vector<const row*> pointers;
  for (const row& each : rows) pointers.push_back(&each);
  std::string json;
  append_table(json, pointers, 1);
  std::string by_several;
  append_table(by_several, pointers, 3);
  EXPECT_EQ(by_several, json);
  return json;
}

}  // namespace

TEST(Columns, NoRowsHaveNone) {
  EXPECT_EQ(table_of({}), R"({"rows":0,"columns":[],"groups":[]})");
}

TEST(Columns, OneValueOfAllStandsThereOnce) {
  EXPECT_EQ(table_of({with_key("a", 7), with_key("a", 7)}),
            R"({"rows":2,"columns":[{"name":"key","kind":"text","all":"a"},)"
            R"({"name":"number","kind":"number","all":7}],"groups":[]})");
}

TEST(Columns, FewTextsAreNumbered) {
  EXPECT_THAT(table_of({with_key("a"), with_key("b"), with_key("b"), with_key("a")}),
              testing::HasSubstr(R"("values":["a","b"],"at":[0,1,1,0])"));
}

TEST(Columns, ManyTextsStandThereEach) {
  EXPECT_THAT(table_of({with_key("a"), with_key("b"), with_key("c")}),
              testing::HasSubstr(R"("each":["a","b","c"])"));
}

TEST(Columns, NumbersThatRiseAreSteps) {
  EXPECT_THAT(table_of({with_key("a", 4100), with_key("b", 4101), with_key("c", 4103)}),
              testing::HasSubstr(R"("steps":[4100,1,2])"));
}

TEST(Columns, OtherNumbersStandThereEach) {
  EXPECT_THAT(table_of({with_key("a", 1), with_key("b", -1), with_key("c", 1)}),
              testing::HasSubstr(R"("each":[1,-1,1])"));
}

TEST(Columns, NumbersKeepTheirNames) {
  const std::vector<row> rows = {{{{"type", std::int64_t{4}, "ENV"}}, {}},
                                 {{{"type", std::int64_t{1}, "NORMAL"}}, {}}};
  EXPECT_THAT(table_of(rows),
              testing::HasSubstr(R"("names":{"1":"NORMAL","4":"ENV"},"each":[4,1])"));
}

TEST(Columns, ThresholdsAreTheShortestDecimalsOrTexts) {
  const std::vector<row> rows = {{{{"limit", threshold{0.05F}, ""}}, {}},
                                 {{{"limit", threshold{NAN}, ""}}, {}}};
  EXPECT_THAT(table_of(rows), testing::HasSubstr(R"("kind":"threshold","each":[0.05,"nan"])"));
}

TEST(Columns, WhatIsInsideRecordsIsATableWithCounts) {
  row outer = with_key("a");
  outer.groups.push_back({"bits", "bit", {with_key("on"), with_key("off")}});
  row empty = with_key("b");
  empty.groups.push_back({"bits", "bit", {}});
  EXPECT_THAT(table_of({outer, empty}),
              testing::HasSubstr(R"("groups":[{"name":"bits","one":"bit","counts":)"
                                 R"({"name":"count","kind":"number","each":[2,0]},"rows":2,)"
                                 R"("columns":[{"name":"key","kind":"text","each":["on","off"]})"));
}

TEST(Columns, TextsAreEscapedAndOfUtf8) {
  std::string json;
  append_text(json, "a\"b\\c\n\x01\x7f</script>");
  EXPECT_EQ(json, "\"a\\\"b\\\\c\\u000a\\u0001\x7f</script>\"");
}

TEST(Columns, TypeThatIsNotToldHasANumberOfItsOwn) {
  const std::vector<row> rows = {{{{"type", untold, "UNKNOWN"}}, {}},
                                 {{{"type", std::int64_t{0}, "HB"}}, {}}};
  EXPECT_THAT(table_of(rows),
              testing::HasSubstr(R"("names":{"-1":"UNKNOWN","0":"HB"},"each":[-1,0])"));
}
