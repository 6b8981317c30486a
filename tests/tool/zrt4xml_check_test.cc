// `check`.

#include <regex>

#include "check_support.hh"

using test::one_event;
using test::prints_valid_json;
using test::run;
using test::run_on_terminal;
using test::run_result;

namespace {

/// Lines of `check` without the severities and the rules.
std::string plain(const std::string& lines) {
  static const std::regex severity_and_rule(": (error|warning): (.*) \\[[a-z_]+\\]\n");
  return std::regex_replace(lines, severity_and_rule, ": $2\n");
}

/// What "zrt4xml ARGUMENTS" prints, without them.
run_result run_plainly(const std::string& arguments) {
  run_result result = test::run(arguments);
  result.out = plain(result.out);
  return result;
}

/// What "check" prints about the document, with "F" for the file's name.
run_result checked(const std::string& document) {
  run_result result = test::check(document);
  result.out = plain(result.out);
  return result;
}

std::string channels(const std::string& all) {
  return "<CHANDESCRIPTIONS>\n" + all + "\n</CHANDESCRIPTIONS>";
}

/// The end of a channel, with an event type unless `more` tells it.
std::string end_of(const std::string& kind, const std::string& more, const std::string& type) {
  const std::string element = "<" + type + ">";
  if (more.find(element) != more.npos) return "</" + kind + ">";
  return element + "1</" + type + "></" + kind + ">";
}

/// A channel "A" of name "N" with more elements on a line of their own.
std::string channel_with(const std::string& more) {
  return channels("<CHANNEL><PROP>A</PROP><NAME>N</NAME>\n" + more +
                  end_of("CHANNEL", more, "EVTYPE"));
}

std::string variable_with(const std::string& kind, const std::string& more) {
  return "<DAQvariables><" + kind + "><vindo>A</vindo><daqName>N</daqName>\n" + more +
         end_of(kind, more, "evType") + "</DAQvariables>";
}

const std::string one_channel = "F: channel descriptions, element dialect, 1 channel, 0 errors\n";
const std::string one_variable = "F: channel descriptions, variable dialect, 1 channel, 0 errors\n";

}  // namespace

TEST(ToolCheck, ExamplesAreFine) {
  const run_result result = run_plainly(
      "check " ZRT4_SOURCE_DIR "/examples/c*/*.xml " ZRT4_SOURCE_DIR
      "/examples/event_lists/*.xml " ZRT4_SOURCE_DIR
      "/examples/dictionaries/small.xml " ZRT4_SOURCE_DIR "/examples/dictionaries/linac.xml");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, testing::HasSubstr("/cameras/minimal.xml: camera features, 4 features, "
                                             "0 errors\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("/dictionaries/small.xml: environment index "
                                             "dictionary, 3 entries, 0 errors\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("/event_lists/orbit_feedback.xml: event list, 2 "
                                             "events, 0 errors\n"));
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 11);
}

TEST(ToolCheck, WhatTheToolWritesIsFine) {
  const std::string original = ZRT4_SOURCE_DIR "/examples/channels/linac.xml";
  for (const char* const form : {"xml", "variables"}) {
    const test::temporary_file written("");
    EXPECT_EQ(run("convert --lossy " + original + " --to " + form + " -o " + written.path()).code,
              0);
    EXPECT_EQ(run_plainly("check " + written.path()).code, 0) << form;
  }
}

TEST(ToolCheck, DuplicateProperties) {
  const run_result result =
      checked(channels("<CHANNEL><PROP>A</PROP><NAME>1</NAME><EVTYPE>1</EVTYPE></CHANNEL>\n"
                       "<CHANNEL><PROP>B</PROP><NAME>2</NAME><EVTYPE>1</EVTYPE></CHANNEL>\n"
                       "<CHANNEL><PROP>A</PROP><NAME>3</NAME><EVTYPE>1</EVTYPE></CHANNEL>"));
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "F: channel descriptions, element dialect, 3 channels, 0 errors\n"
            "F:2:16: property 'A' stands here 2 times: lines 2 and 4\n");
}

TEST(ToolCheck, DuplicatesThatTheReaderMerges) {
  const std::string variable =
      "<DaqFloat><vindo>A</vindo><daqName>N</daqName><evType>1</evType></DaqFloat>\n";
  EXPECT_EQ(checked("<DAQvariables>" + variable + variable + "</DAQvariables>").out,
            one_variable +
                "F:1:32: property 'A' stands here 2 times: lines 1 and 2; they are read "
                "as one, which keeps the first\n");
}

TEST(ToolCheck, DuplicatesInDictionariesAndCameras) {
  const std::string entry = "<CHANNEL><INDEX>1</INDEX><PROP>P</PROP></CHANNEL>";
  EXPECT_EQ(checked("<ENVINDEXDICT>" + entry + entry + "</ENVINDEXDICT>").out,
            "F: environment index dictionary, 2 entries, 0 errors\n"
            "F:1:31: index 1 stands here 2 times: line 1\n"
            "F:1:46: property 'P' stands here 2 times: line 1\n");
  EXPECT_EQ(checked("<C><Integer Name='W'/><Float Name='W'/><Float Name='G'/></C>").out,
            "F: camera features, 3 features, 0 errors\n"
            "F:1:23: feature 'W' stands here 2 times: line 1\n");
}

TEST(ToolCheck, ChannelWithoutName) {
  EXPECT_EQ(checked(channels("<CHANNEL><PROP>A</PROP><EVTYPE>1</EVTYPE></CHANNEL>")).out,
            one_channel + "F:2:16: channel 'A' has no name\n");
  EXPECT_EQ(
      checked(
          "<DAQvariables><DaqFloat><vindo>A</vindo><evType>1</evType></DaqFloat></DAQvariables>")
          .out,
      one_variable + "F:1:32: channel 'A' has no name\n");
}

TEST(ToolCheck, RecordsThatTheReaderLeavesOut) {
  const struct {
    const char* document;
    const char* found;
  } cases[] = {
      {"<BMR>\n<EVENT><PRIORITY>1</PRIORITY></EVENT><EVENT><TYPE>1</TYPE></EVENT></BMR>",
       ":2:8: EVENT without TYPE is left out\n"},
      {"<CHANDESCRIPTIONS><CHANNEL><NAME>N</NAME><PROP>A</PROP><EVTYPE>1</EVTYPE></CHANNEL>\n"
       "<CHANNEL><PROP> </PROP><NAME>M</NAME><EVTYPE>1</EVTYPE></CHANNEL></CHANDESCRIPTIONS>",
       ":2:16: PROP is empty, and without it this record is left out (line 2)\n"},
      {"<DAQvariables>\n<DaqBits><daqName>N</daqName><evType>1</evType></DaqBits></DAQvariables>",
       ":2:10: DaqBits without vindo is left out\n"},
      {"<ENVINDEXDICT>\n<CHANNEL><PROP>A</PROP></CHANNEL>"
       "<CHANNEL><INDEX>1</INDEX><PROP>B</PROP></CHANNEL></ENVINDEXDICT>",
       ":2:10: CHANNEL without INDEX is left out\n"},
      {"<ENVINDEXDICT>\n<CHANNEL><INDEX>1</INDEX></CHANNEL></ENVINDEXDICT>",
       ":2:10: CHANNEL without PROP is left out\n"},
  };
  for (const auto& each : cases) {
    const test::temporary_file file(each.document);
    const run_result result = run_plainly("check " + file.path());
    EXPECT_EQ(result.code, 1) << each.document;
    EXPECT_THAT(result.out, testing::EndsWith("0 errors\n" + file.path() + each.found));
    EXPECT_TRUE(prints_valid_json("check --json " + file.path()));
  }
  // What follows an end tag still belongs to the record.
  EXPECT_EQ(checked("<CHANDESCRIPTIONS><CHANNEL><NAME>N</NAME></CHANNEL><PROP>A</PROP>"
                    "<EVTYPE>1</EVTYPE></CHANDESCRIPTIONS>")
                .out,
            one_channel +
                "F:1:58: PROP stands behind CHANNEL (line 1), and is read as a part of it\n"
                "F:1:74: EVTYPE stands behind CHANNEL (line 1), and is read as a part of it\n");
}

TEST(ToolCheck, TextsCutAtTheRecordsLimit) {
  const struct {
    const char* element;
    std::size_t limit;
  } texts[] = {{"NAME", 255},     {"SB_NAME", 255},  {"DESC", 255},     {"SUBSYSTEM", 63},
               {"UNITS", 15},     {"BIT_NAME", 63},  {"BIT_DESCR", 79}, {"DIM_NAME", 63},
               {"DIM_DESCR", 79}, {"DIM_UNITS", 15}, {"STAT_NAME", 63}, {"STAT_DESCR", 79},
               {"STAT_UNITS", 15}};
  for (const auto& [element, limit] : texts) {
    const std::string name = element;
    const std::string kept(limit, 'x');
    const auto holding = [&](const std::string& text) {
      return channels("<CHANNEL><PROP>A</PROP>" +
                      std::string(name == "NAME" ? "" : "<NAME>N</NAME>") +
                      "<BIT>0</BIT><DIM>0</DIM><STAT>0</STAT>\n<" + name + ">" + text + "</" +
                      name + "><EVTYPE>1</EVTYPE></CHANNEL>");
    };
    EXPECT_EQ(checked(holding(kept)).out, one_channel) << name;
    EXPECT_EQ(checked(holding(kept + "x")).out,
              one_channel + "F:3:" + std::to_string(name.size() + 3) + ": " + name + " has " +
                  std::to_string(limit + 1) + " bytes; the record keeps " + std::to_string(limit) +
                  ": '" + kept + "'\n");
  }
}

// The scanner delivers it in pieces.
TEST(ToolCheck, VeryLongTextIsCutRatherThanInterrupted) {
  const test::temporary_file file("<BMR><EVENT><TYPE>1</TYPE><SBLOCK>" +
                                  std::string(3'000'000, 'x') + "</SBLOCK></EVENT></BMR>");
  EXPECT_EQ(run_plainly("check " + file.path()).out,
            file.path() + ": event list, 1 event, 0 errors\n" + file.path() +
                ":1:35: SBLOCK has 3000000 bytes; the record keeps 254: '" + std::string(254, 'x') +
                "'\n");
}

TEST(ToolCheck, DeclarationsCannotCostMoreThanTheLibraryLets) {
  std::string document =
      "<!DOCTYPE BMR [<!ELEMENT BMR ANY><!ELEMENT EVENT ANY><!ELEMENT TYPE ANY><!ENTITY e0 '" +
      std::string(100, 'a') + "'>";
  for (int level = 1; level <= 12; ++level) {
    const std::string inner = "&e" + std::to_string(level - 1) + ";";
    document += "<!ENTITY e" + std::to_string(level) + " '";
    for (int i = 0; i < 10; ++i) document += inner;
    document += "'>";
  }
  const test::temporary_file file(document + "]>\n<BMR><EVENT><TYPE>&e12;</TYPE></EVENT></BMR>");
  const run_result result = run_plainly("check " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::HasSubstr(file.path() + ":2:"));
#ifdef ZRT4_LEAK_CHECKED  // so many take longer there than the budget, which ends them first
  constexpr const char* refusal = "the document takes too much processor time: ";
#else
  constexpr const char* refusal = "parser has encountered more than '50000' entity expansions";
#endif
  EXPECT_THAT(result.out, testing::HasSubstr(refusal));
}

TEST(ToolCheck, TextsCutInTheVariableDialect) {
  const std::string text(80, 'x');
  EXPECT_EQ(checked(variable_with("DaqFloatMatrix", "<description>" + text + "</description>")).out,
            one_variable);
  EXPECT_EQ(checked(variable_with("DaqFloatMatrix", "<dimension id='0'>\n<description>" + text +
                                                        "</description></dimension>"))
                .out,
            one_variable + "F:3:14: description has 80 bytes; the record keeps 79: '" +
                text.substr(1) + "'\n");
  EXPECT_THAT(checked(variable_with("DaqBits", "<bitTitle bit='1'>" + text + "</bitTitle>")).out,
              testing::HasSubstr("bitTitle has 80 bytes; the record keeps 63"));
}

TEST(ToolCheck, TextsCutInEventListsAndDictionaries) {
  const std::string block(254, 'b');
  const auto list = [](const std::string& name) {
    return "<BMR><EVENT><TYPE>1</TYPE><SBLOCK>" + name + "</SBLOCK></EVENT></BMR>";
  };
  EXPECT_EQ(checked(list(block)).code, 0);
  EXPECT_THAT(checked(list(block + "b")).out,
              testing::HasSubstr("F:1:35: SBLOCK has 255 bytes; the record keeps 254: 'bbb"));
  const run_result long_names =
      run_plainly("check " ZRT4_SOURCE_DIR "/examples/dictionaries/long_names.xml");
  EXPECT_EQ(long_names.code, 1);
  EXPECT_THAT(long_names.out,
              testing::HasSubstr("long_names.xml:7:11: PROP has 89 bytes; the record keeps 79: "
                                 "'EXPERIMENT.HALL"));
}

TEST(ToolCheck, LongNamesOfADictionary) {
  const std::string long_names = " " ZRT4_SOURCE_DIR "/examples/dictionaries/long_names.xml";
  EXPECT_EQ(run("check" + long_names).code, 1);
  EXPECT_EQ(run("check --wide" + long_names).code, 0);
  EXPECT_THAT(checked("<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>" + std::string(256, 'x') +
                      "</PROP></CHANNEL></ENVINDEXDICT>")
                  .out,
              testing::HasSubstr("PROP has 256 bytes; the record keeps 79: 'xxx"));
}

TEST(ToolCheck, TextIsMeasuredInBytesOfTheCodePage) {
  const std::string micros = "\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5";
  EXPECT_EQ(checked(channel_with("<UNITS>" + micros + "</UNITS>")).code, 0);
  EXPECT_EQ(checked(channel_with("<UNITS>" + micros + "\xc2\xb5</UNITS>")).code, 1);
}

TEST(ToolCheck, TypesWithoutAName) {
  EXPECT_EQ(checked(channel_with("<EVTYPE>28</EVTYPE><DTYPE>59</DTYPE>")).out,
            one_channel +
                "F:3:9: event type 28 has no name\n"
                "F:3:27: data type 59 has no name\n");
  EXPECT_EQ(checked(channel_with("<EVTYPE>27</EVTYPE><DTYPE>60</DTYPE>")).out, one_channel);
  EXPECT_EQ(checked(variable_with("DaqFloat", "<evType>33</evType>")).out,
            one_variable + "F:2:9: event type 33 has no name\n");
  EXPECT_EQ(checked("<BMR><EVENT><TYPE>40</TYPE></EVENT></BMR>").out,
            "F: event list, 0 events, 0 errors\nF:1:19: event type 40 is none of 0 to 32: the "
            "whole event is skipped\n");
  // Modulo 2^32 it is NORMAL.
  EXPECT_EQ(checked("<BMR><EVENT><TYPE>4294967297</TYPE></EVENT></BMR>").out,
            "F: event list, 0 events, 0 errors\nF:1:19: event type 4294967297 is none of 0 to 32: "
            "the whole event is skipped\n");
}

TEST(ToolCheck, ElementsThatNoReaderKnows) {
  EXPECT_EQ(checked(channel_with("<FOO/>\n<Prop/><FOO>1</FOO>")).out,
            one_channel +
                "F:3:7: no reader knows the element 'FOO' (2 times: lines 3 and 4)\n"
                "F:4:8: no reader knows the element 'Prop' (1 time); did you mean PROP?\n");
  EXPECT_EQ(checked("<C><Group><Integer Name='W'/></Group></C>").code, 0);
}

TEST(ToolCheck, InterruptedTexts) {
  const struct {
    const char* text;
    const char* read;
    const char* meant;
  } cases[] = {{"x&amp;y", "&y", "x&y"},
               {"x&#937;", "\xce\xa9", "x\xce\xa9"},
               {"x<!-- c -->y", "x", "xy"},
               {"x<![CDATA[y]]>", "x", "xy"}};
  for (const auto& [text, read, meant] : cases) {
    EXPECT_EQ(checked(channel_with("<DESC>" + std::string(text) + "</DESC>")).out,
              one_channel + "F:3:7: DESC: only '" + read + "' is read of '" + meant +
                  "', which a reference, a comment or a section interrupts; <![CDATA[" + meant +
                  "]]> is read whole\n");
    EXPECT_EQ(checked(channel_with("<DESC><![CDATA[" + std::string(meant) + "]]></DESC>")).out,
              one_channel);
  }
  EXPECT_EQ(checked(channel_with("<DESC>&amp;y</DESC><DIM>0<!-- c --> </DIM>")).out, one_channel);
}

TEST(ToolCheck, MissingAttributes) {
  EXPECT_EQ(checked(variable_with("DaqBits", "<bitTitle>on</bitTitle>")).out,
            "F: channel descriptions, variable dialect, 1 channel, 2 errors\n"
            "F:2:11: bitTitle without the attribute bit\n");
  EXPECT_THAT(checked(variable_with("DaqFloatMatrix", "<dimension/>")).out,
              testing::HasSubstr("F:2:13: dimension without the attribute id\n"));
}

TEST(ToolCheck, DamageIsNamedWithItsPlace) {
  const run_result result = checked("<BMR>\n<EVENT><TYPE>1</TYPE></EVENT>\n<X></Y></BMR>");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "F: event list, 1 event, 1 error\n"
            "F:3:4: no reader knows the element 'X' (1 time)\n"
            "F:3:6: expected end of tag 'X'\n");
  EXPECT_EQ(checked("<C><Integer Name='W'/>\n<Float Name='G'></C>").out,
            "F: camera features, 2 features, 1 error\nF:2:19: expected end of tag 'Float'\n");
}

TEST(ToolCheck, WhatCannotBeUsedIsToldAndTheRestChecked) {
  const test::temporary_file good(one_event);
  const test::temporary_file bad("<html/>");
  const run_result result = run_plainly("check " + bad.path() + " /nonexistent " + good.path());
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.out,
              testing::StartsWith(bad.path() + ": not read\n" + bad.path() + ":1:8: unknown kind"));
  EXPECT_THAT(result.out,
              testing::EndsWith(good.path() + ": event list, 1 event, 0 errors\n" +
                                "checked 2 documents: 1 error in 1 of them; 1 file could not be "
                                "used\n"));
  EXPECT_EQ(result.err, "zrt4xml: /nonexistent: No such file or directory\n");
}

TEST(ToolCheck, StandardInputAndQuiet) {
  const test::temporary_file good(one_event);
  const test::temporary_file wrong("<BMR><EVENT/></BMR>");
  EXPECT_EQ(run_plainly("check - <" + good.path()).out,
            "standard input: event list, 1 event, 0 errors\n");
  const run_result quiet = run_plainly("check -q " + wrong.path());
  EXPECT_EQ(quiet.code, 1);
  EXPECT_EQ(quiet.out + quiet.err, "");
}

TEST(ToolCheck, AsJson) {
  const test::temporary_file odd("<BMR>\n<X/></BMR>");
  EXPECT_TRUE(prints_valid_json("check --json /nonexistent " + odd.path()));
}

TEST(ToolCheck, ColourOnlyOnATerminal) {
  const test::temporary_file good(one_event);
  const test::temporary_file odd("<BMR><X/></BMR>");
  const test::temporary_file bad("<BMR>");
  EXPECT_EQ(run_on_terminal("check " + good.path()),
            good.path() + ": \033[32mevent list, 1 event, 0 errors\033[0m\r\n");
  EXPECT_THAT(run_on_terminal("check " + odd.path()),
              testing::HasSubstr(": \033[33mevent list, 0 events, 0 errors\033[0m\r\n"));
  EXPECT_THAT(run_on_terminal("check " + bad.path()),
              testing::HasSubstr(": \033[31mevent list, 0 events, 1 error\033[0m\r\n"));
}

TEST(ToolCheck, FullDeviceAndWrongUsage) {
  const test::temporary_file good(one_event);
  EXPECT_EQ(run_plainly("check " + good.path() + " >/dev/full").code, 2);
  EXPECT_EQ(run_plainly("check").code, 2);
  EXPECT_EQ(run_plainly("check --kind events " + good.path()).code, 2);
}
