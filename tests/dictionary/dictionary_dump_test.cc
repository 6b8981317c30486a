// Dumping dictionaries: modes, destinations, what is written and what goes wrong.

#include <csignal>
#include <cstring>
#include <limits>
#include <thread>

#include "comma_locale.hh"
#include "dictionary_dumping.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);
[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

using test::created_and_closed;
using test::dateless;
using test::empty_document;
using test::EnvIndexDictDump;
using test::head;
using test::no_file;
using test::open_file;
using test::sample_channel;
using test::sample_line;
using test::sample_listing;
using test::tail;

TYPED_TEST_SUITE(EnvIndexDictDump, test::generations, test::titles);

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
