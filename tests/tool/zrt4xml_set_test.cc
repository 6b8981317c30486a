// `zrt4xml set`: fields of the records that fit, changed in a document that is written as a whole.

#include "tool_support.hh"

using test::run;
using test::run_result;

namespace {

const std::string channels = ZRT4_SOURCE_DIR "/examples/channels/channels.xml";
const std::string dictionary = ZRT4_SOURCE_DIR "/examples/dictionaries/small.xml";

/// What is said when it is refused; nothing may be written then.
std::string refusal(const std::string& arguments, int code = 2) {
  const test::temporary_file untouched("as it was");
  const run_result result = run("set -o " + untouched.path() + " " + arguments);
  EXPECT_EQ(result.code, code);
  EXPECT_EQ(untouched.content(), "as it was");
  return result.err;
}

}  // namespace

TEST(ToolSet, ChangesTheFieldsOfThoseThatFit) {
  const test::temporary_file changed("");
  ASSERT_EQ(run("set " + channels + " --where event_type=ENV units=K data_type=BPM_2010 -o " +
                changed.path())
                .code,
            0);
  EXPECT_EQ(run("list " + changed.path() + " --columns name,units,data_type --where units=K").out,
            "name\tunits\tdata_type\nRF.A1.SP.AMPL\tK\tBPM_2010\nRF.A1.SP.PHASE\tK\tBPM_2010\n"
            "Q2.L1.SP\tK\tBPM_2010\n");
  EXPECT_EQ(run("diff --json " + channels + " " + changed.path() + " | grep -c changed").out,
            "3\n");
}

TEST(ToolSet, AFileMayReplaceItself) {
  const test::temporary_file file(test::channel());
  ASSERT_EQ(run("set " + file.path() + " --where name=A.C units=mm -o " + file.path()).code, 0);
  EXPECT_EQ(run("list --columns units " + file.path()).out, "units\nmm\n");
}

TEST(ToolSet, KeepsTheDialect) {
  EXPECT_THAT(run("set " ZRT4_SOURCE_DIR "/examples/channels/variables.xml --all units=mm").out,
              testing::HasSubstr("<DAQvariables>"));
}

TEST(ToolSet, ThresholdsOfADictionary) {
  EXPECT_THAT(run("set " + dictionary + " --where index:1 absolute_threshold=2.5").out,
              testing::HasSubstr("<DABS>2.5"));
  EXPECT_THAT(refusal(dictionary + " --where index:1 absolute_threshold=2,5"),
              testing::HasSubstr("absolute_threshold: a number such as 0.05 is expected here, not "
                                 "\"2,5\"\n"));
  EXPECT_THAT(run("set " + dictionary + " --lossy --where index:1 absolute_threshold=inf").out,
              testing::HasSubstr("<DABS>inf</DABS>"));
  EXPECT_THAT(refusal(dictionary + " --where index:1 absolute_threshold=1e39"),
              testing::HasSubstr("absolute_threshold: a number of at most 3.4028235e+38 is "
                                 "expected here, not \"1e39\"\n"));
}

TEST(ToolSet, LongNamesOfADictionaryStayWhole) {
  const std::string name(200, 'x');
  const test::temporary_file file("<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>" + name +
                                  "</PROP></CHANNEL></ENVINDEXDICT>");
  EXPECT_THAT(run("set " + file.path() + " --all relative_threshold=1").out,
              testing::HasSubstr(name));
}

TEST(ToolSet, DryRunPrintsTheDifference) {
  const run_result result = run("set " + channels + " --where name=Q2.L1.SP units=K --dry-run");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "--- " + channels +
                            "\n+++ set\n~ channel LINAC.MAGNETS/MAGNET.ML/Q2.L1/CURRENT.SP\n"
                            "    units: \"A\" -> \"K\"\n");
  EXPECT_TRUE(test::prints_valid_json("set " + channels + " --all units=K --dry-run --json"));
}

TEST(ToolSet, WhatWouldBeLostIsToldAndNotWritten) {
  const test::temporary_file file(
      test::channel("<!-- by hand -->\n<COLOUR>red</COLOUR><UNITS>mm</UNITS>"));
  const std::string change = file.path() + " --all units=cm";
  const std::string comment = ": a comment does not arrive\n";
  const std::string element = "no reader knows the element 'COLOUR'";
  EXPECT_THAT(refusal(change, 1),
              testing::AllOf(testing::HasSubstr(comment), testing::HasSubstr(element),
                             testing::HasSubstr("not written, because something would be lost; "
                                                "--lossy writes it all the same\n")));
  for (const std::string dry : {"", " --dry-run"}) {
    EXPECT_EQ(run("set " + change + dry).code, 1);
    const run_result meant = run("set --lossy " + change + dry);
    EXPECT_EQ(meant.code, 0);
    EXPECT_THAT(meant.err,
                testing::AllOf(testing::HasSubstr(comment), testing::HasSubstr(element)));
  }
  const test::temporary_file changed("as it was");
  ASSERT_EQ(run("set --lossy " + change + " -o " + changed.path()).code, 0);
  EXPECT_THAT(changed.content(), testing::HasSubstr("<UNITS>cm</UNITS>"));
}

TEST(ToolSet, SignsOfTheShellAndOfXmlAreTexts) {
  const test::temporary_file file(test::channel());
  const std::string text = R"(a=b; $(id) `id` "q" <b> & > | * ? \ ]])";
  ASSERT_EQ(run("set " + file.path() + " --all 'description=" + text + "' -o " + file.path()).code,
            0);
  EXPECT_EQ(run("list --columns name " + file.path() + " --where 'description=" + text + "'").out,
            "name\nA.C\n");
}

TEST(ToolSet, TextsAtTheLimit) {
  EXPECT_EQ(refusal(channels + " --all units=" + std::string(16, 'x')),
            "zrt4xml: " + channels +
                ": units: a text of at most 15 bytes is expected here, not one of 16, "
                "\"xxxxxxxxxxxxxxxx\"\n");
  EXPECT_EQ(run("set " + channels + " --all units=" + std::string(15, 'x')).code, 0);
  EXPECT_EQ(run("set " + channels + " --all units=").code, 0);
}

TEST(ToolSet, NumbersAtTheLimit) {
  EXPECT_THAT(refusal(channels + " --all stream=2147483648"),
              testing::HasSubstr("stream: a whole number from -2147483648 to 2147483647 is "
                                 "expected here, not 2147483648\n"));
  EXPECT_EQ(run("set " + channels + " --all stream=-2147483648").code, 0);
  EXPECT_THAT(run("set " + channels + " --all stream=0x1F").out,
              testing::HasSubstr("<STREAM>31</STREAM>"));
  EXPECT_THAT(refusal(channels + " --all stream=1.5"),
              testing::HasSubstr("stream: a whole number from -2147483648 to 2147483647 is "
                                 "expected here, not \"1.5\"\n"));
  EXPECT_THAT(refusal(channels + " --all stream=99999999999999999999"),
              testing::HasSubstr("to 2147483647 is expected here, not \"99999999999999999999\""));
  EXPECT_THAT(refusal(channels + " --all data_type=BPM_20100"),
              testing::HasSubstr("data_type: a number or a name is expected here, not "
                                 "\"BPM_20100\"; did you mean 'BPM_2010'?\n"));
}

TEST(ToolSet, KeysThatWouldStandTwice) {
  EXPECT_EQ(
      refusal(channels + " --where subsystem=RF property=X", 1),
      "zrt4xml: " + channels + ": nothing is changed: 3 channels would have the property \"X\"\n");
  EXPECT_EQ(refusal(dictionary + " --where index=1 index=2", 1),
            "zrt4xml: " + dictionary + ": nothing is changed: 2 entries would have the index 2\n");
  EXPECT_EQ(run("set " + dictionary + " --lossy --where index=1 index=7").code, 0);
}

TEST(ToolSet, AKeyIsNotTakenAway) {
  EXPECT_THAT(refusal(channels + " --where name=Q2.L1.SP property="),
              testing::HasSubstr("property: a record without it would not be read\n"));
}

TEST(ToolSet, NothingThatFits) {
  EXPECT_EQ(refusal(channels + " --where units=furlong units=m", 1),
            "zrt4xml: " + channels + ": nothing is changed: no channel fits\n");
}

TEST(ToolSet, AllRecordsOnlyWhenAsked) {
  EXPECT_EQ(refusal(channels + " units=m"),
            "zrt4xml: set: --where says which records to change, or --all\n");
}

TEST(ToolSet, FieldsThatThereAreNot) {
  EXPECT_THAT(refusal(channels + " --all unit=m"),
              testing::HasSubstr("there is no field \"unit\"; did you mean 'units'?\n"));
  EXPECT_THAT(refusal(channels + " --all bits.name=m"),
              testing::HasSubstr("\"bits.name\" is not a field of the record itself"));
  EXPECT_THAT(refusal(channels + " --all units"),
              testing::HasSubstr("\"units\" sets nothing: FIELD=VALUE is expected\n"));
  EXPECT_THAT(refusal(channels + " --all units=m units=s"),
              testing::HasSubstr("\"units=s\" sets a field that is set already\n"));
}

TEST(ToolSet, DocumentsThatAreOnlyRead) {
  EXPECT_THAT(refusal(ZRT4_SOURCE_DIR "/examples/event_lists/orbit_feedback.xml --all priority=1"),
              testing::HasSubstr("of another kind (event list) than is needed here: channel "
                                 "descriptions or a dictionary\n"));
}

TEST(ToolSet, DamagedDocumentsAreNotReplaced) {
  const test::temporary_file file("<CHANDESCRIPTIONS><CHANNEL><PROP>A/B</PROP></CHANNEL>");
  EXPECT_THAT(refusal(file.path() + " --all units=m", 1),
              testing::HasSubstr("what could be read is changed"));
}

TEST(ToolSet, EventTypeIsLeftOutWhenItIsUnknown) {
  const test::temporary_file file(
      "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>4</EVTYPE><PROP>B</PROP></CHANNEL></CHANDESCRIPTIONS>");
  EXPECT_THAT(run("set " + file.path() + " --all event_type=unknown").out,
              testing::Not(testing::HasSubstr("EVTYPE")));
  EXPECT_THAT(run("set " + file.path() + " --all units=mm").out,
              testing::HasSubstr("<EVTYPE>4</EVTYPE>"));
  EXPECT_EQ(run("set " + file.path() + " --all --dry-run event_type=UNKNOWN").out,
            "--- " + file.path() + "\n+++ set\n~ channel B\n    event_type: 4 ENV -> 0 UNKNOWN\n");
}
