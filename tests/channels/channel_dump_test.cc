// Dumping channel descriptions: arguments, modes, the text layouts, and texts as a source.

#include "channel_dumping.hh"

using test::captured;
using test::ChanDescrDump;
using test::empty_variables;
using test::pipe_pair;
using test::records;
using test::two_channels;
using testing::HasSubstr;

namespace {

constexpr const char* invalid = "dump_chan_desr() invalid argument: '\n";

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

// Nothing passed in is changed

TEST_F(ChanDescrDump, KeepsTheRecords) {
  two_channels from;
  const auto list = from.list;
  std::string before = captured([&] { print_zrt4_chan_descr(&from.list); }).out;
  for (const int mode : {0, 1, 2, 3}) captured([&] { dump(from, mode); });
  EXPECT_EQ(from.list, list);
  EXPECT_EQ(captured([&] { print_zrt4_chan_descr(&from.list); }).out, before);
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
