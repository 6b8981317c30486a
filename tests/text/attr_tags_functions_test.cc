#include "attr_tags_functions.hh"

#include <stdexcept>
#include <string>
#include <vector>

#include "support.hh"

namespace {

using texts = std::vector<const char*>;
using plain_builder = void (*)(std::string&, const char*);
using attribute_builder = void (*)(std::string&, const char*, const texts*, const texts*);

constexpr attribute_builder attribute_builders[] = {START_TAG_ATTR, START_TAG_ATTRN,
                                                    START_TAG_ATTRNS, START_TAG_ATTRNNS};
constexpr plain_builder plain_builders[] = {START_TAG, START_TAGN, END_TAG, END_TAGN};

std::string built(plain_builder build, const char* name) {
  std::string text;
  build(text, name);
  return text;
}

std::string built(attribute_builder build, const char* name, const texts& at, const texts& v) {
  std::string text;
  build(text, name, &at, &v);
  return text;
}

}  // namespace

TEST(StartTag, IsTheNameInBrackets) {
  EXPECT_EQ(built(START_TAG, "x"), "<x>");
}
TEST(StartTagN, EndsTheLine) {
  EXPECT_EQ(built(START_TAGN, "x"), "<x>\n");
}
TEST(EndTag, IsTheNameAfterASlash) {
  EXPECT_EQ(built(END_TAG, "x"), "</x>");
}
TEST(EndTagN, EndsTheLine) {
  EXPECT_EQ(built(END_TAGN, "x"), "</x>\n");
}

TEST(StartTagAttr, IsAnEmptyElement) {
  EXPECT_EQ(built(START_TAG_ATTR, "x", {"a", "b"}, {"1", "2"}), "<x a=\"1\" b=\"2\"/>");
}
TEST(StartTagAttrN, IsAnEmptyElementAndALineEnd) {
  EXPECT_EQ(built(START_TAG_ATTRN, "x", {"a", "b"}, {"1", "2"}), "<x a=\"1\" b=\"2\"/>\n");
}
TEST(StartTagAttrNS, IsAStartTag) {
  EXPECT_EQ(built(START_TAG_ATTRNS, "x", {"a", "b"}, {"1", "2"}), "<x a=\"1\" b=\"2\">");
}
TEST(StartTagAttrNNS, IsAStartTagAndALineEnd) {
  EXPECT_EQ(built(START_TAG_ATTRNNS, "x", {"a", "b"}, {"1", "2"}), "<x a=\"1\" b=\"2\">\n");
}

TEST(AttributeList, OnePairHasNoBlankAfterIt) {
  EXPECT_EQ(built(START_TAG_ATTRNS, "bitTitle", {"bit"}, {"3"}), "<bitTitle bit=\"3\">");
}

TEST(AttributeList, WithoutNamesKeepsTheBlank) {
  EXPECT_EQ(built(START_TAG_ATTR, "x", {}, {}), "<x />");
  EXPECT_EQ(built(START_TAG_ATTRN, "x", {}, {}), "<x />\n");
  EXPECT_EQ(built(START_TAG_ATTRNS, "x", {}, {}), "<x >");
  EXPECT_EQ(built(START_TAG_ATTRNNS, "x", {}, {}), "<x >\n");
}

TEST(AttributeList, IgnoresExtraValues) {
  EXPECT_EQ(built(START_TAG_ATTR, "x", {"a"}, {"1", "2", "3"}), "<x a=\"1\"/>");
  EXPECT_EQ(built(START_TAG_ATTR, "x", {}, {"1"}), "<x />");
}

TEST(AttributeList, AMissingValueThrowsAfterItsOpeningQuote) {
  const texts names = {"a", "b"};
  const texts values = {"1"};
  for (const auto build : attribute_builders) {
    std::string text = "kept";
    EXPECT_THROW(build(text, "x", &names, &values), std::out_of_range);
    EXPECT_EQ(text, "kept<x a=\"1\" b=\"");
  }
}

TEST(AttributeList, NoValueAtAllThrowsAtTheFirstName) {
  const texts names = {"a"};
  const texts values;
  std::string text;
  EXPECT_THROW(START_TAG_ATTR(text, "x", &names, &values), std::out_of_range);
  EXPECT_EQ(text, "<x a=\"");
}

TEST(Builders, AppendAndNeverClear) {
  for (const auto build : plain_builders) {
    std::string text = "before";
    build(text, "x");
    EXPECT_EQ(text, "before" + built(build, "x"));
  }
  const texts names = {"a"};
  const texts values = {"1"};
  for (const auto build : attribute_builders) {
    std::string text = "before";
    build(text, "x", &names, &values);
    EXPECT_EQ(text, "before" + built(build, "x", names, values));
  }
}

TEST(Builders, EscapeNothing) {
  EXPECT_EQ(built(START_TAG, "a&b<c"), "<a&b<c>");
  EXPECT_EQ(built(START_TAG_ATTR, "x", {"n<"}, {"\"&<>'"}), "<x n<=\"\"&<>'\"/>");
}

TEST(Builders, TakeEmptyTexts) {
  EXPECT_EQ(built(START_TAG, ""), "<>");
  EXPECT_EQ(built(END_TAGN, ""), "</>\n");
  EXPECT_EQ(built(START_TAG_ATTR, "", {""}, {""}), "< =\"\"/>");
}

TEST(Builders, TakeNamesOfAnyLength) {
  const std::string name(100000, 'n');
  EXPECT_EQ(built(END_TAG, name.c_str()), "</" + name + ">");
}
