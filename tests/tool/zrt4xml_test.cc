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
  EXPECT_EQ(result.err,
            "zrt4xml: " + file.path() +
                ":1:35: input ended before all started tags were ended; last tag started is 'BMR'\n"
                "zrt4xml: " +
                file.path() + ": not read cleanly (1 error); what could be read is shown\n");
}

TEST(Tool, ErrorsNameStandardInputAndTheirPlace) {
  const test::temporary_file file("<CHANDESCRIPTIONS>\n<CHANNEL>");
  for (const char* const subcommand :
       {"show", "stat", "find --name A", "convert --to xml",
        "merge " ZRT4_SOURCE_DIR "/examples/channels/channels.xml"}) {
    const run_result result = run(std::string(subcommand) + " - <" + file.path());
    EXPECT_EQ(result.code, 1) << subcommand;
    EXPECT_THAT(result.err,
                testing::StartsWith("zrt4xml: standard input:2:10: input ended before all started "
                                    "tags were ended; last tag started is 'CHANNEL'\n"
                                    "zrt4xml: standard input: not read cleanly"))
        << subcommand;
  }
}

TEST(Tool, WhatAReaderMissesIsTold) {
  const test::temporary_file file(
      "<DAQvariables><DaqBits><vindo>A</vindo><bitTitle>on</bitTitle></DaqBits></DAQvariables>");
  const run_result result = run("show --json " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "No attributebit found for bitTitle prop: A\n"
            "No attributebit found for bitTitle prop: A\n"
            "zrt4xml: " +
                file.path() + ": not read cleanly (2 errors); what could be read is shown\n");
}

TEST(Tool, EmptyFileIsCalledEmpty) {
  const test::temporary_file file("");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "zrt4xml: " + file.path() + ": is empty\n");
  EXPECT_EQ(run("stat - </dev/null").err, "zrt4xml: standard input: is empty\n");
}

TEST(Tool, LongNameIsShortenedInAMessage) {
  const test::temporary_file file("<" + std::string(79, 'x') + "\xc3\xa9" + std::string(1000, 'y') +
                                  "/>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, testing::HasSubstr("its root element is '" + std::string(79, 'x') +
                                             "\xc3\xa9...'; known are"));
}

TEST(Tool, BinaryFileIsNoDocument) {
  const test::temporary_file file(
      std::string("\x7f"
                  "ELF\0\1\xff\xfe",
                  8));
  for (const char* const subcommand :
       {"show", "stat", "find --name A", "convert --to xml", "show --json",
        "merge --dry-run " ZRT4_SOURCE_DIR "/examples/channels/channels.xml"}) {
    const run_result result = run(std::string(subcommand) + " " + file.path());
    EXPECT_EQ(result.code, 1) << subcommand;
    EXPECT_THAT(result.err,
                testing::StartsWith("zrt4xml: " + file.path() + ":1:1: not a readable "))
        << subcommand;
  }
}

TEST(Tool, UnknownKindNamesItsRootAndTheKindsKnown) {
  const test::temporary_file file("<html/>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::StartsWith("zrt4xml: " + file.path() +
                                              ":1:8: unknown kind of document: its root element is "
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

// Without the privileges that let root read everything.
TEST(Tool, FileThatMustNotBeReadIsNamed) {
  const test::temporary_file file(one_event);
  std::filesystem::permissions(file.path(), std::filesystem::perms::none);
  const std::string unprivileged =
      geteuid() == 0 ? "setpriv --bounding-set=-dac_override,-dac_read_search env " : "";
  const run_result result = run("show " + file.path(), unprivileged);
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "zrt4xml: " + file.path() + ": Permission denied\n");
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

TEST(Tool, WrongUsageIsToldInOneLineAndWhereHelpIs) {
  const struct {
    const char* arguments;
    const char* told;
  } cases[] = {
      {"", "zrt4xml: A subcommand is required\nTry 'zrt4xml --help'.\n"},
      {"shw x", "zrt4xml: no such subcommand: shw\nTry 'zrt4xml --help'.\n"},
      {"show", "zrt4xml: FILE is required\nTry 'zrt4xml show --help'.\n"},
      {"convert x --to foo",
       "zrt4xml: --to: foo not in {xml,variables,text,short,csv}\nTry 'zrt4xml convert --help'.\n"},
      {"convert x --to 1",
       "zrt4xml: --to: 1 not in {xml,variables,text,short,csv}\nTry 'zrt4xml convert --help'.\n"},
      {"convert x --to xml -o ''",
       "zrt4xml: --output: the name is empty\nTry 'zrt4xml convert --help'.\n"},
      {"find x --name A --event FOO",
       "zrt4xml: --event: no such event type: FOO; zrt4xml types lists them\nTry 'zrt4xml find "
       "--help'.\n"},
  };
  for (const auto& each : cases) {
    const run_result result = run(each.arguments);
    EXPECT_EQ(result.code, 2) << each.arguments;
    EXPECT_EQ(result.out, "") << each.arguments;
    EXPECT_EQ(result.err, each.told) << each.arguments;
  }
}

TEST(Tool, StandardInputCanBeReadOnlyOnce) {
  for (const char* const arguments :
       {"show - -", "check - x -", "stat - -", "find --name A - -", "diff - -", "merge - -",
        "merge x - -", "merge --dry-run - -"}) {
    const run_result result = run(std::string(arguments) + " </dev/null");
    EXPECT_EQ(result.code, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    EXPECT_THAT(result.err,
                testing::StartsWith("zrt4xml: -: standard input can be read only once\n"))
        << arguments;
  }
}

TEST(Tool, ClosedStandardStreamsAreNotMistakenForFiles) {
  const std::string channels = ZRT4_SOURCE_DIR "/examples/channels/channels.xml";
  const run_result no_output = run("show " + channels + " >&-");
  EXPECT_EQ(no_output.code, 2);
  EXPECT_EQ(no_output.err, "zrt4xml: standard output: Bad file descriptor\n");
  const run_result no_input = run("show - <&-");
  EXPECT_EQ(no_input.code, 2);
  EXPECT_EQ(no_input.err, "zrt4xml: standard input: Bad file descriptor\n");
  const test::temporary_file written("");
  EXPECT_EQ(run("convert " + channels + " --to xml -o " + written.path() + " <&- >&- 2>&-").code,
            0);
  EXPECT_EQ(written.content(), run("convert " + channels + " --to xml").out);
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

TEST(Tool, DamagedCameraFileIsShownAsFarAsItGoes) {
  const test::temporary_file file("<Camera><Integer Name='Width'/>\n<Float Name='Gain'></Camera>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out,
              testing::StartsWith("[0] Name:'Width' type:1 ToolTip:'' Description:''\n"));
  EXPECT_THAT(result.err, testing::StartsWith("zrt4xml: " + file.path() + ":2:"));
  EXPECT_THAT(result.err, testing::HasSubstr(": damaged here: expected end of tag 'Float'\n"));
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
              testing::HasSubstr("<UNITS>\xc2\xb5m</UNITS>\n<DESC>\xce\xa9 in Ohm</DESC>\n"));
  EXPECT_EQ(run("show " + converted.path()).out, run("show " + file.path()).out);
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

TEST(ToolConvert, FileIsReplacedOnlyWhenAllWentWell) {
  const test::temporary_file damaged("<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP></CHANNEL>");
  const test::temporary_file good(channel());
  const test::temporary_file dictionary("<ENVINDEXDICT>");
  for (const std::string& arguments :
       {"convert --to xml " + damaged.path(), "convert --to text " + damaged.path(),
        "convert --to xml " + dictionary.path(), "convert --to text " + dictionary.path(),
        "merge " + good.path() + " " + damaged.path(),
        "merge " + damaged.path() + " " + good.path()}) {
    const test::temporary_file old("old");
    const run_result result = run(arguments + " -o " + old.path());
    EXPECT_EQ(result.code, 1) << arguments;
    EXPECT_EQ(old.content(), "old") << arguments;
    EXPECT_THAT(result.err, testing::EndsWith("zrt4xml: " + old.path() +
                                              ": not written, because not all went well; without "
                                              "-o, standard output takes what there is\n"))
        << arguments;
  }
  EXPECT_EQ(run("convert --to short " + damaged.path()).out,
            std::string(35, ' ') + "!!!UNDEFINED!!!\t1\tUNKNOWN\n");
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
  EXPECT_EQ(run("convert " + file.path() + " --lossy --to text -o " + link).code, 0);
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
  const run_result result = run("merge --lossy --to text " + base.path() + " " + from.path());
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
  const run_result other_kind = run("merge " + channels.path() + " " + events.path());
  EXPECT_EQ(other_kind.code, 2);
  EXPECT_THAT(other_kind.err,
              testing::StartsWith("zrt4xml: " + events.path() + ": of another kind"));
  EXPECT_EQ(run("merge " + channels.path() + " /nonexistent").code, 2);
}

TEST(Tool, ExamplesOfTheHelpWork) {
  namespace fs = std::filesystem;
  std::string pattern = "/tmp/zrt4_help_XXXXXX";
  const std::string folder = mkdtemp(pattern.data());
  const std::string from = ZRT4_SOURCE_DIR "/examples/";
  for (const char* name : {"channels.xml", "old.xml", "master.xml"}) {
    fs::copy_file(from + "channels/channels.xml", folder + "/" + name);
  }
  fs::copy_file(from + "channels/channels.xml", folder + "/new.xml");
  fs::copy_file(from + "channels/variables.xml", folder + "/delivered.xml");
  fs::copy_file(from + "event_lists/orbit_feedback.xml", folder + "/events.xml");
  int examples = 0;
  for (const char* subcommand : {"show", "find", "check", "diff", "stat", "convert", "merge",
                                 "list", "set", "types", "page"}) {
    std::istringstream help(run(subcommand + std::string(" --help")).out);
    bool is_example = false;
    for (std::string line; std::getline(help, line);) {
      if (line.rfind("Example:", 0) == 0) is_example = true;
      const std::string start = "  zrt4xml ";
      if (!is_example || line.rfind(start, 0) != 0) continue;
      ++examples;
      const run_result result = run(line.substr(start.size()), "cd " + folder + "; ");
      EXPECT_EQ(result.code, 0) << line << "\n" << result.err;
    }
  }
  EXPECT_GE(examples, 15);
  fs::remove_all(folder);
}
