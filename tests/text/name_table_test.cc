#include "name_table.hh"

#include <gtest/gtest.h>

#include <string>

namespace {

using zrt4::detail::name_table;
using zrt4::detail::named;

constexpr named<int> few[] = {{"PROP", 1}, {"NAME", 2}, {"NAMES", 3}, {"prop", 4}};
constexpr name_table few_names(few);

constexpr named<int> most[] = {
    {"A", 0},    {"B", 1},    {"C", 2},    {"D", 3},    {"AA", 4},   {"AB", 5},   {"BA", 6},
    {"BB", 7},   {"AAA", 8},  {"AAB", 9},  {"ABA", 10}, {"ABB", 11}, {"BAA", 12}, {"BAB", 13},
    {"BBA", 14}, {"BBB", 15}, {"a", 16},   {"b", 17},   {"c", 18},   {"d", 19},   {"aa", 20},
    {"ab", 21},  {"ba", 22},  {"bb", 23},  {"aaa", 24}, {"aab", 25}, {"aba", 26}, {"abb", 27},
    {"baa", 28}, {"bab", 29}, {"bba", 30}, {"bbb", 31}};
constexpr name_table as_many_as_it_takes(most);

static_assert(*few_names.find("NAME") == 2, "made by the compiler");

}  // namespace

TEST(NameTable, EachNameHasItsMeaning) {
  for (const named<int>& one : few) {
    ASSERT_NE(few_names.find(one.name), nullptr) << one.name;
    EXPECT_EQ(*few_names.find(one.name), one.meaning) << one.name;
  }
}

TEST(NameTable, OtherNamesHaveNone) {
  for (const char* name :
       {"", "P", "PRO", "PROPS", "Prop", "PROp", "XPROP", "PR0P", " PROP", "UNITS"}) {
    EXPECT_EQ(few_names.find(name), nullptr) << name;
  }
}

TEST(NameTable, ANameWithTheSameKeyIsAnother) {
  // First, middle and last character and the length are the same.
  EXPECT_EQ(few_names.find("PxOP"), nullptr);
  EXPECT_EQ(few_names.find("NxMxS"), nullptr);
}

TEST(NameTable, NamesNeedNoTerminator) {
  EXPECT_EQ(*few_names.find(std::string_view("NAMES").substr(0, 4)), 2);
}

TEST(NameTable, AsManyNamesAsItTakes) {
  for (const named<int>& one : most) {
    ASSERT_NE(as_many_as_it_takes.find(one.name), nullptr) << one.name;
    EXPECT_EQ(*as_many_as_it_takes.find(one.name), one.meaning) << one.name;
  }
  EXPECT_EQ(as_many_as_it_takes.find("E"), nullptr);
  EXPECT_EQ(as_many_as_it_takes.find("AAAA"), nullptr);
}
