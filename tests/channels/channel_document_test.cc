// XML documents of channel descriptions as a whole: where they go, and how long they get.

#include <fcntl.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <fstream>

#include "channel_documents.hh"
#include "channel_dumping.hh"

using test::body;
using test::captured;
using test::ChanDescrDump;
using test::empty_elements;
using test::empty_variables;
using test::pipe_pair;
using test::records;
using test::two_channels;
using test::without_date;
using testing::HasSubstr;

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

// A document far longer than what its first channels let expect

TEST(BothDialects, LongDocuments) {
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    records from;
    std::string single;
    std::string expected;
    for (int n = 0; n < 400; ++n) {
      records alone;
      for (records* into : {&from, &alone}) {
        auto& one = into->add("P" + std::to_string(n), "D");
        for (int bit = 0; n > 100 && bit < 50; ++bit) {
          into->add_bit(one, bit, std::string(60, 'n'), std::string(70, 'd'));
        }
      }
      expected += body(alone, format);
    }
    EXPECT_EQ(body(from, format), expected);
  }
}

TEST(BothDialects, LongChannelsFirstReserveNoMoreThanTheRecordsTakeTwice) {
  constexpr std::size_t channels = 10'000;
  constexpr std::size_t long_channels = 64;
  records from;
  for (std::size_t n = 0; n < channels; ++n) {
    auto& one = from.add("P" + std::to_string(n), "D");
    for (int bit = 0; n < long_channels && bit < 200; ++bit) {
      from.add_bit(one, bit, std::string(60, 'n'), std::string(70, 'd'));
    }
  }
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    std::string document;
    EXPECT_EQ(dump_chan_desr(&from.list, nullptr, DUMP_XML_FILE, format, -1, &document, nullptr),
              0);
    EXPECT_GT(document.size(), 2'000'000U);
    EXPECT_LE(document.capacity(), 2 * channels * sizeof(chan_descr_2010));
  }
}
