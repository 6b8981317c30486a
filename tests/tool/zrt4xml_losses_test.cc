// What convert and merge tell of what does not arrive, and what they then do with their output.

#include "tool_support.hh"

using test::channel;
using test::run;
using test::run_result;

namespace {

/// "convert FILE ARGUMENTS" of a document; FILE stands for its name in what was told.
run_result converted(const std::string& document, const std::string& arguments) {
  const test::temporary_file file(document);
  // The readers keep records that no list holds.
  run_result result =
      run("convert " + file.path() + " " + arguments, "ASAN_OPTIONS=detect_leaks=0 ");
  for (std::size_t at = 0; (at = result.err.find(file.path())) != result.err.npos;) {
    result.err.replace(at, file.path().size(), "FILE");
  }
  return result;
}

std::string list(const std::string& channels) {
  return "<CHANDESCRIPTIONS>" + channels + "</CHANDESCRIPTIONS>";
}

// The first has no event type, the second that of number 0; clients find only the second.
const std::string untold_and_0 =
    list("<CHANNEL><PROP>A</PROP></CHANNEL><CHANNEL><EVTYPE>0</EVTYPE><PROP>B</PROP></CHANNEL>");

struct lossy {
  const char* document;
  const char* form;
  const char* told;
};

const lossy losses[] = {
    {"<CHANDESCRIPTIONS>\n<CHANNEL><NAME>A</NAME></CHANNEL></CHANDESCRIPTIONS>", "xml",
     "zrt4xml: FILE:2:10: CHANNEL without PROP is left out\n"},
    {"<CHANDESCRIPTIONS><!-- c --><CHANNEL><PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>", "xml",
     "zrt4xml: FILE:1:29: a comment does not arrive\n"},
    {"<CHANDESCRIPTIONS><?pi x?><CHANNEL><PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>", "xml",
     "zrt4xml: FILE:1:27: a processing instruction does not arrive\n"},
    {"<!DOCTYPE CHANDESCRIPTIONS>\n<CHANDESCRIPTIONS/>", "xml",
     "a document type declaration does not arrive\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><FOO>b</FOO></CHANNEL></CHANDESCRIPTIONS>", "xml",
     "'FOO'"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><UNITS>12345678901234567</UNITS></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "xml", "zrt4xml: FILE:1:49: UNITS has 17 bytes; the record keeps 15"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><DTYPE>38</DTYPE></CHANNEL></CHANDESCRIPTIONS>",
     "variables",
     "zrt4xml: FILE:1:34: channel 'A': data_type 38 BPM_2010 does not arrive: the variable dialect "
     "has no place for it\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><DB_KEY>7</DB_KEY></CHANNEL></CHANDESCRIPTIONS>",
     "variables", "channel 'A': db_key 7 does not arrive: the variable dialect has no place"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><BIT>3<BIT_DESCR>d</BIT_DESCR></BIT></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "variables",
     "channel 'A', bit 3: description \"d\" does not arrive: the variable dialect has"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><DIM>0<STAT>2</STAT></DIM></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "variables",
     "channel 'A', dimension 0, statistic 2 does not arrive: the variable dialect has no place for "
     "it\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><BIT>3</BIT><DIM>0</DIM></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "variables",
     "channel 'A', bit 3 does not arrive: in the variable dialect a channel has no bits beside "
     "dimensions\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP></CHANNEL>\n<CHANNEL><PROP>A</PROP></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "variables",
     "zrt4xml: FILE:2:16: channel 'A' does not arrive: it has the property of another one before "
     "it, which this form holds once\n"},
    {"<DAQvariables><DaqFloat><vindo>A</vindo><DBKey>7</DBKey></DaqFloat></DAQvariables>", "xml",
     "zrt4xml: FILE:1:48: readers skip DBKey: '7' does not arrive\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><DESC>a&#13;</DESC></CHANNEL></CHANDESCRIPTIONS>",
     "xml", "FILE:1:"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><NAME>n</NAME><DESC>a\tb</DESC></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "text",
     "zrt4xml: FILE:1:34: channel 'A': description \"a\\x09b\" arrives as \"a b\": a record is one "
     "line of a table\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><NAME>n</NAME><DTYPE>9</DTYPE></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "text", "channel 'A': data_type 9 SINGLE does not arrive: this table has no column for it\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><NAME>n</NAME><DTYPE>38</DTYPE></CHANNEL>"
     "</CHANDESCRIPTIONS>",
     "short", "channel 'A': data_type 38 BPM_2010 arrives as 6 BPM\n"},
    {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>", "text",
     "channel 'A': name \"\" arrives as \"!!!UNDEFINED!!!\": a table has no empty name\n"},
    {"<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DABS>0.0000001</DABS></CHANNEL>"
     "</ENVINDEXDICT>",
     "text", "entry 1: absolute_threshold 1e-07 arrives as 0\n"},
};

}  // namespace

TEST(ToolLosses, EachIsToldAndNothingIsReplaced) {
  for (const lossy& each : losses) {
    SCOPED_TRACE(each.document);
    const test::temporary_file old("old");
    const std::string to = std::string("--to ") + each.form + " -o " + old.path();
    const run_result refused = converted(each.document, to);
    EXPECT_EQ(refused.code, 1);
    EXPECT_THAT(refused.err, testing::HasSubstr(each.told));
    EXPECT_THAT(refused.err,
                testing::EndsWith("zrt4xml: " + old.path() +
                                  ": not written, because something would be lost; --lossy writes "
                                  "it all the same\n"));
    EXPECT_EQ(old.content(), "old");
    const run_result meant = converted(each.document, to + " --lossy");
    EXPECT_EQ(meant.code, 0);
    EXPECT_THAT(meant.err, testing::HasSubstr(each.told));
    EXPECT_NE(old.content(), "old");
    EXPECT_EQ(converted(each.document, "-q --to " + std::string(each.form)).err, "");
  }
}

TEST(ToolLosses, DamageIsNoLossThatCouldBeMeant) {
  const test::temporary_file old("old");
  EXPECT_EQ(converted("<CHANDESCRIPTIONS>", "--to xml --lossy -o " + old.path()).code, 1);
  EXPECT_EQ(old.content(), "old");
}

TEST(ToolLosses, TextsThatXmlMarksUpArrive) {
  for (const char* const text : {"a &amp; b &lt; c", "&lt;", "&amp;", "x &gt; y", "]]",
                                 "\xce\xa9 5 k\xce\xa9", "caf\xc3\xa9 &amp; \xf0\x9d\x84\x9e"}) {
    const std::string document = channel("<DESC><![CDATA[" + std::string(text) + "]]></DESC>");
    for (const char* const form : {"xml", "variables"}) {
      const test::temporary_file file(document);
      const test::temporary_file written("");
      const run_result result =
          run("convert " + file.path() + " --lossy --to " + form + " -o " + written.path());
      EXPECT_EQ(result.code, 0);
      EXPECT_THAT(result.err, testing::Not(testing::HasSubstr("description"))) << text;
      EXPECT_THAT(run("diff " + file.path() + " " + written.path()).out,
                  testing::Not(testing::HasSubstr("description")))
          << text;
    }
  }
}

TEST(ToolLosses, TheEncodingIsUtf8OnlyWhereLatin1LacksACharacter) {
  EXPECT_THAT(
      converted(channel("<UNITS>\xc2\xb5m</UNITS>"), "--to xml").out,
      testing::AllOf(testing::StartsWith("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>"),
                     testing::HasSubstr("<UNITS>\xb5m</UNITS>")));
  EXPECT_THAT(converted(channel("<UNITS>\xc2\xb5\xce\xa9</UNITS>"), "--to xml").out,
              testing::AllOf(testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\" ?>"),
                             testing::HasSubstr("<UNITS>\xc2\xb5\xce\xa9</UNITS>")));
}

TEST(ToolLosses, BitNamesArriveInTheVariableDialectHoweverOften) {
  const test::temporary_file original(
      list("<CHANNEL><PROP>A</PROP><NAME>n</NAME><BIT>0<BIT_NAME>on</BIT_NAME></BIT>"
           "<BIT>1<BIT_NAME>fault</BIT_NAME></BIT></CHANNEL>"));
  const test::temporary_file variables("");
  const test::temporary_file again("");
  EXPECT_EQ(run("convert " + original.path() + " --to variables -o " + variables.path()).code, 0);
  EXPECT_THAT(variables.content(), testing::HasSubstr("<bitTitle bit=\"0\">on</bitTitle>\n"
                                                      "<bitTitle bit=\"1\">fault</bitTitle>\n"));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(run("convert " + variables.path() + " --to variables -o " + again.path()).code, 0);
    EXPECT_EQ(again.content(), variables.content());
    EXPECT_EQ(run("convert " + again.path() + " --to xml -o " + variables.path()).code, 0);
    EXPECT_EQ(run("diff " + original.path() + " " + variables.path()).out, "");
    EXPECT_EQ(run("convert " + variables.path() + " --to variables -o " + again.path()).code, 0);
    EXPECT_EQ(run("convert " + again.path() + " --to variables -o " + variables.path()).code, 0);
  }
}

TEST(ToolLosses, AllRecordsOfAPropertyArriveInTheElementDialect) {
  const test::temporary_file original(
      list("<CHANNEL><PROP>A</PROP><UNITS>1</UNITS></CHANNEL>"
           "<CHANNEL><PROP>A</PROP><UNITS>2</UNITS></CHANNEL>"));
  const test::temporary_file written("");
  EXPECT_EQ(run("convert " + original.path() + " --to xml -o " + written.path()).code, 0);
  EXPECT_EQ(run("diff " + original.path() + " " + written.path()).code, 0);
}

TEST(ToolLosses, WhatIsAlikeIsToldFiveTimesAndThenCounted) {
  std::string channels;
  for (int i = 0; i < 25; ++i) {
    channels +=
        "<CHANNEL><PROP>P" + std::to_string(100 + i) + "</PROP><DTYPE>9</DTYPE></CHANNEL>\n";
  }
  const run_result result = converted(list(channels), "--to variables");
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 6);
  EXPECT_THAT(result.err, testing::HasSubstr("channel 'P104': data_type 9 SINGLE does not arrive"));
  EXPECT_THAT(
      result.err,
      testing::EndsWith("zrt4xml: FILE: 20 more of the same kind do not arrive: data_type\n"));
}

TEST(ToolLosses, MergingTellsOfEveryFile) {
  const test::temporary_file base(channel());
  const test::temporary_file from(list("<!-- c --><CHANNEL><PROP>A/B/C</PROP></CHANNEL>"));
  const test::temporary_file old("old");
  const std::string arguments = "merge " + base.path() + " " + from.path();
  const run_result result = run(arguments + " -o " + old.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, testing::StartsWith("zrt4xml: " + from.path() +
                                              ":1:29: a comment does not arrive\n"));
  EXPECT_EQ(old.content(), "old");
  EXPECT_EQ(run(arguments + " --dry-run").code, 1);
  EXPECT_EQ(run(arguments + " --dry-run --lossy").code, 0);
}

TEST(ToolLosses, ADryRunShowsWhatWouldBeWritten) {
  const test::temporary_file base(
      "<DAQvariables><DaqBits><vindo>A</vindo><daqName>n</daqName>"
      "<bitTitle bit='0'>on</bitTitle></DaqBits></DAQvariables>");
  const test::temporary_file from(
      list("<CHANNEL><DTYPE>9</DTYPE><PROP>A</PROP><UNITS>mm</UNITS>"
           "<BIT>0<BIT_NAME>x</BIT_NAME></BIT><BIT>1<BIT_NAME>off</BIT_NAME></BIT></CHANNEL>"));
  const std::string arguments = "merge " + base.path() + " " + from.path();
  const run_result dry = run(arguments + " --dry-run");
  EXPECT_EQ(dry.code, 1);
  EXPECT_EQ(dry.out, "--- " + base.path() +
                         "\n+++ merged\n~ channel A\n    units: \"\" -> \"mm\"\n" +
                         "    + bit 1\n        name: \"off\"\n");
  EXPECT_THAT(dry.err, testing::HasSubstr("data_type 9 SINGLE does not arrive"));
  const test::temporary_file written("");
  EXPECT_EQ(run(arguments + " --lossy -o " + written.path()).code, 0);
  EXPECT_THAT(run("diff " + base.path() + " " + written.path()).out,
              testing::EndsWith(
                  "~ channel A\n    units: \"\" -> \"mm\"\n    + bit 1\n        name: \"off\"\n"));
}

TEST(ToolLosses, ChannelWithoutEventTypeStaysWithoutIt) {
  const run_result elements = converted(untold_and_0, "--to xml");
  EXPECT_EQ(elements.code, 0);
  EXPECT_EQ(elements.err, "");
  EXPECT_THAT(elements.out,
              testing::HasSubstr("<CHANNEL>\n<STREAM>0</STREAM>\n<DTYPE>0</DTYPE>\n<DB_KEY>-1"));
  EXPECT_THAT(elements.out,
              testing::HasSubstr("<CHANNEL>\n<STREAM>0</STREAM>\n<EVTYPE>0</EVTYPE>\n<DTYPE>0"));
  const run_result variables = converted(untold_and_0, "--to variables");
  EXPECT_EQ(variables.code, 0);
  EXPECT_THAT(variables.out, testing::HasSubstr("<DaqFloat>\n<vindo>A</vindo>"));
  EXPECT_THAT(variables.out,
              testing::HasSubstr("<DaqFloat>\n<evType>0</evType>\n<vindo>B</vindo>"));
  EXPECT_THAT(
      converted(variables.out, "--to csv").out,
      testing::AllOf(testing::HasSubstr("\nA,,0,UNKNOWN,"), testing::HasSubstr("\nB,,0,HB,")));
}

TEST(ToolLosses, VariableThatAnotherOneOfItsPropertyTellsTheEventType) {
  const std::string document =
      "<DAQvariables><DaqFloat><vindo>A</vindo></DaqFloat>"
      "<DaqFloat><evType>0</evType><vindo>A</vindo></DaqFloat></DAQvariables>";
  EXPECT_THAT(converted(document, "--to xml --lossy").out,
              testing::HasSubstr("<EVTYPE>0</EVTYPE>"));
}

TEST(ToolLosses, EventTypeBehindThePropertyThatMergedAVariableIsNotItsOwn) {
  const test::temporary_file file(
      "<DAQvariables><DaqFloat><evType>4</evType><vindo>B</vindo></DaqFloat>"
      "<DaqFloat><vindo>A</vindo><vindo>B</vindo><evType>0</evType></DaqFloat></DAQvariables>");
  EXPECT_EQ(run("list --columns property,event_type " + file.path()).out,
            "property\tevent_type\nB\tENV\nA\tUNKNOWN\n");
}

TEST(ToolLosses, ChannelOfSeveralPropertiesHasTheEventTypeThatStandsBehindThem) {
  const std::string document =
      list("<CHANNEL><PROP>A</PROP><PROP>B</PROP><EVTYPE>0</EVTYPE></CHANNEL>");
  const test::temporary_file file(document);
  EXPECT_EQ(run("list --columns event_type " + file.path()).out, "event_type\nHB\nHB\n");
}
