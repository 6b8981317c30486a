// Every writer of the library, and what it does when the system refuses: files that cannot be
// opened, that take no more or that fail to close, descriptors that write little, nothing or fail,
// a full device, a closed pipe.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>

#include "dictionary_support.hh"
#include "handmade_channels.hh"
#include "own_locale.hh"
#include "parse_ev_list.hh"
#include "system_calls.hh"
#include "without_date.hh"
#include "zrt4_gige_descr.hh"

[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

using test::calls;
using test::collector;
using test::without_date;

namespace {

constexpr int count = 300;  // records, so that a text is longer than the buffer of a file

void dump_channels(test::records& list) {
  for (int n = 0; n < count; ++n) {
    list.add("A/B/C/" + std::to_string(n), "NAME." + std::to_string(n)).max_size = n;
  }
}

template <int Mode, int Format>
int channels(char* file, int fd) {
  test::records list;
  dump_channels(list);
  return dump_chan_desr(&list.list, file, Mode, Format, fd, nullptr, nullptr);
}

template <int Mode, int Format>
int channels_of_text(char* file, int fd) {
  test::records list;
  dump_channels(list);
  std::string text = test::dumped(list, ZRT4_FORMAT);
  return dump_chan_desr_from_xml(text.data(), file, Mode, Format, fd);
}

template <class Generation>
std::string dictionary_text() {
  std::string text = "<ENVINDEXDICT>";
  for (int n = 0; n < count; ++n) {
    const std::string number = std::to_string(n);
    text += "<CHANNEL><INDEX>" + number + "</INDEX><PROP>A/B/C/" + number + "</PROP></CHANNEL>";
  }
  return text + "</ENVINDEXDICT>";
}

template <class Generation, int Mode>
int dictionary(char* file, int fd) {
  typename Generation::list list;
  for (int n = 0; n < count; ++n) {
    list.get()->push_back(test::new_entry<typename Generation::entry>(n, "A/B/C", 0.5F, 0.25F));
  }
  return Generation::dump(list.get(), file, Mode, fd, static_cast<std::string*>(nullptr));
}

template <class Generation, int Mode>
int dictionary_of_text(char* file, int fd) {
  std::string text = dictionary_text<Generation>();
  return Generation::dump(text.data(), file, Mode, fd);
}

struct writer {
  const char* name;
  int (*run)(char* file, int fd);
  const char* not_opened;
  const char* created;  // before the file name on the line that tells so; empty: no such line
  const char* write_failed;
};

constexpr const char* channels_not_opened = "dump_chan_desr() failed to open file: '";
constexpr const char* channels_failed = "dump_chan_desr()  write failed\n";
constexpr const char* older_not_opened = "dump_env_index_dict() failed to open file: '";
constexpr const char* older_created = "dump_env_index_dict()  file: '";
constexpr const char* older_failed = "dump_env_index_dict() failed to write \n";
constexpr const char* wider_not_opened = "dump_env_index_dict_2010() failed to open file: '";
constexpr const char* wider_created = "dump_env_index_dict_2010()  file: '";
constexpr const char* wider_failed = "dump_env_index_dict_2010()  failed to write\n";

constexpr writer xml_writers[] = {
    {"elements", channels<DUMP_XML_FILE, ZRT4_FORMAT>, channels_not_opened, "", channels_failed},
    {"variables", channels<DUMP_XML_FILE, MORV_FORMAT>, channels_not_opened, "", channels_failed},
    {"elements of a text", channels_of_text<DUMP_XML_FILE, ZRT4_FORMAT>, channels_not_opened, "",
     channels_failed},
    {"variables of a text", channels_of_text<DUMP_XML_FILE, MORV_FORMAT>, channels_not_opened, "",
     channels_failed},
    {"dictionary", dictionary<test::older, ENV_INDX_DUMP_XML_FILE>, older_not_opened, older_created,
     older_failed},
    {"dictionary of a text", dictionary_of_text<test::older, ENV_INDX_DUMP_XML_FILE>,
     older_not_opened, older_created, older_failed},
    {"2010 dictionary", dictionary<test::y2010, ENV_INDX_DUMP_XML_FILE>, wider_not_opened,
     wider_created, wider_failed},
    {"2010 dictionary of a text", dictionary_of_text<test::y2010, ENV_INDX_DUMP_XML_FILE>,
     wider_not_opened, wider_created, wider_failed},
};

constexpr writer text_writers[] = {
    {"text", channels<DUMP_TXT_FILE, ZRT4_FORMAT>, channels_not_opened, "", ""},
    {"short text", channels<DUMP_TXT_FILE_SHORT, ZRT4_FORMAT>, channels_not_opened, "", ""},
    {"text of a text", channels_of_text<DUMP_TXT_FILE, ZRT4_FORMAT>, channels_not_opened, "", ""},
    {"dictionary text", dictionary<test::older, ENV_INDX_DUMP_TXT_FILE>, older_not_opened,
     older_created, ""},
    {"2010 dictionary text", dictionary<test::y2010, ENV_INDX_DUMP_TXT_FILE>, wider_not_opened,
     wider_created, ""},
};

std::vector<writer> all_writers() {
  std::vector<writer> all(std::begin(xml_writers), std::end(xml_writers));
  all.insert(all.end(), std::begin(text_writers), std::end(text_writers));
  return all;
}

struct WriterFaults : testing::Test {
  WriterFaults() { calls = {}; }
  ~WriterFaults() override { calls = {}; }

  int run(const writer& each, char* name, int fd) {
    int code = -1;
    calls.opened.clear();
    calls.closed.clear();
    calls.written.clear();
    calls.in_file.clear();
    said = test::captured([&] { calls.watch([&] { code = each.run(name, fd); }); });
    return code;
  }

  /// What a writer says that opened and closed `file`.
  static std::string remarks(const writer& each, const std::string& name) {
    if (*each.created == '\0') return "";
    return each.created + name + "' has been created\n" + each.created + name +
           "' has been closed\n";
  }

  static std::string document(const writer& each) {
    test::temporary_file whole("");
    test::captured([&] { EXPECT_EQ(each.run(whole.name(), -1), 0); });
    return whole.content();
  }

  test::output said;
  test::temporary_file file{""};
};

}  // namespace

// Files

TEST_F(WriterFaults, AFileThatCannotBeOpenedGivesOneAndNothingIsWritten) {
  const std::pair<int, const char*> reasons[] = {{EACCES, "Permission denied"},
                                                 {EMFILE, "Too many open files"},
                                                 {ENOSPC, "No space left on device"},
                                                 {EINTR, "Interrupted system call"}};
  for (const writer& each : all_writers()) {
    for (const auto& [reason, text] : reasons) {
      SCOPED_TRACE(std::string(each.name) + ": " + text);
      calls.failing = "fopen";
      calls.error = reason;
      EXPECT_EQ(run(each, file.name(), collector), 1);
      EXPECT_EQ(said.out, each.not_opened + file.path() + "'\n");
      EXPECT_EQ(said.err, std::string("fopen: ") + text + "\n");
      EXPECT_EQ(calls.written, "");
      EXPECT_TRUE(calls.closed.empty());
    }
  }
}

TEST_F(WriterFaults, AFileThatTakesNoMoreIsClosedOnceAndNothingTells) {
  for (const writer& each : all_writers()) {
    const std::string whole = without_date(document(each));
    ASSERT_GT(whole.size(), 5000U) << each.name;
    for (const long room : {0L, 1L, 100L, 4096L, 5000L}) {
      SCOPED_TRACE(std::string(each.name) + " with room for " + std::to_string(room));
      calls.room_in_file = room;
      EXPECT_EQ(run(each, file.name(), -1), 0);
      EXPECT_EQ(said.err, "");
      EXPECT_EQ(calls.in_file.size(), static_cast<std::size_t>(room));
      ASSERT_EQ(calls.opened.size(), 1U);
      EXPECT_EQ(calls.closed, calls.opened);
      EXPECT_EQ(said.out, remarks(each, file.path()));
    }
  }
}

TEST_F(WriterFaults, AFileThatTakesNoMoreKeepsNothingFromTheDescriptor) {
  for (const writer& each : xml_writers) {
    SCOPED_TRACE(each.name);
    const std::string whole = without_date(document(each));
    calls.room_in_file = 10;
    EXPECT_EQ(run(each, file.name(), collector), 0);
    EXPECT_EQ(calls.in_file, "<?xml vers");
    EXPECT_EQ(without_date(calls.written), whole);
  }
}

TEST_F(WriterFaults, AFileThatFailsToCloseIsClosedOnceAndNothingTells) {
  for (const writer& each : all_writers()) {
    SCOPED_TRACE(each.name);
    const std::string whole = without_date(document(each));
    calls.room_in_file = 1'000'000;
    calls.close_fails = true;
    EXPECT_EQ(run(each, file.name(), -1), 0);
    EXPECT_EQ(said.err, "");
    EXPECT_EQ(without_date(calls.in_file), whole);
    ASSERT_EQ(calls.opened.size(), 1U);
    EXPECT_EQ(calls.closed, calls.opened);
    EXPECT_EQ(said.out, remarks(each, file.path()));
  }
}

TEST_F(WriterFaults, AFullDeviceAsFileGivesZero) {
  char full[] = "/dev/full";
  for (const writer& each : all_writers()) {
    SCOPED_TRACE(each.name);
    EXPECT_EQ(run(each, full, -1), 0);
    EXPECT_EQ(said.err, "");
    EXPECT_EQ(said.out, remarks(each, full));
  }
}

// Descriptors

TEST_F(WriterFaults, AFailedWriteGivesTwoWhateverTheReason) {
  for (const writer& each : xml_writers) {
    for (const int reason : {EBADF, EINTR, EAGAIN, EPIPE, ENOSPC, EIO, EFBIG}) {
      SCOPED_TRACE(std::string(each.name) + ": " + std::strerror(reason));
      calls.write_results = {-1};
      calls.error = reason;
      EXPECT_EQ(run(each, nullptr, collector), 2);
      EXPECT_EQ(said.out, each.write_failed);
      EXPECT_EQ(said.err, "");
      EXPECT_EQ(calls.written, "");
      EXPECT_TRUE(calls.write_results.empty());
    }
  }
}

TEST_F(WriterFaults, EachOfManyShortWritesFailing) {
  for (const writer& each : xml_writers) {
    const std::string whole = without_date(document(each));
    for (std::size_t before = 0; before < 20; ++before) {
      SCOPED_TRACE(std::string(each.name) + ", writes before: " + std::to_string(before));
      calls.write_results.assign(before, 7);
      calls.write_results.push_back(-1);
      EXPECT_EQ(run(each, nullptr, collector), 2);
      EXPECT_EQ(said.out, each.write_failed);
      EXPECT_EQ(calls.written.size(), before * 7);
    }
  }
}

TEST_F(WriterFaults, ShortWritesAreContinuedToTheEnd) {
  for (const writer& each : xml_writers) {
    SCOPED_TRACE(each.name);
    const std::string whole = without_date(document(each));
    calls.write_results.assign(whole.size() + 40, 1);
    EXPECT_EQ(run(each, nullptr, collector), 0);
    EXPECT_EQ(said.out, "");
    EXPECT_EQ(without_date(calls.written), whole);
    calls.write_results.clear();
  }
}

TEST_F(WriterFaults, AWriteThatTakesNothingEndsTheDumpWithZero) {
  for (const writer& each : xml_writers) {
    SCOPED_TRACE(each.name);
    calls.write_results = {10, 0, 5};
    EXPECT_EQ(run(each, nullptr, collector), 0);
    EXPECT_EQ(said.out, "");
    EXPECT_EQ(calls.written, "<?xml vers");
    EXPECT_EQ(calls.write_results.size(), 1U);
  }
}

TEST_F(WriterFaults, AFailedWriteLeavesTheFileWholeAndOpen) {
  for (const writer& each : xml_writers) {
    SCOPED_TRACE(each.name);
    const std::string whole = without_date(document(each));
    calls.write_results = {10, -1};
    EXPECT_EQ(run(each, file.name(), collector), 2);
    EXPECT_EQ(without_date(file.content()), whole);
    ASSERT_EQ(calls.opened.size(), 1U);
    EXPECT_TRUE(calls.closed.empty());
    std::fclose(calls.opened[0]);
    const std::string created =
        *each.created != '\0' ? each.created + file.path() + "' has been created\n" : "";
    EXPECT_EQ(said.out, created + each.write_failed);
  }
}

TEST_F(WriterFaults, AFailedWriteLeavesTheStringAlone) {
  test::records list;
  list.add("P", "D");
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    std::string text = "canary";
    calls.write_results = {10, -1};
    int code = -1;
    said = test::captured([&] {
      calls.watch([&] {
        code =
            dump_chan_desr(&list.list, nullptr, DUMP_XML_FILE, format, collector, &text, nullptr);
      });
    });
    EXPECT_EQ(code, 2);
    EXPECT_EQ(text, "canary");
    EXPECT_EQ(said.out, channels_failed);
  }
}

TEST_F(WriterFaults, AFullDeviceAsDescriptorGivesTwo) {
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  for (const writer& each : xml_writers) {
    EXPECT_EQ(run(each, nullptr, full), 2) << each.name;
    EXPECT_EQ(said.out, each.write_failed);
  }
  close(full);
}

TEST_F(WriterFaults, APipeWithoutReaderGivesTwo) {
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  for (const writer& each : xml_writers) {
    EXPECT_EQ(run(each, nullptr, ends[1]), 2) << each.name;
    EXPECT_EQ(said.out, each.write_failed);
  }
  close(ends[1]);
  (void)std::signal(SIGPIPE, before);
}

TEST_F(WriterFaults, AFullPipeThatDoesNotWaitGivesTwoAndHoldsTheBeginning) {
  for (const writer& each : xml_writers) {
    SCOPED_TRACE(each.name);
    const std::string whole = without_date(document(each));
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    ASSERT_EQ(fcntl(ends[1], F_SETPIPE_SZ, 4096), 4096);
    EXPECT_EQ(run(each, nullptr, ends[1]), 2);
    EXPECT_EQ(said.out, each.write_failed);
    std::array<char, 8192> got{};
    const ssize_t size = read(ends[0], got.data(), got.size());
    ASSERT_EQ(size, 4096);
    const std::string beginning = without_date(std::string(got.data(), 4096));
    EXPECT_EQ(beginning, whole.substr(0, beginning.size()));
    close(ends[0]);
    close(ends[1]);
  }
}

// The screen

namespace {

/// Runs with a standard output of the given kind. What the listing could not write is dropped.
template <class Code>
void with_standard_output(int replacement, Code&& code) {
  std::fflush(stdout);
  const int kept = dup(STDOUT_FILENO);
  if (replacement == -1) {
    close(STDOUT_FILENO);
  } else {
    dup2(replacement, STDOUT_FILENO);
  }
  code();
  std::fflush(stdout);
  std::cout.flush();
  dup2(kept, STDOUT_FILENO);
  close(kept);
  std::clearerr(stdout);
  std::cout.clear();
}

struct listing {
  const char* name;
  int (*run)();
};

int list_channels() {
  return channels<DUMP_TO_SCREEN, ZRT4_FORMAT>(nullptr, -1);
}
template <class Generation>
int list_dictionary() {
  return dictionary<Generation, ENV_INDX_DUMP_TO_SCREEN>(nullptr, -1);
}
int list_events() {
  std::vector<zrt4_ev_entry> entries(count);
  std::vector<zrt4_ev_entry*> list;
  for (zrt4_ev_entry& entry : entries) list.push_back(&entry);
  zrt4_print_ev_list(&list);
  return 0;
}
int list_features() {
  ZRT4GigEFeature feature;
  feature.name = "Gain";
  std::vector<ZRT4GigEFeature*> list(count, &feature);
  zrt4_dump_gige_descr(&list);
  return 0;
}

constexpr listing listings[] = {{"channels", list_channels},
                                {"dictionary", list_dictionary<test::older>},
                                {"2010 dictionary", list_dictionary<test::y2010>},
                                {"events", list_events},
                                {"features", list_features}};

}  // namespace

TEST_F(WriterFaults, AListingThatCannotBeWrittenEndsAndTheNextIsWhole) {
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  for (const listing& each : listings) {
    SCOPED_TRACE(each.name);
    const std::string whole = test::captured([&] { EXPECT_EQ(each.run(), 0); }).out;
    EXPECT_GT(whole.size(), 5000U);
    int on_full_device = -1;
    int on_nothing = -1;
    with_standard_output(full, [&] { on_full_device = each.run(); });
    with_standard_output(-1, [&] { on_nothing = each.run(); });
    EXPECT_EQ(on_full_device, 0);
    EXPECT_EQ(on_nothing, 0);
    EXPECT_EQ(test::captured([&] { EXPECT_EQ(each.run(), 0); }).out, whole);
  }
  close(full);
}
