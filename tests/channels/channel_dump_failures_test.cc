// Dumping channel descriptions where the system refuses: files and descriptors.

#include <fcntl.h>
#include <sys/stat.h>

#include <csignal>

#include "channel_dumping.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

using test::captured;
using test::ChanDescrDump;
using test::pipe_pair;
using test::records;
using test::two_channels;
using test::without_date;

namespace {

constexpr const char* write_failed = "dump_chan_desr()  write failed\n";

}  // namespace

// Files that cannot be opened

TEST(ChanDescrDumpUnopened, MessagesNameTheFile) {
  two_channels from;
  struct {
    const char* name;
    const char* reason;
  } const cases[] = {{"/nonexistent/folder/file", "No such file or directory"},
                     {"/tmp", "Is a directory"}};
  for (const auto& one : cases) {
    std::string name = one.name;
    for (const int mode : {0, 1, 2, 3}) {
      pipe_pair pipe;
      std::string text = "canary";
      int result = -1;
      const auto output = captured([&] {
        result = dump_chan_desr(&from.list, name.data(), mode, 0, pipe.writer(), &text, nullptr);
      });
      EXPECT_EQ(result, 1) << name;
      EXPECT_EQ(output.out, "dump_chan_desr() failed to open file: '" + name + "'\n");
      EXPECT_EQ(output.err, std::string("fopen: ") + one.reason + "\n");
      EXPECT_EQ(text, "canary");
      EXPECT_EQ(pipe.content(), "");
    }
  }
}

TEST_F(ChanDescrDump, AReadOnlyFileIsNotOpened) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser writes to every file";
  chmod(file.name(), 0400);
  records none;
  int result = -1;
  const auto output = captured([&] { result = dump(none, DUMP_XML_FILE); });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(output.err, "fopen: Permission denied\n");
  EXPECT_EQ(file.content(), "old content");
}

TEST_F(ChanDescrDump, NothingTellsThatAFileIsFull) {
  two_channels from;
  char full[] = "/dev/full";
  for (const int mode : {0, 1, 2, 3}) {
    EXPECT_EQ(dump_chan_desr(&from.list, full, mode, 0, -1, nullptr, nullptr), 0) << mode;
  }
}

// Descriptors that cannot be written

namespace {

struct ChanDescrDumpBadDescriptor : ChanDescrDump {
  /// Open descriptors of this process that are the file.
  int times_open() const {
    struct stat wanted {};
    stat(file.path().c_str(), &wanted);
    int count = 0;
    for (int fd = 0; fd < 256; ++fd) {
      struct stat seen {};
      if (fstat(fd, &seen) == 0 && seen.st_ino == wanted.st_ino && seen.st_dev == wanted.st_dev) {
        ++count;
      }
    }
    return count;
  }

  void expect_failure(int fd) {
    two_channels from;
    std::string text = "canary";
    int result = -1;
    ASSERT_EQ(times_open(), 0);
    const auto output = captured([&] {
      result =
          dump_chan_desr(&from.list, file.name(), DUMP_XML_FILE, ZRT4_FORMAT, fd, &text, nullptr);
    });
    EXPECT_EQ(result, 2);
    EXPECT_EQ(output.out, write_failed);
    EXPECT_EQ(output.err, "");
    EXPECT_EQ(text, "canary");
    EXPECT_EQ(times_open(), 1) << "the file stays open";
    EXPECT_EQ(without_date(file.content()), test::dumped(from, ZRT4_FORMAT));
  }
};

}  // namespace

TEST_F(ChanDescrDumpBadDescriptor, Closed) {
  constexpr int beyond_what_the_test_opens = 200;
  const int fd = dup2(STDOUT_FILENO, beyond_what_the_test_opens);
  ASSERT_EQ(close(fd), 0);
  expect_failure(fd);
}

TEST_F(ChanDescrDumpBadDescriptor, Negative) {
  expect_failure(-2);
}

TEST_F(ChanDescrDumpBadDescriptor, FullDevice) {
  const int fd = open("/dev/full", O_WRONLY);
  expect_failure(fd);
  close(fd);
}

TEST_F(ChanDescrDumpBadDescriptor, ReadOnly) {
  const int fd = open("/dev/null", O_RDONLY);
  expect_failure(fd);
  close(fd);
}

TEST_F(ChanDescrDumpBadDescriptor, PipeWithoutReader) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  pipe_pair pipe;
  pipe.close_reader();
  expect_failure(pipe.writer());
  (void)std::signal(SIGPIPE, before);
}

TEST_F(ChanDescrDumpBadDescriptor, IsNotTouchedInOtherModes) {
  two_channels from;
  for (const int mode : {0, 1, 3}) {
    captured([&] {
      EXPECT_EQ(dump_chan_desr(&from.list, file.name(), mode, 0, -2, nullptr, nullptr), 0) << mode;
    });
  }
  EXPECT_EQ(times_open(), 0);
}
