// Which names a person may have meant.

#include "similar_names.hh"

#include "support.hh"

TEST(SimilarNames, DiffersByCase) {
  EXPECT_TRUE(is_misspelt("tooltip", "ToolTip"));
  EXPECT_TRUE(is_misspelt("NAME", "Name"));
  EXPECT_TRUE(is_misspelt("id", "ID"));
}

TEST(SimilarNames, TheSameIsNotSimilar) {
  EXPECT_FALSE(is_misspelt("Name", "Name"));
}

TEST(SimilarNames, OneLetterInAShortName) {
  EXPECT_TRUE(is_misspelt("Nmae", "Name"));
  EXPECT_TRUE(is_misspelt("Nam", "Name"));
  EXPECT_TRUE(is_misspelt("Named", "Name"));
  EXPECT_TRUE(is_misspelt("Fame", "Name"));
  EXPECT_FALSE(is_misspelt("Fume", "Name"));
  EXPECT_TRUE(is_misspelt("Floot", "Float"));
  EXPECT_FALSE(is_misspelt("Slot", "Float"));
}

TEST(SimilarNames, TwoLettersInALongerOne) {
  EXPECT_TRUE(is_misspelt("Descrption", "Description"));
  EXPECT_TRUE(is_misspelt("Discripton", "Description"));
  EXPECT_TRUE(is_misspelt("Tool_Tips", "ToolTip"));
  EXPECT_FALSE(is_misspelt("Discriptor", "Description"));
  EXPECT_FALSE(is_misspelt("StructReg", "StringReg"));
}

TEST(SimilarNames, NothingIsNoName) {
  EXPECT_FALSE(is_misspelt("", "Name"));
}

TEST(SimilarNames, OfAnyLength) {
  EXPECT_FALSE(is_misspelt(std::string(1'000'000, 'N'), "Name"));
  EXPECT_FALSE(is_misspelt(std::string(33, 'N'), "Name"));
  EXPECT_FALSE(is_misspelt(std::string(32, 'N'), "Name"));
}
