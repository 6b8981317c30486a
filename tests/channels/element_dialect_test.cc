// The element dialect of channel descriptions, by both readers.

#include <cstring>

#include "channel_reading.hh"

using test::channel;
using test::elements;
using test::file;
using test::memory;
using test::ReadChannels;

namespace {

TYPED_TEST_SUITE(ReadChannels, test::channel_readers);

// ---- Each element.

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

}  // namespace
