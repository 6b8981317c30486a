// Numbers in channel descriptions, and what becomes of them when types are shifted.

#include "channel_reading.hh"

using test::channel;
using test::file;
using test::memory;
using test::plain;
using test::ReadChannels;
using test::reading;
using test::shift;
using test::variable;

namespace {

TYPED_TEST_SUITE(ReadChannels, test::channel_readers);

// ---- Numbers.

std::int32_t key_of(const std::string& text) {
  const auto got = memory(channel("<DB_KEY>" + text + "</DB_KEY>"));
  return got->list.at(0)->db_key;
}

TEST(ReadChannelsNumbers, AreDecimal) {
  EXPECT_EQ(key_of("0"), 0);
  EXPECT_EQ(key_of("7"), 7);
  EXPECT_EQ(key_of("007"), 7);
  EXPECT_EQ(key_of("123456789"), 123456789);
  EXPECT_EQ(key_of("1234567890"), 1234567890);
  EXPECT_EQ(key_of("2147483647"), 2147483647);
}

TEST(ReadChannelsNumbers, SkipWhiteSpaceAndAcceptASign) {
  EXPECT_EQ(key_of(" 12"), 12);
  EXPECT_EQ(key_of("\n\t 12\n"), 12);
  EXPECT_EQ(key_of("-12"), -12);
  EXPECT_EQ(key_of("+12"), 12);
  EXPECT_EQ(key_of(" -2147483648"), -2147483647 - 1);
}

TEST(ReadChannelsNumbers, StopAtTheFirstNonDigit) {
  EXPECT_EQ(key_of("12 34"), 12);
  EXPECT_EQ(key_of("12abc"), 12);
  EXPECT_EQ(key_of("0x10"), 0);
  EXPECT_EQ(key_of("1.9"), 1);
  EXPECT_EQ(key_of("- 5"), 0);
}

TEST(ReadChannelsNumbers, WithoutDigitsAreZero) {
  EXPECT_EQ(key_of("abc"), 0);
  EXPECT_EQ(key_of("-"), 0);
}

TEST(ReadChannelsNumbers, WrapInto32Bits) {
  if constexpr (sizeof(long) == 8) {
    EXPECT_EQ(key_of("2147483648"), -2147483647 - 1);
    EXPECT_EQ(key_of("4294967295"), -1);
    EXPECT_EQ(key_of("4294967303"), 7);
    EXPECT_EQ(key_of("99999999999999999999"), -1);
    EXPECT_EQ(key_of("-99999999999999999999"), 0);
  }
}

// ---- Shift.

template <class Reader>
std::uint32_t event_type(const std::string& number, int flags) {
  return reading::by<Reader>(channel("<EVTYPE>" + number + "</EVTYPE>"), flags)
      ->list.at(0)
      ->ev_type;
}
template <class Reader>
std::uint32_t data_type(const std::string& number, int flags) {
  return reading::by<Reader>(channel("<DTYPE>" + number + "</DTYPE>"), flags)->list.at(0)->dtype;
}

TYPED_TEST(ReadChannels, ShiftedEventTypeIsAMask) {
  EXPECT_EQ(event_type<TypeParam>("3", shift), 8U);
  EXPECT_EQ(event_type<TypeParam>("0", shift), 1U);
  EXPECT_EQ(event_type<TypeParam>("31", shift), 0x80000000U);
  EXPECT_EQ(event_type<TypeParam>("32", shift), 1U);
  EXPECT_EQ(event_type<TypeParam>("-1", shift), 0x80000000U);
  EXPECT_EQ(event_type<TypeParam>("3", plain), 3U);
  EXPECT_EQ(event_type<TypeParam>("-1", plain), 0xffffffffU);
}

TYPED_TEST(ReadChannels, ShiftedDataTypeIsAMaskOfEitherFamily) {
  EXPECT_EQ(data_type<TypeParam>("13", shift), 0x2000U);
  EXPECT_EQ(data_type<TypeParam>("0", shift), 1U);
  EXPECT_EQ(data_type<TypeParam>("31", shift), 0x80000000U);
  EXPECT_EQ(data_type<TypeParam>("32", shift), 0x80000001U);
  EXPECT_EQ(data_type<TypeParam>("33", shift), 0x80000002U);
  EXPECT_EQ(data_type<TypeParam>("62", shift), 0xc0000000U);
  EXPECT_EQ(data_type<TypeParam>("63", shift), 0U);
  EXPECT_EQ(data_type<TypeParam>("64", shift), 0x80000001U);
  EXPECT_EQ(data_type<TypeParam>("2147483647", shift), 0U);
  EXPECT_EQ(data_type<TypeParam>("13", plain), 13U);
  EXPECT_EQ(data_type<TypeParam>("63", plain), 63U);
}

TYPED_TEST(ReadChannels, NegativeDataTypeIsShiftedModulo32) {
  EXPECT_EQ(data_type<TypeParam>("-1", shift), 0x80000000U);
  EXPECT_EQ(data_type<TypeParam>("-31", shift), 2U);
  EXPECT_EQ(data_type<TypeParam>("-32", shift), 1U);
}

// ---- The variable dialect.

TEST(ReadChannelsMemory, VariableEventTypeIsShifted) {
  EXPECT_EQ(memory(variable("DaqFloat", "<evType>3</evType>"), shift)->list.at(0)->ev_type, 8U);
  EXPECT_EQ(memory(variable("DaqFloat", "<evType>3</evType>"), plain)->list.at(0)->ev_type, 3U);
}

TEST(ReadChannelsFile, VariableEventTypeIsNeverShifted) {
  EXPECT_EQ(file(variable("DaqFloat", "<evType>3</evType>"), shift)->list.at(0)->ev_type, 3U);
}

}  // namespace
