#include "number_text.hh"

#include <cfenv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>

#include "comma_locale.hh"
#include "own_locale.hh"
#include "support.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

using zrt4::detail::decimal;
using zrt4::detail::fixed;
using zrt4::detail::general;
using zrt4::detail::number_text;
using zrt4::detail::read_plain_number;
using zrt4::detail::scientific;

namespace {

std::string text_of(const number_text& text) {
  const std::string whole(static_cast<std::string_view>(text));
  EXPECT_EQ(whole, text.c_str());
  return whole;
}

template <class... Number>
std::string printed(const char* format, Number... number) {
  char text[400];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  std::snprintf(text, sizeof text, format, number...);
#pragma GCC diagnostic pop
  return text;
}

std::string streamed(double number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

void expect_as_printed(double number) {
  EXPECT_EQ(text_of(fixed(number)), printed("%f", number));
  EXPECT_EQ(text_of(scientific(number)), printed("%e", number));
  EXPECT_EQ(text_of(general(number)), streamed(number));
}

constexpr double special_numbers[] = {0.0,
                                      -0.0,
                                      0.5,
                                      -0.5,
                                      1e-7,
                                      5e-7,
                                      -1e-300,
                                      0.0000005,
                                      0.0000015,
                                      0.5000005,
                                      2.5,
                                      999999.5,
                                      1e15,
                                      1e22,
                                      1.7976931348623157e308,
                                      -1.7976931348623157e308,
                                      4.9406564584124654e-324,
                                      2.2250738585072014e-308,
                                      std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::quiet_NaN()};

}  // namespace

TEST(Decimal, PrintsEveryInt) {
  EXPECT_EQ(text_of(decimal(0)), "0");
  EXPECT_EQ(text_of(decimal(-1)), "-1");
  EXPECT_EQ(text_of(decimal(2147483647)), "2147483647");
  EXPECT_EQ(text_of(decimal(std::numeric_limits<int>::min())), "-2147483648");
}

TEST(Fixed, HasSixDecimals) {
  EXPECT_EQ(text_of(fixed(0.5)), "0.500000");
  EXPECT_EQ(text_of(fixed(-0.0)), "-0.000000");
  EXPECT_EQ(text_of(fixed(1e-7)), "0.000000");
  EXPECT_EQ(text_of(fixed(double{std::numeric_limits<float>::max()})),
            "340282346638528859811704183484516925440.000000");
  EXPECT_EQ(text_of(fixed(-std::numeric_limits<double>::infinity())), "-inf");
  EXPECT_EQ(text_of(fixed(std::numeric_limits<double>::quiet_NaN())), "nan");
  EXPECT_EQ(text_of(fixed(-std::numeric_limits<double>::quiet_NaN())), "-nan");
}

TEST(Fixed, WritesTheLongestNumberWhole) {
  EXPECT_EQ(text_of(fixed(-std::numeric_limits<double>::max())).size(), 317U);
}

TEST(Scientific, HasSixDecimalsAndTwoExponentDigits) {
  EXPECT_EQ(text_of(scientific(0.0)), "0.000000e+00");
  EXPECT_EQ(text_of(scientific(0.25)), "2.500000e-01");
  EXPECT_EQ(text_of(scientific(-1e300)), "-1.000000e+300");
}

TEST(General, HasSixSignificantDigits) {
  EXPECT_EQ(text_of(general(0.5)), "0.5");
  EXPECT_EQ(text_of(general(123456789.0)), "1.23457e+08");
  EXPECT_EQ(text_of(general(100000.0)), "100000");
  EXPECT_EQ(text_of(general(1000000.0)), "1e+06");
  EXPECT_EQ(text_of(general(0.0001)), "0.0001");
  EXPECT_EQ(text_of(general(0.00001)), "1e-05");
  EXPECT_EQ(text_of(general(0.0)), "0");
}

TEST(Numbers, PrintAsPrintfDoes) {
  for (const double number : special_numbers) expect_as_printed(number);
}

TEST(Numbers, PrintAsPrintfDoesForRandomBits) {
  std::mt19937_64 bits(20211201);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t pattern = bits();
    double wide = 0;
    std::memcpy(&wide, &pattern, sizeof wide);
    expect_as_printed(wide);
    const auto half = static_cast<std::uint32_t>(pattern >> 32U);
    float narrow = 0;
    std::memcpy(&narrow, &half, sizeof narrow);
    expect_as_printed(static_cast<double>(narrow));
    // Numbers of everyday size, where rounding to six decimals ties most often.
    expect_as_printed(std::ldexp(static_cast<double>(half % 4096U), -(i % 24)));
  }
}

TEST(Numbers, FollowTheRoundingDirection) {
  std::fesetround(FE_UPWARD);
  const std::string up = text_of(fixed(0.1234561));
  const std::string significant_up = text_of(general(1.234561));
  std::fesetround(FE_TONEAREST);
  EXPECT_EQ(up, "0.123457");
  EXPECT_EQ(significant_up, "1.23457");
}

TEST(Numbers, KeepTheirPointWhereAStreamDoesInEveryRoundingDirection) {
  const test::comma_locale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a decimal comma can be made here";
  std::fesetround(FE_DOWNWARD);
  const std::string down = text_of(general(1.234569));
  std::fesetround(FE_TONEAREST);
  EXPECT_EQ(down, "1.23456");
}

TEST(Numbers, FollowTheDecimalPointOfTheLocale) {
  const test::comma_locale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a decimal comma can be made here";
  EXPECT_EQ(text_of(fixed(-0.5)), "-0,500000");
  EXPECT_EQ(text_of(scientific(0.25)), "2,500000e-01");
  EXPECT_EQ(text_of(fixed(-std::numeric_limits<double>::max())).size(), 317U);
  EXPECT_EQ(text_of(general(0.5)), "0.5");
  EXPECT_EQ(text_of(decimal(1234567)), "1234567");
}

namespace {

// Whether the text was taken; then it was read as sscanf reads it, otherwise nothing was changed.
bool taken(const std::string& text) {
  float read = 123.0F;
  const bool plain = read_plain_number(text.c_str(), read);
  float expected = 123.0F;
  if (plain) {
    EXPECT_EQ(std::sscanf(text.c_str(), "%f", &expected), 1) << text;
  }
  EXPECT_EQ(std::memcmp(&read, &expected, sizeof read), 0) << text << " " << read;
  return plain;
}

std::string random_number(std::mt19937_64& random) {
  std::string text = random() % 2 != 0 ? "-" : "";
  for (auto count = 1 + random() % 5; count > 0; --count) text += "00123456789"[random() % 11];
  if (random() % 4 == 0) return text;
  text += '.';
  for (auto count = random() % 9; count > 0; --count) text += "0001234567895"[random() % 13];
  return text;
}

}  // namespace

TEST(ReadPlainNumber, TakesTheNumbersThatDictionariesHold) {
  for (const char* text : {"0", "-0", "7", "0.5", "-0.5", "0.000000", "-0.000000", "0.010000",
                           "12.345678", "100.000000", "-250.500000", "5.", "007", "16777216",
                           "0.0000000001", "1.0000000000000000000000000"}) {
    EXPECT_TRUE(taken(text)) << text;
  }
}

TEST(ReadPlainNumber, LeavesEverythingElse) {
  for (const char* text : {"",
                           "-",
                           ".",
                           ".5",
                           "-.5",
                           "+1",
                           " 1",
                           "1 ",
                           "1e5",
                           "1e",
                           "0x1",
                           "inf",
                           "nan",
                           "1.5V",
                           "1,5",
                           "1..5",
                           "1.5.5",
                           "--1",
                           "16777217",
                           "1677721.60000001",
                           "0.00000000001",
                           "99999999999999999999999999",
                           "0.12345678901234567890123"}) {
    EXPECT_FALSE(taken(text)) << text;
  }
}

TEST(ReadPlainNumber, ReadsAsScanfDoesInEveryRoundingDirection) {
  std::mt19937_64 random(5);
  int count = 0;
  for (const int direction : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    std::fesetround(direction);
    for (int i = 0; i < 20000; ++i) count += taken(random_number(random)) ? 1 : 0;
  }
  std::fesetround(FE_TONEAREST);
  EXPECT_GT(count, 40000);
}

TEST(ReadPlainNumber, LeavesAPointThatIsNotTheLocales) {
  const test::comma_locale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a decimal comma can be made here";
  EXPECT_FALSE(taken("0.5"));
  EXPECT_FALSE(taken("0,5"));
  EXPECT_TRUE(taken("5"));
}
