#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>
#include <thread>

#include "comma_locale.hh"
#include "env_dictionary_support.hh"
#include "own_locale.hh"
#include "parse_chan_descr.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);
[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

namespace {

const std::string head =
    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n"
    "<ENVINDEXDICT>\n"
    "\t<isodate>DATE</isodate>\n";
const std::string tail = "</ENVINDEXDICT>\n\n";
const std::string empty_document = head + tail;

// What ENV/TEMP.1 at index 7 with the deltas 0.5 and 0.01 is written as.
const std::string sample_channel =
    "<CHANNEL>\n"
    "<INDEX>7</INDEX>\n"
    "<PROP>ENV/TEMP.1</PROP>\n"
    "<DABS>0.500000</DABS>\n"
    "<DREL>0.010000</DREL>\n"
    "</CHANNEL>\n";
const std::string sample_line = "7\tENV/TEMP.1\t0.500000\t0.010000\n";
const std::string sample_listing =
    "-------------- 1 -----------------\n"
    " Index : 7\n"
    " Channel: ENV/TEMP.1 DABS 0.5 DREL 0.01\n";

char no_file[] = "";

// Puts DATE in place of the date, when there is one in its form.
std::string dateless(std::string document) {
  const std::size_t at = head.find("DATE");
  const std::string form = "9999-99-99T99:99:99";
  if (document.size() < at + form.size()) return document;
  std::string shape = document.substr(at, form.size());
  for (char& c : shape) {
    if (c >= '0' && c <= '9') c = '9';
  }
  return shape == form ? document.replace(at, form.size(), "DATE") : document;
}

std::string created_and_closed(const std::string& function, const std::string& name) {
  return function + "  file: '" + name + "' has been created\n" + function + "  file: '" + name +
         "' has been closed\n";
}

template <class Generation>
typename Generation::list one_entry() {
  typename Generation::list list;
  list.get()->push_back(test::new_entry<typename Generation::entry>(7, "ENV/TEMP.1", 0.5F, 0.01F));
  return list;
}

// A descriptor of an empty file of its own.
class open_file {
 public:
  open_file() : file(""), number(open(file.name(), O_RDWR)) {}
  open_file(const open_file&) = delete;
  open_file& operator=(const open_file&) = delete;
  ~open_file() { close(number); }
  int descriptor() const { return number; }
  std::string content() const { return file.content(); }

 private:
  test::temporary_file file;
  int number;
};

template <class Generation>
struct EnvIndexDictDump : testing::Test {
  // Dumps and expects the result and everything printed.
  void expect(int result, const std::string& printed,
              std::vector<typename Generation::entry*>* from, char* path, int mode, int descriptor,
              std::string* into) {
    int code = -1;
    const auto said =
        test::captured([&] { code = Generation::dump(from, path, mode, descriptor, into); });
    EXPECT_EQ(code, result);
    EXPECT_EQ(said.out, printed);
    EXPECT_EQ(said.err, "");
  }

  void expect_from_text(int result, const std::string& printed, std::string document, char* path,
                        int mode, int descriptor) {
    int code = -1;
    const auto said =
        test::captured([&] { code = Generation::dump(document.data(), path, mode, descriptor); });
    EXPECT_EQ(code, result);
    EXPECT_EQ(said.out, printed);
  }

  typename Generation::list list = one_entry<Generation>();
  test::temporary_file file{"old content"};
  std::string text = "canary";
  const std::string name = Generation::dump_name;
  const std::string opened_and_closed = created_and_closed(Generation::dump_name, file.path());
};
using generations = testing::Types<test::older, test::y2010>;
TYPED_TEST_SUITE(EnvIndexDictDump, generations, test::titles);

}  // namespace

TEST(EnvIndexDictDumpModes, Values) {
  EXPECT_EQ(ENV_INDX_DUMP_TO_SCREEN, 0);
  EXPECT_EQ(ENV_INDX_DUMP_TXT_FILE, 1);
  EXPECT_EQ(ENV_INDX_DUMP_XML_FILE, 2);
  EXPECT_EQ(ENV_INDX_DUMP_XML_STRING, 3);
}

TYPED_TEST(EnvIndexDictDump, ANullListIsInvalid) {
  for (const int mode : {0, 1, 2, 3, 4}) {
    this->expect(2, this->name + " invalid argument: '\n", nullptr, this->file.name(), mode, -1,
                 &this->text);
  }
  EXPECT_EQ(this->file.content(), "old content");
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, AFileThatCannotBeOpenedIsToldWithItsReason) {
  char missing[] = "/tmp/zrt4_no_such_folder/dictionary.xml";
  for (const int mode : {-1, 0, 1, 2, 3, 4}) {
    int code = -1;
    const auto said = test::captured(
        [&] { code = TypeParam::dump(this->list.get(), missing, mode, -1, &this->text); });
    EXPECT_EQ(code, 1);
    EXPECT_EQ(said.out, this->name + " failed to open file: '" + missing + "'\n");
    EXPECT_EQ(said.err, "fopen: No such file or directory\n");
  }
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, AFolderIsNoFile) {
  char folder[] = "/tmp";
  int code = -1;
  const auto said = test::captured([&] {
    code = TypeParam::dump(this->list.get(), folder, ENV_INDX_DUMP_XML_FILE, -1, nullptr);
  });
  EXPECT_EQ(code, 1);
  EXPECT_EQ(said.out, this->name + " failed to open file: '/tmp'\n");
  EXPECT_EQ(said.err, "fopen: Is a directory\n");
}

TYPED_TEST(EnvIndexDictDump, WithoutDestinationListsWhateverTheMode) {
  for (const int mode : {-1, 0, 1, 2, 3, 4}) {
    this->expect(0, sample_listing, this->list.get(), nullptr, mode, -1, nullptr);
    this->expect(0, sample_listing, this->list.get(), no_file, mode, -1, nullptr);
  }
}

TYPED_TEST(EnvIndexDictDump, ListingCountsEntriesFromOne) {
  using entry = typename TypeParam::entry;
  this->list.get()->push_back(test::new_entry<entry>(-3, "B", -1.0F, 0.0F));
  this->expect(0,
               sample_listing +
                   "-------------- 2 -----------------\n"
                   " Index : -3\n"
                   " Channel: B DABS -1 DREL 0\n",
               this->list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
}

TYPED_TEST(EnvIndexDictDump, ListingOfNoEntriesIsEmpty) {
  this->list.clear();
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
}

TYPED_TEST(EnvIndexDictDump, ListingShowsSixSignificantDigits) {
  const struct {
    float delta;
    const char* listed;
  } rows[] = {
      {0.0F, "0"},
      {-0.0F, "-0"},
      {0.1F, "0.1"},
      {123456.7F, "123457"},
      {1234567.0F, "1.23457e+06"},
      {0.0001F, "0.0001"},
      {0.00001F, "1e-05"},
      {-2.5F, "-2.5"},
      {std::numeric_limits<float>::max(), "3.40282e+38"},
      {std::numeric_limits<float>::denorm_min(), "1.4013e-45"},
      {std::numeric_limits<float>::infinity(), "inf"},
      {-std::numeric_limits<float>::infinity(), "-inf"},
      {std::numeric_limits<float>::quiet_NaN(), "nan"},
  };
  auto& data = this->list[0].data;
  for (const auto& row : rows) {
    data.env_ch_abs_delta = row.delta;
    data.env_ch_rel_delta = row.delta;
    const std::string shown = row.listed;
    this->expect(0,
                 "-------------- 1 -----------------\n Index : 7\n Channel: ENV/TEMP.1 DABS " +
                     shown + " DREL " + shown + "\n",
                 this->list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
  }
}

TYPED_TEST(EnvIndexDictDump, ListingShowsAnEmptyPropertyAsItIs) {
  this->list[0].data.env_prop[0] = '\0';
  this->expect(0, "-------------- 1 -----------------\n Index : 7\n Channel:  DABS 0.5 DREL 0.01\n",
               this->list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
}

TYPED_TEST(EnvIndexDictDump, TextFileHasOneLinePerEntry) {
  using entry = typename TypeParam::entry;
  this->list.get()->push_back(test::new_entry<entry>(-1, "B", -2.25F, 1e10F));
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  EXPECT_EQ(this->file.content(), sample_line + "-1\tB\t-2.250000\t10000000000.000000\n");
}

TYPED_TEST(EnvIndexDictDump, TextFileOfNoEntriesIsEmpty) {
  this->list.clear();
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  EXPECT_EQ(this->file.content(), "");
}

TYPED_TEST(EnvIndexDictDump, TextFileLeavesDescriptorAndStringAlone) {
  open_file other;
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_TXT_FILE, other.descriptor(), &this->text);
  EXPECT_EQ(this->file.content(), sample_line);
  EXPECT_EQ(other.content(), "");
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, TextWithoutAFileWritesNothing) {
  open_file other;
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_TXT_FILE, other.descriptor(),
               nullptr);
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_TXT_FILE, -1, &this->text);
  EXPECT_EQ(other.content(), "");
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, XmlFile) {
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_XML_FILE, -1, nullptr);
  EXPECT_EQ(dateless(this->file.content()), head + sample_channel + tail);
}

TYPED_TEST(EnvIndexDictDump, XmlFileOfNoEntries) {
  this->list.clear();
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_XML_FILE, -1, nullptr);
  EXPECT_EQ(dateless(this->file.content()), empty_document);
}

TYPED_TEST(EnvIndexDictDump, XmlToADescriptor) {
  open_file other;
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_FILE, other.descriptor(),
               nullptr);
  EXPECT_EQ(dateless(other.content()), head + sample_channel + tail);
  EXPECT_EQ(write(other.descriptor(), "more", 4), 4);
  EXPECT_EQ(dateless(other.content()), head + sample_channel + tail + "more");
}

TYPED_TEST(EnvIndexDictDump, XmlToFileAndDescriptor) {
  open_file other;
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_XML_FILE, other.descriptor(), &this->text);
  EXPECT_EQ(dateless(this->file.content()), head + sample_channel + tail);
  EXPECT_EQ(other.content(), this->file.content());
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, XmlFileModeWithOnlyAStringWritesNothing) {
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_FILE, -1, &this->text);
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, XmlString) {
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_EQ(dateless(this->text), head + sample_channel + tail);
}

TYPED_TEST(EnvIndexDictDump, XmlStringInItsOwnMemory) {
  this->text.clear();
  this->text.reserve(100'000);
  const char* const memory = this->text.data();
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_EQ(dateless(this->text), head + sample_channel + tail);
  EXPECT_EQ(this->text.data(), memory);
}

TYPED_TEST(EnvIndexDictDump, XmlStringOfNoEntries) {
  this->list.clear();
  this->expect(0, "", this->list.get(), no_file, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_EQ(dateless(this->text), empty_document);
}

TYPED_TEST(EnvIndexDictDump, XmlStringLeavesTheFileEmptyAndTheDescriptorAlone) {
  open_file other;
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_XML_STRING, other.descriptor(), &this->text);
  EXPECT_EQ(this->file.content(), "");
  EXPECT_EQ(other.content(), "");
  EXPECT_EQ(dateless(this->text), head + sample_channel + tail);
}

TYPED_TEST(EnvIndexDictDump, XmlStringWithoutAStringWritesNothing) {
  open_file other;
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_XML_STRING, other.descriptor(), nullptr);
  EXPECT_EQ(this->file.content(), "");
  EXPECT_EQ(other.content(), "");
}

TYPED_TEST(EnvIndexDictDump, OtherModesOnlyCreateTheFile) {
  open_file other;
  for (const int mode : {-1, 0, 4, 100}) {
    this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(), mode,
                 other.descriptor(), &this->text);
    EXPECT_EQ(this->file.content(), "");
  }
  EXPECT_EQ(other.content(), "");
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, OtherModesWithoutAFileDoNothing) {
  open_file other;
  for (const int mode : {-1, 0, 4}) {
    this->expect(0, "", this->list.get(), nullptr, mode, other.descriptor(), nullptr);
    this->expect(0, "", this->list.get(), nullptr, mode, -1, &this->text);
  }
  EXPECT_EQ(other.content(), "");
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, AnEmptyPropertyIsWrittenAsUndefined) {
  this->list[0].data.env_prop[0] = '\0';
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  EXPECT_EQ(this->file.content(), "7\t!!!UNDEFINED!!!\t0.500000\t0.010000\n");
  const std::string undefined =
      "<CHANNEL>\n<INDEX>7</INDEX>\n<PROP>!!!UNDEFINED!!!</PROP>\n"
      "<DABS>0.500000</DABS>\n<DREL>0.010000</DREL>\n</CHANNEL>\n";
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_XML_FILE, -1, nullptr);
  EXPECT_EQ(dateless(this->file.content()), head + undefined + tail);
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_EQ(dateless(this->text), head + undefined + tail);
}

TYPED_TEST(EnvIndexDictDump, DeltasHaveSixDecimalsAndAreNeverCut) {
  const struct {
    float delta;
    const char* text;
  } rows[] = {
      {0.0F, "0.000000"},
      {-0.0F, "-0.000000"},
      {-0.5F, "-0.500000"},
      {1e-7F, "0.000000"},
      {-1e-7F, "-0.000000"},
      {0.1F, "0.100000"},
      {16777216.0F, "16777216.000000"},
      {1e24F, "1000000013848427855085568.000000"},
      {std::numeric_limits<float>::max(), "340282346638528859811704183484516925440.000000"},
      {std::numeric_limits<float>::lowest(), "-340282346638528859811704183484516925440.000000"},
      {std::numeric_limits<float>::denorm_min(), "0.000000"},
      {std::numeric_limits<float>::infinity(), "inf"},
      {-std::numeric_limits<float>::infinity(), "-inf"},
      {std::numeric_limits<float>::quiet_NaN(), "nan"},
      {-std::numeric_limits<float>::quiet_NaN(), "-nan"},
  };
  auto& data = this->list[0].data;
  for (const auto& row : rows) {
    const std::string written = row.text;
    data.env_ch_abs_delta = row.delta;
    data.env_ch_rel_delta = row.delta;
    this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
    EXPECT_EQ(dateless(this->text),
              head + "<CHANNEL>\n<INDEX>7</INDEX>\n<PROP>ENV/TEMP.1</PROP>\n" + "<DABS>" + written +
                  "</DABS>\n<DREL>" + written + "</DREL>\n</CHANNEL>\n" + tail);
    this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
                 ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
    EXPECT_EQ(this->file.content(), "7\tENV/TEMP.1\t" + written + "\t" + written + "\n");
  }
}

TYPED_TEST(EnvIndexDictDump, IndexesOfEverySize) {
  for (const int index : {0, -1, 2147483647, std::numeric_limits<int>::min()}) {
    this->list[0].index = index;
    this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
    EXPECT_THAT(this->text, testing::HasSubstr("<INDEX>" + std::to_string(index) + "</INDEX>\n"));
  }
}

TYPED_TEST(EnvIndexDictDump, PropertiesAreNotEscaped) {
  std::strcpy(this->list[0].data.env_prop, "A&B<C>\"'\t%s");
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_THAT(this->text, testing::HasSubstr("<PROP>A&B<C>\"'\t%s</PROP>\n"));
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  EXPECT_EQ(this->file.content(), "7\tA&B<C>\"'\t%s\t0.500000\t0.010000\n");
}

TYPED_TEST(EnvIndexDictDump, TheLongestPropertyIsWrittenWhole) {
  const std::string longest(TypeParam::longest, 'P');
  std::strcpy(this->list[0].data.env_prop, longest.c_str());
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_THAT(this->text, testing::HasSubstr("<PROP>" + longest + "</PROP>\n"));
}

// Records may come from foreign memory: a name that fills its field ends with it.
TYPED_TEST(EnvIndexDictDump, APropertyWithoutTerminatorEndsWithItsField) {
  auto& property = this->list[0].data.env_prop;
  std::memset(property, 'P', sizeof property);
  const std::string whole(sizeof property, 'P');
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_THAT(this->text, testing::HasSubstr("<PROP>" + whole + "</PROP>\n"));
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  EXPECT_EQ(this->file.content(), "7\t" + whole + "\t0.500000\t0.010000\n");
  this->expect(0,
               "-------------- 1 -----------------\n Index : 7\n Channel: " + whole +
                   " DABS 0.5 DREL 0.01\n",
               this->list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
}

TYPED_TEST(EnvIndexDictDump, AnEntryListedTwiceIsWrittenTwice) {
  this->list.get()->push_back(&this->list[0]);
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_EQ(dateless(this->text), head + sample_channel + sample_channel + tail);
}

TYPED_TEST(EnvIndexDictDump, TheDateIsTheCurrentLocalTime) {
  std::string before;
  add_iso_date(before);
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  std::string after;
  add_iso_date(after);
  const std::string line = this->text.substr(head.find('\t'), before.size());
  EXPECT_GE(line, before);
  EXPECT_LE(line, after);
}

TYPED_TEST(EnvIndexDictDump, NumbersFollowTheLocaleExceptInTheListing) {
  const test::comma_locale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a decimal comma can be made here";
  this->expect(0, sample_listing, this->list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_THAT(this->text, testing::HasSubstr("<DABS>0,500000</DABS>\n<DREL>0,010000</DREL>\n"));
  this->expect(0, this->opened_and_closed, this->list.get(), this->file.name(),
               ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  EXPECT_EQ(this->file.content(), "7\tENV/TEMP.1\t0,500000\t0,010000\n");
}

TYPED_TEST(EnvIndexDictDump, AClosedDescriptorIsAFailedWrite) {
  const int closed = fcntl(1, F_DUPFD, 200);  // beyond those that capturing opens
  close(closed);
  for (const int descriptor : {closed, -2}) {
    this->expect(2, TypeParam::write_failed, this->list.get(), nullptr, ENV_INDX_DUMP_XML_FILE,
                 descriptor, &this->text);
  }
  EXPECT_EQ(this->text, "canary");
}

TYPED_TEST(EnvIndexDictDump, AFullDeviceIsAFailedWrite) {
  const int full = open("/dev/full", O_WRONLY);
  if (full == -1) GTEST_SKIP() << "no /dev/full";
  this->expect(2, TypeParam::write_failed, this->list.get(), nullptr, ENV_INDX_DUMP_XML_FILE, full,
               nullptr);
  close(full);
}

TYPED_TEST(EnvIndexDictDump, APipeWithoutReaderIsAFailedWrite) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  close(ends[0]);
  const auto previous = std::signal(SIGPIPE, SIG_IGN);
  this->expect(2, TypeParam::write_failed, this->list.get(), nullptr, ENV_INDX_DUMP_XML_FILE,
               ends[1], nullptr);
  (void)std::signal(SIGPIPE, previous);
  close(ends[1]);
}

// A full file is noticed only when it is closed, and nobody looks then.
TYPED_TEST(EnvIndexDictDump, AFullFileGoesUnnoticed) {
  char full[] = "/dev/full";
  if (access(full, W_OK) != 0) GTEST_SKIP() << "no /dev/full";
  for (const int mode : {ENV_INDX_DUMP_TXT_FILE, ENV_INDX_DUMP_XML_FILE}) {
    this->expect(0, created_and_closed(this->name, full), this->list.get(), full, mode, -1,
                 nullptr);
  }
}

TYPED_TEST(EnvIndexDictDump, APipeTakesADocumentLongerThanItself) {
  using entry = typename TypeParam::entry;
  for (int i = 0; i < 2000; ++i) {
    this->list.get()->push_back(
        test::new_entry<entry>(i, "ENV/TEMP." + std::to_string(i), 0.5F, 0.01F));
  }
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  std::string arrived;
  std::thread reader([&] {
    char piece[4096];
    for (ssize_t got = 0; (got = read(ends[0], piece, sizeof piece)) > 0;) {
      arrived.append(piece, static_cast<std::size_t>(got));
    }
  });
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_FILE, ends[1], nullptr);
  close(ends[1]);
  reader.join();
  close(ends[0]);
  this->expect(0, "", this->list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  EXPECT_GT(arrived.size(), 200000U);
  EXPECT_EQ(dateless(arrived), dateless(this->text));
}

TYPED_TEST(EnvIndexDictDump, FromTextToEveryDestination) {
  const std::string document = "<ENVINDEXDICT>" + sample_channel + "</ENVINDEXDICT>";
  this->expect_from_text(0, sample_listing, document, nullptr, ENV_INDX_DUMP_TO_SCREEN, -1);
  this->expect_from_text(0, sample_listing, document, no_file, ENV_INDX_DUMP_XML_STRING, -1);
  this->expect_from_text(0, this->opened_and_closed, document, this->file.name(),
                         ENV_INDX_DUMP_TXT_FILE, -1);
  EXPECT_EQ(this->file.content(), sample_line);
  open_file other;
  this->expect_from_text(0, this->opened_and_closed, document, this->file.name(),
                         ENV_INDX_DUMP_XML_FILE, other.descriptor());
  EXPECT_EQ(dateless(this->file.content()), head + sample_channel + tail);
  EXPECT_EQ(other.content(), this->file.content());
  this->expect_from_text(0, this->opened_and_closed, document, this->file.name(),
                         ENV_INDX_DUMP_XML_STRING, -1);
  EXPECT_EQ(this->file.content(), "");
}

TYPED_TEST(EnvIndexDictDump, FromTextReturnsTheDumpsResult) {
  const std::string document = "<ENVINDEXDICT>" + sample_channel + "</ENVINDEXDICT>";
  char folder[] = "/tmp";
  this->expect_from_text(1, this->name + " failed to open file: '/tmp'\n", document, folder,
                         ENV_INDX_DUMP_XML_FILE, -1);
  this->expect_from_text(2, TypeParam::write_failed, document, nullptr, ENV_INDX_DUMP_XML_FILE, -2);
}

TYPED_TEST(EnvIndexDictDump, FromTextWithoutEntriesIsAnEmptyDocument) {
  this->expect_from_text(0, this->opened_and_closed, "<ENVINDEXDICT/>", this->file.name(),
                         ENV_INDX_DUMP_XML_FILE, -1);
  EXPECT_EQ(dateless(this->file.content()), empty_document);
}

TYPED_TEST(EnvIndexDictDump, FromTextThatCannotBeReadIsToldAndReturnsThree) {
  for (const char* broken : {"", "no XML", "<ENVDICT/>", "<ENVINDEXDICT>", "<ENVINDEXDICT></X>"}) {
    this->expect_from_text(3, "Failed to parse ENV INDEX DICT list\n", broken, this->file.name(),
                           ENV_INDX_DUMP_XML_FILE, -1);
  }
  EXPECT_EQ(this->file.content(), "old content");
}

TYPED_TEST(EnvIndexDictDump, FromTextTheWrongRootIsAlsoTold) {
  std::string document = "<ENVDICT/>";
  const auto said =
      test::captured([&] { EXPECT_EQ(TypeParam::dump(document.data(), nullptr, 0, -1), 3); });
  EXPECT_EQ(said.out, "Failed to parse ENV INDEX DICT list\n");
  EXPECT_EQ(said.err, "WRONG root tag: 'ENVDICT' must be 'ENVINDEXDICT'\n");
}

// The address sanitizer would tell of a second release.
TYPED_TEST(EnvIndexDictDump, FromTextAnEntryListedTwiceIsReleasedOnce) {
  this->expect_from_text(0, this->opened_and_closed,
                         "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP><PROP>B</PROP>"
                         "</CHANNEL></ENVINDEXDICT>",
                         this->file.name(), ENV_INDX_DUMP_TXT_FILE, -1);
  EXPECT_EQ(this->file.content(), "1\tB\t0.000000\t0.000000\n1\tB\t0.000000\t0.000000\n");
}

// Whatever is written is read back: names whole, deltas to six decimals.
TYPED_TEST(EnvIndexDictDump, WhatIsWrittenIsReadBack) {
  using entry = typename TypeParam::entry;
  std::mt19937 random(7);
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcxyz0123456789./_-:+";
  typename TypeParam::list written;
  for (int i = 0; i < 1000; ++i) {
    std::string property;
    for (auto length = 1 + random() % TypeParam::longest; length > 0; --length) {
      property += alphabet[random() % alphabet.size()];
    }
    std::uniform_real_distribution<float> delta(-1000.0F, 1000.0F);
    written.get()->push_back(
        test::new_entry<entry>(static_cast<int>(random() & 0x7fffffffU) * (i % 2 != 0 ? 1 : -1),
                               property, delta(random), delta(random) * 1e-6F));
  }
  this->expect(0, "", written.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  typename TypeParam::list back;
  ASSERT_EQ(TypeParam::read(this->text.data(), back.get()), 0);
  ASSERT_EQ(back.size(), written.size());
  for (std::size_t i = 0; i < back.size(); ++i) {
    EXPECT_EQ(back[i].index, written[i].index);
    EXPECT_EQ(
        std::memcmp(back[i].data.env_prop, written[i].data.env_prop, sizeof back[i].data.env_prop),
        0);
    for (const auto field :
         {&decltype(entry::data)::env_ch_abs_delta, &decltype(entry::data)::env_ch_rel_delta}) {
      char decimals[64];
      std::snprintf(decimals, sizeof decimals, "%f", static_cast<double>(written[i].data.*field));
      EXPECT_EQ(back[i].data.*field, std::strtof(decimals, nullptr)) << decimals;
      EXPECT_NEAR(back[i].data.*field, written[i].data.*field, 4e-5F);
    }
  }
  // A second round changes nothing any more.
  std::string again;
  this->expect(0, "", back.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &again);
  EXPECT_EQ(dateless(again), dateless(this->text));
}
