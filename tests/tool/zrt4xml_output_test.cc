// Where the tool writes to: what stands there already, and what ends the writing.

#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "tool_support.hh"

using test::channel;
using test::run;
using test::run_result;

namespace {

namespace fs = std::filesystem;

class ToolOutput : public testing::Test {
 protected:
  ToolOutput() {
    std::string pattern = "/tmp/zrt4_out_XXXXXX";
    folder = mkdtemp(pattern.data());
    input = folder + "/in.xml";
    std::ofstream(input) << channel();
    old = folder + "/old.xml";
    std::ofstream(old) << "old";
  }
  ~ToolOutput() override { fs::remove_all(folder); }

  run_result write_to(const std::string& name, const std::string& more = "") const {
    return run("convert " + input + " --to xml -o '" + name + "' " + more);
  }
  static std::string content(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(name).rdbuf();
    return text.str();
  }
  std::size_t files() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
  }

  std::string folder, input, old;
};

}  // namespace

TEST_F(ToolOutput, WriteProtectedFileIsReplacedOnRequestOnly) {
  fs::permissions(old, fs::perms{0444});
  for (const std::string& command :
       {"convert " + input + " --to xml", "merge " + input + " " + input}) {
    const run_result refused = run(command + " -o " + old);
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err,
              "zrt4xml: " + old + ": is write-protected; with -f it is replaced all the same\n");
    EXPECT_EQ(content(old), "old");
  }
  EXPECT_EQ(write_to(old, "-f").code, 0);
  EXPECT_THAT(content(old), testing::StartsWith("<?xml"));
  EXPECT_EQ(fs::status(old).permissions(), fs::perms{0444});
}

TEST_F(ToolOutput, BehindADanglingLinkTheFileIsMade) {
  const std::string target = folder + "/new.xml";
  const std::string link = folder + "/link.xml";
  fs::create_symlink("new.xml", link);
  EXPECT_EQ(write_to(link).code, 0);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_THAT(content(target), testing::StartsWith("<?xml"));
  fs::create_symlink("round.xml", folder + "/round.xml");
  const run_result round = write_to(folder + "/round.xml");
  EXPECT_EQ(round.code, 2);
  EXPECT_EQ(round.err, "zrt4xml: " + folder + "/round.xml: Too many levels of symbolic links\n");
}

TEST_F(ToolOutput, StandardOutputByNameIsAppendedTo) {
  EXPECT_EQ(run("convert " + input + " --to xml -o /dev/stdout >>" + old).code, 0);
  EXPECT_THAT(content(old), testing::StartsWith("old<?xml"));
  EXPECT_THAT(write_to("/dev/stdout").out, testing::StartsWith("<?xml"));
  EXPECT_THAT(run("convert " + input + " --to xml -o /dev/stdout | cat").out,
              testing::StartsWith("<?xml"));
}

TEST_F(ToolOutput, APipeIsWrittenToAndStaysOne) {
  const std::string pipe = folder + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_THAT(
      run("convert " + input + " --to xml -o " + pipe + "; wait", "cat " + pipe + " & ").out,
      testing::StartsWith("<?xml"));
  EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(ToolOutput, NamesMayHoldAnyBytesAndBeAsLongAsNamesCan) {
  for (const std::string& name : {std::string("a\nb\x1b\xff\x80"), std::string(255, 'n')}) {
    EXPECT_EQ(write_to(folder + "/" + name).code, 0);
    EXPECT_THAT(content(folder + "/" + name), testing::StartsWith("<?xml"));
  }
  EXPECT_EQ(run("show '" + folder + "/a\nb'").err,
            "zrt4xml: " + folder + "/a\\x0ab: No such file or directory\n");
}

TEST_F(ToolOutput, SignalsRemoveWhatStandsBesideAndEndTheProgram) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGALRM, SIGUSR1}) {
    const std::string large = folder + "/large.xml";
    std::ofstream(large) << "<CHANDESCRIPTIONS>" << [] {
      std::string all;
      for (int i = 0; i < 10000 / test::random_share; ++i) {
        all += "<CHANNEL><PROP>P" + std::to_string(i) + "</PROP></CHANNEL>\n";
      }
      return all;
    }() << "</CHANDESCRIPTIONS>";
    const pid_t child = fork();
    if (child == 0) {
      execl("/bin/sh", "sh", "-c",
            ("exec " + test::tool() + "convert " + large + " --to xml -o " + old).c_str(), nullptr);
      _exit(127);
    }
    // As soon as a file stands beside, or, when that was missed, at the end.
    int status = 0;
    pid_t ended = 0;
    while (files() == 3 && (ended = waitpid(child, &status, WNOHANG)) == 0) {
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    if (ended == 0) {
      kill(child, signal);
      waitpid(child, &status, 0);
    }
    EXPECT_EQ(files(), 3U);
    const bool was_ended = WIFSIGNALED(status) && WTERMSIG(status) == signal;
    const bool was_done = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    EXPECT_TRUE(was_ended || was_done) << status;
    fs::remove(large);
  }
}

TEST_F(ToolOutput, ALimitOnFilesRemovesWhatStandsBeside) {
  const run_result limited =
      run("convert " + input + " --to xml -o " + old + "; ); echo $?", "( ulimit -f 0; ");
  EXPECT_EQ(limited.out, std::to_string(128 + SIGXFSZ) + "\n");
  EXPECT_EQ(content(old), "old");
  EXPECT_EQ(files(), 2U);
}

#ifndef ZRT4_LEAK_CHECKED  // the sanitizer needs more address space than there is then
TEST_F(ToolOutput, OutOfMemoryNamesTheFile) {
  std::ofstream large(input);
  large << "<CHANDESCRIPTIONS>";
  for (int i = 0; i < 200000; ++i) large << "<CHANNEL><PROP>P" << i << "</PROP></CHANNEL>\n";
  large << "</CHANDESCRIPTIONS>";
  large.close();
  const run_result result = run("show --json " + input + " >/dev/null", "ulimit -v 150000; ");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "zrt4xml: " + input + ": out of memory\n");
}
#endif
