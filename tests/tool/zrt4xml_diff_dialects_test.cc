// `diff` of the two dialects of channel descriptions, and of files that cannot be used.

#include "tool_support.hh"

using test::one_event;
using test::prints_valid_json;
using test::run;
using test::run_result;

namespace {

const std::string not_compared =
    ": not compared, since this dialect does not have them: data_type, stream, server_block, "
    "db_key, count, bits.description, dimensions.statistics\n";

const std::string element =
    "<CHANDESCRIPTIONS><CHANNEL><STREAM>4</STREAM><EVTYPE>1</EVTYPE><DTYPE>38</DTYPE>"
    "<DB_KEY>7</DB_KEY><COUNT>3</COUNT><SB_NAME>S</SB_NAME><PROP>A/B/C</PROP><NAME>A.C</NAME>"
    "<DESC>text</DESC><UNITS>mm</UNITS><SIZE>8</SIZE>"
    "<DIM>0<DIM_NAME>d</DIM_NAME><STAT>1</STAT></DIM></CHANNEL>"
    "<CHANNEL><EVTYPE>4</EVTYPE><PROP>B</PROP><BIT>3<BIT_NAME>on</BIT_NAME>"
    "<BIT_DESCR>power</BIT_DESCR></BIT></CHANNEL></CHANDESCRIPTIONS>";

const std::string variable =
    "<DAQvariables><DaqFloatMatrix><evType>1</evType><vindo>A/B/C</vindo><daqName>A.C</daqName>"
    "<description>text</description><units>mm</units><lastIndex>7</lastIndex>"
    "<dimension id='0'> <name>d</name></dimension></DaqFloatMatrix>"
    "<DaqBits><evType>4</evType><vindo>B</vindo><bitTitle bit='3'>on</bitTitle></DaqBits>"
    "</DAQvariables>";

std::string replaced(std::string text, const std::string& old, const std::string& by) {
  return text.replace(text.find(old), old.size(), by);
}

}  // namespace

TEST(ToolDiffDialects, WhatOneDialectDoesNotHaveIsNoDifferenceButTold) {
  const test::temporary_file a(element);
  const test::temporary_file b(variable);
  const run_result result = run("diff " + a.path() + " " + b.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "zrt4xml: " + b.path() + not_compared);
  const run_result other_way = run("diff " + b.path() + " " + a.path());
  EXPECT_EQ(other_way.code, 0);
  EXPECT_EQ(other_way.out, "");
  EXPECT_EQ(other_way.err, "zrt4xml: " + b.path() + not_compared);
}

TEST(ToolDiffDialects, ExamplesOfBothAreTheSame) {
  const std::string examples = ZRT4_SOURCE_DIR "/examples/channels/";
  for (const auto& [a, b] : {std::pair("channels.xml", "variables.xml"),
                             std::pair("linac_variables.xml", "linac.xml")}) {
    EXPECT_EQ(run("diff " + examples + a + " " + examples + b).out, "") << a;
  }
}

TEST(ToolDiffDialects, WhatBothHaveIsCompared) {
  const test::temporary_file a(element);
  const test::temporary_file b(
      replaced(replaced(replaced(variable, "<lastIndex>7", "<lastIndex>6"), "<name>d", "<name>e"),
               ">on<", ">off<"));
  const run_result result = run("diff " + a.path() + " " + b.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::EndsWith("~ channel A/B/C\n"
                                            "    size: 8 -> 7\n"
                                            "    ~ dimension 0\n"
                                            "        name: \"d\" -> \"e\"\n"
                                            "~ channel B\n"
                                            "    ~ bit 3\n"
                                            "        name: \"on\" -> \"off\"\n"));
}

TEST(ToolDiffDialects, BitsThatAreOnlyInOneAreReported) {
  const test::temporary_file a(element);
  const test::temporary_file b(replaced(variable, "<bitTitle bit='3'>on</bitTitle>",
                                        "<bitTitle bit='3'/><bitTitle bit='4'>x</bitTitle>"));
  EXPECT_THAT(run("diff " + a.path() + " " + b.path()).out,
              testing::EndsWith("~ channel B\n"
                                "    ~ bit 3\n"
                                "        name: \"on\" -> \"\"\n"
                                "    + bit 4\n"
                                "        name: \"x\"\n"));
}

TEST(ToolDiffDialects, JsonNamesWhatWasNotCompared) {
  const test::temporary_file a(element);
  const test::temporary_file b(variable);
  const std::string arguments = "diff --json " + a.path() + " " + b.path();
  EXPECT_EQ(run(arguments).out,
            "{\n  \"format_version\": 1,\n  \"subcommand\": \"diff\",\n  \"before\": \"" +
                a.path() + "\",\n  \"after\": \"" + b.path() + R"(",
  "equal": true,
  "differences": [],
  "not_compared": [
    "data_type",
    "stream",
    "server_block",
    "db_key",
    "count",
    "bits.description",
    "dimensions.statistics"
  ],
  "unusable": []
}
)");
  EXPECT_TRUE(prints_valid_json(arguments));
}

TEST(ToolDiffUnusable, IsInTheAnswerForPrograms) {
  const test::temporary_file good(one_event);
  const test::temporary_file bad("<html/>");
  const std::string arguments = "diff --json /nonexistent " + bad.path();
  const run_result result = run(arguments);
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.out, testing::StartsWith(R"({
  "format_version": 1,
  "subcommand": "diff",
  "before": "/nonexistent",
  "after": ")" + bad.path() + R"(",
  "equal": null,
  "differences": [],
  "not_compared": [],
  "unusable": [
    {
      "file": "/nonexistent",
      "kind": null,
      "unusable": "No such file or directory"
    },
    {
      "file": ")" + bad.path() + R"(",
      "kind": null,
      "unusable": "unknown kind of document)"));
  EXPECT_TRUE(prints_valid_json(arguments));
  EXPECT_EQ(run("diff --json " + good.path() + " " + bad.path()).code, 1);
}

TEST(ToolDiffUnusable, BothFilesAreTold) {
  const run_result result = run("diff /nonexistent /nonexistent/too");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "zrt4xml: /nonexistent: No such file or directory\n"
            "zrt4xml: /nonexistent/too: No such file or directory\n");
}

TEST(ToolDiffUnusable, AnotherKindIsInTheAnswerToo) {
  const test::temporary_file a(one_event);
  const test::temporary_file b(element);
  const std::string arguments = "diff --json " + a.path() + " " + b.path();
  const run_result result = run(arguments);
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.out, testing::HasSubstr("\"file\": \"" + b.path() +
                                             "\",\n      \"kind\": null,\n      \"unusable\": \"of "
                                             "another kind (channel descriptions, element dialect) "
                                             "than " +
                                             a.path() + " (event list)\"\n"));
  EXPECT_TRUE(prints_valid_json(arguments));
}
