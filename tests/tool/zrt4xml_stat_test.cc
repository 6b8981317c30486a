// `stat`.

#include "tool_support.hh"

using test::one_event;
using test::prints_valid_json;
using test::run;
using test::run_on_terminal;
using test::run_result;

namespace {

const std::string three_channels =
    "<CHANDESCRIPTIONS>"
    "<CHANNEL><EVTYPE>1</EVTYPE><DTYPE>41</DTYPE><SUBSYSTEM>RF</SUBSYSTEM><PROP>A</PROP></CHANNEL>"
    "<CHANNEL><EVTYPE>1</EVTYPE><DTYPE>41</DTYPE><STREAM>4</STREAM><PROP>B</PROP></CHANNEL>"
    "<CHANNEL><EVTYPE>20</EVTYPE><SUBSYSTEM>RF</SUBSYSTEM><PROP>C</PROP></CHANNEL>"
    "</CHANDESCRIPTIONS>";

}  // namespace

TEST(ToolStat, CountsChannels) {
  const test::temporary_file file(three_channels);
  const run_result result = run("stat " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, file.path() +
                            ": channel descriptions, element dialect, 3 channels\n"
                            "event type\n"
                            "  1 NORMAL        2\n"
                            "  20 LLRF_ML      1\n"
                            "data type\n"
                            "  0 UNKNOWN          1\n"
                            "  41 1CHAN_2010      2\n"
                            "subsystem\n"
                            "  (none)      1\n"
                            "  RF          2\n"
                            "stream\n"
                            "  0      2\n"
                            "  4      1\n");
}

TEST(ToolStat, CountsWhatTheOtherKindsHave) {
  EXPECT_EQ(run("stat - <" ZRT4_SOURCE_DIR "/examples/event_lists/orbit_feedback.xml").out,
            "standard input: event list, 2 events\n"
            "event type\n"
            "  1 NORMAL      1\n"
            "  4 ENV         1\n");
  EXPECT_EQ(run("stat - <" ZRT4_SOURCE_DIR "/examples/dictionaries/small.xml").out,
            "standard input: environment index dictionary, 3 entries\n"
            "index\n"
            "  lowest         0\n"
            "  highest        2\n"
            "  missing        none\n"
            "  several times  none\n"
            "absolute threshold\n"
            "  0         1\n"
            "  0.01      1\n"
            "  0.05      1\n"
            "relative threshold\n"
            "  0          1\n"
            "  5e-04      1\n"
            "  0.1        1\n");
  EXPECT_EQ(run("stat - <" ZRT4_SOURCE_DIR "/examples/cameras/minimal.xml").out,
            "standard input: camera features, 4 features\n"
            "type\n"
            "  1 Integer          1\n"
            "  2 Float            1\n"
            "  3 Enumeration      1\n"
            "  6 Command          1\n"
            "without\n"
            "  name              0\n"
            "  control name      2\n"
            "  tool tip          2\n"
            "  description       3\n");
}

TEST(ToolStat, IndicesOfADictionary) {
  std::string entries;
  for (const char* const index : {"9", "-1", "2", "3", "3", "7", "3", "-1"}) {
    entries += "<CHANNEL><INDEX>" + std::string(index) + "</INDEX><PROP>P</PROP></CHANNEL>";
  }
  const test::temporary_file file("<ENVINDEXDICT>" + entries + "</ENVINDEXDICT>");
  EXPECT_THAT(run("stat " + file.path()).out,
              testing::HasSubstr("index\n"
                                 "  lowest         -1\n"
                                 "  highest        9\n"
                                 "  missing        0 to 1, 4 to 6, 8\n"
                                 "  several times  -1 (2 times), 3 (3 times)\n"));
  EXPECT_THAT(run("stat --json " + file.path()).out, testing::HasSubstr(R"("index": {
        "lowest": -1,
        "highest": 9,
        "missing": 6,
        "gaps": [
          {
            "from": 0,
            "to": 1
          },
          {
            "from": 4,
            "to": 6
          },
          {
            "from": 8,
            "to": 8
          }
        ],
        "repeated": [
          {
            "value": -1,
            "count": 2
          },
          {
            "value": 3,
            "count": 3
          }
        ]
      })"));
  EXPECT_TRUE(prints_valid_json("stat --json " + file.path()));
}

TEST(ToolStat, ManyGapsAreCutShortForAPerson) {
  std::string entries;
  for (int index = 0; index <= 18; index += 2) {
    entries += "<CHANNEL><INDEX>" + std::to_string(index) + "</INDEX><PROP>P</PROP></CHANNEL>";
  }
  const test::temporary_file file("<ENVINDEXDICT>" + entries + "</ENVINDEXDICT>");
  EXPECT_THAT(run("stat " + file.path()).out,
              testing::HasSubstr("  missing        1, 3, 5, 7, 9, 11, 13, 15, ...\n"));
}

TEST(ToolStat, IndicesAtTheEndsOf32Bits) {
  const test::temporary_file file(
      "<ENVINDEXDICT><CHANNEL><INDEX>-2147483648</INDEX><PROP>A</PROP></CHANNEL>"
      "<CHANNEL><INDEX>2147483647</INDEX><PROP>B</PROP></CHANNEL></ENVINDEXDICT>");
  EXPECT_THAT(run("stat " + file.path()).out,
              testing::HasSubstr("  missing        -2147483647 to 2147483646\n"));
  EXPECT_THAT(run("stat --json " + file.path()).out,
              testing::HasSubstr("\"missing\": 4294967294,"));
}

TEST(ToolStat, NoEntriesNoIndices) {
  const test::temporary_file file("<ENVINDEXDICT/>");
  EXPECT_EQ(run("stat " + file.path()).out,
            file.path() + ": environment index dictionary, 0 entries\n");
  EXPECT_THAT(run("stat --json " + file.path()).out, testing::HasSubstr("\"index\": null"));
  EXPECT_TRUE(prints_valid_json("stat --json " + file.path()));
}

TEST(ToolStat, BarsOnATerminal) {
  const test::temporary_file file(three_channels);
  const std::string shown = run_on_terminal("stat " + file.path(), "NO_COLOR=1");
  EXPECT_THAT(shown, testing::HasSubstr("  1 NORMAL        2  " + std::string(40, '#') + "\r\n"));
  EXPECT_THAT(shown, testing::HasSubstr("  20 LLRF_ML      1  " + std::string(20, '#') + "\r\n"));
  EXPECT_THAT(run_on_terminal("stat " + file.path()),
              testing::HasSubstr("\033[32m" + std::string(40, '#') + "\033[0m\r\n"));
}

TEST(ToolStat, AsJson) {
  const test::temporary_file file(three_channels);
  const run_result result = run("stat --json " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::HasSubstr(R"("record_count": 3,
      "counts": {
        "event_type": [
          {
            "value": 1,
            "name": "NORMAL",
            "count": 2
          },)"));
}

TEST(ToolStat, BrokenDocumentIsCountedAsFarAsItGoes) {
  const test::temporary_file file("<BMR><EVENT><TYPE>1</TYPE></EVENT>");
  const run_result result = run("stat " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::EndsWith("  1 NORMAL      1\n"));
  EXPECT_THAT(result.err,
              testing::EndsWith(": not read cleanly (1 error); what could be read is counted\n"));
  EXPECT_EQ(run("stat -q " + file.path()).err, "");
}

TEST(ToolStat, FullDeviceClosedPipeAndWrongUsage) {
  const test::temporary_file file(one_event);
  EXPECT_EQ(run("stat " + file.path() + " >/dev/full").code, 2);
  const run_result closed = run("stat " + file.path() + " " + file.path() + " | head -n 1");
  EXPECT_EQ(closed.out, file.path() + ": event list, 1 event\n");
  EXPECT_EQ(closed.err, "");
  EXPECT_EQ(run("stat").code, 2);
  EXPECT_EQ(run("stat /nonexistent").code, 2);
}

TEST(ToolStat, ThresholdsThatAreNoNumbersHaveTheirNamesInJson) {
  const test::temporary_file file(
      "<ENVINDEXDICT>"
      "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DABS>nan</DABS></CHANNEL>"
      "<CHANNEL><INDEX>2</INDEX><PROP>B</PROP><DABS>-inf</DABS></CHANNEL>"
      "</ENVINDEXDICT>");
  const std::string answer = run("stat --json " + file.path()).out;
  EXPECT_THAT(answer, testing::HasSubstr("            \"value\": null,\n"
                                         "            \"name\": \"-inf\",\n"
                                         "            \"count\": 1\n"));
  EXPECT_THAT(answer, testing::HasSubstr("            \"value\": null,\n"
                                         "            \"name\": \"nan\",\n"
                                         "            \"count\": 1\n"));
  EXPECT_TRUE(prints_valid_json("stat --json " + file.path()));
}
