// How the tool writes a file when the system refuses each of the calls that this takes: the old
// file stays whole, nothing stays beside it, and the message names file and reason.

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <utility>
#include <vector>

#include "descriptor.hh"
#include "file_error.hh"
#include "output_file.hh"
#include "own_locale.hh"
#include "support.hh"
#include "system_calls.hh"

[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

using test::calls;

namespace {

namespace fs = std::filesystem;

const std::string content = "the new content\n";

std::size_t descriptors() {
  const fs::directory_iterator all("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

class OutputFileFaults : public testing::Test {
 protected:
  OutputFileFaults() {
    char pattern[] = "/tmp/zrt4_test_XXXXXX";
    if (mkdtemp(pattern) == nullptr) throw std::runtime_error("no temporary folder");
    folder = pattern;
    name = folder + "/out.xml";
    calls = {};
  }
  ~OutputFileFaults() override {
    calls = {};
    fs::remove_all(folder);
  }

  /// Writes with the calls failing as `calls` says; returns "file: reason", empty when it is done.
  static std::string write_to(const std::string& where) {
    const std::size_t before = descriptors();
    std::string failure;
    calls.watch([&] {
      try {
        write_output(where, content);
      } catch (const file_error& error) {
        failure = error.file + ": " + error.what();
      }
    });
    EXPECT_EQ(descriptors(), before);
    return failure;
  }

  std::vector<std::string> beside() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
      names.push_back(entry.path().filename());
    }
    return names;
  }
  std::string held() const {
    std::ostringstream text;
    text << std::ifstream(name).rdbuf();
    return text.str();
  }

  std::string folder;
  std::string name;
};

}  // namespace

TEST_F(OutputFileFaults, EachCallFailingLeavesTheOldFileWholeAndNothingBeside) {
  const std::pair<int, const char*> reasons[] = {{ENOSPC, "No space left on device"},
                                                 {EIO, "Input/output error"},
                                                 {EDQUOT, "Disk quota exceeded"},
                                                 {EACCES, "Permission denied"}};
  for (const char* call : {"mkstemp", "fchmod", "close", "rename", "write"}) {
    for (const auto& [reason, text] : reasons) {
      SCOPED_TRACE(std::string(call) + ": " + text);
      std::ofstream(name) << "old";
      calls.failing = call;
      calls.error = reason;
      calls.write_results.clear();
      if (calls.failing == "write") calls.write_results = {-1};
      EXPECT_EQ(write_to(name), name + ": " + text);
      EXPECT_EQ(held(), "old");
      EXPECT_THAT(beside(), testing::ElementsAre("out.xml"));
    }
  }
}

TEST_F(OutputFileFaults, EachCallFailingLeavesNothingWhereNothingWas) {
  for (const char* call : {"mkstemp", "fchmod", "close", "rename", "write"}) {
    SCOPED_TRACE(call);
    calls.failing = call;
    calls.error = ENOSPC;
    if (calls.failing == "write") calls.write_results = {3, -1};
    EXPECT_EQ(write_to(name), name + ": No space left on device");
    EXPECT_THAT(beside(), testing::IsEmpty());
  }
}

TEST_F(OutputFileFaults, ShortWritesAreContinued) {
  calls.write_results.assign(content.size(), 1);
  EXPECT_EQ(write_to(name), "");
  EXPECT_EQ(held(), content);
  EXPECT_TRUE(calls.write_results.empty());
}

TEST_F(OutputFileFaults, AnInterruptedWriteIsTakenUpAgain) {
  calls.error = EINTR;
  calls.write_results = {-1, 4, -1, -1, 2};
  EXPECT_EQ(write_to(name), "");
  EXPECT_EQ(held(), content);
}

TEST_F(OutputFileFaults, AWriteThatTakesNothingIsAFailure) {
  std::ofstream(name) << "old";
  calls.write_results = {4, 0};
  EXPECT_EQ(write_to(name), name + ": No space left on device");
  EXPECT_EQ(held(), "old");
  EXPECT_THAT(beside(), testing::ElementsAre("out.xml"));
}

TEST_F(OutputFileFaults, ADeviceIsWrittenInPlace) {
  EXPECT_EQ(write_to("/dev/null"), "");
  EXPECT_EQ(write_to("/dev/full"), "/dev/full: No space left on device");
  calls.failing = "open";
  calls.error = ENXIO;
  EXPECT_EQ(write_to("/dev/null"), "/dev/null: No such device or address");
  calls.failing = "close";
  calls.error = EIO;
  EXPECT_EQ(write_to("/dev/null"), "/dev/null: Input/output error");
}

TEST_F(OutputFileFaults, StandardOutputIsNamedAsSuch) {
  for (const char* call : {"dup", "close", "write"}) {
    SCOPED_TRACE(call);
    calls.failing = call;
    calls.error = ENOSPC;
    calls.write_results.clear();
    if (calls.failing == "write") calls.write_results = {-1};
    std::string failure;
    test::captured([&] { failure = write_to("-"); });
    EXPECT_EQ(failure, "standard output: No space left on device");
  }
}

TEST_F(OutputFileFaults, APipeWithoutReaderIsAFailure) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  std::fflush(stdout);
  const int kept = dup(STDOUT_FILENO);
  dup2(ends[1], STDOUT_FILENO);
  const std::string failure = write_to("");
  dup2(kept, STDOUT_FILENO);
  close(kept);
  close(ends[1]);
  (void)std::signal(SIGPIPE, before);
  EXPECT_EQ(failure, "standard output: Broken pipe");
}
