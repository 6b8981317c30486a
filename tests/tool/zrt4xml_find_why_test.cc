// `find`: why there is no channel, or why it is not selected; and patterns, which find several.

#include "tool_support.hh"

using test::prints_valid_json;
using test::run;
using test::run_result;

namespace {

const std::string examples = ZRT4_SOURCE_DIR "/examples/channels/";
const std::string channels = examples + "channels.xml";

std::string list(const std::string& content) {
  return "<CHANDESCRIPTIONS>\n" + content + "</CHANDESCRIPTIONS>";
}

std::string described(const std::string& types, const std::string& property,
                      const std::string& name) {
  return "<CHANNEL>" + types + "<PROP>" + property + "</PROP><NAME>" + name + "</NAME></CHANNEL>\n";
}

/// The lines of an answer that begin with `title`, without it.
std::vector<std::string> lines_of(const std::string& answer, const std::string& title) {
  std::vector<std::string> found;
  std::istringstream lines(answer);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(title, 0) != 0) continue;
    const std::size_t text = line.find_first_not_of(' ', title.size());
    found.push_back(text == line.npos ? "" : line.substr(text));
  }
  return found;
}

std::vector<std::string> all(std::initializer_list<std::string> lines) {
  return lines;
}

}  // namespace

TEST(ToolFindWhy, NamesOfTheOtherKindAreNotSelected) {
  const run_result by_name = run("find --name BPM.3.L1.X --event NORMAL " + channels);
  EXPECT_EQ(by_name.code, 1);
  EXPECT_THAT(by_name.out, testing::EndsWith("selected for NORMAL: no\n"
                                             "because:       looked up by property for NORMAL; "
                                             "BPM.3.L1.X is a DAQ name, of "
                                             "'LINAC.DIAG/BPM/3.L1/X.TRAIN'\n"));
  const run_result by_property =
      run("find --name LINAC.DIAG/CAMERA/OTR1.L1/IMAGE --event IMAGE " + channels);
  EXPECT_EQ(by_property.code, 1);
  EXPECT_EQ(by_property.out,
            "selected for IMAGE: no\n"
            "because:       looked up by DAQ name for IMAGE; LINAC.DIAG/CAMERA/OTR1.L1/IMAGE is a "
            "property, of 'OTR1.L1.IMAGE'\n");
  EXPECT_EQ(by_property.err,
            "zrt4xml: LINAC.DIAG/CAMERA/OTR1.L1/IMAGE: looked up by DAQ name for IMAGE; it is the "
            "property of 'OTR1.L1.IMAGE' (" +
                channels + ":113)\n");
}

TEST(ToolFindWhy, NobodysNameIsToldWithThoseThatAreLikeIt) {
  EXPECT_EQ(run("find --name otr1.l1.image " + channels).err,
            "zrt4xml: otr1.l1.image: no channel has this DAQ name or property; one has it in other "
            "letters, as find -i shows\n");
  EXPECT_EQ(run("find --name Q2.L1 " + channels).err,
            "zrt4xml: Q2.L1: no channel has this DAQ name or property; 1 channel has it within a "
            "longer name, as find -i shows\n");
  EXPECT_EQ(run("find --name BPM " + channels).err,
            "zrt4xml: BPM: no channel has this DAQ name or property; 2 channels have it within a "
            "longer name, as find -i shows\n");
  EXPECT_EQ(run("find --name none --event ENV " + channels).out,
            "selected for ENV: no\n"
            "because:       looked up by property for ENV; no channel has this one\n");
}

TEST(ToolFindWhy, ChannelWithoutEventTypeIsNotFound) {
  const test::temporary_file file(list(described("", "A", "a")));
  const run_result result = run("find --name a " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "zrt4xml: a: the channel that has it (" + file.path() +
                            ":2) has no event type, so that a client that asks for its "
                            "types finds none\n");
}

TEST(ToolFindWhy, SelectedThoughTheChannelHasAnotherEventType) {
  const test::temporary_file file(
      list(described("<EVTYPE>4</EVTYPE>", "A", "a") + described("<EVTYPE>1</EVTYPE>", "B", "b")));
  const run_result result = run("find --name A --event NORMAL " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out,
              testing::EndsWith("selected for NORMAL: yes\n"
                                "but:           this channel does not have event type NORMAL; a "
                                "selector asks only whether some channel has it\n"));
}

TEST(ToolFindWhy, EventTypesInAnyCase) {
  for (const char* const event : {"NORMAL", "normal", "Normal", "1"}) {
    EXPECT_EQ(run("find --name LINAC.DIAG/BPM/3.L1/X.TRAIN --event " + std::string(event) + " " +
                  channels)
                  .code,
              0)
        << event;
  }
}

TEST(ToolFind, TypesThatAreNotWhatIsWrittenAreTold) {
  const test::temporary_file file(
      list(described("<EVTYPE>40</EVTYPE><DTYPE>4294967334</DTYPE>", "A", "a") +
           described("<EVTYPE>NORMAL</EVTYPE><DTYPE>63</DTYPE>", "B", "b") +
           described("<EVTYPE> 1\n</EVTYPE><DTYPE>041</DTYPE>", "C", "c")));
  const std::string answer = run("find --name '?' " + file.path()).out;
  EXPECT_EQ(lines_of(answer, "event types:"),
            all({"0x100 MCP (written: 40)", "0x1 HB (written: 'NORMAL')", "0x2 NORMAL"}));
  // By way of a long, which may have 32 bits.
  const std::string beyond = sizeof(long) == 8 ? "0x80000040 BPM_2010" : "0x0";
  EXPECT_EQ(lines_of(answer, "data type:"), all({beyond + " (written: '4294967334')",
                                                 "0x0 (written: 63)", "0x80000200 1CHAN_2010"}));
}

TEST(ToolFind, DescriptionAndUnitsWithoutControlCharacters) {
  const test::temporary_file file(
      list("<CHANNEL><EVTYPE>1</EVTYPE><PROP>A\tB</PROP><DESC>two\nlines</DESC><UNITS>mm</UNITS>"
           "</CHANNEL>"));
  EXPECT_THAT(run("find -i --name b " + file.path()).out,
              testing::StartsWith("property:      A\\x09B\n"
                                  "description:   two\\x0alines\n"
                                  "units:         mm\n"
                                  "event types:   0x2 NORMAL\n"));
}

TEST(ToolFindPattern, FindsAllThatMatchInAllFiles) {
  const std::string both = channels + " " + examples + "linac.xml";
  const run_result result = run("find --name 'BPM.*.X' " + both);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_GT(lines_of(result.out, "channel:").size(), 1U);
  for (const std::string& name : lines_of(result.out, "channel:")) {
    EXPECT_THAT(name, testing::MatchesRegex("BPM\\..*\\.X"));
  }
  EXPECT_EQ(lines_of(result.out, "stands in:").front(), channels + ":3");
  EXPECT_THAT(lines_of(result.out, "stands in:").back(),
              testing::StartsWith(examples + "linac.xml:"));
}

TEST(ToolFindPattern, SeveralAnswersStandApart) {
  const run_result result = run("find --name 'BPM.3.L1.[XY]' --event normal " + channels);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "channel:       BPM.3.L1.X\n"
            "property:      LINAC.DIAG/BPM/3.L1/X.TRAIN\n"
            "description:   horizontal beam position\n"
            "units:         mm\n"
            "event types:   0x2 NORMAL\n"
            "data type:     0x80000040 BPM_2010\n"
            "slow:          no\n"
            "main linac:    no\n"
            "sub-channels:  1\n"
            "stands in:     " +
                channels +
                ":3\n"
                "selected for NORMAL: yes\n"
                "\n"
                "channel:       BPM.3.L1.Y\n"
                "property:      LINAC.DIAG/BPM/3.L1/Y.TRAIN\n"
                "description:   vertical beam position\n"
                "units:         mm\n"
                "event types:   0x2 NORMAL\n"
                "data type:     0x80000040 BPM_2010\n"
                "slow:          no\n"
                "main linac:    no\n"
                "sub-channels:  1\n"
                "stands in:     " +
                channels +
                ":21\n"
                "selected for NORMAL: yes\n");
}

TEST(ToolFindPattern, AnyPartOfANameInAnyCase) {
  EXPECT_EQ(lines_of(run("find -i --name bpm " + channels).out, "channel:"),
            all({"BPM.3.L1.X", "BPM.3.L1.Y"}));
  EXPECT_EQ(lines_of(run("find --ignore-case --name 'l1*image' " + channels).out, "channel:"),
            all({"OTR1.L1.IMAGE"}));
  EXPECT_EQ(lines_of(run("find -i --name Camera/ " + channels).out, "channel:"),
            all({"OTR1.L1.IMAGE"}));
}

TEST(ToolFindPattern, SignsOfAPatternThatStandInANameFindIt) {
  const test::temporary_file file(list(described("<EVTYPE>1</EVTYPE>", "A[1]", "a[1]") +
                                       described("<EVTYPE>1</EVTYPE>", "A1", "a1") +
                                       described("<EVTYPE>1</EVTYPE>", "A*", "a\\*")));
  EXPECT_EQ(lines_of(run("find --name 'A[1]' " + file.path()).out, "property:"),
            all({"A[1]", "A1"}));
  EXPECT_EQ(lines_of(run("find --name 'A\\*' " + file.path()).out, "property:"), all({"A*"}));
  EXPECT_EQ(lines_of(run("find -i --name '\\*' " + file.path()).out, "property:"), all({"A*"}));
}

TEST(ToolFindPattern, NoneIsExitCodeOne) {
  const run_result result = run("find --name 'X.*' " + channels);
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "zrt4xml: X.*: matches no channel's DAQ name or property\n");
}

// A client asks for the name by which channels of the event type are looked up.
TEST(ToolFindPattern, OneThatIsNotSelectedIsExitCodeOne) {
  const test::temporary_file file(
      list(described("<EVTYPE>6</EVTYPE>", "A", "a") + described("<EVTYPE>1</EVTYPE>", "B", "")));
  const run_result result = run("find --name '[AB]' --event IMAGE " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(lines_of(result.out, "selected for IMAGE:"), all({"yes", "no"}));
  EXPECT_EQ(lines_of(result.out, "because:"),
            all({"looked up by DAQ name for IMAGE; the channel has none"}));
}

TEST(ToolFindPattern, ChannelWithTwoPropertiesIsOneChannel) {
  const test::temporary_file file(
      list("<CHANNEL><EVTYPE>1</EVTYPE><PROP>A</PROP><PROP>AB</PROP></CHANNEL>"));
  EXPECT_EQ(lines_of(run("find --name 'A*' " + file.path()).out, "property:"), all({"AB"}));
}

TEST(ToolFindPattern, MergedChannelsTellEachOfTheirPlaces) {
  const test::temporary_file variables(
      "<DAQvariables>\n<DaqFloat><evType>1</evType><vindo>B</vindo></DaqFloat>\n"
      "<DaqFloat>\n<evType>1</evType><vindo>A</vindo></DaqFloat>\n</DAQvariables>");
  const test::temporary_file elements(list(described("<EVTYPE>1</EVTYPE>", "A", "a")));
  const std::string arguments =
      "find --name '[AB]' " + elements.path() + " " + variables.path() + " " + variables.path();
  const std::string answer = run(arguments).out;
  EXPECT_EQ(lines_of(answer, "property:"), all({"A", "B"}));
  EXPECT_EQ(lines_of(answer, "stands in:"), all({elements.path() + ":2", variables.path() + ":2"}));
  EXPECT_EQ(lines_of(answer, "merged with:"),
            all({variables.path() + ":3", variables.path() + ":3", variables.path() + ":2"}));
  EXPECT_TRUE(prints_valid_json(arguments + " --json"));
}

TEST(ToolFindPattern, AsJson) {
  const std::string arguments = "find --json --name 'BPM.*.X' --event image " + channels;
  const run_result result = run(arguments);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, R"({
  "format_version": 1,
  "subcommand": "find",
  "name": "BPM.*.X",
  "channel": null,
  "event": null,
  "reason": null,
  "matches": [
    {
      "name": "BPM.3.L1.X",
      "property": "LINAC.DIAG/BPM/3.L1/X.TRAIN",
      "event_type_mask": 2,
      "event_type_names": [
        "NORMAL"
      ],
      "data_type_mask": 2147483712,
      "slow": false,
      "main_linac": false,
      "sub_channels": 1,
      "event_type": 1,
      "data_type": 38,
      "data_type_names": [
        "BPM_2010"
      ],
      "description": "horizontal beam position",
      "units": "mm",
      "file": ")" + channels +
                            R"(",
      "line": 3,
      "merged_with": [],
      "event": {
        "type": 6,
        "name": "IMAGE",
        "selected": true,
        "remark": "this channel does not have event type IMAGE; a selector asks only whether some channel has it"
      }
    }
  ],
  "unusable": []
}
)");
  EXPECT_TRUE(prints_valid_json(arguments));
}

TEST(ToolFind, JsonNamesFilesThatCannotBeUsed) {
  const std::string arguments = "find --json --name BPM.3.L1.X /nonexistent " + channels;
  const run_result result = run(arguments);
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.out, testing::EndsWith("  \"unusable\": [\n"
                                            "    {\n"
                                            "      \"file\": \"/nonexistent\",\n"
                                            "      \"kind\": null,\n"
                                            "      \"unusable\": \"No such file or directory\"\n"
                                            "    }\n"
                                            "  ]\n}\n"));
  EXPECT_TRUE(prints_valid_json(arguments));
}

TEST(ToolFindWhy, ANameOfAChannelWithoutEventTypeIsSelectedAllTheSame) {
  const test::temporary_file file(
      list(described("<EVTYPE>6</EVTYPE>", "A", "X") + described("", "B", "Y")));
  const run_result result = run("find --name Y --event image " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "selected for IMAGE: yes\nbut:           it is the DAQ name of 'Y' (" +
                            file.path() +
                            ":3), which does not have event type IMAGE; a selector asks only "
                            "whether some channel has it\n");
  EXPECT_EQ(result.err, "zrt4xml: Y: the channel that has it (" + file.path() +
                            ":3) has no event type, so that a client that asks for its types finds "
                            "none\n");
}

TEST(ToolFindWhy, TellsByWhichOtherChannelTheNameIsSelected) {
  const test::temporary_file file(list(described("<EVTYPE>6</EVTYPE>", "A", "X") +
                                       described("<EVTYPE>1</EVTYPE>", "X", "B") +
                                       "<CHANNEL><EVTYPE>4</EVTYPE><PROP>X</PROP></CHANNEL>\n"));
  const auto remark_for = [&](const std::string& event) {
    return lines_of(run("find --name X --event " + event + " " + file.path()).out, "but:");
  };
  EXPECT_EQ(remark_for("image"), all({}));
  EXPECT_EQ(remark_for("normal"), all({"it is the property of 'B' (" + file.path() + ":3)"}));
  EXPECT_EQ(remark_for("env"),
            all({"it is the property of 'B' (" + file.path() +
                 ":3), which does not have event type ENV; a selector asks only whether some "
                 "channel has it"}));
}

TEST(ToolFindWhy, ADaqNameThatWasMergedAwayIsExplained) {
  for (const std::string second :
       {"<DaqFloat><evType>6</evType><vindo>A</vindo><daqName>N2</daqName></DaqFloat>",
        "<DaqFloat><daqName>N2</daqName><evType>6</evType><vindo>A</vindo></DaqFloat>"}) {
    const test::temporary_file file(
        "<DAQvariables>\n"
        "<DaqFloat><evType>6</evType><vindo>A</vindo><daqName>N1</daqName></DaqFloat>\n" +
        second + "\n<DaqFloat><evType>6</evType><vindo>B</vindo></DaqFloat></DAQvariables>");
    const std::string reason = "the channel that has it (" + file.path() +
                               ":3) is merged into 'N1' (" + file.path() +
                               ":2), which has the same property\n";
    const run_result by_name = run("find --name N2 " + file.path());
    EXPECT_EQ(by_name.code, 1);
    EXPECT_EQ(by_name.err, "zrt4xml: N2: " + reason);
    EXPECT_EQ(run("find -i --name n2 " + file.path()).err, "zrt4xml: n2: only 'N2'; " + reason);
    EXPECT_EQ(run("find --name 'N[23]' " + file.path()).err,
              "zrt4xml: N[23]: only 'N2'; " + reason);
    EXPECT_EQ(run("find --name N3 " + file.path()).err,
              "zrt4xml: N3: no channel has this DAQ name or property\n");
  }
}
