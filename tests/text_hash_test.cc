#include "text_hash.hh"

#include <gtest/gtest.h>

#include <string>

namespace {

using zrt4::detail::text_hash;

// Key 00 01 .. 0f, text 00 01 .. of as many bytes: as other implementations have them.
TEST(TextHash, IsSipHash13) {
  const text_hash hash(0x0706050403020100U, 0x0f0e0d0c0b0a0908U);
  std::string text;
  const auto of_size = [&](std::size_t size) {
    while (text.size() < size) text += static_cast<char>(text.size());
    return hash(text);
  };
  EXPECT_EQ(of_size(0), 0xabac0158050fc4dcU);
  EXPECT_EQ(of_size(1), 0xc9f49bf37d57ca93U);
  EXPECT_EQ(of_size(7), 0xd3927d989bb11140U);
  EXPECT_EQ(of_size(8), 0x369095118d299a8eU);
  EXPECT_EQ(of_size(15), 0xd320d86d2a519956U);
}

TEST(TextHash, HasTheKeyOfTheProgram) {
  EXPECT_EQ(text_hash()("A.B/C/D/E"), text_hash()("A.B/C/D/E"));
  EXPECT_NE(text_hash()("A.B/C/D/E"), text_hash(0, 0)("A.B/C/D/E"));
}

}  // namespace
