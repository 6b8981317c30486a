// The variable dialect of channel descriptions, by both readers.

#include "channel_reading.hh"

using test::elements;
using test::file;
using test::memory;
using test::ReadChannels;
using test::variable;
using test::variables;

namespace {

TYPED_TEST_SUITE(ReadChannels, test::channel_readers);

// ---- Each element.

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

// ---- Messages.

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

}  // namespace
