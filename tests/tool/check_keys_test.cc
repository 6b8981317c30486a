// Keys that stand several times, each with all its places.

#include "finding_support.hh"
#include "zrt4xml.hh"

using test::channel_with;
using test::check_of;
using test::event_with;
using test::found_in;
using test::lines;
using test::variable_with;

namespace {

class CheckKeys : public testing::Test {
  const zrt4::xml_session session;
};

std::string channel(const std::string& property, const std::string& name) {
  return "<CHANNEL><PROP>" + property + "</PROP><NAME>" + name +
         "</NAME>"
         "<EVTYPE>1</EVTYPE></CHANNEL>\n";
}

std::string channels(const std::string& all) {
  return "<CHANDESCRIPTIONS>\n" + all + "</CHANDESCRIPTIONS>";
}

}  // namespace

TEST_F(CheckKeys, PropertiesAndNamesOfChannels) {
  EXPECT_EQ(found_in(channels(channel("A", "1") + channel("B", "2") + channel("A", "2"))),
            (lines{"2:16 duplicate_property: property 'A' stands here 2 times: lines 2 and 4",
                   "3:30 duplicate_name: DAQ name '2' stands here 2 times: lines 3 and 4"}));
  EXPECT_EQ(found_in(channels(channel("A", "!!!UNDEFINED!!!") + channel("B", "!!!UNDEFINED!!!"))),
            lines{});  // as a writer writes those without a name
}

TEST_F(CheckKeys, AllPlaces) {
  const auto found =
      check_of(channels(channel("A", "1") + channel("A", "2") + channel("A", "3"))).found;
  ASSERT_EQ(found.size(), 1U);
  ASSERT_EQ(found.front().places.size(), 3U);
  EXPECT_EQ(found.front().places[0].line, 2U);
  EXPECT_EQ(found.front().places[2].line, 4U);
  EXPECT_EQ(found.front().places[2].column, 16U);
}

TEST_F(CheckKeys, IndexesAndPropertiesOfADictionary) {
  const auto entry = [](const std::string& index, const std::string& property) {
    return "<CHANNEL><INDEX>" + index + "</INDEX><PROP>" + property + "</PROP></CHANNEL>\n";
  };
  EXPECT_EQ(found_in("<ENVINDEXDICT>\n" + entry("7", "A") + entry("8", "A") + entry("07", "B") +
                     "</ENVINDEXDICT>"),
            (lines{"2:17 duplicate_index: index 7 stands here 2 times: lines 2 and 4",
                   "2:32 duplicate_property: property 'A' stands here 2 times: lines 2 and 3"}));
}

TEST_F(CheckKeys, TypesBlocksAndChannelsOfAnEventList) {
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>1</TYPE></EVENT>\n<EVENT><TYPE> 1</TYPE></EVENT></BMR>"),
            lines{"2:14 duplicate_event_type: event type 1 stands here 2 times: lines 2 and 3"});
  EXPECT_EQ(found_in(event_with("<SBLOCK>B</SBLOCK>\n<SBLOCK>B</SBLOCK>")),
            lines{"3:9 duplicate_block: server block 'B' stands here 2 times: lines 3 and 4"});
  EXPECT_EQ(found_in(event_with("<SBLOCK>B<CHLIST><CHAN>C</CHAN>\n<CHAN>C</CHAN></CHLIST></SBLOCK>"
                                "<SBLOCK>D<CHLIST><CHAN>C</CHAN></CHLIST></SBLOCK>")),
            lines{"3:24 duplicate_channel: channel 'C' stands here 2 times: lines 3 and 4"});
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>1</TYPE><SBLOCK>B</SBLOCK></EVENT>"
                     "<EVENT><TYPE>2</TYPE><SBLOCK>B</SBLOCK></EVENT></BMR>"),
            lines{});
}

TEST_F(CheckKeys, NumbersWithinAChannel) {
  EXPECT_EQ(found_in(channel_with("<BIT>3</BIT>\n<BIT>3</BIT>")),
            lines{"3:6 duplicate_number: bit 3 stands here 2 times: lines 3 and 4"});
  EXPECT_EQ(found_in(channel_with("<DIM>0<STAT>1</STAT></DIM>\n<DIM>0<STAT>1</STAT></DIM>")),
            lines{"3:6 duplicate_number: dimension 0 stands here 2 times: lines 3 and 4"});
  EXPECT_EQ(found_in(channel_with("<DIM>0<STAT>1</STAT>\n<STAT>1</STAT></DIM>")),
            lines{"3:13 duplicate_number: statistic 1 stands here 2 times: lines 3 and 4"});
  EXPECT_EQ(found_in(variable_with("DaqBits",
                                   "<bitTitle bit='3'>a</bitTitle>\n"
                                   "<bitTitle bit='3'>b</bitTitle>")),
            lines{"3:19 duplicate_number: bit 3 stands here 2 times: lines 3 and 4"});
}

TEST_F(CheckKeys, ManyOfThemTakeNoMoreThanAFewLines) {
  std::string all;
  for (int i = 0; i != 50; ++i) all += channel("A", std::to_string(i));
  EXPECT_EQ(found_in(channels(all)),
            lines{"2:16 duplicate_property: property 'A' stands here 50 times: lines 2, 3, 4, 5, "
                  "6, 7, 8, 9, 10, 11, ..."});
}

// Short ones, which hashes of few steps let collide.
TEST_F(CheckKeys, DifferentKeysAreNeverTheSame) {
  std::string all;
  for (int i = 0; i != 20'000; ++i) {
    all += channel("P" + std::to_string(i), std::to_string(i));
  }
  EXPECT_EQ(found_in(channels(all)), lines{});
}

TEST_F(CheckKeys, BeyondAThousandTheyAreCounted) {
  std::string all;
  for (int i = 0; i != 1200; ++i) {
    const std::string property = "P" + std::to_string(i);
    all += channel(property, "a" + property) + channel(property, "b" + property);
  }
  const auto found = check_of(channels(all)).found;
  ASSERT_EQ(found.size(), 1001U);
  EXPECT_EQ(found.back().place.line, 2002U);
  EXPECT_EQ(found.back().text,
            "200 more of this kind from here on (a property stands several times)");
}
