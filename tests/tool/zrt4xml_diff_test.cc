// `diff`, and `merge --dry-run`, which prints the same.

#include "tool_support.hh"

using test::channel;
using test::one_event;
using test::prints_valid_json;
using test::run;
using test::run_on_terminal;
using test::run_result;

namespace {

std::string list(const std::string& channels) {
  return "<CHANDESCRIPTIONS>" + channels + "</CHANDESCRIPTIONS>";
}

std::string chan(const std::string& property, const std::string& more = "") {
  return "<CHANNEL><PROP>" + property + "</PROP>" + more + "</CHANNEL>";
}

/// What is shown of a channel that has no more than its property.
const std::string bare_channel =
    "    event_type: 0 UNKNOWN\n"
    "    data_type: 0 UNKNOWN\n"
    "    stream: 0\n"
    "    size: 1\n"
    "    set_point: 0\n"
    "    db_key: -1\n"
    "    count: 0\n";

/// "diff A B" of two documents, without the two lines of heading.
run_result compared(const std::string& a, const std::string& b) {
  const test::temporary_file before(a);
  const test::temporary_file after(b);
  run_result result = run("diff " + before.path() + " " + after.path());
  const std::string heading = "--- " + before.path() + "\n+++ " + after.path() + "\n";
  if (!result.out.empty()) {
    EXPECT_THAT(result.out, testing::StartsWith(heading));
    result.out.erase(0, heading.size());
  }
  return result;
}

}  // namespace

TEST(ToolDiff, EveryExampleIsEqualToItself) {
  for (const std::string& example : test::examples()) {
    const run_result result = run("diff " + example + " - <" + example);
    EXPECT_EQ(result.code, 0) << example;
    EXPECT_EQ(result.out, "") << example;
    EXPECT_EQ(result.err, "") << example;
  }
}

TEST(ToolDiff, OrderIsIgnored) {
  const run_result result = compared(list(chan("A") + chan("B", "<BIT>1</BIT><BIT>2</BIT>")),
                                     list(chan("B", "<BIT>2</BIT><BIT>1</BIT>") + chan("A")));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "");
}

TEST(ToolDiff, ChannelsByProperty) {
  const run_result result =
      compared(list(chan("A", "<UNITS>mm</UNITS><SIZE>1</SIZE>") + chan("B")),
               list(chan("C") + chan("A", "<UNITS>um</UNITS><SIZE>2</SIZE>")));
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out,
            "~ channel A\n"
            "    units: \"mm\" -> \"um\"\n"
            "    size: 1 -> 2\n"
            "- channel B\n" +
                bare_channel + "+ channel C\n" + bare_channel);
  EXPECT_EQ(result.err, "");
}

TEST(ToolDiff, TypesWithTheirNames) {
  const std::string before = list("<CHANNEL><PROP>A</PROP><EVTYPE>1</EVTYPE></CHANNEL>");
  const std::string after = list("<CHANNEL><PROP>A</PROP><EVTYPE>4</EVTYPE></CHANNEL>");
  EXPECT_EQ(compared(before, after).out, "~ channel A\n    event_type: 1 NORMAL -> 4 ENV\n");
}

TEST(ToolDiff, WhatIsInsideARecord) {
  const std::string before = chan("A",
                                  "<BIT>0<BIT_NAME>on</BIT_NAME></BIT><BIT>1</BIT>"
                                  "<DIM>0<STAT>3<STAT_UNITS>mm</STAT_UNITS></STAT></DIM>");
  const std::string after = chan(
      "A",
      "<BIT>0<BIT_NAME>off</BIT_NAME></BIT><DIM>0<STAT>3<STAT_UNITS>um</STAT_UNITS></STAT></DIM>"
      "<DIM>1</DIM>");
  EXPECT_EQ(compared(list(before), list(after)).out,
            "~ channel A\n"
            "    ~ bit 0\n"
            "        name: \"on\" -> \"off\"\n"
            "    - bit 1\n"
            "    ~ dimension 0\n"
            "        ~ statistic 3\n"
            "            units: \"mm\" -> \"um\"\n"
            "    + dimension 1\n");
}

TEST(ToolDiff, SeveralRecordsOfOneKey) {
  const std::string one = chan("A", "<UNITS>1</UNITS>");
  const std::string two = chan("A", "<UNITS>2</UNITS>");
  const std::string three = chan("A", "<UNITS>3</UNITS>");
  EXPECT_EQ(compared(list(one + two), list(two + one)).out, "");
  EXPECT_THAT(compared(list(one + one), list(one)).out,
              testing::StartsWith("- channel A\n    event_type: 0 UNKNOWN\n"));
  EXPECT_EQ(compared(list(one + two), list(three + two)).out,
            "~ channel A\n    units: \"1\" -> \"3\"\n");
}

TEST(ToolDiff, EventsByType) {
  const run_result result = compared(
      "<BMR><EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK></EVENT>"
      "</BMR>",
      "<BMR><EVENT><TYPE>4</TYPE></EVENT><EVENT><TYPE>1</TYPE><TMASK>3</TMASK>"
      "<SBLOCK>S<CHLIST><CHAN>B</CHAN></CHLIST></SBLOCK></EVENT></BMR>");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out,
            "~ event 1 NORMAL\n"
            "    trigger_mask: 0 -> 3\n"
            "    ~ server block S\n"
            "        - channel A\n"
            "        + channel B\n"
            "+ event 4 ENV\n"
            "    trigger_mask: 0\n"
            "    min_time_seconds: 0\n"
            "    min_time_microseconds: 0\n"
            "    priority: 0\n");
}

TEST(ToolDiff, DictionariesByIndex) {
  const auto entry = [](const std::string& index, const std::string& threshold) {
    return "<CHANNEL><INDEX>" + index + "</INDEX><PROP>P</PROP><DABS>" + threshold +
           "</DABS></CHANNEL>";
  };
  const auto document = [](const std::string& entries) {
    return "<ENVINDEXDICT>" + entries + "</ENVINDEXDICT>";
  };
  EXPECT_EQ(
      compared(document(entry("10", "0.1")), document(entry("9", "1") + entry("10", "0.25"))).out,
      "+ entry 9\n    property: \"P\"\n    absolute_threshold: 1\n    relative_threshold: 0\n"
      "~ entry 10\n    absolute_threshold: 0.1 -> 0.25\n");
  EXPECT_EQ(compared(document(entry("1", "nan")), document(entry("1", "nan"))).out, "");
}

TEST(ToolDiff, CamerasByFeatureName) {
  EXPECT_EQ(compared("<C><Integer Name='Width'/><Float Name='Gain'/></C>",
                     "<C><Float Name='Gain'><ToolTip>dB</ToolTip></Float><Int64 Name='Width'/></C>")
                .out,
            "~ feature Gain\n    tool_tip: \"\" -> \"dB\"\n"
            "~ feature Width\n    type: 1 Integer -> 8 Int64\n");
}

TEST(ToolDiff, ControlCharactersAreShownEscaped) {
  const run_result result = compared("<C><Integer Name='W'/></C>",
                                     "<C><Integer Name='W'><ToolTip>a\nb</ToolTip></Integer></C>");
  EXPECT_EQ(result.out, "~ feature W\n    tool_tip: \"\" -> \"a\\x0ab\"\n");
}

TEST(ToolDiff, RecordsThatOneSideHasAreShownWithAllTheyHold) {
  const std::string whole =
      chan("A",
           "<EVTYPE>1</EVTYPE><DTYPE>38</DTYPE><NAME>a</NAME><DESC>two\nlines</DESC><SIZE>2</SIZE>"
           "<BIT>3<BIT_NAME>on</BIT_NAME></BIT>"
           "<DIM>0<DIM_UNITS>us</DIM_UNITS><STAT>1<STAT_NAME>rms</STAT_NAME></STAT></DIM>");
  EXPECT_EQ(compared(list(""), list(whole)).out,
            "+ channel A\n"
            "    name: \"a\"\n"
            "    event_type: 1 NORMAL\n"
            "    data_type: 38 BPM_2010\n"
            "    stream: 0\n"
            "    description: \"two\\x0alines\"\n"
            "    size: 2\n"
            "    set_point: 0\n"
            "    db_key: -1\n"
            "    count: 0\n"
            "    + bit 3\n"
            "        name: \"on\"\n"
            "    + dimension 0\n"
            "        units: \"us\"\n"
            "        + statistic 1\n"
            "            name: \"rms\"\n");
  EXPECT_EQ(compared("<BMR><EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>C</CHAN></CHLIST></SBLOCK>"
                     "</EVENT></BMR>",
                     "<BMR/>")
                .out,
            "- event 1 NORMAL\n"
            "    trigger_mask: 0\n"
            "    min_time_seconds: 0\n"
            "    min_time_microseconds: 0\n"
            "    priority: 0\n"
            "    - server block S\n"
            "        - channel C\n");
}

TEST(ToolDiff, DifferentKindsAreWrongUsage) {
  const run_result result = compared(one_event, channel());
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.err,
              testing::MatchesRegex("zrt4xml: .*: of another kind .channel descriptions, element "
                                    "dialect. than .* .event list.\n"));
}

TEST(ToolDiff, NamesTheFileThatCannotBeUsed) {
  const test::temporary_file good(one_event);
  const test::temporary_file bad("<html/>");
  const run_result missing = run("diff " + good.path() + " /nonexistent");
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.err, "zrt4xml: /nonexistent: No such file or directory\n");
  const run_result unknown = run("diff " + good.path() + " " + bad.path());
  EXPECT_EQ(unknown.code, 1);
  EXPECT_THAT(unknown.err, testing::StartsWith("zrt4xml: " + bad.path() + ":1:8: unknown kind"));
}

TEST(ToolDiff, BrokenDocumentIsComparedAsFarAsItGoes) {
  const test::temporary_file good(one_event);
  const test::temporary_file broken("<BMR><EVENT><TYPE>1</TYPE></EVENT>");
  const run_result result = run("diff " + good.path() + " " + broken.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::EndsWith("zrt4xml: " + broken.path() +
                                            ": not read cleanly (1 error); what could be read is "
                                            "compared\n"));
}

TEST(ToolDiff, QuietSaysItByTheExitCode) {
  const test::temporary_file a(list(chan("A")));
  const test::temporary_file b(list(chan("B")) + "x");
  const run_result result = run("diff -q " + a.path() + " " + b.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out + result.err, "");
  const run_result missing = run("-q diff " + a.path() + " /nonexistent");
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.err, "zrt4xml: /nonexistent: No such file or directory\n");
}

TEST(ToolDiff, ColourOnlyOnATerminalThatMayHaveIt) {
  const test::temporary_file a(list(chan("A", "<BIT>1</BIT>")));
  const test::temporary_file b(list(chan("A", "<BIT>2</BIT>")));
  const std::string arguments = "diff " + a.path() + " " + b.path();
  const std::string plain = "--- " + a.path() + "\r\n+++ " + b.path() +
                            "\r\n~ channel A\r\n    - bit 1\r\n    + bit 2\r\n";
  EXPECT_EQ(run_on_terminal(arguments),
            "\033[1m--- " + a.path() + "\033[0m\r\n\033[1m+++ " + b.path() +
                "\033[0m\r\n\033[33m~ channel A\033[0m\r\n    \033[31m- bit 1\033[0m\r\n"
                "    \033[32m+ bit 2\033[0m\r\n");
  EXPECT_EQ(run_on_terminal(arguments, "NO_COLOR=1"), plain);
  EXPECT_EQ(run_on_terminal(arguments, "TERM=dumb"), plain);
  EXPECT_THAT(run(arguments).out, testing::Not(testing::HasSubstr("\033")));
}

TEST(ToolDiff, AsJson) {
  const test::temporary_file a(list(chan("A", "<SIZE>1</SIZE>") + chan("B")));
  const test::temporary_file b(list(chan("A", "<SIZE>2</SIZE><BIT>7</BIT>")));
  const std::string arguments = "diff --json " + a.path() + " " + b.path();
  const run_result result = run(arguments);
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::HasSubstr(R"("equal": false,
  "differences": [
    {
      "change": "changed",
      "type": "channel",
      "key": "A",
      "fields": [
        {
          "name": "size",
          "before": 1,
          "after": 2
        }
      ],
      "inside": [
        {
          "change": "added",
          "type": "bit",
          "key": 7,
          "record": {
            "number": 7,
            "name": "",
            "description": ""
          }
        }
      ]
    },
    {
      "change": "removed",
      "type": "channel",
      "key": "B",
)"));
  EXPECT_TRUE(prints_valid_json(arguments));
  EXPECT_TRUE(prints_valid_json("diff --json " + a.path() + " " + a.path()));
  EXPECT_THAT(run("diff --json " + a.path() + " " + a.path()).out,
              testing::HasSubstr("\"equal\": true,\n  \"differences\": [],\n"));
}

TEST(ToolDiff, WrongUsage) {
  const test::temporary_file file(one_event);
  EXPECT_EQ(run("diff").code, 2);
  EXPECT_EQ(run("diff " + file.path()).code, 2);
  EXPECT_EQ(run("diff " + file.path() + " " + file.path() + " " + file.path()).code, 2);
  EXPECT_EQ(run("diff " + file.path() + " " + file.path() + " >/dev/full").code, 0);
}

TEST(ToolDiff, FullDeviceAndClosedPipe) {
  const std::string folder = ZRT4_SOURCE_DIR "/examples/channels/";
  const std::string arguments = "diff " + folder + "channels.xml " + folder + "linac.xml";
  EXPECT_EQ(run(arguments + " >/dev/full").code, 2);
  const run_result closed = run(arguments + " | head -n 1");
  EXPECT_EQ(closed.out, "--- " + folder + "channels.xml\n");
  EXPECT_EQ(closed.err, "");
}

TEST(ToolDiff, ConvertToTheSameDialectLosesNothing) {
  for (const char* const example : {"channels/channels.xml", "channels/linac.xml",
                                    "dictionaries/linac.xml", "dictionaries/small.xml"}) {
    const std::string original = std::string(ZRT4_SOURCE_DIR "/examples/") + example;
    const test::temporary_file converted("");
    const std::string wide = original.find("dictionaries") != original.npos ? "--wide " : "";
    EXPECT_EQ(run("convert --lossy " + wide + original + " --to xml -o " + converted.path()).code,
              0);
    const run_result result = run("diff " + original + " " + converted.path());
    EXPECT_EQ(result.code, 0) << example;
    EXPECT_EQ(result.out, "") << example;
  }
}

TEST(ToolDiff, ConvertToTheOtherDialectOfWhatTheVariableDialectHoldsLosesNothing) {
  for (const char* const example : {"variables.xml", "linac_variables.xml"}) {
    const std::string original = std::string(ZRT4_SOURCE_DIR "/examples/channels/") + example;
    const test::temporary_file converted("");
    EXPECT_EQ(run("convert " + original + " --to xml -o " + converted.path()).code, 0);
    EXPECT_EQ(run("diff " + original + " " + converted.path()).out, "") << example;
  }
}

TEST(ToolDiff, ConvertWithoutWideCutsNamesAndNothingElse) {
  const std::string original = ZRT4_SOURCE_DIR "/examples/dictionaries/long_names.xml";
  const test::temporary_file converted("");
  EXPECT_EQ(run("convert --lossy " + original + " --to xml -o " + converted.path()).code, 0);
  const run_result result = run("diff " + original + " " + converted.path());
  EXPECT_EQ(result.code, 1);
  std::istringstream lines(result.out);
  int cut = 0;
  for (std::string line; std::getline(lines, line);) {
    EXPECT_THAT(line, testing::MatchesRegex("(---|[+]{3}|~ entry) .*|    property: .*"));
    if (line.rfind("    property: ", 0) == 0) ++cut;
  }
  EXPECT_GT(cut, 0);
  EXPECT_EQ(run("convert --lossy --wide " + original + " --to xml -o " + converted.path()).code, 0);
  EXPECT_EQ(run("diff " + original + " " + converted.path()).out, "");
}

// What the other dialect has no place for is not compared.
TEST(ToolDiff, ConvertToVariablesKeepsWhatThatDialectHolds) {
  const std::string original = ZRT4_SOURCE_DIR "/examples/channels/linac.xml";
  const test::temporary_file converted("");
  EXPECT_EQ(run("convert --lossy " + original + " --to variables -o " + converted.path()).code, 0);
  EXPECT_EQ(run("diff " + original + " " + converted.path()).out, "");
}

TEST(ToolMergeDryRun, PrintsWhatMergingWouldChange) {
  const test::temporary_file base(channel());
  const test::temporary_file from(list(
      "<CHANNEL><STREAM>4</STREAM><PROP>A/B/C</PROP><NAME>other</NAME><UNITS>mm</UNITS></CHANNEL>" +
      chan("D")));
  const std::string heading = "--- " + base.path() + "\n+++ merged\n";
  const run_result result = run("merge --dry-run " + base.path() + " " + from.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err,
            "zrt4xml: " + from.path() +
                ":1:52: channel 'A/B/C': name \"other\" is not taken: it is \"A.C\" already\n");
  EXPECT_EQ(result.out, heading +
                            "~ channel A/B/C\n"
                            "    stream: 0 -> 4\n"
                            "    units: \"\" -> \"mm\"\n"
                            "+ channel D\n" +
                            bare_channel);
  EXPECT_THAT(run("merge --force --dry-run - " + from.path() + " <" + base.path()).out,
              testing::HasSubstr("    name: \"A.C\" -> \"other\"\n"));
  EXPECT_EQ(base.content(), channel());
}

TEST(ToolMergeDryRun, AsJson) {
  const test::temporary_file base(channel());
  const test::temporary_file from(channel("<UNITS>mm</UNITS>"));
  const std::string arguments = "merge --json --dry-run - " + from.path() + " <" + base.path();
  const run_result result = run(arguments);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, R"({
  "format_version": 1,
  "subcommand": "merge",
  "before": "standard input",
  "after": "merged",
  "equal": false,
  "differences": [
    {
      "change": "changed",
      "type": "channel",
      "key": "A/B/C",
      "fields": [
        {
          "name": "units",
          "before": "",
          "after": "mm"
        }
      ],
      "inside": []
    }
  ],
  "not_compared": [],
  "unusable": []
}
)");
  EXPECT_TRUE(prints_valid_json(arguments));
  EXPECT_EQ(run("merge --json " + base.path() + " " + from.path()).code, 2);
}

TEST(ToolMergeDryRun, QuietPrintsNothing) {
  const test::temporary_file base(channel());
  const test::temporary_file from(channel("<UNITS>mm</UNITS>"));
  const run_result result = run("-q merge --dry-run " + base.path() + " " + from.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "");
}

TEST(ToolMergeDryRun, NothingToChangeIsNothingToPrint) {
  const test::temporary_file base(channel());
  const run_result result = run("merge --dry-run " + base.path() + " " + base.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "");
}

TEST(ToolMergeDryRun, WritesNoFile) {
  const test::temporary_file base(channel());
  const test::temporary_file old("old");
  EXPECT_EQ(run("merge --dry-run -o " + old.path() + " " + base.path() + " " + base.path()).code,
            2);
  EXPECT_EQ(run("merge --dry-run --to text " + base.path() + " " + base.path()).code, 2);
  EXPECT_EQ(old.content(), "old");
}

TEST(ToolDiff, KeysThatNobodySeesWholeStandInQuotes) {
  EXPECT_EQ(compared("<C><Integer><ToolTip>x</ToolTip></Integer><Integer Name='A'/></C>",
                     "<C><Integer Name=' A'/></C>")
                .out,
            "- feature \"\"\n    type: 1 Integer\n    tool_tip: \"x\"\n"
            "+ feature \" A\"\n    type: 1 Integer\n"
            "- feature A\n    type: 1 Integer\n");
}

TEST(ToolDiff, JsonNamesTypesAndThresholdsThatAreNoNumbers) {
  const test::temporary_file a(list(chan("A", "<EVTYPE>1</EVTYPE>")));
  const test::temporary_file b(list(chan("A", "<EVTYPE>40</EVTYPE>")));
  const std::string types = "diff --json " + a.path() + " " + b.path();
  EXPECT_THAT(run(types).out, testing::HasSubstr(R"(
          "name": "event_type",
          "before": 1,
          "before_name": "NORMAL",
          "after": 40,
          "after_name": "UNKNOWN"
)"));
  EXPECT_TRUE(prints_valid_json(types));
  const auto entry = [](const std::string& threshold) {
    return "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DABS>" + threshold +
           "</DABS></CHANNEL></ENVINDEXDICT>";
  };
  const test::temporary_file c(entry("nan"));
  const test::temporary_file d(entry("0.5"));
  const std::string thresholds = "diff --json " + c.path() + " " + d.path();
  EXPECT_THAT(run(thresholds).out, testing::HasSubstr(R"(
          "name": "absolute_threshold",
          "before": null,
          "before_name": "nan",
          "after": 0.5
)"));
  EXPECT_TRUE(prints_valid_json(thresholds));
}
