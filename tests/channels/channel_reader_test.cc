// Channel descriptions: the document around them, and the examples.

#include "channel_reading.hh"

using test::captured;
using test::channel;
using test::plain;
using test::ReadChannels;
using test::reading;

namespace {

TYPED_TEST_SUITE(ReadChannels, test::channel_readers);

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
  zrt4::channel_list list;
  char missing[] = "/tmp/zrt4_no_such_directory/channels.xml";
  const auto output =
      captured([&] { EXPECT_GT(parse_descr_list_readf(missing, list.get(), false, false), 0); });
  EXPECT_NE(output.err, "");
  EXPECT_TRUE(list.empty());
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
