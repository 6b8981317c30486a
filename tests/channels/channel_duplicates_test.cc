// Channels whose property is in the list already, and channels with several properties.

#include <cstring>

#include "channel_reading.hh"

using test::elements;
using test::file;
using test::from_text;
using test::memory;
using test::merge;
using test::plain;
using test::ReadChannels;
using test::variables;

namespace {

TYPED_TEST_SUITE(ReadChannels, test::channel_readers);

// ---- The element dialect.

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

// ---- The variable dialect.

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

}  // namespace
