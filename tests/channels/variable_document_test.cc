// The variable dialect, to the byte.

#include "channel_documents.hh"

using test::full_channel;
using test::records;
using test::variables;
using testing::HasSubstr;
using testing::Not;

namespace {

const std::string full_variables =
    "<evType>-1</evType>\n<vindo>FAC/DEV/LOC/PROP</vindo>\n<daqName>DAQ.NAME</daqName>\n"
    "<DBKey>42</DBKey>\n<setPoint>1</setPoint>\n<sbName>SERVER</sbName>\n"
    "<subSystem>RF</subSystem>\n<description>a description</description>\n<units>mm</units>\n";

}  // namespace

TEST(VariableDialect, Float) {
  full_channel from;
  EXPECT_EQ(variables(from), "<DaqFloat>\n" + full_variables + "<freq>1</freq>\n</DaqFloat>\n");
}

TEST(VariableDialect, BareFloat) {
  records from;
  from.add("P", "D");
  EXPECT_EQ(
      variables(from),
      "<DaqFloat>\n<evType>0</evType>\n<vindo>P</vindo>\n<daqName>D</daqName>\n"
      "<DBKey>-1</DBKey>\n<setPoint>0</setPoint>\n<sbName></sbName>\n<subSystem></subSystem>\n"
      "<description></description>\n<units></units>\n<freq>1</freq>\n</DaqFloat>\n");
}

TEST(VariableDialect, BitsWriteTheDescription) {
  full_channel from;
  from.add_bit(from.one, 3, "ON", "is on");
  from.add_bit(from.one, -4, "", "");
  EXPECT_EQ(variables(from), "<DaqBits>\n" + full_variables +
                                 "<bitTitle bit=\"3\">is on</bitTitle>\n"
                                 "<bitTitle bit=\"-4\"></bitTitle>\n"
                                 "<freq>1</freq>\n</DaqBits>\n");
}

TEST(VariableDialect, Matrix) {
  full_channel from;
  from.one.max_size = 8;
  auto& time = from.add_dim(from.one, 0, "time", "time axis", "s");
  from.add_stat(time, 1, "mean", "mean value", "ms");
  from.add_dim(from.one, -1);
  EXPECT_EQ(variables(from),
            "<DaqFloatMatrix>\n" + full_variables +
                "<firstIndex>0</firstIndex>\n<lastIndex>7</lastIndex>\n"
                "<dimension id=\"0\">\n<name>time</name>\n<description>time axis</description>\n"
                "<units>s</units>\n</dimension>\n"
                "<dimension id=\"-1\">\n<name></name>\n<description></description>\n"
                "<units></units>\n</dimension>\n<freq>1</freq>\n</DaqFloatMatrix>\n");
}

TEST(VariableDialect, KindAndIndices) {
  struct {
    int max_size;
    bool bits;
    const char* kind;
    const char* last;
  } const cases[] = {
      {1, false, "DaqFloat", ""},        {1, true, "DaqBits", ""},
      {0, false, "DaqFloatMatrix", ""},  {0, true, "DaqFloatMatrix", ""},
      {-5, false, "DaqFloatMatrix", ""}, {2, true, "DaqFloatMatrix", "1"},
      {8, false, "DaqFloatMatrix", "7"}, {2147483647, false, "DaqFloatMatrix", "2147483646"}};
  for (const auto& one : cases) {
    records from;
    auto& channel = from.add("P", "D");
    channel.max_size = one.max_size;
    if (one.bits) from.add_bit(channel, 0, "", "");
    const std::string text = variables(from);
    const std::string kind = one.kind;
    EXPECT_EQ(text.substr(0, kind.size() + 3), "<" + kind + ">\n") << one.max_size;
    EXPECT_EQ(text.substr(text.size() - kind.size() - 4), "</" + kind + ">\n") << one.max_size;
    EXPECT_EQ(text.find("bitTitle") != std::string::npos, one.bits);
    if (*one.last == '\0') {
      EXPECT_THAT(text, Not(HasSubstr("Index"))) << one.max_size;
    } else {
      EXPECT_THAT(text, HasSubstr("<firstIndex>0</firstIndex>\n<lastIndex>" +
                                  std::string(one.last) + "</lastIndex>\n"));
    }
  }
}

TEST(VariableDialect, BitsThenDimensionsThenFrequency) {
  records from;
  auto& one = from.add("P", "D");
  from.add_dim(one, 1);
  from.add_bit(one, 2, "", "");
  const std::string text = variables(from);
  EXPECT_LT(text.find("</units>\n<bitTitle bit=\"2\">"), text.find("<dimension id=\"1\">"));
  EXPECT_THAT(text, HasSubstr("</dimension>\n<freq>1</freq>\n</DaqBits>\n"));
}

TEST(VariableDialect, VectorsDecideAndNotCounters) {
  records from;
  auto& one = from.add("P", "D");
  one.nbits = one.ndims = 3;
  EXPECT_THAT(variables(from), HasSubstr("<DaqFloat>\n"));
  from.add_bit(one, 0, "", "");
  one.nbits = 0;
  EXPECT_THAT(variables(from), HasSubstr("<DaqBits>\n"));
}

// The type is taken as a number here, whatever it was read as.
TEST(VariableDialect, FrequencyByTheClassOfTheEventType) {
  for (unsigned event = 0; event < 70; ++event) {
    records from;
    from.add("P", "D").ev_type = event;
    const int structure = get_event_struct_type(static_cast<int>(event));
    const std::string freq = structure == 1 || structure == 3 ? "-1" : "1";
    EXPECT_THAT(variables(from), HasSubstr("<freq>" + freq + "</freq>\n")) << event;
  }
  records from;
  from.add("P", "D").ev_type = 6;
  EXPECT_THAT(variables(from), HasSubstr("<freq>-1</freq>\n"));
}
