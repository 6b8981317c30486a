// Several files at once: what is printed does not depend on how many.

#include <sys/inotify.h>

#include <array>

#include "tool_support.hh"

using test::one_event;
using test::run;
using test::run_on_terminal;
using test::run_result;

namespace {

namespace fs = std::filesystem;

/// A folder of many documents of every kind, good and bad.
#ifdef ZRT4_LEAK_CHECKED
const std::vector<std::string> numbers_of_jobs{" -j8"};  // what each takes is a multiple there
#else
const std::vector<std::string> numbers_of_jobs{" -j 2", " -j8", " --jobs=256", ""};
#endif

class ToolJobs : public testing::Test {
 protected:
  ToolJobs() {
    std::string pattern = "/tmp/zrt4_jobs_XXXXXX";
    folder = mkdtemp(pattern.data());
    const std::array<std::string, 10> contents = {
        one_event,
        test::channel(),
        test::variable,
        "<BMR><EVENT><TYPE>1</TYPE></EVENT>\n<EVENT>",
        "<CHANDESCRIPTIONS>\n<CHANNEL><PROP>A</PROP><DESC>&none;</DESC></CHANNEL>",
        "<DAQvariables><DaqBits><vindo>A</vindo>\n<bitTitle>on</bitTitle></DaqBits></DAQvariables>",
        "<Camera><Integer Name='Width'/>\n<Float Name='Gain'></Camera>",
        "<unknown/>",
        "no document\n",
        ""};
    for (int i = 0; i < 60; ++i) {
      const std::string name = std::to_string(1000 + i) + ".xml";
      const auto number = static_cast<std::size_t>(i);
      std::ofstream(folder + "/" + name) << contents[number * 7 % contents.size()];
      names += name + " ";
      if (i == 20) names += "missing.xml - ";
      if (i == 21) names += folder + " ";  // which is a directory
      // Some take longer, so that others overtake them.
      if (i % 10 == 3) names += "large.xml ";
    }
    std::ofstream large(folder + "/large.xml");
    large << "<CHANDESCRIPTIONS>\n";
    for (int i = 0; i < 500 / test::random_share; ++i) {
      large << "<CHANNEL><EVTYPE>40</EVTYPE><PROP>P" << i << "</PROP><NAME>N</NAME></CHANNEL>\n";
    }
    large << "</CHANDESCRIPTIONS>\n";
  }
  ~ToolJobs() override { fs::remove_all(folder); }

  run_result ran(const std::string& arguments, const std::string& redirected = "") const {
    return run(arguments + " " + names + redirected,
               "cd " + folder + "; printf '" + test::channel() + "' | ");
  }

  std::string folder;
  std::string names;
};

}  // namespace

TEST_F(ToolJobs, PrintTheSameForEveryNumber) {
  for (const std::string subcommand :
       {"show", "show --json", "show --kind channels", "check", "check --json", "stat",
        "stat --json", "-q show", "-q check", "-q check --json"}) {
    const run_result one = ran(subcommand + " -j 1");
    EXPECT_EQ(one.code, 2);
    EXPECT_THAT(one.err, testing::HasSubstr("zrt4xml: missing.xml: No such file or directory\n"));
    EXPECT_THAT(one.err, testing::HasSubstr(": Is a directory\n"));
    const std::string in_one_stream = ran(subcommand + " -j 1", "2>&1").out;
    EXPECT_EQ(in_one_stream.size(), one.out.size() + one.err.size());
    for (const std::string& jobs : numbers_of_jobs) {
      const run_result several = ran(subcommand + jobs);
      EXPECT_EQ(several.code, one.code) << subcommand << jobs;
      EXPECT_EQ(several.out, one.out) << subcommand << jobs;
      EXPECT_EQ(several.err, one.err) << subcommand << jobs;
      EXPECT_EQ(ran(subcommand + jobs, "2>&1").out, in_one_stream) << subcommand << jobs;
    }
  }
}

TEST_F(ToolJobs, FollowTheOrderOfTheFiles) {
  const std::string out = ran("show -j 4").out;
  std::string headings;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("==> ", 0) == 0) headings += line + "\n";
  }
  std::string expected;
  std::istringstream words(names);
  for (std::string name; words >> name;) {
    if (name == "missing.xml" || name == folder) continue;
    expected += "==> " + (name == "-" ? "standard input" : name) + " <==\n";
  }
  EXPECT_EQ(headings, expected);
}

TEST(ToolJobsOption, TakesAPositiveNumber) {
  const test::temporary_file file(one_event);
  for (const std::string wrong : {"-j 0", "-j -1", "-j x", "-j 2x", "-j 257", "-j ''"}) {
    const run_result result = run("stat " + wrong + " " + file.path());
    EXPECT_EQ(result.code, 2) << wrong;
    EXPECT_EQ(result.out, "") << wrong;
    EXPECT_THAT(result.err, testing::EndsWith("Try 'zrt4xml stat --help'.\n")) << wrong;
  }
  EXPECT_EQ(run("stat -j 257 " + file.path()).err,
            "zrt4xml: --jobs: not a number from 1 to 256: 257\nTry 'zrt4xml stat --help'.\n");
  EXPECT_EQ(run("stat -j 256 " + file.path()).code, 0);
}

TEST(ToolJobsOption, LateStandardInputKeepsItsPlace) {
  const test::temporary_file before(one_event);
  const test::temporary_file behind(test::channel());
  const std::string names = before.path() + " - " + behind.path();
  const run_result result =
      run("stat -j 4 " + names, "{ sleep 0.7; printf '" + one_event + "'; } | ");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  const std::string counted = ": event list, 1 event\nevent type\n  1 NORMAL      1\n";
  EXPECT_THAT(result.out, testing::StartsWith(before.path() + counted + "standard input" + counted +
                                              behind.path() + ": channel descriptions"));
}

TEST(ToolJobsOption, TerminalTellsWhichFileIsWaitedFor) {
  const test::temporary_file before(one_event);
  const std::string shown = run_on_terminal("stat -j 4 " + before.path() + " -",
                                            "{ sleep 2; printf '" + one_event + "'; } | ");
  EXPECT_THAT(shown, testing::StartsWith(before.path() + ": event list, 1 event\r\n"));
  EXPECT_THAT(shown, testing::HasSubstr("\r\033[Kzrt4xml: reading standard input ... "));
  EXPECT_THAT(shown, testing::HasSubstr(" s\r\033[Kstandard input: event list, 1 event\r\n"));
}

TEST(ToolJobsOption, EachFileIsOpenedOnce) {
  for (const std::string& content : {one_event, test::channel(), test::variable,
                                     std::string("<Camera><Integer Name='Width'/></Camera>")}) {
    for (const std::string subcommand : {"show", "show --json", "check", "stat"}) {
      const test::temporary_file file(content);
      const int watch = inotify_init1(IN_NONBLOCK);
      // Both: a second of the same kind in a row would not be told.
      ASSERT_NE(inotify_add_watch(watch, file.path().c_str(), IN_OPEN | IN_CLOSE), -1);
      EXPECT_EQ(run(subcommand + " " + file.path()).code, 0) << subcommand << content;
      alignas(inotify_event) char events[4096];
      EXPECT_EQ(read(watch, events, sizeof events), static_cast<ssize_t>(2 * sizeof(inotify_event)))
          << subcommand << content;
      close(watch);
    }
  }
}
