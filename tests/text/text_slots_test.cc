#include "text_slots.hh"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using zrt4::detail::text_slots;

struct text_table : testing::Test {
  auto text_of() const {
    return [this](std::uint32_t number) { return texts[number].c_str(); };
  }
  std::uint32_t add(const std::string& text) {
    const auto number = static_cast<std::uint32_t>(texts.size());
    texts.push_back(text);
    return slots.find_or_add(text.c_str(), number, text_of());
  }
  std::uint32_t find(const char* text) const { return slots.find(text, text_of()); }

  std::vector<std::string> texts;
  text_slots slots;
};

}  // namespace

using TextSlots = text_table;

TEST_F(TextSlots, NothingIsFoundInAnEmptyTable) {
  EXPECT_EQ(find("A"), text_slots::none);
  slots.reserve(1);
  EXPECT_EQ(find("A"), text_slots::none);
}

TEST_F(TextSlots, ATextKeepsItsFirstNumber) {
  EXPECT_EQ(add("A"), 0U);
  EXPECT_EQ(add("B"), 1U);
  EXPECT_EQ(add("A"), 0U);
  EXPECT_EQ(find("A"), 0U);
  EXPECT_EQ(find("B"), 1U);
  EXPECT_EQ(find("C"), text_slots::none);
}

// Some of so many have one and the same hash of 32 bits.
TEST_F(TextSlots, EachOfManyTextsHasItsOwnNumber) {
  constexpr std::uint32_t count = 200'000;
  texts.reserve(count);
  for (std::uint32_t i = 0; i < count; ++i) ASSERT_EQ(add(std::to_string(i)), i);
  for (std::uint32_t i = 0; i < count; ++i) ASSERT_EQ(find(texts[i].c_str()), i);
  EXPECT_EQ(find("200000"), text_slots::none);
}

TEST_F(TextSlots, RoomMayBeMadeBeforeAndBetween) {
  slots.reserve(1000);
  for (std::uint32_t i = 0; i < 1000; ++i) ASSERT_EQ(add(std::to_string(i)), i);
  slots.reserve(5000);
  slots.reserve(0);
  for (std::uint32_t i = 0; i < 1000; ++i) ASSERT_EQ(find(texts[i].c_str()), i);
}
