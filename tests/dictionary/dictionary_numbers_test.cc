// The numbers of dictionaries: indexes and deltas.

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include "comma_locale.hh"
#include "dictionary_reading.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

using test::EnvIndexDictRead;
using test::expect_entry;
using test::read_content;

namespace {

TYPED_TEST_SUITE(EnvIndexDictRead, test::dictionary_readers, test::reader_names);

template <class Reader>
float delta_read_from(const std::string& text) {
  const auto result = read_content<Reader>("<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DABS>" + text +
                                           "</DABS></CHANNEL>");
  return result.list[0].data.env_ch_abs_delta;
}

std::uint32_t bits_of(float number) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

}  // namespace

TYPED_TEST(EnvIndexDictRead, DeltasDefaultToZero) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP></CHANNEL>"
      "<CHANNEL><INDEX>2</INDEX><PROP>B</PROP><DREL>3</DREL></CHANNEL>");
  ASSERT_EQ(result.list.size(), 2U);
  expect_entry(result.list[0], 1, "A", 0, 0);
  expect_entry(result.list[1], 2, "B", 0, 3);
}

TYPED_TEST(EnvIndexDictRead, IndexIsADecimalNumber) {
  const struct {
    const char* text;
    int index;
  } rows[] = {
      {"7", 7},
      {"-7", -7},
      {"+7", 7},
      {" \n7", 7},
      {"7 ", 7},
      {"7x", 7},
      {"x7", 0},
      {"0x10", 0},
      {"010", 10},
      {"1.9", 1},
      {"2147483647", INT_MAX},
      {"-2147483648", INT_MIN},
  };
  for (const auto& row : rows) {
    const auto result = read_content<TypeParam>("<CHANNEL><PROP>A</PROP><INDEX>" +
                                                std::string(row.text) + "</INDEX></CHANNEL>");
    ASSERT_EQ(result.list.size(), 1U) << row.text;
    EXPECT_EQ(result.list[0].index, row.index) << row.text;
  }
}

TYPED_TEST(EnvIndexDictRead, AnIndexBeyondTheRangeOfLongSaturatesBeforeItIsCut) {
  const struct {
    const char* text;
    int with_64_bits;
    int with_32_bits;
  } rows[] = {
      {"2147483648", INT_MIN, INT_MAX},
      {"4294967303", 7, INT_MAX},
      {"9223372036854775808", -1, INT_MAX},
      {"-9223372036854775809", 0, INT_MIN},
  };
  for (const auto& row : rows) {
    const auto result = read_content<TypeParam>("<CHANNEL><PROP>A</PROP><INDEX>" +
                                                std::string(row.text) + "</INDEX></CHANNEL>");
    ASSERT_EQ(result.list.size(), 1U) << row.text;
    EXPECT_EQ(result.list[0].index, sizeof(long) == 8 ? row.with_64_bits : row.with_32_bits);
  }
}

TYPED_TEST(EnvIndexDictRead, ATextThatIsNoIndexStillCountsAsOne) {
  const auto result =
      read_content<TypeParam>("<CHANNEL><INDEX>none</INDEX><PROP>A</PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 0, "A", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, DeltasAreReadAsScanfReadsThem) {
  const float infinity = std::numeric_limits<float>::infinity();
  const struct {
    const char* text;
    float delta;
  } rows[] = {
      {"0.5", 0.5F},
      {"-0.5", -0.5F},
      {"+0.5", 0.5F},
      {" \n\t0.5", 0.5F},
      {"0.5 ", 0.5F},
      {"0.5V", 0.5F},
      {".5", 0.5F},
      {"5.", 5.0F},
      {"-.25e1", -2.5F},
      {"1e3", 1000.0F},
      {"1E-2", 0.01F},
      {"0x1p-1", 0.5F},
      {"0x10", 16.0F},
      {"-0", -0.0F},
      {"1,5", 1.0F},
      {"inf", infinity},
      {"-Infinity", -infinity},
      {"1e39", infinity},
      {"-1e39", -infinity},
      {"1e-46", 0.0F},
      {"1.4e-45", std::numeric_limits<float>::denorm_min()},
      {"16777217", 16777216.0F},
      {"16777217.000000001", 16777218.0F},
      {"0.1", 0.1F},
      {"340282346638528859811704183484516925440", std::numeric_limits<float>::max()},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(bits_of(delta_read_from<TypeParam>(row.text)), bits_of(row.delta)) << row.text;
  }
  EXPECT_TRUE(std::isnan(delta_read_from<TypeParam>("nan")));
  EXPECT_TRUE(std::isnan(delta_read_from<TypeParam>("-NAN")));
}

TYPED_TEST(EnvIndexDictRead, ATextThatIsNoDeltaLeavesItAsItWas) {
  for (const char* text : {"none", "-", "+", ".", "e5", "--1", "$1", "- 1"}) {
    EXPECT_EQ(bits_of(delta_read_from<TypeParam>(text)), 0U) << text;
    EXPECT_EQ(bits_of(delta_read_from<TypeParam>("2.5</DABS><DABS>" + std::string(text))),
              bits_of(2.5F))
        << text;
  }
}

TYPED_TEST(EnvIndexDictRead, TheLastDeltaWins) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><DABS>1</DABS><DABS>2</DABS><INDEX>1</INDEX><PROP>A</PROP>"
      "<DREL>3</DREL><DREL>4</DREL></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 1, "A", 2, 4);
}

TYPED_TEST(EnvIndexDictRead, RandomDeltaTextsAreReadAsScanfReadsThem) {
  std::mt19937 random(42);
  const std::string alphabet = "0123456789012345678900..--+eExXinfa pP ";
  std::vector<std::string> texts;
  for (int i = 0; i < 4000; ++i) {
    std::string text(1, "0123456789.-"[random() % 12]);
    for (auto length = random() % 14; length > 0; --length) {
      text += alphabet[random() % alphabet.size()];
    }
    texts.push_back(text);
  }
  for (int i = 0; i < 4000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    float number = 0;
    std::memcpy(&number, &bits, sizeof number);
    char text[80];
    std::snprintf(text, sizeof text, i % 2 != 0 ? "%.9g" : "%.7f", static_cast<double>(number));
    texts.emplace_back(text);
  }
  std::string content;
  for (const auto& text : texts) {
    content += "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DREL>" + text + "</DREL></CHANNEL>";
  }
  const auto result = read_content<TypeParam>(content);
  ASSERT_EQ(result.list.size(), texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    float expected = 0;
    std::sscanf(texts[i].c_str(), "%f", &expected);
    EXPECT_EQ(bits_of(result.list[i].data.env_ch_rel_delta), bits_of(expected)) << texts[i];
  }
}

TYPED_TEST(EnvIndexDictRead, DeltasFollowTheDecimalPointOfTheLocale) {
  const test::comma_locale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a decimal comma can be made here";
  EXPECT_EQ(delta_read_from<TypeParam>("0,5"), 0.5F);
  EXPECT_EQ(delta_read_from<TypeParam>("1.5"), 1.0F);
}
