// How the tool writes a file when the system refuses each of the calls that this takes: the old
// file stays whole, nothing stays beside it, and the message names file and reason. The linker puts
// this program's calls in front of the real ones.

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <deque>
#include <utility>
#include <vector>

#include "file_error.hh"
#include "descriptor.hh"
#include "output_file.hh"
#include "own_locale.hh"
#include "support.hh"
#include "zrt4_export.hh"

[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

namespace {

struct {
  std::string failing;  // the call that fails
  int error = 0;
  std::deque<ssize_t> write_results;  // what the next writes may write; then as much as given
  bool armed = false;
} watch;

bool fails(const char* call) {
  if (!watch.armed || watch.failing != call) return false;
  errno = watch.error;
  return true;
}

}  // namespace

extern "C" {
int __real_mkstemp(char* pattern);
int __real_fchmod(int descriptor, mode_t mode);
int __real_rename(const char* from, const char* to);
int __real_close(int descriptor);
int __real_dup(int descriptor);
int __real_open(const char* name, int flags, ...);
ssize_t __real_write(int descriptor, const void* bytes, std::size_t size);

// Visible, because linkers also count the shared libraries' calls among those that go through
// these.
ZRT4_EXPORT int __wrap_mkstemp(char* pattern);
ZRT4_EXPORT int __wrap_fchmod(int descriptor, mode_t mode);
ZRT4_EXPORT int __wrap_rename(const char* from, const char* to);
ZRT4_EXPORT int __wrap_close(int descriptor);
ZRT4_EXPORT int __wrap_dup(int descriptor);
ZRT4_EXPORT int __wrap_open(const char* name, int flags, mode_t mode);
ZRT4_EXPORT ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size);

int __wrap_mkstemp(char* pattern) {
  return fails("mkstemp") ? -1 : __real_mkstemp(pattern);
}
int __wrap_fchmod(int descriptor, mode_t mode) {
  return fails("fchmod") ? -1 : __real_fchmod(descriptor, mode);
}
int __wrap_rename(const char* from, const char* to) {
  return fails("rename") ? -1 : __real_rename(from, to);
}
// A close that fails has closed: what it tells is that something was not written.
int __wrap_close(int descriptor) {
  const int result = __real_close(descriptor);
  return fails("close") ? -1 : result;
}
int __wrap_dup(int descriptor) {
  return fails("dup") ? -1 : __real_dup(descriptor);
}
int __wrap_open(const char* name, int flags, mode_t mode) {
  return fails("open") ? -1 : __real_open(name, flags, mode);
}
ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
  if (!watch.armed) return __real_write(descriptor, bytes, size);
  if (!watch.write_results.empty()) {
    const ssize_t result = watch.write_results.front();
    watch.write_results.pop_front();
    if (result < 0) errno = watch.error;
    if (result <= 0) return result;
    size = std::min(size, static_cast<std::size_t>(result));
  }
  return __real_write(descriptor, bytes, size);
}
}

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
    watch = {};
  }
  ~OutputFileFaults() override {
    watch = {};
    fs::remove_all(folder);
  }

  /// Writes with the calls failing as `watch` says; returns "file: reason", empty when it is done.
  static std::string write_to(const std::string& where) {
    const std::size_t before = descriptors();
    std::string failure;
    watch.armed = true;
    try {
      write_output(where, content);
    } catch (const file_error& error) {
      failure = error.file + ": " + error.what();
    }
    watch.armed = false;
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
      watch.failing = call;
      watch.error = reason;
      watch.write_results.clear();
      if (watch.failing == "write") watch.write_results = {-1};
      EXPECT_EQ(write_to(name), name + ": " + text);
      EXPECT_EQ(held(), "old");
      EXPECT_THAT(beside(), testing::ElementsAre("out.xml"));
    }
  }
}

TEST_F(OutputFileFaults, EachCallFailingLeavesNothingWhereNothingWas) {
  for (const char* call : {"mkstemp", "fchmod", "close", "rename", "write"}) {
    SCOPED_TRACE(call);
    watch.failing = call;
    watch.error = ENOSPC;
    if (watch.failing == "write") watch.write_results = {3, -1};
    EXPECT_EQ(write_to(name), name + ": No space left on device");
    EXPECT_THAT(beside(), testing::IsEmpty());
  }
}

TEST_F(OutputFileFaults, ShortWritesAreContinued) {
  watch.write_results.assign(content.size(), 1);
  EXPECT_EQ(write_to(name), "");
  EXPECT_EQ(held(), content);
  EXPECT_TRUE(watch.write_results.empty());
}

TEST_F(OutputFileFaults, AnInterruptedWriteIsTakenUpAgain) {
  watch.error = EINTR;
  watch.write_results = {-1, 4, -1, -1, 2};
  EXPECT_EQ(write_to(name), "");
  EXPECT_EQ(held(), content);
}

TEST_F(OutputFileFaults, AWriteThatTakesNothingIsAFailure) {
  std::ofstream(name) << "old";
  watch.write_results = {4, 0};
  EXPECT_EQ(write_to(name), name + ": No space left on device");
  EXPECT_EQ(held(), "old");
  EXPECT_THAT(beside(), testing::ElementsAre("out.xml"));
}

TEST_F(OutputFileFaults, ADeviceIsWrittenInPlace) {
  EXPECT_EQ(write_to("/dev/null"), "");
  EXPECT_EQ(write_to("/dev/full"), "/dev/full: No space left on device");
  watch.failing = "open";
  watch.error = ENXIO;
  EXPECT_EQ(write_to("/dev/null"), "/dev/null: No such device or address");
  watch.failing = "close";
  watch.error = EIO;
  EXPECT_EQ(write_to("/dev/null"), "/dev/null: Input/output error");
}

TEST_F(OutputFileFaults, StandardOutputIsNamedAsSuch) {
  for (const char* call : {"dup", "close", "write"}) {
    SCOPED_TRACE(call);
    watch.failing = call;
    watch.error = ENOSPC;
    watch.write_results.clear();
    if (watch.failing == "write") watch.write_results = {-1};
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
