#include "text_hash.hh"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using zrt4::detail::text_hash;

// Key 00 01 .. 0f, text 00 01 .. of as many bytes; calculated apart, in whole numbers of any size,
// so that both word sizes have the same.
TEST(TextHash, FoldsProducts) {
  const text_hash hash(0x0706050403020100U, 0x0f0e0d0c0b0a0908U);
  std::string text;
  const auto of_size = [&](std::size_t size) {
    while (text.size() < size) text += static_cast<char>(text.size());
    return hash(text);
  };
  EXPECT_EQ(of_size(0), 0xf1e2197bb67635faU);
  EXPECT_EQ(of_size(1), 0xeb344594cabf6ff1U);
  EXPECT_EQ(of_size(3), 0x133cd628981c8242U);
  EXPECT_EQ(of_size(4), 0x222c5fea77c379c3U);
  EXPECT_EQ(of_size(7), 0x94befc9c31668f2cU);
  EXPECT_EQ(of_size(8), 0xd6d61114d4d09698U);
  EXPECT_EQ(of_size(16), 0x4b42885b6e92da7eU);
  EXPECT_EQ(of_size(17), 0x62d55a15a664e16eU);
  EXPECT_EQ(of_size(40), 0xa2f0e83748fc336cU);
}

// Names that differ in a digit or two, as those of a crate's channels do.
TEST(TextHash, SpreadsLikeNames) {
  const text_hash hash;
  std::set<std::uint32_t> low;
  constexpr std::size_t names = 10'000;
  for (std::size_t n = 0; n < names; ++n)
    low.insert(static_cast<std::uint32_t>(hash("LINAC.DAQ/BPM." + std::to_string(n))) %
               (4 * names));
  EXPECT_GT(low.size(), names * 85 / 100);  // 88.5 % when the hash is as good as chance
}

TEST(TextHash, HasTheKeyOfTheProgram) {
  EXPECT_EQ(text_hash()("A.B/C/D/E"), text_hash()("A.B/C/D/E"));
  EXPECT_NE(text_hash()("A.B/C/D/E"), text_hash(0, 0)("A.B/C/D/E"));
}

}  // namespace
