// What holds for every subcommand: progress on a terminal, quiet, closed pipes.

#include <regex>

#include "tool_support.hh"

using test::one_event;
using test::run;
using test::run_on_terminal;
using test::run_result;

namespace {

const std::string wiped = "\r\033[K";

const std::string orbit_feedback = ZRT4_SOURCE_DIR "/examples/event_lists/orbit_feedback.xml";

/// Delivers the example to standard input after `seconds`.
std::string late(const std::string& seconds) {
  return "{ sleep " + seconds + "; cat " + orbit_feedback + "; } | ";
}

}  // namespace

TEST(ToolProgress, IsShownAfterHalfASecondAndWiped) {
  const std::string shown = run_on_terminal("stat -", late("2"));
  // How late a busy machine is does not matter.
  std::smatch times;
  const std::regex progress(
      "^\r\x1b\\[Kzrt4xml: reading standard input \\.\\.\\. ([0-9]+)[.,]([0-9]) s"
      "\r\x1b\\[Kzrt4xml: reading standard input \\.\\.\\. ([0-9]+)[.,]([0-9]) s");
  ASSERT_TRUE(std::regex_search(shown, times, progress)) << shown;
  EXPECT_GE(std::stoi(times[1]) * 10 + std::stoi(times[2]), 5);
  EXPECT_GE(std::stoi(times[3]) * 10 + std::stoi(times[4]), 7);
  EXPECT_THAT(shown, testing::HasSubstr(" s" + wiped + "standard input: "));
}

TEST(ToolProgress, ShortWorkShowsNone) {
  EXPECT_THAT(run_on_terminal("stat -", late("0.1")), testing::Not(testing::HasSubstr("reading")));
}

TEST(ToolProgress, OnlyOnATerminalAndNotWhenQuiet) {
  const run_result result = run("stat -", late("0.7"));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(run_on_terminal("-q stat -", late("0.7")),
              testing::Not(testing::HasSubstr("reading")));
}

TEST(ToolQuiet, LeavesOutWhatTheExitCodeSays) {
  const test::temporary_file broken("<BMR><EVENT><TYPE>1</TYPE></EVENT>");
  const run_result result = run("-q show " + broken.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::StartsWith("Entry[0]\n"));
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(run("show --quiet " + broken.path()).err, "");
}

TEST(ToolQuiet, FindSaysItByTheExitCode) {
  const test::temporary_file file(test::channel());
  const run_result found = run("find -q --name A/B/C " + file.path());
  EXPECT_EQ(found.code, 0);
  EXPECT_EQ(found.out + found.err, "");
  const run_result unknown = run("find -q --name nothing " + file.path());
  EXPECT_EQ(unknown.code, 1);
  EXPECT_EQ(unknown.out + unknown.err, "");
}

TEST(ToolQuiet, StillTellsWhatMakesTheExitCodeTwo) {
  const run_result missing = run("-q show /nonexistent");
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.err, "zrt4xml: /nonexistent: No such file or directory\n");
  const run_result full = run("-q show " + orbit_feedback + " >/dev/full");
  EXPECT_EQ(full.code, 2);
  EXPECT_EQ(full.err, "zrt4xml: standard output: No space left on device\n");
}

TEST(ToolPipe, ClosedPipeIsQuietWhateverTheParentIgnores) {
  for (const char* const subcommand :
       {"show", "show --json", "check", "stat --json", "check --json", "convert --to xml",
        "convert -q --to text"}) {
    const run_result result =
        run(std::string(subcommand) + " " ZRT4_SOURCE_DIR "/examples/channels/linac.xml | true",
            "trap '' PIPE; ");
    EXPECT_EQ(result.err, "") << subcommand;
  }
}

TEST(ToolPipe, EverySubcommandReadsStandardInput) {
  const std::string channels = ZRT4_SOURCE_DIR "/examples/channels/channels.xml";
  for (const std::string arguments :
       {"show -", "show --json -", "find --name BPM.3.L1.X -", "check -", "stat -",
        "diff - " ZRT4_SOURCE_DIR "/examples/channels/channels.xml",
        "diff " ZRT4_SOURCE_DIR "/examples/channels/channels.xml -", "convert - --to xml",
        "merge - " ZRT4_SOURCE_DIR "/examples/channels/variables.xml",
        "merge --to xml " ZRT4_SOURCE_DIR "/examples/channels/variables.xml -"}) {
    const run_result result = run(arguments + " <" + channels);
    EXPECT_EQ(result.code, 0) << arguments;
    EXPECT_EQ(result.err, "") << arguments;
  }
}
