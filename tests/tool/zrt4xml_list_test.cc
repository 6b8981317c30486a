// `zrt4xml list`: the records that fit, as a table, as lines of values and as JSON.

#include "tool_support.hh"

using test::run;
using test::run_result;

namespace {

const std::string channels = ZRT4_SOURCE_DIR "/examples/channels/channels.xml";
const std::string events = ZRT4_SOURCE_DIR "/examples/event_lists/orbit_feedback.xml";
const std::string dictionary = ZRT4_SOURCE_DIR "/examples/dictionaries/small.xml";

/// The names of the channels that fit.
std::string fitting(const std::string& conditions) {
  std::string names = run("list " + channels + " --columns name " + conditions).out;
  return names.substr(names.find('\n') + 1);
}

/// What is said when it is of no use.
std::string refusal(const std::string& arguments) {
  const run_result result = run("list " + arguments);
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  return result.err;
}

}  // namespace

TEST(ToolList, TabsStandBetweenTheValues) {
  EXPECT_EQ(run("list " + dictionary).out,
            "index\tproperty\tabsolute_threshold\trelative_threshold\n"
            "0\tGUN.COOLING/BODY/L0/TEMP.RETURN\t0.05\t0\n"
            "1\tGUN.VACUUM/ION.PUMP/L0.01/PRESSURE\t0\t0.1\n"
            "2\tGUN.MAGNETS/SOLENOID/L0/CURRENT.RBV\t0.01\t5e-04\n");
}

TEST(ToolList, FieldsThatAreEqual) {
  EXPECT_EQ(fitting("--where units=deg"), "RF.A1.SP.PHASE\n");
  EXPECT_EQ(fitting("--where units=DEG"), "");
  EXPECT_EQ(fitting("--where units="), "RF.A1.STATUS\n");
  EXPECT_EQ(fitting("--where db_key=4114"), "Q2.L1.SP\n");
}

TEST(ToolList, TypesByNameInAnyCaseAndByNumber) {
  const std::string slow = "RF.A1.SP.AMPL\nRF.A1.SP.PHASE\nQ2.L1.SP\n";
  EXPECT_EQ(fitting("--where event_type=ENV"), slow);
  EXPECT_EQ(fitting("--where event_type=env"), slow);
  EXPECT_EQ(fitting("--where event_type=4"), slow);
  EXPECT_EQ(fitting("--where event_type:4"), slow);
  EXPECT_EQ(fitting("--where 'event_type~^EN'"), slow);
}

TEST(ToolList, Patterns) {
  EXPECT_EQ(fitting("--where 'name~^BPM.*[XY]$'"), "BPM.3.L1.X\nBPM.3.L1.Y\n");
  EXPECT_EQ(fitting("--where 'description~position|charge'"),
            "BPM.3.L1.X\nBPM.3.L1.Y\nTOROID.1.L1\n");
}

TEST(ToolList, NumbersAndRanges) {
  EXPECT_EQ(fitting("--where size:2048"), "BPM.3.L1.X\nBPM.3.L1.Y\nTOROID.1.L1\n");
  EXPECT_EQ(fitting("--where size:0x800"), "BPM.3.L1.X\nBPM.3.L1.Y\nTOROID.1.L1\n");
  EXPECT_EQ(fitting("--where size:2049.."), "OTR1.L1.IMAGE\n");
  EXPECT_EQ(fitting("--where db_key:..4103"), "BPM.3.L1.X\n");
  EXPECT_EQ(fitting("--where db_key:4112..4113"), "RF.A1.SP.PHASE\nRF.A1.STATUS\n");
  EXPECT_EQ(run("list " + dictionary + " --columns index --where absolute_threshold:0.05").out,
            "index\n0\n");
}

TEST(ToolList, ThresholdsThatAreNoNumbers) {
  const test::temporary_file file(
      "<ENVINDEXDICT>"
      "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DABS>nan</DABS></CHANNEL>"
      "<CHANNEL><INDEX>2</INDEX><PROP>B</PROP><DABS>inf</DABS></CHANNEL>"
      "<CHANNEL><INDEX>3</INDEX><PROP>C</PROP><DABS>1</DABS></CHANNEL></ENVINDEXDICT>");
  const std::string list = "list " + file.path() + " --columns index --where absolute_threshold";
  EXPECT_EQ(run(list + "=nan").out, "index\n1\n");
  EXPECT_EQ(run(list + ":nan").out, "index\n1\n");
  EXPECT_EQ(run(list + ":0..").out, "index\n2\n3\n");
}

TEST(ToolList, AllConditionsCount) {
  EXPECT_EQ(fitting("--where subsystem=RF --where event_type=NORMAL"), "RF.A1.STATUS\n");
}

TEST(ToolList, RecordsInsideARecord) {
  EXPECT_EQ(fitting("--where bits.name=QUENCH"), "RF.A1.STATUS\n");
  EXPECT_EQ(fitting("--where bits:1.."), "RF.A1.STATUS\n");
  EXPECT_EQ(fitting("--where dimensions:2"), "OTR1.L1.IMAGE\n");
  EXPECT_EQ(fitting("--where dimensions.statistics.name=rms --where units=mm"),
            "BPM.3.L1.X\nBPM.3.L1.Y\n");
  EXPECT_EQ(
      run("list " + events + " --columns event_type --where server_blocks.channels~CHARGE").out,
      "event_type\nNORMAL\n");
}

TEST(ToolList, ColumnsOfRecordsInsideARecord) {
  EXPECT_EQ(run("list " + channels +
                " --where bits:1.. --columns name,bits,bits.number --columns units,bits.name")
                .out,
            "name\tbits\tbits.number\tunits\tbits.name\nRF.A1.STATUS\t6\t0, 1, 2, 3, 4, 5\t\t"
            "RF_ON, FEEDBACK, FEEDFORWARD, QUENCH, VACUUM, MODULATOR\n");
}

TEST(ToolList, SeveralFilesHaveAColumnOfTheirNames) {
  const std::string variables = ZRT4_SOURCE_DIR "/examples/channels/variables.xml";
  EXPECT_EQ(run("list " + channels + " " + variables + " --columns name --where name~PHASE").out,
            "file\tname\n" + channels + "\tRF.A1.SP.PHASE\n" + variables + "\tRF.A1.SP.PHASE\n");
}

TEST(ToolList, SeveralKindsAreNoTable) {
  EXPECT_THAT(run("list " + channels + " " + dictionary).err,
              testing::HasSubstr(dictionary + ": of another kind (environment index dictionary) "
                                              "than the files before"));
  EXPECT_TRUE(test::prints_valid_json("list --json " + channels + " " + dictionary));
}

TEST(ToolList, JsonIsADocumentOfThoseThatFit) {
  const test::temporary_file selected("");
  ASSERT_EQ(run("list --json --where subsystem=RF " + channels + " | " + test::tool() +
                "convert - --to xml -o " + selected.path())
                .code,
            0);
  EXPECT_EQ(run("list --columns name " + selected.path()).out,
            "name\nRF.A1.SP.AMPL\nRF.A1.SP.PHASE\nRF.A1.STATUS\n");
}

TEST(ToolList, CommaSeparatedValuesAreQuotedWhereTheyMustBe) {
  const test::temporary_file file(test::channel("<UNITS>a,b</UNITS><DESC>say \"x\"\nand y</DESC>"));
  EXPECT_EQ(run("list --csv --columns name,units,description,event_type " + file.path()).out,
            "name,units,description,event_type\r\nA.C,\"a,b\",\"say \"\"x\"\"\nand y\",NORMAL\r\n");
}

TEST(ToolList, ControlCharactersStayOffTheTable) {
  const test::temporary_file file(test::channel("<DESC>a\tb&#27;</DESC>"));
  EXPECT_THAT(run("list --columns description " + file.path()).out,
              testing::StartsWith("description\n"));
  EXPECT_THAT(run("list --columns description " + file.path()).out,
              testing::Not(testing::HasSubstr("\t")));
}

TEST(ToolList, FitsTheTerminal) {
  const std::string columns = " --columns name,description,units --where units=counts";
  EXPECT_EQ(test::run_on_terminal("list " + channels + columns,
                                  "NO_COLOR=1; export NO_COLOR; stty cols 40;"),
            "name           description        units\r\n"
            "OTR1.L1.IMAGE  image of the tra…  counts\r\n");
}

TEST(ToolList, WideCharactersTakeTwoColumns) {
  const test::temporary_file file("<?xml version='1.0' encoding='UTF-8'?>" +
                                  test::channel("<DESC>日本語の説明文</DESC><UNITS>mm</UNITS>"));
  EXPECT_EQ(test::run_on_terminal("list --columns description,units " + file.path(),
                                  "NO_COLOR=1; export NO_COLOR; stty cols 17;"),
            "descripti…  units\r\n日本語の…   mm\r\n");
}

// As many as have room to be read; they are told where all are meant, not where some are chosen.
TEST(ToolList, ColumnsThatHaveNoRoom) {
  EXPECT_THAT(
      test::run_on_terminal("list " + dictionary, "NO_COLOR=1; export NO_COLOR; stty cols 30;"),
      testing::AllOf(testing::StartsWith("index  property\r\n"),
                     testing::HasSubstr("no room for --columns absolute_threshold,")));
}

TEST(ToolList, FieldsThatThereAreNot) {
  EXPECT_EQ(refusal(channels + " --where unit=mm"),
            "zrt4xml: " + channels + ": there is no field \"unit\"; did you mean 'units'?\n");
  EXPECT_THAT(refusal(dictionary + " --columns location"),
              testing::HasSubstr("there is no field \"location\"; there are index, property, "));
}

// A field that the files lack is told of each; nothing of a table is printed.
TEST(ToolList, SeveralFilesWithoutTheField) {
  const std::string variables = ZRT4_SOURCE_DIR "/examples/channels/variables.xml";
  EXPECT_EQ(refusal(channels + " " + variables + " --where unit=mm"),
            "zrt4xml: " + channels + ": there is no field \"unit\"; did you mean 'units'?\n" +
                "zrt4xml: " + variables + ": there is no field \"unit\"; did you mean 'units'?\n");
  EXPECT_THAT(refusal(channels + " " + variables + " --columns name,unit"),
              testing::HasSubstr(variables + ": there is no field \"unit\""));
}

TEST(ToolList, FilesThatHaveTheFieldAreListedAllTheSame) {
  const run_result result = run("list " + channels + " " + dictionary + " --where index=1");
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.err, testing::StartsWith("zrt4xml: " + channels + ": there is no field"));
  EXPECT_THAT(result.out, testing::HasSubstr(dictionary + "\t1\tGUN.VACUUM"));
}

TEST(ToolList, BlanksBehindTheCommasOfColumns) {
  EXPECT_EQ(run("list " + channels + " --columns 'name, units' --where size:2048..2049").out,
            run("list " + channels + " --columns name,units --where size:2048..2049").out);
}

TEST(ToolList, ConditionsThatAreNone) {
  EXPECT_THAT(refusal(channels + " --where units"),
              "zrt4xml: --where: \"units\" is no condition: FIELD=TEXT, FIELD~REGEX or "
              "FIELD:NUMBER is expected\n");
  EXPECT_THAT(refusal(channels + " --where units:3"),
              testing::HasSubstr("\"units\" is a text: look for it with = or ~\n"));
  EXPECT_THAT(refusal(channels + " --where stream:x"),
              testing::HasSubstr("a number or a range such as 2..5, 2.. or ..5 is expected"));
  EXPECT_THAT(refusal(channels + " --where stream:.."),
              testing::HasSubstr("a number or a range such as 2..5, 2.. or ..5 is expected"));
  EXPECT_THAT(refusal(channels + " --where event_type=NORMALLY"),
              testing::HasSubstr("\"event_type\" is a number, and \"NORMALLY\" is neither one nor "
                                 "the name of one; did you mean 'NORMAL'?\n"));
  EXPECT_EQ(refusal(channels + " --where stream:5..2"),
            "zrt4xml: --where: \"stream:5..2\": no number is in this range\n");
  EXPECT_THAT(refusal(channels + " --where 'stream: 5'"),
              testing::HasSubstr("a number or a range such as 2..5, 2.. or ..5 is expected"));
  EXPECT_THAT(refusal(channels + " --where stream:nan"),
              testing::HasSubstr("\"stream\" is always a number\n"));
  EXPECT_THAT(refusal(channels + " --where stream:nan..5"),
              testing::HasSubstr("no number is in this range\n"));
}

TEST(ToolList, PatternsThatWouldTakeTheMachineAreRefused) {
  EXPECT_THAT(refusal(channels + " --where 'name~((('"), testing::HasSubstr("is none: Unmatched"));
  EXPECT_THAT(refusal(channels + " --where 'name~(a*)\\1'"), testing::HasSubstr("back reference"));
  EXPECT_THAT(refusal(channels + " --where 'name~((a{1,200}){1,200}){1,200}'"),
              testing::HasSubstr("repeats something more than 1000 times"));
  EXPECT_THAT(refusal(channels + " --where 'name~" + std::string(2000, '(') + "'"),
              testing::HasSubstr("the pattern has more than 1000 bytes"));
}

TEST(ToolList, DamagedDocumentsAreListedAsFarAsTheyAreRead) {
  const test::temporary_file file("<CHANDESCRIPTIONS><CHANNEL><PROP>A/B</PROP></CHANNEL><CHANNEL>");
  const run_result result = run("list --columns property " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "property\nA/B\n");
  EXPECT_THAT(result.err, testing::HasSubstr("what could be read is listed"));
}

TEST(ToolList, ChannelsWithoutEventType) {
  const test::temporary_file file(
      "<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP></CHANNEL>"
      "<CHANNEL><EVTYPE>0</EVTYPE><PROP>B</PROP></CHANNEL>"
      "<CHANNEL><EVTYPE>40</EVTYPE><PROP>C</PROP></CHANNEL></CHANDESCRIPTIONS>");
  const auto fit = [&](const std::string& condition) {
    return run("list --columns property,event_type --where " + condition + " " + file.path()).out;
  };
  const std::string heading = "property\tevent_type\n";
  EXPECT_EQ(fit("event_type=UNKNOWN"), heading + "A\tUNKNOWN\n");
  EXPECT_EQ(fit("event_type~UNK"), heading + "A\tUNKNOWN\n");
  EXPECT_EQ(fit("event_type~0"), heading + "B\tHB\nC\t40\n");
  EXPECT_EQ(fit("event_type=0"), heading + "B\tHB\n");
  EXPECT_EQ(fit("event_type:..5"), heading + "B\tHB\n");
}
