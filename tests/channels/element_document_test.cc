// The element dialect, to the byte.

#include <limits>

#include "channel_documents.hh"

using test::elements;
using test::full_channel;
using test::records;
using testing::HasSubstr;

namespace {

const std::string bare_channel =
    "<CHANNEL>\n<STREAM>0</STREAM>\n<EVTYPE>0</EVTYPE>\n<DTYPE>0</DTYPE>\n<DB_KEY>-1</DB_KEY>\n"
    "<COUNT>0</COUNT>\n<SB_NAME></SB_NAME>\n<PROP>P</PROP>\n<NAME>D</NAME>\n"
    "<SETPOINT>0</SETPOINT>\n<SUBSYSTEM></SUBSYSTEM>\n<UNITS></UNITS>\n<DESC></DESC>\n"
    "<SIZE>1</SIZE>\n</CHANNEL>\n";

const std::string full_elements =
    "<CHANNEL>\n<STREAM>-1</STREAM>\n<EVTYPE>-1</EVTYPE>\n<DTYPE>-2147483646</DTYPE>\n"
    "<DB_KEY>42</DB_KEY>\n<COUNT>7</COUNT>\n<SB_NAME>SERVER</SB_NAME>\n"
    "<PROP>FAC/DEV/LOC/PROP</PROP>\n<NAME>DAQ.NAME</NAME>\n<SETPOINT>1</SETPOINT>\n"
    "<SUBSYSTEM>RF</SUBSYSTEM>\n<UNITS>mm</UNITS>\n<DESC>a description</DESC>\n<SIZE>1</SIZE>\n";

}  // namespace

TEST(ElementDialect, BareChannel) {
  records from;
  from.add("P", "D");
  EXPECT_EQ(elements(from), bare_channel);
}

TEST(ElementDialect, EveryFieldInOrder) {
  full_channel from;
  EXPECT_EQ(elements(from), full_elements + "</CHANNEL>\n");
}

TEST(ElementDialect, ChannelsInListOrder) {
  records from;
  from.add("Q", "1");
  from.add("P", "2");
  const std::string text = elements(from);
  EXPECT_LT(text.find("<PROP>Q</PROP>"), text.find("<PROP>P</PROP>"));
}

TEST(ElementDialect, LongestTexts) {
  records from;
  auto& one = from.add(std::string(255, 'p'), std::string(255, 'd'));
  test::set(one.sb_name, std::string(255, 's'));
  test::set(one.prop_desc, std::string(255, 't'));
  test::set(one.subsystem, std::string(63, 'u'));
  test::set(one.units, std::string(15, 'v'));
  from.add_bit(one, 1, std::string(63, 'b'), std::string(79, 'c'));
  const std::string text = elements(from);
  for (const std::string& leaf : {"<PROP>" + std::string(255, 'p') + "</PROP>\n",
                                  "<NAME>" + std::string(255, 'd') + "</NAME>\n",
                                  "<SB_NAME>" + std::string(255, 's') + "</SB_NAME>\n",
                                  "<DESC>" + std::string(255, 't') + "</DESC>\n",
                                  "<SUBSYSTEM>" + std::string(63, 'u') + "</SUBSYSTEM>\n",
                                  "<UNITS>" + std::string(15, 'v') + "</UNITS>\n",
                                  "<BIT_NAME>" + std::string(63, 'b') + "</BIT_NAME>\n",
                                  "<BIT_DESCR>" + std::string(79, 'c') + "</BIT_DESCR>\n"}) {
    EXPECT_THAT(text, HasSubstr(leaf));
  }
}

TEST(ElementDialect, LongestNumbers) {
  records from;
  auto& one = from.add("P", "D");
  one.stream = std::numeric_limits<std::int32_t>::min();
  one.count = std::numeric_limits<std::int32_t>::max();
  EXPECT_THAT(elements(from), HasSubstr("<STREAM>-2147483648</STREAM>\n"));
  EXPECT_THAT(elements(from), HasSubstr("<COUNT>2147483647</COUNT>\n"));
}

TEST(ElementDialect, NothingIsEscaped) {
  records from;
  test::set(from.add("P", "D").prop_desc, "a < b & \"c\" \xe4");
  EXPECT_THAT(elements(from), HasSubstr("<DESC>a < b & \"c\" \xe4</DESC>\n"));
}

TEST(ElementDialect, Bits) {
  full_channel from;
  from.add_bit(from.one, 3, "ON", "is on");
  from.add_bit(from.one, -1, "", "");
  EXPECT_EQ(elements(from),
            full_elements +
                "<BIT>3\n<BIT_NAME>ON</BIT_NAME>\n<BIT_DESCR>is on</BIT_DESCR>\n</BIT>\n"
                "<BIT>-1\n<BIT_NAME></BIT_NAME>\n<BIT_DESCR></BIT_DESCR>\n</BIT>\n</CHANNEL>\n");
}

TEST(ElementDialect, DimensionsAndStatistics) {
  full_channel from;
  auto& time = from.add_dim(from.one, 0, "time", "time axis", "s");
  from.add_stat(time, 1, "mean", "mean value", "ms");
  from.add_stat(time, 2, "", "", "");
  from.add_dim(from.one, 5);
  EXPECT_EQ(
      elements(from),
      full_elements +
          "<DIM>0\n<DIM_NAME>time</DIM_NAME>\n<DIM_UNITS>s</DIM_UNITS>\n"
          "<DIM_DESCR>time axis</DIM_DESCR>\n"
          "<STAT>1\n<STAT_NAME>mean</STAT_NAME>\n<STAT_UNITS>ms</STAT_UNITS>\n"
          "<STAT_DESCR>mean value</STAT_DESCR>\n</STAT>\n"
          "<STAT>2\n<STAT_NAME></STAT_NAME>\n<STAT_UNITS></STAT_UNITS>\n<STAT_DESCR></STAT_DESCR>\n"
          "</STAT>\n</DIM>\n"
          "<DIM>5\n<DIM_NAME></DIM_NAME>\n<DIM_UNITS></DIM_UNITS>\n<DIM_DESCR></DIM_DESCR>\n</"
          "DIM>\n"
          "</CHANNEL>\n");
}

TEST(ElementDialect, BitsStandBeforeDimensions) {
  records from;
  auto& one = from.add("P", "D");
  from.add_dim(one, 1);
  from.add_bit(one, 2, "", "");
  const std::string text = elements(from);
  EXPECT_LT(text.find("<BIT>2\n"), text.find("<DIM>1\n"));
}

TEST(ElementDialect, VectorsDecideAndNotCounters) {
  records from;
  auto& one = from.add("P", "D");
  from.add_bit(one, 2, "", "");
  from.add_stat(from.add_dim(one, 3), 4, "", "", "");
  one.nbits = one.ndims = one.dims[0]->nstats = 0;
  for (const char* tag : {"<BIT>2\n", "<DIM>3\n", "<STAT>4\n"}) {
    EXPECT_THAT(elements(from), HasSubstr(tag));
  }
  records empty;
  auto& other = empty.add("P", "D");
  other.nbits = other.ndims = 7;
  EXPECT_EQ(elements(empty), bare_channel);
}
