// Dumping channel descriptions: modes, destinations, the text layouts and what goes wrong.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fstream>

#include "channel_records.hh"
#include "own_locale.hh"
#include "support.hh"

[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

using test::captured;
using test::records;
using testing::HasSubstr;

namespace {

constexpr const char* invalid = "dump_chan_desr() invalid argument: '\n";
constexpr const char* write_failed = "dump_chan_desr()  write failed\n";

const std::string empty_elements =
    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n<CHANDESCRIPTIONS>\n</CHANDESCRIPTIONS>\n\n";
const std::string empty_variables =
    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n<DAQvariables>\n</DAQvariables>\n\n";
/// The text without the date lines in it that have the right form.
std::string without_date(std::string text) {
  const std::string form = "\t<isodate>9999-99-99T99:99:99</isodate>\n";
  const auto fits = [](char seen, char wanted) {
    return wanted == '9' ? seen >= '0' && seen <= '9' : seen == wanted;
  };
  for (std::size_t at = 0; (at = text.find("\t<isodate>", at)) != std::string::npos;) {
    const std::string line = text.substr(at, form.size());
    if (!std::equal(line.begin(), line.end(), form.begin(), form.end(), fits)) break;
    text.erase(at, form.size());
  }
  return text;
}

class pipe_pair {
 public:
  pipe_pair() {
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  }
  pipe_pair(const pipe_pair&) = delete;
  pipe_pair& operator=(const pipe_pair&) = delete;
  ~pipe_pair() {
    close_writer();
    close_reader();
  }
  int writer() const { return ends[1]; }
  void close_writer() { close_end(ends[1]); }
  void close_reader() { close_end(ends[0]); }
  std::string content() {
    close_writer();
    std::string text;
    char part[4096];
    for (ssize_t size = 0; (size = read(ends[0], part, sizeof part)) > 0;) {
      text.append(part, static_cast<std::size_t>(size));
    }
    return text;
  }

 private:
  static void close_end(int& end) {
    if (end != -1) close(end);
    end = -1;
  }
  int ends[2];
};

/// The same two channels for every mode, the second with everything.
struct two_channels : records {
  two_channels() {
    auto& plain = add("P/1", "D1");
    plain.dtype = 0x10;
    auto& full = add("P/2", "D2");
    full.stream = -2;
    full.ev_type = 0x80000001;
    full.set_point = 5;
    full.max_size = 8;
    full.dtype = 0x200;
    test::set(full.prop_desc, "two words");
    test::set(full.units, "mm");
    add_bit(full, 3, "ON", "is on");
    add_bit(full, -4, "", "");
    auto& dim = add_dim(full, 0, "time", "time axis", "s");
    add_stat(dim, 1, "mean", "mean value", "ms");
    add_stat(dim, 2, "", "", "");
    add_dim(full, 1);
  }
};

const std::string full_text =
    "0\t0\tD1\tP/1\t0\t\"\"\t\"\"\t1\t0\t0\n"
    "-2\t-2147483647\tD2\tP/2\t5\t\"two words\"\t\"mm\"\t8\t2\t2\n"
    "3\tON\t\"is on\"\n"
    "-4\t\t\"\"\n"
    "0\ttime\t\"s\"\t\"time axis\"\n"
    "2\n"
    "1\tmean\t\"ms\"\t\"mean value\"\n"
    "2\t\t\"\"\t\"\"\n"
    "1\t\t\"\"\t\"\"\n"
    "0\n";

const std::string short_text =
    "                                                D1\t1\tBOR\n"
    "                                                D2\t8\tSINGLE\n";

struct ChanDescrDump : testing::Test {
  test::temporary_file file{"old content"};
  int dump(records& from, int mode, int format = ZRT4_FORMAT) {
    return dump_chan_desr(&from.list, file.name(), mode, format, -1, nullptr, nullptr);
  }
};

}  // namespace

// Arguments

TEST_F(ChanDescrDump, NullList) {
  int result = 0;
  const auto output = captured([&] {
    result = dump_chan_desr(nullptr, file.name(), DUMP_XML_FILE, ZRT4_FORMAT, -1, nullptr, nullptr);
  });
  EXPECT_EQ(result, 2);
  EXPECT_EQ(output.out, invalid);
  EXPECT_EQ(output.err, "");
  EXPECT_EQ(file.content(), "old content");
}

TEST_F(ChanDescrDump, InvalidFormatsAreRefusedBeforeAnythingIsOpened) {
  records none;
  for (const int format : {2, 3, -1, 100}) {
    for (const int mode : {0, 1, 2, 3}) {
      int result = 0;
      const auto output = captured([&] { result = dump(none, mode, format); });
      EXPECT_EQ(result, 2) << format;
      EXPECT_EQ(output.out, invalid) << format;
    }
  }
  EXPECT_EQ(file.content(), "old content");
}

// No destination: the listing, whatever the mode

TEST(ChanDescrDumpNowhere, ListsTheWholeListOnce) {
  two_channels from;
  from.add("P/1", "duplicate");
  const std::string listing = captured([&] { print_zrt4_chan_descr(&from.list); }).out;
  ASSERT_THAT(listing, HasSubstr("duplicate"));
  char no_name[] = "";
  for (const int mode : {0, 1, 2, 3, 7, -1}) {
    for (const int format : {0, 1}) {
      for (char* name : {no_name, static_cast<char*>(nullptr)}) {
        int result = -1;
        const auto output = captured(
            [&] { result = dump_chan_desr(&from.list, name, mode, format, -1, nullptr, nullptr); });
        EXPECT_EQ(result, 0) << mode;
        EXPECT_EQ(output.out, listing) << mode;
      }
    }
  }
}

TEST(ChanDescrDumpNowhere, AnEmptyListPrintsNothing) {
  records none;
  for (const int mode : {0, 1, 2, 3}) {
    const auto output = captured(
        [&] { EXPECT_EQ(dump_chan_desr(&none.list, nullptr, mode, 0, -1, nullptr, nullptr), 0); });
    EXPECT_EQ(output.out, "") << mode;
  }
}

// Modes that write nothing

TEST_F(ChanDescrDump, ScreenModeLeavesAnEmptyFile) {
  two_channels from;
  const auto output = captured([&] { EXPECT_EQ(dump(from, DUMP_TO_SCREEN), 0); });
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(file.content(), "");
}

TEST_F(ChanDescrDump, UnknownModesLeaveAnEmptyFile) {
  two_channels from;
  for (const int mode : {7, 4, -1}) {
    const auto output = captured([&] { EXPECT_EQ(dump(from, mode), 0); });
    EXPECT_EQ(output.out, "") << mode;
    EXPECT_EQ(file.content(), "") << mode;
  }
}

TEST(ChanDescrDumpModes, WithoutFileOnlyXmlIsWritten) {
  two_channels from;
  for (const int mode : {0, 1, 3, 7}) {
    pipe_pair pipe;
    std::string text = "canary";
    const auto output = captured([&] {
      EXPECT_EQ(dump_chan_desr(&from.list, nullptr, mode, 0, pipe.writer(), &text, nullptr), 0);
    });
    EXPECT_EQ(output.out, "") << mode;
    EXPECT_EQ(text, "canary") << mode;
    EXPECT_EQ(pipe.content(), "") << mode;
  }
}

// Text

TEST_F(ChanDescrDump, FullText) {
  two_channels from;
  const auto output = captured([&] { EXPECT_EQ(dump(from, DUMP_TXT_FILE), 0); });
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(file.content(), full_text);
}

TEST_F(ChanDescrDump, TextHasNoDialect) {
  two_channels from;
  EXPECT_EQ(dump(from, DUMP_TXT_FILE, MORV_FORMAT), 0);
  EXPECT_EQ(file.content(), full_text);
}

TEST_F(ChanDescrDump, FullTextPrintsCountersButWalksVectors) {
  records from;
  auto& one = from.add("P", "D");
  from.add_bit(one, 1, "b", "");
  from.add_stat(from.add_dim(one, 2, "d"), 3, "s", "", "").stat = 4;
  one.nbits = 0;
  one.ndims = 9;
  one.dims[0]->nstats = 0;
  dump(from, DUMP_TXT_FILE);
  EXPECT_EQ(file.content(),
            "0\t0\tD\tP\t0\t\"\"\t\"\"\t1\t0\t9\n1\tb\t\"\"\n2\td\t\"\"\t\"\"\n0\n"
            "4\ts\t\"\"\t\"\"\n");
  one.ndims = 1;
}

TEST_F(ChanDescrDump, ShortTextEndsALineOnTheScreenForEachDataType) {
  two_channels from;
  const auto output = captured([&] { EXPECT_EQ(dump(from, DUMP_TXT_FILE_SHORT), 0); });
  EXPECT_EQ(output.out, "\n\n");
  EXPECT_EQ(file.content(), short_text);
}

TEST_F(ChanDescrDump, ShortTextWithoutDataType) {
  records from;
  from.add("P", "D");
  const auto output = captured([&] { dump(from, DUMP_TXT_FILE_SHORT); });
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(file.content(), std::string(49, ' ') + "D\t1\tUNKNOWN\n");
}

TEST_F(ChanDescrDump, ShortTextNamesTheLowestBit) {
  for (unsigned bit = 0; bit < 32; ++bit) {
    records from;
    from.add("P", "D").dtype = 1U << bit | (bit < 31 ? 0x80000000U : 0);
    const auto output = captured([&] { dump(from, DUMP_TXT_FILE_SHORT); });
    EXPECT_EQ(output.out, "\n");
    EXPECT_EQ(file.content(),
              std::string(49, ' ') + "D\t1\t" + block_name_itoa(static_cast<int>(bit)) + "\n");
  }
}

TEST_F(ChanDescrDump, ShortTextDoesNotCutLongNames) {
  records from;
  const std::string name(255, 'n');
  from.add("P", name);
  dump(from, DUMP_TXT_FILE_SHORT);
  EXPECT_EQ(file.content(), name + "\t1\tUNKNOWN\n");
}

TEST_F(ChanDescrDump, AChannelWithoutDaqName) {
  records from;
  from.add("P");
  dump(from, DUMP_TXT_FILE_SHORT);
  EXPECT_EQ(file.content(), std::string(35, ' ') + "!!!UNDEFINED!!!\t1\tUNKNOWN\n");
  dump(from, DUMP_TXT_FILE);
  EXPECT_EQ(file.content(), "0\t0\t!!!UNDEFINED!!!\tP\t0\t\"\"\t\"\"\t1\t0\t0\n");
  EXPECT_THAT(test::dumped(from, ZRT4_FORMAT), HasSubstr("<NAME>!!!UNDEFINED!!!</NAME>\n"));
  EXPECT_THAT(test::dumped(from, MORV_FORMAT), HasSubstr("<daqName>!!!UNDEFINED!!!</daqName>\n"));
}

TEST_F(ChanDescrDump, PercentSignsAreText) {
  records from;
  test::set(from.add("%s%n", "%d").prop_desc, "100%");
  dump(from, DUMP_TXT_FILE);
  EXPECT_EQ(file.content(), "0\t0\t%d\t%s%n\t0\t\"100%\"\t\"\"\t1\t0\t0\n");
}

// Each property once

TEST_F(ChanDescrDump, OnlyTheFirstRecordOfAPropertyIsWritten) {
  records from;
  from.add("P", "first");
  from.add("Q", "other");
  from.add("P", "second").dtype = 1;
  from.add("", "nameless");
  from.add("", "nameless too");
  from.list.push_back(from.list[1]);
  const auto names = [](const std::string& text) {
    std::string found;
    for (const char* name : {"first", "other", "second", "nameless", "nameless too"}) {
      for (std::size_t at = text.find(name); at != std::string::npos;
           at = text.find(name, at + 1)) {
        found += std::string(name) + ";";
      }
    }
    return found;
  };
  dump(from, DUMP_TXT_FILE);
  EXPECT_EQ(names(file.content()), "first;other;nameless;");
  const auto output = captured([&] { dump(from, DUMP_TXT_FILE_SHORT); });
  EXPECT_EQ(names(file.content()), "first;other;nameless;");
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(names(test::dumped(from, ZRT4_FORMAT)), "first;other;nameless;");
  EXPECT_EQ(names(test::dumped(from, MORV_FORMAT)), "first;other;nameless;");
}

TEST_F(ChanDescrDump, ThousandsOfProperties) {
  records from;
  std::string expected;
  for (int n = 0; n < 3000; ++n) {
    from.add("P" + std::to_string(n % 1500), std::to_string(n)).max_size = n;
    if (n < 1500) {
      const std::string number = std::to_string(n);
      expected += std::string(50 - number.size(), ' ') + number + "\t" + number + "\tUNKNOWN\n";
    }
  }
  dump(from, DUMP_TXT_FILE_SHORT);
  EXPECT_EQ(file.content(), expected);
}

TEST_F(ChanDescrDump, PropertiesThatReturnAfterAnyDistance) {
  for (int length : {1, 15, 16, 17, 31, 32, 33, 100}) {
    for (int different : {1, 2, 15, 16, 17, 32, 33, 100}) {
      records from;
      std::string expected;
      for (int n = 0; n < length; ++n) {
        const std::string number = std::to_string(n);
        from.add("P" + std::to_string(n % different), number);
        if (n < different) {
          expected += std::string(50 - number.size(), ' ') + number + "\t1\tUNKNOWN\n";
        }
      }
      dump(from, DUMP_TXT_FILE_SHORT);
      EXPECT_EQ(file.content(), expected) << length << " of " << different;
    }
  }
}

// XML destinations

TEST_F(ChanDescrDump, AnEmptyListIsAWholeDocument) {
  records none;
  dump(none, DUMP_XML_FILE);
  EXPECT_NE(file.content(), empty_elements);
  EXPECT_EQ(without_date(file.content()), empty_elements);
  dump(none, DUMP_XML_FILE, MORV_FORMAT);
  EXPECT_EQ(file.content(), empty_variables);
  EXPECT_EQ(test::dumped(none, ZRT4_FORMAT), empty_elements);
  EXPECT_EQ(test::dumped(none, MORV_FORMAT), empty_variables);
}

TEST_F(ChanDescrDump, TheDateStandsBehindTheRoot) {
  records none;
  dump(none, DUMP_XML_FILE);
  EXPECT_THAT(file.content(),
              testing::StartsWith("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n"
                                  "<CHANDESCRIPTIONS>\n\t<isodate>"));
  EXPECT_EQ(without_date(file.content()).size() + 40, file.content().size());
}

TEST_F(ChanDescrDump, FileDescriptorAndStringReceiveOneDocument) {
  two_channels from;
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    pipe_pair pipe;
    std::string text = "before\n";
    EXPECT_EQ(dump_chan_desr(&from.list, file.name(), DUMP_XML_FILE, format, pipe.writer(), &text,
                             nullptr),
              0);
    EXPECT_THAT(file.content(), HasSubstr("P/2"));
    EXPECT_EQ(pipe.content(), file.content());
    EXPECT_EQ(text, "before\n" + file.content());
    EXPECT_EQ(file.content() != without_date(file.content()), format == ZRT4_FORMAT);
  }
}

TEST(ChanDescrDumpXmlTo, DescriptorOnly) {
  two_channels from;
  pipe_pair pipe;
  EXPECT_EQ(dump_chan_desr(&from.list, nullptr, DUMP_XML_FILE, 0, pipe.writer(), nullptr, nullptr),
            0);
  EXPECT_EQ(pipe.content(), test::dumped(from, ZRT4_FORMAT));
}

TEST(ChanDescrDumpXmlTo, StringsGrow) {
  records none;
  std::string text;
  for (int i = 0; i < 2; ++i) {
    dump_chan_desr(&none.list, nullptr, DUMP_XML_FILE, MORV_FORMAT, -1, &text, nullptr);
  }
  EXPECT_EQ(text, empty_variables + empty_variables);
}

TEST(ChanDescrDumpXmlTo, AnEmptyStringsOwnMemory) {
  two_channels from;
  std::string text;
  text.reserve(100'000);
  const char* const memory = text.data();
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    text.clear();
    EXPECT_EQ(dump_chan_desr(&from.list, nullptr, DUMP_XML_FILE, format, -1, &text, nullptr), 0);
    EXPECT_EQ(text, test::dumped(from, format));
    EXPECT_EQ(text.data(), memory);
  }
}

TEST(ChanDescrDumpXmlTo, AStringsMemoryStaysItsOwnWhenTheDescriptorFails) {
  two_channels from;
  std::string text;
  text.reserve(100'000);
  const char* const memory = text.data();
  captured([&] {
    EXPECT_EQ(dump_chan_desr(&from.list, nullptr, DUMP_XML_FILE, ZRT4_FORMAT, -2, &text, nullptr),
              2);
  });
  EXPECT_EQ(text, "");
  EXPECT_EQ(text.data(), memory);
  EXPECT_EQ(text.capacity(), 100'000U);
}

namespace {

// What the kernel was told of the memory at `place`, as letters in pairs; empty when it does not
// say.
std::string memory_flags(const void* place) {
  const auto address = reinterpret_cast<std::uintptr_t>(place);
  std::ifstream mappings("/proc/self/smaps");
  std::string line;
  bool here = false;
  while (std::getline(mappings, line)) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " ", &begin, &end) == 2) {
      here = begin <= address && address < end;
    } else if (here && line.rfind("VmFlags:", 0) == 0) {
      return line.substr(sizeof "VmFlags:" - 1);
    }
  }
  return "";
}

}  // namespace

TEST(ChanDescrDumpXmlTo, AStringOfManyMegabytesInLargePages) {
  records from;
  constexpr int channels = 30'000;
  for (int n = 0; n < channels; ++n) from.add("P/" + std::to_string(n), "D");
  std::string text;
  EXPECT_EQ(dump_chan_desr(&from.list, nullptr, DUMP_XML_FILE, ZRT4_FORMAT, -1, &text, nullptr), 0);
  EXPECT_GT(text.size(), 6U << 20U);
  const bool large_pages_exist = access("/sys/kernel/mm/transparent_hugepage", F_OK) == 0;
  EXPECT_THAT(large_pages_exist ? memory_flags(&text[text.size() / 2]) : "",
              testing::AnyOf("", HasSubstr(" hg")));
  std::size_t at = 0;
  for (int n = 0; n < channels; ++n) {
    at = text.find("<PROP>P/" + std::to_string(n) + "</PROP>\n", at);
    ASSERT_NE(at, std::string::npos) << n;
  }
  EXPECT_EQ(text.substr(text.size() - 32), "</CHANNEL>\n</CHANDESCRIPTIONS>\n\n");
}

TEST_F(ChanDescrDump, TheFileIsFirst) {
  records none;
  const int same = open(file.name(), O_WRONLY | O_APPEND);
  dump_chan_desr(&none.list, file.name(), DUMP_XML_FILE, ZRT4_FORMAT, same, nullptr, nullptr);
  close(same);
  const std::string twice = file.content();
  EXPECT_EQ(twice.substr(0, twice.size() / 2), twice.substr(twice.size() / 2));
  EXPECT_EQ(without_date(twice), empty_elements + empty_elements);
}

// Nothing passed in is changed

TEST_F(ChanDescrDump, KeepsTheRecords) {
  two_channels from;
  const auto list = from.list;
  std::string before = captured([&] { print_zrt4_chan_descr(&from.list); }).out;
  for (const int mode : {0, 1, 2, 3}) captured([&] { dump(from, mode); });
  EXPECT_EQ(from.list, list);
  EXPECT_EQ(captured([&] { print_zrt4_chan_descr(&from.list); }).out, before);
}

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

// From XML

namespace {

const std::string two_of_one_property =
    "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>4</EVTYPE><DTYPE>9</DTYPE><PROP>P</PROP><NAME>D</NAME>"
    "<BIT>0<BIT_NAME>b</BIT_NAME></BIT></CHANNEL>"
    "<CHANNEL><PROP>P</PROP></CHANNEL></CHANDESCRIPTIONS>";

int dump_text(std::string xml, char* file, int mode, int format = ZRT4_FORMAT, int fd = -1) {
  return dump_chan_desr_from_xml(xml.data(), file, mode, format, fd);
}

}  // namespace

TEST_F(ChanDescrDump, FromXmlReadsMasks) {
  EXPECT_EQ(dump_text(two_of_one_property, file.name(), DUMP_TXT_FILE), 0);
  EXPECT_EQ(file.content(), "0\t16\tD\tP\t0\t\"\"\t\"\"\t1\t1\t0\n0\tb\t\"\"\n");
}

TEST_F(ChanDescrDump, FromXmlKeepsDuplicatesForTheListing) {
  const auto output =
      captured([&] { EXPECT_EQ(dump_text(two_of_one_property, nullptr, DUMP_XML_FILE), 0); });
  EXPECT_THAT(output.out, HasSubstr("--------------[1]-----------------\n"));
}

TEST_F(ChanDescrDump, FromXmlToADescriptor) {
  pipe_pair pipe;
  EXPECT_EQ(dump_text("<DAQvariables></DAQvariables>", nullptr, DUMP_XML_FILE, MORV_FORMAT,
                      pipe.writer()),
            0);
  EXPECT_EQ(pipe.content(), empty_variables);
}

TEST_F(ChanDescrDump, FromXmlGivesTheDumpsResult) {
  captured([&] {
    EXPECT_EQ(dump_text(two_of_one_property, nullptr, DUMP_XML_FILE, INVD_FORMAT), 2);
    EXPECT_EQ(dump_text(two_of_one_property, nullptr, DUMP_XML_FILE, ZRT4_FORMAT, -2), 2);
    char folder[] = "/tmp";
    EXPECT_EQ(dump_text(two_of_one_property, folder, DUMP_XML_FILE), 1);
  });
}

TEST_F(ChanDescrDump, FromXmlReportsWhatCannotBeRead) {
  const test::kept_leak of_what_was_read;
  for (const std::string& xml :
       {std::string("<EVENTS></EVENTS>"), std::string(""),
        two_of_one_property.substr(0, two_of_one_property.size() - 5),
        std::string("<DAQvariables><DaqBits><vindo>P</vindo><bitTitle/></DaqBits>"
                    "</DAQvariables>")}) {
    int result = -1;
    const auto output = captured([&] { result = dump_text(xml, file.name(), DUMP_XML_FILE); });
    EXPECT_EQ(result, 3) << xml;
    EXPECT_EQ(output.out, "Failed to parse CHANDESCR list\n") << xml;
    EXPECT_NE(output.err, "") << xml;
  }
  EXPECT_EQ(file.content(), "old content");
}

TEST_F(ChanDescrDump, FromXmlReleasesARecordListedTwiceOnce) {
  EXPECT_EQ(dump_text("<CHANDESCRIPTIONS><CHANNEL><PROP>P</PROP><PROP>Q</PROP></CHANNEL>"
                      "</CHANDESCRIPTIONS>",
                      file.name(), DUMP_TXT_FILE),
            0);
  EXPECT_EQ(file.content(), "0\t0\t!!!UNDEFINED!!!\tQ\t0\t\"\"\t\"\"\t1\t0\t0\n");
}
