// JSON as an input of the tool: what `show --json` prints, also when programs have changed it.

#include "tool_support.hh"

using test::run;
using test::run_result;

namespace {

const std::string channels = ZRT4_SOURCE_DIR "/examples/channels/channels.xml";

/// A document of JSON with these channels.
std::string channels_of(const std::string& records) {
  return R"({"kind": "channels", "records": [)" + records + "]}";
}

/// What converting says about the JSON, without the name of the file; it must refuse it, and write
/// nothing.
std::string refusal(const std::string& json) {
  const test::temporary_file file(json);
  const test::temporary_file untouched("as it was");
  EXPECT_EQ(run("convert " + file.path() + " --to xml -o " + untouched.path()).code, 1) << json;
  EXPECT_EQ(untouched.content(), "as it was") << json;
  const run_result result = run("convert " + file.path() + " --to xml");
  EXPECT_EQ(result.code, 1) << json;
  EXPECT_EQ(result.out, "") << json;
  const std::string prefix = "zrt4xml: " + file.path() + ":";
  EXPECT_EQ(result.err.substr(0, prefix.size()), prefix);
  return result.err.substr(std::min(prefix.size(), result.err.size()));
}

/// The wrong part of such a refusal, for a channel with this beside its property.
std::string refusal_of_channel(const std::string& more) {
  const std::string text = refusal(channels_of(R"({"property": "A/B", )" + more + "}"));
  const std::size_t begin = text.find(": ");
  return text.substr(begin + 2, text.size() - begin - 3);
}

std::string times(unsigned number, const std::string& text) {
  std::string result;
  for (unsigned i = 0; i < number; ++i) result += text;
  return result;
}

/// Whether the schema says that this is read.
bool is_in_schema(const std::string& json) {
  const test::temporary_file file(json);
  const std::string validator =
      ZRT4_PYTHON " " ZRT4_SOURCE_DIR "/tests/tool/validate_json.py " ZRT4_SOURCE_DIR
                  "/docs/zrt4xml.schema.json input <";
  return std::system((validator + file.path() + " >/dev/null 2>&1").c_str()) == 0;
}

}  // namespace

TEST(ToolJsonReading, ConvertsToTheDocumentThatTheXmlConvertsTo) {
  for (const std::string& example : test::examples()) {
    for (const std::string form : {"xml", "variables", "text", "short"}) {
      const auto converted = [&](const std::string& from) {
        return run(from + " --to " + form + " | sed 's/<isodate>.*//'", "set -o pipefail; ").out;
      };
      EXPECT_EQ(
          converted("show --json " + example + " 2>/dev/null | " + test::tool() + "convert -"),
          converted("convert " + example))
          << example << " " << form;
    }
  }
}

TEST(ToolJsonReading, OrderOfKeysPlaysNoPart) {
  const test::temporary_file sorted("");
  ASSERT_EQ(
      run("show --json " + channels +
          " | " ZRT4_PYTHON
          " -c 'import json, sys; print(json.dumps(json.load(sys.stdin), sort_keys=True))' >" +
          sorted.path())
          .code,
      0);
  EXPECT_EQ(run("diff " + channels + " " + sorted.path()).code, 0);
}

TEST(ToolJsonReading, KindMayStandBehindTheRecords) {
  const test::temporary_file file(R"({"documents": [{"records": [{"property": "A/B"}],
    "kind": "channels"}, {"records": [], "kind": "variables"}]})");
  EXPECT_EQ(run("convert " + file.path() + " --to text").out,
            "0\t0\t!!!UNDEFINED!!!\tA/B\t0\t\"\"\t\"\"\t1\t0\t0\n");
}

TEST(ToolJsonReading, MissingKeysAreAsInANewRecord) {
  const test::temporary_file file(channels_of(R"({"property": "A/B"})"));
  const run_result result = run("show --json " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::HasSubstr("\"db_key\": -1"));
  EXPECT_THAT(result.out, testing::HasSubstr("\"size\": 1"));
}

TEST(ToolJsonReading, TypesByTheirNamesAlone) {
  const test::temporary_file file(channels_of(
      R"({"property": "A/B", "event_type_name": "env", "data_type_name": "BPM_2010"})"));
  const run_result result = run("show --json " + file.path());
  EXPECT_THAT(result.out, testing::HasSubstr("\"event_type\": 4,"));
  EXPECT_THAT(result.out, testing::HasSubstr("\"data_type\": 38,"));
}

// A channel without event type is not one of type 0.
TEST(ToolJsonReading, EventTypeMayBeUntold) {
  for (const char* const keys :
       {R"("property": "A")", R"("property": "A", "event_type_name": "UNKNOWN")",
        R"("property": "A", "event_type": 0, "event_type_name": "UNKNOWN")",
        R"("event_type_name": "UNKNOWN", "event_type": 0, "property": "A")"}) {
    const test::temporary_file file(channels_of("{" + std::string(keys) + "}"));
    EXPECT_EQ(run("list --columns event_type " + file.path()).out, "event_type\nUNKNOWN\n") << keys;
  }
  for (const char* const keys : {R"("property": "A", "event_type": 0)",
                                 R"("event_type": 0, "event_type_name": "HB", "property": "A")",
                                 R"("event_type_name": "HB", "property": "A", "event_type": 0)"}) {
    const test::temporary_file file(channels_of("{" + std::string(keys) + "}"));
    EXPECT_EQ(run("list --columns event_type " + file.path()).out, "event_type\nHB\n") << keys;
  }
}

TEST(ToolJsonReading, NumberWithoutNameMayStandBehindItsName) {
  const test::temporary_file file(
      channels_of(R"({"property": "A", "data_type_name": "UNKNOWN", "data_type": 77})"));
  EXPECT_EQ(run("list --columns data_type " + file.path()).out, "data_type\n77\n");
  const test::temporary_file contradicting(
      channels_of(R"({"property": "A", "data_type_name": "UNKNOWN", "data_type": 38})"));
  const run_result refused = run("list " + contradicting.path());
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.err, testing::HasSubstr("the key \"data_type_name\" says otherwise than 38"));
}

TEST(ToolJsonReading, SeveralDocumentsAreOne) {
  const std::string one = channels_of(R"({"property": "A"})");
  const std::string other = R"({"kind": "variables", "records": [{"property": "B"}]})";
  for (const std::string& json : {"{\"documents\": [" + one + ", " + other + "]}",
                                  "[" + one + ", " + other + "]", one + "\n" + other + "\n"}) {
    const test::temporary_file file(json);
    EXPECT_EQ(run("convert " + file.path() + " --to text").out,
              "0\t0\t!!!UNDEFINED!!!\tA\t0\t\"\"\t\"\"\t1\t0\t0\n0\t0\t!!!UNDEFINED!!!"
              "\tB\t0\t\"\"\t\"\"\t1\t0\t0\n");
  }
}

TEST(ToolJsonReading, DocumentsOfSeveralKindsAreRefused) {
  const test::temporary_file file(R"([{"kind": "channels", "records": []},
                                      {"kind": "dictionary", "records": []}])");
  const run_result result = run("convert " + file.path() + " --to xml");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "zrt4xml: " + file.path() + ": holds documents of several kinds\n");
}

TEST(ToolJsonReading, ErrorsOfTheDocumentStayErrors) {
  const test::temporary_file broken("<CHANDESCRIPTIONS><CHANNEL><PROP>A/B</PROP></CHANNEL>");
  const test::temporary_file untouched("as it was");
  const run_result result = run("show --json " + broken.path() + " 2>/dev/null | " + test::tool() +
                                "convert - --to xml -o " + untouched.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, testing::HasSubstr("standard input: not read cleanly (1 error)"));
  EXPECT_EQ(untouched.content(), "as it was");
}

TEST(ToolJsonReading, ThresholdsThatAreNoNumbersKeepTheirNames) {
  const test::temporary_file xml(
      "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DABS>-inf</DABS><DREL>nan</DREL>"
      "</CHANNEL></ENVINDEXDICT>");
  EXPECT_THAT(run("show --json " + xml.path()).out,
              testing::HasSubstr("\"absolute_threshold\": null,\n"
                                 "          \"absolute_threshold_name\": \"-inf\",\n"
                                 "          \"relative_threshold\": null,\n"
                                 "          \"relative_threshold_name\": \"nan\"\n"));
  EXPECT_EQ(run("show --json " + xml.path() + " | " + test::tool() + "diff - " + xml.path()).code,
            0);
}

TEST(ToolJsonReading, TextCutInsideACharacterLosesThePieceWithAWord) {
  const test::temporary_file file(channels_of(R"({"property": "A/B", "units": ")" +
                                              times(7, "\xc2\xb5") +
                                              "\xef\xbf\xbd"
                                              R"("})"));
  const run_result result = run("convert " + file.path() + " --to text");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out,
            "0\t0\t!!!UNDEFINED!!!\tA/B\t0\t\"\"\t\"" + times(7, "\xc2\xb5") + "\"\t1\t0\t0\n");
  EXPECT_THAT(result.err,
              testing::HasSubstr("records[0].units: the text was cut inside a character, of which "
                                 "U+FFFD is left; it is left out\n"));
}

TEST(ToolJsonReading, TextsAtTheLimit) {
  EXPECT_THAT(refusal_of_channel(R"("units": ")" + std::string(16, 'x') + "\""),
              "records[0].units: a text of at most 15 bytes is expected here, not one of 16, "
              "\"xxxxxxxxxxxxxxxx\"");
  const test::temporary_file file(
      channels_of(R"({"property": "A/B", "units": ")" + std::string(15, 'x') + "\"}"));
  EXPECT_EQ(run("convert " + file.path() + " --to xml").code, 0);
}

TEST(ToolJsonReading, NumbersOutOfRange) {
  EXPECT_EQ(refusal_of_channel(R"("stream": 2147483648)"),
            "records[0].stream: a whole number from -2147483648 to 2147483647 is expected here, "
            "not 2147483648");
  EXPECT_EQ(refusal_of_channel(R"("event_type": -1)"),
            "records[0].event_type: a whole number from 0 to 4294967295 is expected here, not -1");
  EXPECT_EQ(refusal_of_channel(R"("size": 1.5)"),
            "records[0].size: a whole number from -2147483648 to 2147483647 is expected here, not "
            "1.5");
  EXPECT_EQ(refusal_of_channel(R"("size": 18446744073709551615)"),
            "records[0].size: a whole number from -2147483648 to 2147483647 is expected here, not "
            "18446744073709551615");
  const test::temporary_file events(R"({"kind": "events", "records": [{"event_type": 33}]})");
  EXPECT_EQ(run("show " + events.path()).err,
            "zrt4xml: " + events.path() +
                ":1:49: records[0].event_type: a whole number from 0 to 32 is expected here, not "
                "33\n");
  const test::temporary_file camera(R"({"kind": "camera", "records": [{"name": "A", "type": 9}]})");
  EXPECT_EQ(run("show " + camera.path()).err,
            "zrt4xml: " + camera.path() +
                ":1:55: records[0].type: a whole number from 0 to 8 is expected here, not 9\n");
}

TEST(ToolJsonReading, WholeNumbersWithADecimalPoint) {
  const test::temporary_file file(channels_of(R"({"property": "A/B", "size": 2.0e3})"));
  EXPECT_THAT(run("show --json " + file.path()).out, testing::HasSubstr("\"size\": 2000,"));
}

TEST(ToolJsonReading, ValuesOfAnotherType) {
  EXPECT_EQ(refusal_of_channel(R"("stream": "1")"),
            "records[0].stream: a whole number from -2147483648 to 2147483647 is expected here, "
            "not the text \"1\"");
  EXPECT_EQ(refusal_of_channel(R"("units": null)"),
            "records[0].units: a text is expected here, not null");
  EXPECT_EQ(refusal_of_channel(R"("units": true)"),
            "records[0].units: a text is expected here, not true");
  EXPECT_EQ(refusal_of_channel(R"("units": ["mm"])"),
            "records[0].units: a text is expected here, not a list");
  EXPECT_EQ(refusal_of_channel(R"("bits": "none")"),
            "records[0].bits: a list is expected here, not the text \"none\"");
  EXPECT_EQ(refusal_of_channel(R"("bits": [{"number": 1}, 2])"),
            "records[0].bits[1]: a bit, which is an object, is expected here, not 2");
  EXPECT_EQ(refusal_of_channel(R"("event_type": "NORMAL")"),
            "records[0].event_type: a whole number from 0 to 4294967295 is expected here, not the "
            "text \"NORMAL\"; a name goes into the key \"event_type_name\"");
}

TEST(ToolJsonReading, PathsLeadToTheValue) {
  EXPECT_EQ(refusal(R"({"documents": [{"kind": "channels", "records": [{"property": "A"},
{"property": "B", "dimensions": [{"number": 0, "statistics": [{"number": "three"}]}]}]}]})"),
            "2:80: documents[0].records[1].dimensions[0].statistics[0].number: a whole number from "
            "-2147483648 to 2147483647 is expected here, not the text \"three\"\n");
}

TEST(ToolJsonReading, EveryMistakeIsToldUpToTwenty) {
  std::string records;
  for (int i = 0; i < 25; ++i) records += std::string(i == 0 ? "" : ", ") + "1";
  const std::string told = refusal(channels_of(records));
  EXPECT_THAT(told, testing::HasSubstr("records[19]: a channel, which is an object, is expected "
                                       "here, not 1\n"));
  EXPECT_THAT(told, testing::Not(testing::HasSubstr("records[20]")));
  EXPECT_THAT(told, testing::EndsWith(": and 5 more\n"));
}

TEST(ToolJsonReading, UnknownKeys) {
  EXPECT_EQ(refusal_of_channel(R"("discription": "x")"),
            "records[0].discription: unknown key; did you mean 'description'?");
  EXPECT_THAT(refusal_of_channel(R"("location": "x")"),
              testing::StartsWith("records[0].location: unknown key; known are property, name, "));
  EXPECT_EQ(refusal(R"({"format_version": 1, "docments": []})").substr(0, 64),
            "1:32: docments: unknown key; did you mean 'documents'?\nzrt4xml: ");
}

TEST(ToolJsonReading, KeysThatStandTwice) {
  EXPECT_EQ(refusal_of_channel(R"("units": "mm", "units": "cm")"),
            "records[0].units: this key stands here twice");
}

TEST(ToolJsonReading, RecordsNeedTheirKey) {
  EXPECT_EQ(refusal(channels_of(R"({"name": "A"})")),
            "1:46: records[0]: there is no key \"property\" in it\n");
  EXPECT_EQ(refusal_of_channel(R"("bits": [{"name": "on"}])"),
            "records[0].bits[0]: there is no key \"number\" in it");
  EXPECT_EQ(refusal(R"({"kind": "dictionary", "records": [{"property": "A"}]})"),
            "1:52: records[0]: there is no key \"index\" in it\n");
}

// No document that is read has such a channel, but JSON may be made by anyone. What was written is
// read again, and the reader leaves such a channel behind deliberately.
TEST(ToolJsonReading, ChannelsWithoutAPropertyAreLostWithAReason) {
  for (const std::string property : {"", "  "}) {
    const test::temporary_file file(channels_of(R"({"property": ")" + property + "\"}"));
    for (const std::string form : {"xml", "variables"}) {
      const run_result result =
          run("convert " + file.path() + " --to " + form, "ASAN_OPTIONS=detect_leaks=0 ");
      EXPECT_EQ(result.code, 1);
      EXPECT_EQ(result.err, "zrt4xml: " + file.path() + ": channel '" + property +
                                "' does not arrive: a channel without a property is not read\n");
    }
  }
}

TEST(ToolJsonReading, NamesMustAgreeWithTheirNumbers) {
  EXPECT_EQ(refusal_of_channel(R"("event_type": 4, "event_type_name": "NORMAL")"),
            "records[0].event_type_name: \"NORMAL\" is not the name of what the key \"event_type\" "
            "says: leave one of them out");
  EXPECT_EQ(refusal_of_channel(R"("event_type_name": "NORMAL", "event_type": 4)"),
            "records[0].event_type: the key \"event_type_name\" says otherwise than 4: leave one "
            "of them out");
  EXPECT_EQ(refusal_of_channel(R"("event_type_name": "NORMALLY")"),
            "records[0].event_type_name: there is no such name: \"NORMALLY\"; did you mean "
            "'NORMAL'?");
}

TEST(ToolJsonReading, KindsThatThereAreNot) {
  EXPECT_EQ(
      refusal(R"({"kind": "chanels", "records": []})"),
      "1:18: kind: one of \"events\", \"channels\", \"variables\", \"dictionary\", \"camera\" "
      "is expected here, not the text \"chanels\"; did you mean 'channels'?\n");
  EXPECT_EQ(refusal(R"({"records": [{"property": "A"}]})"),
            "1:32: there is no key \"kind\" in it\n");
}

TEST(ToolJsonReading, FilesThatCouldNotBeUsedAreNoDocuments) {
  const run_result result = run("show --json /nonexistent " + channels + " 2>/dev/null | " +
                                test::tool() + "convert - --to xml");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err,
              testing::HasSubstr("documents[0]: is about a file that could not be used: "
                                 "the text \"No such file or directory\"\n"));
}

TEST(ToolJsonReading, AnswersOfOtherSubcommandsHoldNoDocuments) {
  const run_result result =
      run("stat --json " + channels + " | " + test::tool() + "convert - --to xml");
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, testing::HasSubstr("subcommand: \"show\" or \"list\", whose answers hold "
                                             "documents, is expected here, not the text \"stat\""));
}

TEST(ToolJsonReading, DamagedJson) {
  EXPECT_EQ(refusal(R"({"kind": "channels", "records": [)"),
            "1:33: records: not valid JSON: syntax error while parsing value - unexpected end of "
            "input; expected '[', '{', or a literal\n");
  EXPECT_THAT(refusal("{\"kind\": \"channels\", \"records\": [{\"property\": \"\xff\"}]}"),
              testing::HasSubstr("ill-formed UTF-8 byte"));
  EXPECT_THAT(refusal(R"({"kind": "channels", "records": [{"property": "A\u0000B"}]})"),
              testing::HasSubstr("a text without U+0000, where a text ends, is expected here"));
  EXPECT_THAT(refusal(channels_of(R"({"property": "A"})") + "x"),
              testing::HasSubstr("not valid JSON"));
  EXPECT_THAT(refusal("[]"), " holds no document\n");
}

TEST(ToolJsonReading, NumbersThatJsonDoesNotHave) {
  for (const std::string number : {"NaN", "Infinity", "-Infinity"}) {
    EXPECT_EQ(refusal_of_channel("\"size\": " + number),
              "records[0].size: not valid JSON: it has no NaN and no Infinity");
    EXPECT_THAT(
        refusal(R"({"kind": "dictionary", "records": [{"index": 1, "absolute_threshold": )" +
                number),
        testing::HasSubstr("no Infinity; the key \"absolute_threshold_name\" may say nan, -nan, "
                           "inf or -inf instead\n"));
  }
  EXPECT_EQ(refusal_of_channel(R"("size": 1e400)"),
            "records[0].size: the number 1e400 is larger than any that is read");
}

TEST(ToolJsonReading, ByteOrderMarkAndBlanksBefore) {
  const test::temporary_file file("\xef\xbb\xbf \n" + channels_of(R"({"property": "A"})"));
  EXPECT_EQ(run("convert " + file.path() + " --to xml").code, 0);
}

TEST(ToolJsonReading, NestedWithoutEnd) {
  const test::temporary_file file(std::string(1000000, '['));
  EXPECT_EQ(run("convert " + file.path() + " --to xml").code, 1);
  const test::temporary_file other("{\"documents\": " + std::string(1000000, '['));
  EXPECT_EQ(run("convert " + other.path() + " --to xml").code, 1);
}

TEST(ToolJsonReading, MergesAndCompares) {
  const test::temporary_file json("");
  ASSERT_EQ(run("show --json " + channels + " >" + json.path()).code, 0);
  EXPECT_EQ(run("diff " + channels + " " + json.path()).code, 0);
  const std::string variables = ZRT4_SOURCE_DIR "/examples/channels/variables.xml";
  const std::string ending = " --to xml | sed 's/<isodate>.*//'";
  EXPECT_EQ(run("merge " + json.path() + " " + variables + ending).out,
            run("merge " + channels + " " + variables + ending).out);
}

TEST(ToolJsonReading, NarrowDictionariesTellWhatTheyCut) {
  const std::string name(80, 'x');
  const test::temporary_file file(
      R"({"kind": "dictionary", "records": [{"index": 7, "property": ")" + name + "\"}]}");
  const run_result result = run("convert " + file.path() + " --to text");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "7\t" + name.substr(1) + "\t0.000000\t0.000000\n");
  EXPECT_THAT(result.err, testing::HasSubstr("index 7: the property has 80 bytes, of which the "
                                             "record keeps 79; --wide keeps them all\n"));
  EXPECT_EQ(run("convert --wide " + file.path() + " --to text").out,
            "7\t" + name + "\t0.000000\t0.000000\n");
}

TEST(ToolJsonReading, WhoeverLooksAtTheXmlRefusesIt) {
  const test::temporary_file file(channels_of(R"({"property": "A/B"})"));
  for (const std::string command : {"check ", "find --name A/B "}) {
    const run_result result = run(command + file.path());
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.err, "zrt4xml: " + file.path() +
                              ": is JSON, where XML is needed: 'zrt4xml convert --to xml' makes "
                              "it\n");
  }
}

TEST(ToolJsonReading, SchemaSaysWhatIsRead) {
  for (const std::string& example : test::examples()) {
    EXPECT_TRUE(is_in_schema(run("show --json " + example).out)) << example;
  }
  const std::string one = channels_of(R"({"property": "A/B", "event_type_name": "ENV"})");
  EXPECT_TRUE(is_in_schema(one));
  EXPECT_TRUE(is_in_schema("[" + one + "]"));
  EXPECT_TRUE(is_in_schema(R"({"documents": [)" + one + "]}"));
  EXPECT_FALSE(is_in_schema(channels_of(R"({"name": "A"})")));
  EXPECT_FALSE(is_in_schema(channels_of(R"({"property": "A", "location": "x"})")));
  EXPECT_FALSE(is_in_schema(channels_of(R"({"property": "A", "stream": 2147483648})")));
  EXPECT_FALSE(
      is_in_schema(channels_of(R"({"property": "A", "units": ")" + std::string(16, 'x') + "\"}")));
  EXPECT_FALSE(is_in_schema(R"({"kind": "events", "records": [{"event_type": 33}]})"));
  EXPECT_FALSE(is_in_schema("{}"));
}
