// Channel descriptions: both readers, both dialects.

#include <cstring>
#include <memory>

#include "parse_chan_descr.hh"
#include "support.hh"

using test::captured;

namespace {

using channels = std::vector<chan_descr_2010*>;

enum flags { plain = 0, shift = 1, merge = 2 };

struct from_text {
  static int read(const std::string& document, channels* list, int flags) {
    std::string text = document;
    return parse_descr_list_read(text.data(), list, (flags & shift) != 0, (flags & merge) != 0);
  }
};

struct from_file {
  static int read(const std::string& document, channels* list, int flags) {
    test::temporary_file file(document);
    return parse_descr_list_readf(file.name(), list, (flags & shift) != 0, (flags & merge) != 0);
  }
};

/// What a document gives, held and released with the test.
class reading {
 public:
  template <class Reader>
  static std::unique_ptr<reading> by(const std::string& document, int flags) {
    auto made = std::make_unique<reading>();
    made->add<Reader>(document, flags);
    return made;
  }
  reading() = default;
  reading(const reading&) = delete;
  reading& operator=(const reading&) = delete;
  ~reading() { clean_chan_desr_list(&list); }

  template <class Reader>
  void add(const std::string& document, int flags) {
    const auto output = captured([&] { result = Reader::read(document, &list, flags); });
    out = output.out;
    err = output.err;
  }

  std::string properties() const {
    std::string names;
    for (const auto* channel : list) names += std::string(channel->prop_name) + ";";
    return names;
  }

  channels list;
  int result = -99;
  std::string out, err;
};

std::string elements(const std::string& body) {
  return "<CHANDESCRIPTIONS>" + body + "</CHANDESCRIPTIONS>";
}
std::string channel(const std::string& body) {
  return elements("<CHANNEL><PROP>P</PROP>" + body + "</CHANNEL>");
}
std::string variables(const std::string& body) {
  return "<DAQvariables>" + body + "</DAQvariables>";
}
std::string variable(const std::string& kind, const std::string& body) {
  return variables("<" + kind + "><vindo>P</vindo>" + body + "</" + kind + ">");
}

template <class Reader>
class ReadChannels : public testing::Test {
 protected:
  std::unique_ptr<reading> read(const std::string& document, int flags = plain) {
    return reading::by<Reader>(document, flags);
  }
};
using readers = testing::Types<from_text, from_file>;
TYPED_TEST_SUITE(ReadChannels, readers);

std::unique_ptr<reading> memory(const std::string& document, int flags = plain) {
  return reading::by<from_text>(document, flags);
}
std::unique_ptr<reading> file(const std::string& document, int flags = plain) {
  return reading::by<from_file>(document, flags);
}

// ---- The frame.

TYPED_TEST(ReadChannels, EmptyRootsAreClean) {
  for (const char* document : {"<CHANDESCRIPTIONS/>", "<DAQvariables/>"}) {
    const auto got = this->read(document);
    EXPECT_EQ(got->result, 0);
    EXPECT_TRUE(got->list.empty());
    EXPECT_EQ(got->out + got->err, "");
  }
}

TYPED_TEST(ReadChannels, WrongRootIsReportedWithTheTablesAddress) {
  const auto got = this->read("<EVENTS><CHANNEL><PROP>P</PROP></CHANNEL></EVENTS>");
  std::ostringstream expected;
  expected << "WRONG root tag: 'EVENTS' must be '" << static_cast<const void*>(tags[DESCR_ROOT])
           << " or DAQvariables'\n";
  EXPECT_EQ(got->result, 1);
  EXPECT_EQ(got->err, expected.str());
  EXPECT_EQ(got->out, "");
  EXPECT_TRUE(got->list.empty());
}

TYPED_TEST(ReadChannels, RootsAreCaseSensitive) {
  EXPECT_EQ(this->read("<chandescriptions/>")->result, 1);
  EXPECT_EQ(this->read("<DAQVariables/>")->result, 1);
}

TYPED_TEST(ReadChannels, NothingToReadIsOnePlusTheErrors) {
  EXPECT_EQ(this->read("")->result, 2);
  EXPECT_EQ(this->read("no document")->result, 2);
}

TYPED_TEST(ReadChannels, RecordsBeforeAnErrorStay) {
  const test::kept_leak channel_without_property;
  const auto got = this->read("<CHANDESCRIPTIONS><CHANNEL><PROP>P</PROP></CHANNEL><CHANNEL>");
  EXPECT_EQ(got->result, 1);
  EXPECT_EQ(got->properties(), "P;");
}

TYPED_TEST(ReadChannels, WarningsCount) {
  const auto got = this->read(
      "<!DOCTYPE CHANDESCRIPTIONS [<!ELEMENT A ANY><!ATTLIST A x CDATA 'a'><!ATTLIST A x CDATA "
      "'b'>]>" +
      channel(""));
  EXPECT_GT(got->result, 0);
}

TYPED_TEST(ReadChannels, ListIsNeverEmptied) {
  auto got = this->read(channel(""));
  got->template add<TypeParam>(channel(""), plain);
  EXPECT_EQ(got->properties(), "P;P;");
}

TEST(ReadChannelsMemory, NullListIsTwo) {
  std::string document = "not looked at";
  const auto output = captured(
      [&] { EXPECT_EQ(parse_descr_list_read(document.data(), nullptr, false, false), 2); });
  EXPECT_EQ(output.out + output.err, "");
}

TEST(ReadChannelsFile, MissingFileIsAnError) {
  channels list;
  char missing[] = "/tmp/zrt4_no_such_directory/channels.xml";
  const auto output =
      captured([&] { EXPECT_GT(parse_descr_list_readf(missing, &list, false, false), 0); });
  EXPECT_NE(output.err, "");
  EXPECT_TRUE(list.empty());
}

// ---- Element dialect: each element.

TYPED_TEST(ReadChannels, ChannelWithOnlyAPropertyHasDefaults) {
  const auto got = this->read(channel(""));
  EXPECT_EQ(got->result, 0);
  ASSERT_EQ(got->list.size(), 1U);
  chan_descr_2010 fresh;
  const chan_descr_2010& read = *got->list[0];
  EXPECT_STREQ(read.prop_name, "P");
  EXPECT_EQ(read.max_size, 1);
  EXPECT_EQ(read.db_key, -1);
  EXPECT_EQ(read.stream, 0);
  EXPECT_EQ(read.ev_type, 0U);
  EXPECT_EQ(read.dtype, 0U);
  EXPECT_EQ(read.count, 0);
  EXPECT_EQ(read.set_point, 0);
  EXPECT_EQ(read.nbits, 0);
  EXPECT_EQ(read.ndims, 0);
  EXPECT_EQ(std::memcmp(read.daq_name, fresh.daq_name, sizeof fresh.daq_name), 0);
}

TYPED_TEST(ReadChannels, EveryChannelElement) {
  const auto got =
      this->read(elements("<CHANNEL><EVTYPE>1</EVTYPE><STREAM>2</STREAM><PROP>X/Y/Z</PROP>"
                          "<SB_NAME>BPM.SERVER</SB_NAME><DTYPE>41</DTYPE><DB_KEY>4711</DB_KEY>"
                          "<COUNT>5</COUNT><SETPOINT>1</SETPOINT><NAME>X.Y</NAME>"
                          "<SUBSYSTEM>DIAG</SUBSYSTEM><DESC>position</DESC><UNITS>mm</UNITS>"
                          "<SIZE>2048</SIZE></CHANNEL>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->out + got->err, "");
  ASSERT_EQ(got->list.size(), 1U);
  const chan_descr_2010& read = *got->list[0];
  EXPECT_EQ(read.ev_type, 1U);
  EXPECT_EQ(read.stream, 2);
  EXPECT_STREQ(read.prop_name, "X/Y/Z");
  EXPECT_STREQ(read.sb_name, "BPM.SERVER");
  EXPECT_EQ(read.dtype, 41U);
  EXPECT_EQ(read.db_key, 4711);
  EXPECT_EQ(read.count, 5);
  EXPECT_EQ(read.set_point, 1);
  EXPECT_STREQ(read.daq_name, "X.Y");
  EXPECT_STREQ(read.subsystem, "DIAG");
  EXPECT_STREQ(read.prop_desc, "position");
  EXPECT_STREQ(read.units, "mm");
  EXPECT_EQ(read.max_size, 2048);
}

TYPED_TEST(ReadChannels, Bits) {
  const auto got =
      this->read(channel("<BIT>3<BIT_NAME>on</BIT_NAME><BIT_DESCR>switched on</BIT_DESCR></BIT>"
                         "<BIT>4</BIT><BIT_NAME>off</BIT_NAME>"));
  const chan_descr_2010& read = *got->list.at(0);
  EXPECT_EQ(read.nbits, 2);
  ASSERT_EQ(read.bits.size(), 2U);
  EXPECT_EQ(read.bits[0]->bit, 3);
  EXPECT_STREQ(read.bits[0]->bit_name, "on");
  EXPECT_STREQ(read.bits[0]->bit_desc, "switched on");
  EXPECT_EQ(read.bits[1]->bit, 4);
  EXPECT_STREQ(read.bits[1]->bit_name, "off");
  EXPECT_STREQ(read.bits[1]->bit_desc, "");
}

TYPED_TEST(ReadChannels, DimensionsAndStatistics) {
  const auto got = this->read(channel(
      "<DIM>0<DIM_NAME>time</DIM_NAME><DIM_DESCR>sample time</DIM_DESCR><DIM_UNITS>us</DIM_UNITS>"
      "<STAT>1<STAT_NAME>mean</STAT_NAME><STAT_DESCR>of the train</STAT_DESCR>"
      "<STAT_UNITS>mm</STAT_UNITS></STAT><STAT>2</STAT></DIM><DIM>1</DIM>"));
  const chan_descr_2010& read = *got->list.at(0);
  EXPECT_EQ(read.ndims, 2);
  ASSERT_EQ(read.dims.size(), 2U);
  const dim_descr& time = *read.dims[0];
  EXPECT_EQ(time.dim, 0);
  EXPECT_STREQ(time.dim_name, "time");
  EXPECT_STREQ(time.dim_desc, "sample time");
  EXPECT_STREQ(time.units, "us");
  EXPECT_EQ(time.nstats, 2);
  ASSERT_EQ(time.stats.size(), 2U);
  EXPECT_EQ(time.stats[0]->stat, 1);
  EXPECT_STREQ(time.stats[0]->stat_name, "mean");
  EXPECT_STREQ(time.stats[0]->stat_desc, "of the train");
  EXPECT_STREQ(time.stats[0]->units, "mm");
  EXPECT_EQ(time.stats[1]->stat, 2);
  EXPECT_EQ(read.dims[1]->dim, 1);
  EXPECT_EQ(read.dims[1]->nstats, 0);
}

TYPED_TEST(ReadChannels, BitElementsWithoutABitAreIgnored) {
  const auto got = this->read(channel("<BIT_NAME>n</BIT_NAME><BIT_DESCR>d</BIT_DESCR>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->list.at(0)->nbits, 0);
  EXPECT_STREQ(got->list[0]->prop_desc, "");
}

TYPED_TEST(ReadChannels, DimensionElementsWithoutADimensionAreIgnored) {
  const auto got = this->read(
      channel("<DIM_NAME>n</DIM_NAME><DIM_UNITS>u</DIM_UNITS><STAT>1</STAT><STAT_NAME>s</STAT_NAME>"
              "<STAT_UNITS>v</STAT_UNITS>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->list.at(0)->ndims, 0);
  EXPECT_STREQ(got->list[0]->units, "");
}

TYPED_TEST(ReadChannels, StatisticElementsWithoutAStatisticAreIgnored) {
  const auto got =
      this->read(channel("<DIM>1</DIM><STAT_NAME>s</STAT_NAME><STAT_UNITS>v</STAT_UNITS>"));
  const dim_descr& dim = *got->list.at(0)->dims.at(0);
  EXPECT_EQ(dim.nstats, 0);
  EXPECT_STREQ(dim.dim_name, "");
  EXPECT_STREQ(dim.units, "");
}

TYPED_TEST(ReadChannels, DimensionDescriptionBeforeAnyDimensionIsTheChannels) {
  const auto got = this->read(channel("<DIM_DESCR>d</DIM_DESCR><DIM>1</DIM>"));
  EXPECT_STREQ(got->list.at(0)->prop_desc, "d");
  EXPECT_STREQ(got->list[0]->dims.at(0)->dim_desc, "");
}

TYPED_TEST(ReadChannels, NestingIsNotChecked) {
  const auto got = this->read(
      elements("<CHANNEL><PROP>P</PROP></CHANNEL><NAME>behind</NAME><X><UNITS>mm</UNITS></X>"));
  EXPECT_STREQ(got->list.at(0)->daq_name, "behind");
  EXPECT_STREQ(got->list[0]->units, "mm");
}

TYPED_TEST(ReadChannels, ElementsBeforeAnyChannelAreIgnored) {
  const auto got = this->read(elements("<PROP>P</PROP><BIT>1</BIT><NAME>n</NAME>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_TRUE(got->list.empty());
}

TYPED_TEST(ReadChannels, EmptyElementsAreIgnored) {
  const auto got = this->read(channel("<PROP/><NAME></NAME><DB_KEY> </DB_KEY><BIT/><DIM/>"));
  EXPECT_EQ(got->properties(), "P;");
  EXPECT_EQ(got->list.at(0)->db_key, -1);
  EXPECT_EQ(got->list[0]->nbits, 0);
  EXPECT_EQ(got->list[0]->ndims, 0);
}

TYPED_TEST(ReadChannels, UnknownElementsAreIgnored) {
  const auto got = this->read(channel("<NAMES>a</NAMES><name>b</name><DIM_START>1</DIM_START>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_STREQ(got->list.at(0)->daq_name, "");
}

TYPED_TEST(ReadChannels, LaterElementWins) {
  const auto got = this->read(channel("<NAME>a long name</NAME><NAME>b</NAME>"));
  const char expected[256] = "b";
  EXPECT_EQ(std::memcmp(got->list.at(0)->daq_name, expected, sizeof expected), 0);
}

TYPED_TEST(ReadChannels, NewChannelEndsBitDimensionAndStatistic) {
  const auto got = this->read(elements(
      "<CHANNEL><PROP>A</PROP><BIT>1</BIT><DIM>2</DIM><STAT>3</STAT></CHANNEL>"
      "<CHANNEL><PROP>B</PROP><BIT_NAME>n</BIT_NAME><DIM_NAME>n</DIM_NAME><DIM_UNITS>u</DIM_UNITS>"
      "<STAT_NAME>n</STAT_NAME><STAT_UNITS>u</STAT_UNITS></CHANNEL>"));
  const chan_descr_2010& first = *got->list.at(0);
  EXPECT_STREQ(first.bits.at(0)->bit_name, "");
  EXPECT_STREQ(first.dims.at(0)->dim_name, "");
  EXPECT_STREQ(first.dims[0]->units, "");
  EXPECT_STREQ(first.dims[0]->stats.at(0)->stat_name, "");
  EXPECT_STREQ(first.dims[0]->stats[0]->units, "");
}

TYPED_TEST(ReadChannels, ChannelWithoutPropertyIsNeverListed) {
  const test::kept_leak channel_without_property;
  const auto got =
      this->read(elements("<CHANNEL><NAME>n</NAME></CHANNEL><CHANNEL><PROP>P</PROP></CHANNEL>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->properties(), "P;");
  EXPECT_STREQ(got->list.at(0)->daq_name, "");
}

// ---- Limits.

struct limit {
  const char* path;  // what stands before the element
  const char* element;
  std::size_t longest;
  std::string (*field)(const chan_descr_2010&);
};

const limit limits[] = {
    {"", "SB_NAME", 255, [](const chan_descr_2010& c) { return std::string(c.sb_name); }},
    {"", "NAME", 255, [](const chan_descr_2010& c) { return std::string(c.daq_name); }},
    {"", "SUBSYSTEM", 63, [](const chan_descr_2010& c) { return std::string(c.subsystem); }},
    {"", "DESC", 255, [](const chan_descr_2010& c) { return std::string(c.prop_desc); }},
    {"", "UNITS", 15, [](const chan_descr_2010& c) { return std::string(c.units); }},
    {"", "DIM_DESCR", 255, [](const chan_descr_2010& c) { return std::string(c.prop_desc); }},
    {"<BIT>1</BIT>", "BIT_NAME", 63,
     [](const chan_descr_2010& c) { return std::string(c.bits.at(0)->bit_name); }},
    {"<BIT>1</BIT>", "BIT_DESCR", 79,
     [](const chan_descr_2010& c) { return std::string(c.bits.at(0)->bit_desc); }},
    {"<DIM>1</DIM>", "DIM_NAME", 63,
     [](const chan_descr_2010& c) { return std::string(c.dims.at(0)->dim_name); }},
    {"<DIM>1</DIM>", "DIM_DESCR", 79,
     [](const chan_descr_2010& c) { return std::string(c.dims.at(0)->dim_desc); }},
    {"<DIM>1</DIM>", "DIM_UNITS", 15,
     [](const chan_descr_2010& c) { return std::string(c.dims.at(0)->units); }},
    {"<DIM>1</DIM><STAT>1</STAT>", "STAT_NAME", 63,
     [](const chan_descr_2010& c) { return std::string(c.dims.at(0)->stats.at(0)->stat_name); }},
    {"<DIM>1</DIM><STAT>1</STAT>", "STAT_DESCR", 79,
     [](const chan_descr_2010& c) { return std::string(c.dims.at(0)->stats.at(0)->stat_desc); }},
    {"<DIM>1</DIM><STAT>1</STAT>", "STAT_UNITS", 15,
     [](const chan_descr_2010& c) { return std::string(c.dims.at(0)->stats.at(0)->units); }},
};

TYPED_TEST(ReadChannels, TextsAreCutAtTheirLimits) {
  for (const limit& of : limits) {
    for (const std::size_t length : {of.longest - 1, of.longest, of.longest + 1, of.longest + 99}) {
      const std::string element = of.element;
      const auto got = this->read(channel(of.path + ("<" + element + ">") +
                                          std::string(length, 'x') + "</" + element + ">"));
      EXPECT_EQ(of.field(*got->list.at(0)), std::string(std::min(length, of.longest), 'x'))
          << element << " " << length;
    }
  }
}

TYPED_TEST(ReadChannels, PropertyIsCutAt255Characters) {
  const std::string name(300, 'p');
  const auto got = this->read(elements("<CHANNEL><PROP>" + name + "</PROP></CHANNEL>"));
  EXPECT_EQ(got->list.at(0)->prop_name, name.substr(0, 255));
}

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

// ---- Element dialect: duplicates.

const std::string twice = elements(
    "<CHANNEL><EVTYPE>1</EVTYPE><STREAM>1</STREAM><DTYPE>9</DTYPE><PROP>A</PROP>"
    "<NAME>first</NAME></CHANNEL>"
    "<CHANNEL><EVTYPE>2</EVTYPE><STREAM>4</STREAM><DTYPE>8</DTYPE><PROP>A</PROP>"
    "<NAME>second</NAME></CHANNEL>");

TEST(ReadChannelsMemory, DuplicatePropertyIsMergedWhenAsked) {
  const auto got = memory(twice, merge);
  EXPECT_EQ(got->result, 0);
  ASSERT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list[0]->stream, 5);
  EXPECT_EQ(got->list[0]->ev_type, 1U);
  EXPECT_EQ(got->list[0]->dtype, 9U);
  EXPECT_STREQ(got->list[0]->daq_name, "first");
}

TEST(ReadChannelsMemory, DuplicatePropertyIsListedUnlessAsked) {
  const auto got = memory(twice);
  EXPECT_EQ(got->properties(), "A;A;");
  EXPECT_EQ(got->list.at(0)->stream, 1);
  EXPECT_EQ(got->list.at(1)->stream, 4);
}

TEST(ReadChannelsFile, DuplicatePropertyIsAlwaysListed) {
  for (const int flags : {plain, merge}) {
    const auto got = file(twice, flags);
    EXPECT_EQ(got->properties(), "A;A;");
    EXPECT_EQ(got->list.at(0)->stream, 1);
    EXPECT_EQ(got->list.at(1)->stream, 4);
  }
}

TEST(ReadChannelsMemory, MergeTakesTypesOnlyWhereThereIsNone) {
  const auto got =
      memory(elements("<CHANNEL><PROP>A</PROP></CHANNEL>"
                      "<CHANNEL><EVTYPE>2</EVTYPE><DTYPE>8</DTYPE><STREAM>2</STREAM><PROP>A</PROP>"
                      "</CHANNEL>"),
             merge);
  ASSERT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list[0]->ev_type, 2U);
  EXPECT_EQ(got->list[0]->dtype, 8U);
  EXPECT_EQ(got->list[0]->stream, 2);
}

TEST(ReadChannelsMemory, ElementsAfterTheMergedPropertyAreIgnored) {
  const auto got =
      memory(elements("<CHANNEL><PROP>A</PROP></CHANNEL>"
                      "<CHANNEL><PROP>A</PROP><EVTYPE>2</EVTYPE><DTYPE>8</DTYPE><STREAM>2</STREAM>"
                      "<NAME>n</NAME><BIT>1</BIT><PROP>B</PROP></CHANNEL>"
                      "<CHANNEL><PROP>C</PROP><NAME>c</NAME></CHANNEL>"),
             merge);
  ASSERT_EQ(got->properties(), "A;C;");
  EXPECT_EQ(got->list[0]->ev_type, 0U);
  EXPECT_EQ(got->list[0]->dtype, 0U);
  EXPECT_EQ(got->list[0]->stream, 0);
  EXPECT_STREQ(got->list[0]->daq_name, "");
  EXPECT_EQ(got->list[0]->nbits, 0);
  EXPECT_STREQ(got->list[1]->daq_name, "c");
}

TEST(ReadChannelsMemory, SubRecordsOfAMergedChannelStayBehind) {
  const test::kept_leak bit_of_a_merged_channel;
  const auto got = memory(
      elements("<CHANNEL><PROP>A</PROP></CHANNEL><CHANNEL><BIT>1</BIT><PROP>A</PROP></CHANNEL>"),
      merge);
  EXPECT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list.at(0)->nbits, 0);
}

TEST(ReadChannelsMemory, MergesIntoRecordsThatWereInTheList) {
  auto got =
      memory(elements("<CHANNEL><STREAM>1</STREAM><PROP>A</PROP></CHANNEL>"
                      "<CHANNEL><STREAM>1</STREAM><PROP>A</PROP></CHANNEL>"));
  got->list.push_back(nullptr);
  got->add<from_text>(elements("<CHANNEL><STREAM>2</STREAM><PROP>A</PROP></CHANNEL>"), merge);
  ASSERT_EQ(got->list.size(), 3U);
  EXPECT_EQ(got->list[0]->stream, 3);
  EXPECT_EQ(got->list[1]->stream, 1);
}

TEST(ReadChannelsMemory, TooLongPropertiesNeverMeet) {
  const std::string name(300, 'p');
  const std::string one = "<CHANNEL><PROP>" + name + "</PROP></CHANNEL>";
  const std::string cut =
      "<CHANNEL><STREAM>4</STREAM><PROP>" + name.substr(0, 255) + "</PROP></CHANNEL>";
  const auto got = memory(elements(one + one + cut), merge);
  ASSERT_EQ(got->list.size(), 2U);
  EXPECT_EQ(got->list[0]->stream, 4);
  EXPECT_EQ(got->list[1]->stream, 0);
}

TEST(ReadChannelsMemory, LongestPropertiesMeet) {
  const std::string one = "<CHANNEL><PROP>" + std::string(255, 'p') + "</PROP></CHANNEL>";
  EXPECT_EQ(memory(elements(one + one), merge)->list.size(), 1U);
}

TEST(ReadChannelsMemory, ManyPropertiesMergeAsInTheList) {
  std::string body;
  for (int round = 1; round <= 2; ++round) {
    for (int n = 0; n < 1000; ++n) {
      body += "<CHANNEL><STREAM>" + std::to_string(round) + "</STREAM><PROP>LINAC/" +
              std::to_string(n) + "</PROP></CHANNEL>";
    }
  }
  const auto got = memory(elements(body), merge);
  ASSERT_EQ(got->list.size(), 1000U);
  for (int n = 0; n < 1000; ++n) {
    const auto position = static_cast<std::size_t>(n);
    EXPECT_EQ(got->list[position]->prop_name, "LINAC/" + std::to_string(n));
    EXPECT_EQ(got->list[position]->stream, 3);
  }
}

// ---- Channels with several properties.

TYPED_TEST(ReadChannels, SecondPropertyListsTheRecordTwiceInARow) {
  const auto got = this->read(
      elements("<CHANNEL><PROP>a long one</PROP><PROP>B</PROP><NAME>n</NAME></CHANNEL>"));
  ASSERT_EQ(got->list.size(), 2U);
  EXPECT_EQ(got->list[0], got->list[1]);
  const char expected[256] = "B";
  EXPECT_EQ(std::memcmp(got->list[0]->prop_name, expected, sizeof expected), 0);
  EXPECT_STREQ(got->list[0]->daq_name, "n");
}

TEST(ReadChannelsMemory, OverwrittenPropertyIsNoLongerFound) {
  const auto got = memory(elements("<CHANNEL><PROP>A</PROP><PROP>B</PROP></CHANNEL>"
                                   "<CHANNEL><STREAM>1</STREAM><PROP>A</PROP></CHANNEL>"
                                   "<CHANNEL><STREAM>2</STREAM><PROP>A</PROP></CHANNEL>"
                                   "<CHANNEL><STREAM>4</STREAM><PROP>B</PROP></CHANNEL>"),
                          merge);
  ASSERT_EQ(got->properties(), "B;B;A;");
  EXPECT_EQ(got->list[0]->stream, 4);
  EXPECT_EQ(got->list[2]->stream, 3);
}

TEST(ReadChannelsMemory, SamePropertyAgainEndsTheChannelAndKeepsTheRecord) {
  const auto got = memory(
      elements("<CHANNEL><STREAM>1</STREAM><PROP>A</PROP><PROP>A</PROP><NAME>n</NAME></CHANNEL>"),
      merge);
  ASSERT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list[0]->stream, 1);
  EXPECT_STREQ(got->list[0]->daq_name, "");
}

TEST(ReadChannelsMemory, SecondPropertyOfAnotherRecordMergesAndKeepsBoth) {
  const auto got = memory(
      elements("<CHANNEL><STREAM>1</STREAM><PROP>A</PROP></CHANNEL>"
               "<CHANNEL><STREAM>2</STREAM><PROP>B</PROP><PROP>A</PROP><NAME>n</NAME></CHANNEL>"),
      merge);
  ASSERT_EQ(got->properties(), "A;B;");
  EXPECT_EQ(got->list[0]->stream, 3);
  EXPECT_EQ(got->list[1]->stream, 2);
  EXPECT_STREQ(got->list[1]->daq_name, "");
}

TEST(ReadChannelsMemory, PropertyTakenBackIsFoundAgain) {
  const auto got = memory(elements("<CHANNEL><PROP>A</PROP><PROP>B</PROP><PROP>A</PROP></CHANNEL>"
                                   "<CHANNEL><STREAM>1</STREAM><PROP>A</PROP></CHANNEL>"
                                   "<CHANNEL><STREAM>2</STREAM><PROP>B</PROP></CHANNEL>"),
                          merge);
  ASSERT_EQ(got->properties(), "A;A;A;B;");
  EXPECT_EQ(got->list[0]->stream, 1);
}

// ---- What the readers do differently with statistics.

TEST(ReadChannelsMemory, StatisticDescriptionWithoutStatisticIsTheChannels) {
  EXPECT_STREQ(memory(channel("<STAT_DESCR>d</STAT_DESCR>"))->list.at(0)->prop_desc, "d");
  const auto got = memory(channel("<DIM>1</DIM><STAT_DESCR>d</STAT_DESCR>"));
  EXPECT_STREQ(got->list.at(0)->prop_desc, "d");
  EXPECT_STREQ(got->list[0]->dims.at(0)->dim_desc, "");
}

TEST(ReadChannelsFile, StatisticDescriptionWithoutStatisticIsIgnored) {
  const auto got =
      file(channel("<STAT_DESCR>d</STAT_DESCR><DIM>1</DIM><STAT_DESCR>d</STAT_DESCR>"));
  EXPECT_STREQ(got->list.at(0)->prop_desc, "");
  EXPECT_STREQ(got->list[0]->dims.at(0)->dim_desc, "");
}

const std::string statistic_then_dimension = channel(
    "<DIM>1</DIM><STAT>2</STAT><DIM>3</DIM><STAT_NAME>n</STAT_NAME><STAT_DESCR>d</STAT_DESCR>"
    "<STAT_UNITS>u</STAT_UNITS>");

TEST(ReadChannelsMemory, DimensionEndsTheStatistic) {
  const auto got = memory(statistic_then_dimension);
  const stat_descr& stat = *got->list.at(0)->dims.at(0)->stats.at(0);
  EXPECT_STREQ(stat.stat_name, "");
  EXPECT_STREQ(stat.stat_desc, "");
  EXPECT_STREQ(stat.units, "");
  EXPECT_STREQ(got->list[0]->prop_desc, "d");
  EXPECT_EQ(got->list[0]->dims.at(1)->nstats, 0);
}

TEST(ReadChannelsFile, DimensionLeavesTheStatisticCurrent) {
  const auto got = file(statistic_then_dimension);
  const stat_descr& stat = *got->list.at(0)->dims.at(0)->stats.at(0);
  EXPECT_STREQ(stat.stat_name, "n");
  EXPECT_STREQ(stat.stat_desc, "d");
  EXPECT_STREQ(stat.units, "u");
  EXPECT_STREQ(got->list[0]->prop_desc, "");
}

// ---- Variable dialect: each element.

TYPED_TEST(ReadChannels, EveryVariableElement) {
  for (const char* kind : {"DaqFloat", "DaqBits", "DaqFloatMatrix"}) {
    const auto got = this->read(
        variable(kind,
                 "<evType>1</evType><daqName>X.Y</daqName><subSystem>DIAG</subSystem>"
                 "<setPoint>1</setPoint><description>position</description><units>mm</units>"
                 "<lastIndex>9</lastIndex>"));
    EXPECT_EQ(got->result, 0);
    EXPECT_EQ(got->out + got->err, "");
    ASSERT_EQ(got->list.size(), 1U);
    const chan_descr_2010& read = *got->list[0];
    EXPECT_EQ(read.ev_type, 1U);
    EXPECT_STREQ(read.prop_name, "P");
    EXPECT_STREQ(read.daq_name, "X.Y");
    EXPECT_STREQ(read.subsystem, "DIAG");
    EXPECT_EQ(read.set_point, 1);
    EXPECT_STREQ(read.prop_desc, "position");
    EXPECT_STREQ(read.units, "mm");
    EXPECT_EQ(read.max_size, 10);
    EXPECT_EQ(read.stream, 0);
    EXPECT_EQ(read.dtype, 0U);
    EXPECT_EQ(read.db_key, -1);
    EXPECT_STREQ(read.sb_name, "");
  }
}

TYPED_TEST(ReadChannels, VariableTextsAreCutAtTheirLimits) {
  const std::string x(300, 'x');
  const auto got = this->read(
      variables("<DaqFloatMatrix><vindo>" + x + "</vindo><daqName>" + x + "</daqName><subSystem>" +
                x + "</subSystem><description>" + x + "</description><units>" + x +
                "</units><dimension id='1'> <name>" + x + "</name><description>" + x +
                "</description><units>" + x + "</units></dimension></DaqFloatMatrix>"));
  const chan_descr_2010& read = *got->list.at(0);
  EXPECT_EQ(read.prop_name, x.substr(0, 255));
  EXPECT_EQ(read.daq_name, x.substr(0, 255));
  EXPECT_EQ(read.subsystem, x.substr(0, 63));
  EXPECT_EQ(read.prop_desc, x.substr(0, 255));
  EXPECT_EQ(read.units, x.substr(0, 15));
  EXPECT_EQ(read.dims.at(0)->dim_name, x.substr(0, 63));
  EXPECT_EQ(read.dims[0]->dim_desc, x.substr(0, 79));
  EXPECT_EQ(read.dims[0]->units, x.substr(0, 15));
}

TYPED_TEST(ReadChannels, BitTitleIsCutAt63Characters) {
  const auto got =
      this->read(variable("DaqBits", "<bitTitle bit='1'>" + std::string(64, 'x') + "</bitTitle>"));
  EXPECT_EQ(got->list.at(0)->bits.at(1)->bit_name, std::string(63, 'x'));
}

TYPED_TEST(ReadChannels, LastIndexWrapsInto32Bits) {
  const auto got = this->read(variable("DaqFloat", "<lastIndex>2147483647</lastIndex>"));
  EXPECT_EQ(got->list.at(0)->max_size, -2147483647 - 1);
  EXPECT_EQ(this->read(variable("DaqFloat", "<lastIndex>-1</lastIndex>"))->list.at(0)->max_size, 0);
}

TYPED_TEST(ReadChannels, TitledBitIsTakenTwice) {
  const auto got = this->read(variable("DaqBits", "<bitTitle bit=\"3\">on</bitTitle>"));
  EXPECT_EQ(got->result, 0);
  const chan_descr_2010& read = *got->list.at(0);
  EXPECT_EQ(read.nbits, 2);
  ASSERT_EQ(read.bits.size(), 2U);
  EXPECT_EQ(read.bits[0]->bit, 3);
  EXPECT_STREQ(read.bits[0]->bit_name, "");
  EXPECT_EQ(read.bits[1]->bit, 3);
  EXPECT_STREQ(read.bits[1]->bit_name, "on");
}

TYPED_TEST(ReadChannels, UntitledBitIsTakenOnce) {
  const auto got = this->read(variable("DaqBits", "<bitTitle bit='4'/>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->list.at(0)->nbits, 1);
  EXPECT_EQ(got->list[0]->bits.at(0)->bit, 4);
}

TYPED_TEST(ReadChannels, BitTitleOutsideBitsIsIgnored) {
  for (const char* kind : {"DaqFloat", "DaqFloatMatrix"}) {
    const auto got = this->read(variable(kind, "<bitTitle>on</bitTitle>"));
    EXPECT_EQ(got->result, 0);
    EXPECT_EQ(got->list.at(0)->nbits, 0);
    EXPECT_EQ(got->out + got->err, "");
  }
}

TYPED_TEST(ReadChannels, DimensionIsTakenOnce) {
  const std::string inner =
      "<name>time</name><description>sample time</description><units>us</units></dimension>"
      "<dimension id='2'/>";
  for (const std::string gap : {"", "\n  "}) {
    const auto got = this->read(variable(
        "DaqFloatMatrix",
        "<description>matrix</description><units>mm</units><dimension id='1'>" + gap + inner));
    const chan_descr_2010& read = *got->list.at(0);
    EXPECT_EQ(read.ndims, 2);
    ASSERT_EQ(read.dims.size(), 2U);
    EXPECT_EQ(read.dims[0]->dim, 1);
    EXPECT_STREQ(read.dims[0]->dim_name, "time");
    EXPECT_STREQ(read.dims[0]->dim_desc, "sample time");
    EXPECT_STREQ(read.dims[0]->units, "us");
    EXPECT_EQ(read.dims[1]->dim, 2);
    EXPECT_STREQ(read.prop_desc, "matrix");
    EXPECT_STREQ(read.units, "mm");
  }
}

TYPED_TEST(ReadChannels, DimensionWithTextIsTakenTwice) {
  const auto got = this->read(variable("DaqFloatMatrix", "<dimension id='1'>text</dimension>"));
  EXPECT_EQ(got->list.at(0)->ndims, 2);
}

TYPED_TEST(ReadChannels, DimensionOutsideAMatrixIsIgnored) {
  for (const char* kind : {"DaqFloat", "DaqBits"}) {
    const auto got = this->read(
        variable(kind, "<dimension><name>n</name><description>d</description></dimension>"));
    EXPECT_EQ(got->result, 0);
    EXPECT_EQ(got->list.at(0)->ndims, 0);
    EXPECT_STREQ(got->list[0]->prop_desc, "d");
    EXPECT_EQ(got->err, "");
  }
}

TYPED_TEST(ReadChannels, NameBeforeAnyDimensionIsIgnored) {
  const auto got =
      this->read(variable("DaqFloatMatrix", "<name>n</name><dimension id='1'/><name/>"));
  EXPECT_STREQ(got->list.at(0)->dims.at(0)->dim_name, "");
  EXPECT_STREQ(got->list[0]->daq_name, "");
}

TYPED_TEST(ReadChannels, NewMatrixStartsWithoutDimension) {
  const auto got = this->read(
      variables("<DaqFloatMatrix><vindo>A</vindo><dimension id='1'/></DaqFloatMatrix>"
                "<DaqFloatMatrix><vindo>B</vindo><description>b</description></DaqFloatMatrix>"
                "<DaqFloat><vindo>C</vindo><description>c</description></DaqFloat>"));
  EXPECT_STREQ(got->list.at(0)->dims.at(0)->dim_desc, "");
  EXPECT_STREQ(got->list.at(1)->prop_desc, "b");
  EXPECT_STREQ(got->list.at(2)->prop_desc, "c");
}

TYPED_TEST(ReadChannels, WritersOtherVariableNamesAreIgnored) {
  const auto got = this->read(
      variable("DaqFloatMatrix",
               "<DBKey>1</DBKey><sbName>s</sbName><firstIndex>1</firstIndex><freq>1</freq>"
               "<DIM_START>1</DIM_START><DIM_NAME>n</DIM_NAME><NAME>n</NAME>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->list.at(0)->db_key, -1);
  EXPECT_STREQ(got->list[0]->sb_name, "");
  EXPECT_EQ(got->list[0]->max_size, 1);
  EXPECT_STREQ(got->list[0]->daq_name, "");
}

TYPED_TEST(ReadChannels, ElementsBeforeAnyVariableAreIgnored) {
  const auto got = this->read(
      variables("<vindo>P</vindo><bitTitle>t</bitTitle><dimension>d</dimension><name>n</name>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_TRUE(got->list.empty());
  EXPECT_EQ(got->out + got->err, "");
}

TYPED_TEST(ReadChannels, DialectsDoNotMix) {
  EXPECT_TRUE(this->read(elements("<DaqFloat><vindo>P</vindo></DaqFloat>"))->list.empty());
  EXPECT_TRUE(this->read(variables("<CHANNEL><PROP>P</PROP></CHANNEL>"))->list.empty());
}

TYPED_TEST(ReadChannels, VariableWithoutPropertyIsNeverListed) {
  const test::kept_leak variable_without_property;
  const auto got = this->read(variables("<DaqFloat><daqName>n</daqName></DaqFloat>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_TRUE(got->list.empty());
}

// ---- Variable dialect: messages.

TEST(ReadChannelsMemory, UntitledBitIsReported) {
  const auto got =
      memory(variable("DaqBits", "<bitTitle bit='3'>on</bitTitle><bitTitle bit='-4'/>"));
  EXPECT_EQ(got->out,
            "bitTitle is not defined for bit  3 prop:P\n"
            "bitTitle is not defined for bit  -4 prop:P\n");
  EXPECT_EQ(got->err, "");
}

TEST(ReadChannelsFile, UntitledBitIsNotReported) {
  const auto got = file(variable("DaqBits", "<bitTitle bit='3'>on</bitTitle><bitTitle bit='4'/>"));
  EXPECT_EQ(got->out + got->err, "");
  EXPECT_EQ(got->list.at(0)->nbits, 3);
}

TEST(ReadChannelsMemory, BitTitleWithoutBitIsReportedAtEachStep) {
  const auto got = memory(variable("DaqBits", "<bitTitle>on</bitTitle><bitTitle Bit='1'/>"));
  EXPECT_EQ(got->result, 3);
  EXPECT_EQ(got->list.at(0)->nbits, 0);
  EXPECT_EQ(got->err,
            "No attributebit found for bitTitle prop: P\n"
            "No attributebit found for bitTitle prop: P\n"
            "No attributebit found for bitTitle prop: P\n");
  EXPECT_EQ(got->out, "");
}

TEST(ReadChannelsFile, BitTitleWithoutBitIsReportedAtEachStep) {
  const auto got = file(variable("DaqBits", "<bitTitle>on</bitTitle>"));
  EXPECT_EQ(got->result, 2);
  EXPECT_EQ(got->list.at(0)->nbits, 0);
  EXPECT_EQ(got->err,
            "No attribute: bit found for bitTitle prop: P\n"
            "No attribute: bit found for bitTitle prop: P\n");
}

TYPED_TEST(ReadChannels, DimensionWithoutIdIsReported) {
  const auto got = this->read(variable("DaqFloatMatrix", "<dimension> <name>n</name></dimension>"));
  EXPECT_EQ(got->result, 1);
  EXPECT_EQ(got->list.at(0)->ndims, 0);
  EXPECT_EQ(got->err, "No attribute: id found for dimension prop: P\n");
  EXPECT_EQ(got->out, "");
}

TYPED_TEST(ReadChannels, EmptyAttributeIsZero) {
  const auto got = this->read(variable("DaqBits", "<bitTitle bit=''/>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->list.at(0)->bits.at(0)->bit, 0);
}

TYPED_TEST(ReadChannels, OwnErrorsAndXmlErrorsAddUp) {
  const auto got =
      this->read("<DAQvariables><DaqFloatMatrix><vindo>P</vindo><dimension/></DaqFloatMatrix></X>");
  EXPECT_EQ(got->result, 2);
  EXPECT_EQ(got->properties(), "P;");
}

// ---- Variable dialect: shift and duplicates.

TEST(ReadChannelsMemory, VariableEventTypeIsShifted) {
  EXPECT_EQ(memory(variable("DaqFloat", "<evType>3</evType>"), shift)->list.at(0)->ev_type, 8U);
  EXPECT_EQ(memory(variable("DaqFloat", "<evType>3</evType>"), plain)->list.at(0)->ev_type, 3U);
}

TEST(ReadChannelsFile, VariableEventTypeIsNeverShifted) {
  EXPECT_EQ(file(variable("DaqFloat", "<evType>3</evType>"), shift)->list.at(0)->ev_type, 3U);
}

const std::string variable_twice = variables(
    "<DaqFloat><evType>1</evType><vindo>A</vindo><daqName>first</daqName></DaqFloat>"
    "<DaqFloat><evType>2</evType><vindo>A</vindo><daqName>second</daqName></DaqFloat>");

TYPED_TEST(ReadChannels, DuplicateVariablesAreAlwaysMerged) {
  for (const int flags : {plain, merge}) {
    const auto got = this->read(variable_twice, flags);
    ASSERT_EQ(got->properties(), "A;");
    EXPECT_STREQ(got->list[0]->daq_name, "first");
  }
}

TEST(ReadChannelsMemory, VariableMergeTakesTypesOnlyWhereThereIsNone) {
  EXPECT_EQ(memory(variable_twice)->list.at(0)->ev_type, 1U);
  const auto got =
      memory(variables("<DaqFloat><vindo>A</vindo></DaqFloat>"
                       "<DaqFloat><evType>2</evType><vindo>A</vindo></DaqFloat>"));
  EXPECT_EQ(got->list.at(0)->ev_type, 2U);
}

TEST(ReadChannelsFile, VariableMergeJoinsTypes) {
  EXPECT_EQ(file(variable_twice)->list.at(0)->ev_type, 3U);
}

TYPED_TEST(ReadChannels, VariableMergeKeepsStreamAndDataTypeOfTheListed) {
  auto got =
      this->read(elements("<CHANNEL><STREAM>6</STREAM><DTYPE>9</DTYPE><PROP>A</PROP></CHANNEL>"));
  got->template add<TypeParam>(variable_twice, plain);
  ASSERT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list[0]->stream, 6);
  EXPECT_EQ(got->list[0]->dtype, 9U);
}

TYPED_TEST(ReadChannels, RestOfAMergedVariableIsIgnored) {
  const auto got = this->read(variables(
      "<DaqBits><vindo>A</vindo></DaqBits>"
      "<DaqBits><vindo>A</vindo><evType>4</evType><bitTitle>no attribute</bitTitle></DaqBits>"
      "<DaqFloatMatrix><vindo>A</vindo><dimension/></DaqFloatMatrix>"));
  EXPECT_EQ(got->result, 0);
  EXPECT_EQ(got->err, "");
  ASSERT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list[0]->ev_type, 0U);
  EXPECT_EQ(got->list[0]->nbits, 0);
}

TYPED_TEST(ReadChannels, SubRecordsOfAMergedVariableStayBehind) {
  const test::kept_leak bit_of_a_merged_variable;
  const auto got = this->read(variables(
      "<DaqBits><vindo>A</vindo></DaqBits><DaqBits><bitTitle bit='1'/><vindo>A</vindo></DaqBits>"));
  ASSERT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list[0]->nbits, 0);
}

TYPED_TEST(ReadChannels, SecondVariablePropertyListsTheRecordTwiceInARow) {
  const auto got =
      this->read(variables("<DaqFloat><vindo>A</vindo><vindo>B</vindo></"
                           "DaqFloat><DaqFloat><vindo>A</vindo></DaqFloat>"));
  EXPECT_EQ(got->properties(), "B;B;A;");
  EXPECT_EQ(got->list.at(0), got->list.at(1));
}

TYPED_TEST(ReadChannels, SameVariablePropertyAgainKeepsTheRecord) {
  const auto got = this->read(
      variables("<DaqFloat><evType>1</evType><vindo>A</vindo><vindo>A</vindo><daqName>n</daqName>"
                "</DaqFloat>"));
  ASSERT_EQ(got->properties(), "A;");
  EXPECT_EQ(got->list[0]->ev_type, 1U);
  EXPECT_STREQ(got->list[0]->daq_name, "");
}

// ---- The examples.

std::unique_ptr<reading> example(const std::string& name) {
  auto got = std::make_unique<reading>();
  std::string path = ZRT4_SOURCE_DIR "/examples/channels/" + name;
  const auto output = captured(
      [&] { got->result = parse_descr_list_readf(path.data(), &got->list, false, false); });
  EXPECT_EQ(output.out + output.err, "");
  return got;
}

TEST(ChannelExamples, BothDialectsDescribeTheSameChannels) {
  const auto short_elements = example("channels.xml");
  const auto short_variables = example("variables.xml");
  EXPECT_EQ(short_elements->result + short_variables->result, 0);
  EXPECT_EQ(short_elements->list.size(), 8U);
  EXPECT_EQ(short_elements->properties(), short_variables->properties());
  const auto elements = example("linac.xml");
  const auto variables = example("linac_variables.xml");
  EXPECT_EQ(elements->result + variables->result, 0);
  EXPECT_EQ(elements->list.size(), 427U);
  EXPECT_EQ(elements->properties(), variables->properties());
}

TEST(ChannelExamples, ShortOne) {
  const auto got = example("channels.xml");
  const chan_descr_2010& position = *got->list.at(0);
  EXPECT_STREQ(position.prop_name, "LINAC.DIAG/BPM/3.L1/X.TRAIN");
  EXPECT_STREQ(position.daq_name, "BPM.3.L1.X");
  EXPECT_EQ(position.ndims, 1);
  EXPECT_EQ(position.dims.at(0)->nstats, 3);
  const chan_descr_2010& status = *got->list.at(5);
  EXPECT_STREQ(status.daq_name, "RF.A1.STATUS");
  EXPECT_EQ(status.nbits, 6);
  EXPECT_STREQ(status.bits.at(3)->bit_name, "QUENCH");
  EXPECT_STREQ(status.bits.at(3)->bit_desc, "quench detected in a cavity of the module");
}

}  // namespace
