// The command-line tool, run as a user runs it.

#include <sys/wait.h>

#include "support.hh"

namespace {

struct run_result {
  int code = -1;
  std::string out;
  std::string err;
};

/// Runs "zrt4xml ARGUMENTS" in a shell, with ">" and "<" as the caller writes them.
run_result run(const std::string& arguments, const std::string& before = "") {
  const test::temporary_file out("");
  const test::temporary_file err("");
  const std::string command = before + "LC_ALL=C.UTF-8 " ZRT4_TOOL " " + arguments;
  const std::string redirected = "{ " + command + "\n} >" + out.path() + " 2>" + err.path();
  const int status = std::system(redirected.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out.content(), err.content()};
}

const std::string one_event = "<BMR><EVENT><TYPE>1</TYPE></EVENT></BMR>";
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
                            ":2:1: invalid document structure: not a readable XML document\n");
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
  const run_result result = run("show " ZRT4_SOURCE_DIR "/examples/event_lists/*.xml");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
}
