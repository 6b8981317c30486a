// The command-line tool, run as a user runs it.

#include "tool_support.hh"

using test::channel;
using test::one_event;
using test::run;
using test::run_result;
using test::variable;

namespace {

const std::string one_event_listing =
    "Entry[0]\n"
    "EVENT TYPE:\tNORMAL\n"
    "Trigger mask:\t0x0 (0)\n"
    "Min event time:\t0 sec 0 usec\n"
    "Priority:\t0x0 (0)\n"
    "Server Blocks: 0\n";

}  // namespace

TEST(Tool, ShowsAnEventList) {
  const test::temporary_file file(one_event);
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, one_event_listing);
  EXPECT_EQ(result.err, "");
}

TEST(Tool, ShowsSeveralFilesUnderHeadings) {
  const test::temporary_file a(one_event);
  const test::temporary_file b("<BMR/>");
  const run_result result = run("show " + a.path() + " " + b.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "==> " + a.path() + " <==\n" + one_event_listing + "==> " + b.path() + " <==\n");
}

TEST(Tool, ReadsStandardInput) {
  const test::temporary_file file(one_event);
  EXPECT_EQ(run("show - <" + file.path()).out, one_event_listing);
  const run_result piped = run("show -", "printf '%s' '" + one_event + "' | ");
  EXPECT_EQ(piped.code, 0);
  EXPECT_EQ(piped.out, one_event_listing);
}

TEST(Tool, ReadsAPipeByName) {
  const run_result result = run("show /dev/stdin", "printf '%s' '" + one_event + "' | ");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, one_event_listing);
}

TEST(Tool, BrokenDocumentIsShownAsFarAsItGoes) {
  const test::temporary_file file("<BMR><EVENT><TYPE>1</TYPE></EVENT>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, one_event_listing);
  EXPECT_EQ(result.err, "\nFatal Error at (file " + file.path() +
                            ", line 1, char 35): input ended before all started tags were ended; "
                            "last tag started is 'BMR'\n"
                            "zrt4xml: " +
                            file.path() +
                            ": not read cleanly (1 error); what could be read is shown\n");
}

TEST(Tool, UnknownKindNamesItsRootAndTheKindsKnown) {
  const test::temporary_file file("<html/>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::StartsWith("zrt4xml: " + file.path() +
                                              ": unknown kind of document: its root element is "
                                              "'html'; known are BMR (event list)"));
}

TEST(Tool, WhatIsNoXmlIsNamedWithItsPlace) {
  const test::temporary_file file("\nplain text");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "zrt4xml: " + file.path() +
                            ":2:1: not a readable XML document: invalid document structure\n");
}

TEST(Tool, MissingFileAndDirectoryCannotBeOpened) {
  const run_result missing = run("show /nonexistent/list.xml");
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.err, "zrt4xml: /nonexistent/list.xml: No such file or directory\n");
  const run_result directory = run("show /tmp");
  EXPECT_EQ(directory.code, 2);
  EXPECT_EQ(directory.err, "zrt4xml: /tmp: Is a directory\n");
}

TEST(Tool, WorstExitCodeOfSeveralFilesCounts) {
  const test::temporary_file good(one_event);
  const test::temporary_file bad("<html/>");
  EXPECT_EQ(run("show " + bad.path() + " " + good.path()).code, 1);
  const run_result result = run("show /nonexistent " + bad.path() + " " + good.path());
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.out, testing::EndsWith(one_event_listing));
}

TEST(Tool, WrongUsage) {
  for (const char* const arguments : {"", "show", "shw x", "show --no-such-option x"}) {
    const run_result result = run(arguments);
    EXPECT_EQ(result.code, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_THAT(result.err, testing::HasSubstr("--help")) << arguments;
  }
}

TEST(Tool, HelpHasAnExample) {
  const run_result result = run("--help");
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::HasSubstr("Example:\n  zrt4xml show events.xml\n"));
  EXPECT_EQ(run("show --help").code, 0);
}

TEST(Tool, TellsItsVersion) {
  const run_result result = run("--version");
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::MatchesRegex("zrt4xml [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(Tool, FullDeviceIsAnError) {
  const test::temporary_file file(one_event);
  const run_result result = run("show " + file.path() + " >/dev/full");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "zrt4xml: standard output: No space left on device\n");
}

TEST(Tool, ClosedPipeIsQuiet) {
  const run_result result =
      run("show " ZRT4_SOURCE_DIR "/examples/event_lists/whole_machine.xml | head -n 1");
  EXPECT_EQ(result.out, "Entry[0]\n");
  EXPECT_EQ(result.err, "");
}

TEST(Tool, ShowsTheExamples) {
  const run_result result = run("show " ZRT4_SOURCE_DIR "/examples/*/*.xml");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
}

TEST(Tool, ShowsEventTypesOfBothDialectsAsMasks) {
  for (const std::string& document : {channel(), variable}) {
    const test::temporary_file file(document);
    const run_result result = run("show " + file.path());
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, testing::StartsWith("========================\n"
                                                "ZRT4 XML Channel Description (XCD)\n"
                                                "--------------[0]-----------------\n"
                                                " stream   : 0 \n"
                                                " ev type  : 0x2 NORMAL\n"));
  }
}

TEST(Tool, ShowsADictionaryWithoutCuttingNames) {
  const std::string name(200, 'n');
  const test::temporary_file file("<ENVINDEXDICT><CHANNEL><INDEX>7</INDEX><PROP>" + name +
                                  "</PROP><DABS>0.5</DABS></CHANNEL></ENVINDEXDICT>");
  EXPECT_EQ(run("show " + file.path()).out,
            "-------------- 1 -----------------\n"
            " Index : 7\n"
            " Channel: " +
                name + " DABS 0.5 DREL 0\n");
}

TEST(Tool, RecognisesACameraByItsFeatures) {
  const test::temporary_file file("<Camera><Integer Name='Width'/></Camera>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "[0] Name:'Width' type:1 ToolTip:'' Description:''\n");
}

TEST(Tool, KindForcesACamera) {
  const test::temporary_file file("<BMR><Integer Name='Width'/></BMR>");
  EXPECT_EQ(run("show --kind camera " + file.path()).out,
            "[0] Name:'Width' type:1 ToolTip:'' Description:''\n");
  EXPECT_EQ(run("show " + file.path()).out, "");
  EXPECT_EQ(run("show --kind nonsense " + file.path()).code, 2);
}

TEST(Tool, DamagedCameraFileIsShownAsFarAsItGoes) {
  const test::temporary_file file("<Camera><Integer Name='Width'/>\n<Float Name='Gain'></Camera>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out,
              testing::StartsWith("[0] Name:'Width' type:1 ToolTip:'' Description:''\n"));
  EXPECT_THAT(result.err, testing::StartsWith("zrt4xml: " + file.path() + ":2:"));
  EXPECT_THAT(result.err, testing::HasSubstr(": damaged here: expected end of tag 'Float'\n"));
}

TEST(ToolFind, PrintsWhatTheSelectorAnswers) {
  const test::temporary_file file(channel());
  const run_result result = run("find --name A/B/C --event NORMAL " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "channel:       A.C\n"
            "property:      A/B/C\n"
            "event types:   0x2 NORMAL\n"
            "data type:     0x80000200\n"
            "slow:          no\n"
            "main linac:    no\n"
            "sub-channels:  0\n"
            "selected for NORMAL: yes\n");
  EXPECT_EQ(result.err, "");
}

TEST(ToolFind, EventTypeByNumberAndBothDialects) {
  const test::temporary_file file(variable);
  const run_result result = run("find --name A/B/C --event 1 - <" + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::HasSubstr("event types:   0x2 NORMAL\n"));
  EXPECT_THAT(result.out, testing::EndsWith("selected for NORMAL: yes\n"));
}

TEST(ToolFind, NotSelectedOrNotFoundIsExitCodeOne) {
  const test::temporary_file file(channel());
  const run_result other_event = run("find --name A/B/C --event BOR " + file.path());
  EXPECT_EQ(other_event.code, 1);
  EXPECT_THAT(other_event.out, testing::EndsWith("selected for BOR: no\n"));
  const run_result unknown = run("find --name nothing " + file.path());
  EXPECT_EQ(unknown.code, 1);
  EXPECT_EQ(unknown.out, "CHANNEL nothing NOT FOUND\n");
}

TEST(ToolFind, WrongUsage) {
  const test::temporary_file file(channel());
  EXPECT_EQ(run("find " + file.path()).code, 2);
  EXPECT_EQ(run("find --name A.C --event NONSENSE " + file.path()).code, 2);
  EXPECT_EQ(run("find --name A.C --event 32 " + file.path()).code, 2);
  EXPECT_EQ(run("find --name A.C /nonexistent").code, 2);
}

TEST(ToolConvert, DocumentKeepsTheNumbersOfTypes) {
  const test::temporary_file file(channel());
  EXPECT_EQ(run("convert " + file.path() + " --to xml").out,
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n"
            "<CHANDESCRIPTIONS>\n<CHANNEL>\n<STREAM>0</STREAM>\n<EVTYPE>1</EVTYPE>\n"
            "<DTYPE>41</DTYPE>\n<DB_KEY>-1</DB_KEY>\n<COUNT>0</COUNT>\n<SB_NAME></SB_NAME>\n"
            "<PROP>A/B/C</PROP>\n<NAME>A.C</NAME>\n<SETPOINT>0</SETPOINT>\n"
            "<SUBSYSTEM></SUBSYSTEM>\n<UNITS></UNITS>\n<DESC></DESC>\n<SIZE>1</SIZE>\n"
            "</CHANNEL>\n</CHANDESCRIPTIONS>\n\n");
  EXPECT_EQ(run("convert " + file.path() + " --to variables").out,
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n"
            "<DAQvariables>\n<DaqFloat>\n<evType>1</evType>\n<vindo>A/B/C</vindo>\n"
            "<daqName>A.C</daqName>\n<DBKey>-1</DBKey>\n<setPoint>0</setPoint>\n"
            "<sbName></sbName>\n<subSystem></subSystem>\n<description></description>\n"
            "<units></units>\n<freq>1</freq>\n</DaqFloat>\n</DAQvariables>\n\n");
}

TEST(ToolConvert, TextShowsMasks) {
  const test::temporary_file file(channel());
  EXPECT_EQ(run("convert " + file.path() + " --to text").out,
            "0\t2\tA.C\tA/B/C\t0\t\"\"\t\"\"\t1\t0\t0\n");
  EXPECT_EQ(run("convert " + file.path() + " --to short").out,
            std::string(47, ' ') + "A.C\t1\tSINGLE\n");
}

TEST(ToolConvert, ExamplesReadBackTheSame) {
  const std::string original = ZRT4_SOURCE_DIR "/examples/channels/linac.xml";
  const test::temporary_file converted("");
  EXPECT_EQ(run("convert " + original + " --to xml -o " + converted.path()).code, 0);
  EXPECT_EQ(run("show " + converted.path()).out, run("show " + original).out);
}

TEST(ToolConvert, TextsOutsideAsciiReadBackTheSame) {
  const std::string texts = "<UNITS>\xc2\xb5m</UNITS><DESC>\xce\xa9 in Ohm</DESC>";
  const test::temporary_file file(channel(texts));
  const test::temporary_file converted("");
  const run_result result = run("convert " + file.path() + " --to xml -o " + converted.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(converted.content(),
              testing::HasSubstr("<UNITS>\xb5m</UNITS>\n<DESC>&#937; in Ohm</DESC>\n"));
  EXPECT_EQ(run("show " + converted.path()).out, run("show " + file.path()).out);
}

TEST(ToolConvert, TextThatReferencesWouldLoseIsTold) {
  const test::temporary_file file(channel("<DESC>5 k\xce\xa9</DESC>"));
  const run_result result = run("convert " + file.path() + " --to xml");
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::HasSubstr("<DESC>5 k&#937;</DESC>\n"));
  EXPECT_EQ(result.err, "zrt4xml: " + file.path() +
                            ": channel 'A/B/C', field DESC: the text holds a character that "
                            "ISO-8859-1 lacks: readers lose what stands before it\n");
}

TEST(ToolConvert, TextThatWouldBreakTheDocumentIsRefused) {
  for (const char* const text : {"&amp;x", "&lt;x"}) {
    const test::temporary_file file(channel(std::string("<UNITS>") + text + "</UNITS>"));
    const test::temporary_file old("old");
    const run_result result = run("convert " + file.path() + " --to xml -o " + old.path());
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(old.content(), "old");
    EXPECT_THAT(result.err,
                testing::StartsWith("zrt4xml: " + file.path() +
                                    ": channel 'A/B/C', field UNITS: the text holds '"));
    EXPECT_EQ(run("convert " + file.path() + " --to text").code, 0);
  }
}

TEST(ToolConvert, DictionaryInBothWidths) {
  const std::string name(100, 'n');
  const test::temporary_file file("<ENVINDEXDICT><CHANNEL><INDEX>7</INDEX><PROP>" + name +
                                  "</PROP><DABS>0.5</DABS></CHANNEL></ENVINDEXDICT>");
  const std::string numbers = "\t0.500000\t0.000000\n";
  EXPECT_EQ(run("convert " + file.path() + " --to text").out, "7\t" + name.substr(0, 79) + numbers);
  EXPECT_EQ(run("convert --wide " + file.path() + " --to text").out, "7\t" + name + numbers);
  EXPECT_THAT(run("convert --wide " + file.path() + " --to xml").out,
              testing::EndsWith("<CHANNEL>\n<INDEX>7</INDEX>\n<PROP>" + name +
                                "</PROP>\n<DABS>0.500000</DABS>\n<DREL>0.000000</DREL>\n"
                                "</CHANNEL>\n</ENVINDEXDICT>\n\n"));
  EXPECT_EQ(run("convert " + file.path() + " --to variables").code, 2);
  EXPECT_EQ(run("convert " + file.path() + " --to short").code, 2);
}

TEST(ToolConvert, WrongUsage) {
  const test::temporary_file channels(channel());
  const test::temporary_file events(one_event);
  EXPECT_EQ(run("convert " + channels.path()).code, 2);
  EXPECT_EQ(run("convert " + channels.path() + " --to nonsense").code, 2);
  EXPECT_EQ(run("convert --wide " + channels.path() + " --to xml").code, 2);
  EXPECT_EQ(run("convert " + events.path() + " --to xml").code, 2);
}

TEST(ToolConvert, FailedWriteLeavesTheOldFileAndNothingBeside) {
  const test::temporary_file file(channel());
  for (const char* const place : {"/dev/full", "/nonexistent/out.xml", "/tmp"}) {
    const run_result result = run("convert " + file.path() + " --to xml -o " + place);
    EXPECT_EQ(result.code, 2) << place;
    EXPECT_THAT(result.err, testing::HasSubstr(std::string(place) + ": ")) << place;
  }
  EXPECT_EQ(run("convert " + file.path() + " --to xml >/dev/full").code, 2);

  // No room for the document: the size of files is limited to nothing.
  char folder[] = "/tmp/zrt4_test_XXXXXX";
  ASSERT_NE(mkdtemp(folder), nullptr);
  const std::string old = std::string(folder) + "/old.xml";
  std::ofstream(old) << "old";
  const run_result limited =
      run("convert " + file.path() + " --to xml -o " + old, "trap '' XFSZ; ulimit -f 0; ");
  EXPECT_NE(limited.code, 0);
  std::ostringstream kept;
  kept << std::ifstream(old).rdbuf();
  EXPECT_EQ(kept.str(), "old");
  const auto beside = std::filesystem::directory_iterator(folder);
  EXPECT_EQ(std::distance(begin(beside), end(beside)), 1);
  std::filesystem::remove_all(folder);
}

TEST(ToolConvert, OutputKeepsModeAndFollowsLinks) {
  const test::temporary_file file(channel());
  const test::temporary_file target("old");
  const std::string link = target.path() + ".link";
  std::filesystem::create_symlink(target.path(), link);
  std::filesystem::permissions(target.path(), std::filesystem::perms{0640});
  EXPECT_EQ(run("convert " + file.path() + " --to text -o " + link).code, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_THAT(target.content(), testing::StartsWith("0\t2\tA.C"));
  EXPECT_EQ(std::filesystem::status(target.path()).permissions(), std::filesystem::perms{0640});
  std::filesystem::remove(link);
}

TEST(ToolMerge, CompletesKnownChannelsAndAddsNewOnes) {
  const test::temporary_file base(channel());
  const test::temporary_file from(
      "<CHANDESCRIPTIONS><CHANNEL><STREAM>4</STREAM><PROP>A/B/C</PROP><NAME>other</NAME>"
      "<UNITS>mm</UNITS></CHANNEL><CHANNEL><PROP>D</PROP></CHANNEL></CHANDESCRIPTIONS>");
  const run_result result = run("merge --to text " + base.path() + " " + from.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "4\t2\tA.C\tA/B/C\t0\t\"\"\t\"mm\"\t1\t0\t0\n"
            "0\t0\t!!!UNDEFINED!!!\tD\t0\t\"\"\t\"\"\t1\t0\t0\n");
  EXPECT_THAT(run("merge --force --to text " + base.path() + " " + from.path()).out,
              testing::StartsWith("4\t2\tother\tA/B/C\t"));
}

TEST(ToolMerge, WritesTheDialectOfTheFirstFile) {
  const test::temporary_file elements(channel());
  const test::temporary_file variables(variable);
  EXPECT_THAT(run("merge " + elements.path() + " " + variables.path()).out,
              testing::HasSubstr("<CHANDESCRIPTIONS>"));
  EXPECT_THAT(run("merge " + variables.path() + " " + elements.path()).out,
              testing::HasSubstr("<DAQvariables>"));
}

TEST(ToolMerge, WrongUsage) {
  const test::temporary_file channels(channel());
  const test::temporary_file events(one_event);
  EXPECT_EQ(run("merge " + channels.path()).code, 2);
  EXPECT_EQ(run("merge " + channels.path() + " " + events.path()).code, 2);
  EXPECT_EQ(run("merge " + channels.path() + " /nonexistent").code, 2);
}
