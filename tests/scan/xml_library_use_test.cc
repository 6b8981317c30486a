// How the library holds the XML library.

#include <xercesc/util/PlatformUtils.hpp>

#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "pull_parser_support.hh"
#include "xml_library_calls.hh"
#include "zrt4xml.hh"

using test::xml_library;

namespace {

struct XmlLibrary : testing::Test {
  XmlLibrary() {
    xercesc::XMLPlatformUtils::Initialize();
    xml_library = {};
  }
  ~XmlLibrary() override {
    xml_library.initialisation_fails = false;
    xercesc::XMLPlatformUtils::Terminate();
  }
  static void fail() { xml_library.initialisation_fails = true; }
};

const char* const initialisation_message =
    "Error during initialization! Message:\nbinary operation node has unary node type\n";

}  // namespace

TEST_F(XmlLibrary, EachParserHoldsOneUse) {
  {
    test::in_memory memory("<R/>");
    EXPECT_EQ(xml_library.initialised, 1);
    test::in_file file("<R/>");
    EXPECT_EQ(xml_library.initialised, 2);
    EXPECT_FALSE(memory.start());
    EXPECT_FALSE(file.start());
    EXPECT_EQ(xml_library.terminated, 0);
  }
  EXPECT_EQ(xml_library.initialised, 2);
  EXPECT_EQ(xml_library.terminated, 2);
}

TEST_F(XmlLibrary, FailureLeavesAMemoryParserThatCanOnlyBeDestroyed) {
  fail();
  char text[] = "<R/>";
  const test::output said = test::captured([&] {
    const SAX_Memory_Parser parser(text);
    EXPECT_FALSE(parser.init_ok());
  });
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(xml_library.initialised, 1);
  EXPECT_EQ(xml_library.terminated, 1);
}

TEST_F(XmlLibrary, FailureLeavesAFileParserThatCanOnlyBeDestroyed) {
  fail();
  const test::output said = test::captured([&] {
    const SAX_File_Parser parser;
    EXPECT_FALSE(parser.init_ok());
  });
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(xml_library.terminated, 1);
}

TEST_F(XmlLibrary, FailureIsAMessageToAReceiver) {
  fail();
  char text[] = "<R/>";
  const test::output said = test::captured([&] {
    const zrt4::message_list received;
    const SAX_Memory_Parser in_memory(text);
    const SAX_File_Parser in_file;
    ASSERT_EQ(received.size(), 2U);
    for (const zrt4::kept_message& each : received) {
      EXPECT_EQ(each.topic, zrt4::message_topic::library);
      EXPECT_EQ(each.severity, zrt4::message_severity::fatal_error);
      EXPECT_EQ(each.text + "\n", initialisation_message);
    }
  });
  EXPECT_EQ(said.out + said.err, "");
}

// The parser is destroyed although its constructor has not ended.
TEST_F(XmlLibrary, FailureReleasesTheParserWhoseReceiverThrows) {
  fail();
  struct throwing : zrt4::message_receiver {
    void receive(const zrt4::message&) override { throw 42; }
  };
  char text[] = "<R/>";
  const throwing receiver;
  EXPECT_THROW(SAX_Memory_Parser{text}, int);
  EXPECT_THROW(SAX_File_Parser{}, int);
  EXPECT_EQ(xml_library.initialised, 2);
  EXPECT_EQ(xml_library.terminated, 2);
}

TEST_F(XmlLibrary, FailureMakesTheMemoryEventListReaderReturnOne) {
  fail();
  char text[] = "<BMR/>";
  std::vector<zrt4_ev_entry*> list;
  const test::output said =
      test::captured([&] { EXPECT_EQ(zrt4_parse_ev_list_read(text, &list), 1); });
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(xml_library.terminated, 1);
}

// The file reader deliberately leaves a parser that could not be set up undestroyed.
TEST_F(XmlLibrary, FailureMakesTheFileEventListReaderReturnOneAndKeepItsParser) {
  fail();
  char name[] = "any.xml";
  std::vector<zrt4_ev_entry*> list;
  const test::output said = test::captured([&] {
    const test::kept_leak parser;
    EXPECT_EQ(zrt4_parse_ev_list_readf(name, &list), 1);
  });
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(xml_library.initialised, 1);
  EXPECT_EQ(xml_library.terminated, 0);
}

TEST_F(XmlLibrary, FailureMakesTheMemoryChannelReaderReturnOne) {
  fail();
  char text[] = "<CHANDESCRIPTIONS/>";
  std::vector<chan_descr_2010*> list;
  const test::output said =
      test::captured([&] { EXPECT_EQ(parse_descr_list_read(text, &list, false, false), 1); });
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(xml_library.terminated, 1);
}

TEST_F(XmlLibrary, FailureMakesTheOtherReadersReturnOneAndKeepTheirParsers) {
  fail();
  char source[] = "any.xml";
  std::vector<chan_descr_2010*> channels;
  std::vector<zrt4_env_index_dictionary_entry*> narrow;
  std::vector<zrt4_env_index_dictionary_entry_2010*> wide;
  const test::output said = test::captured([&] {
    const test::kept_leak parsers;
    EXPECT_EQ(parse_descr_list_readf(source, &channels, false, false), 1);
    EXPECT_EQ(parse_env_index_dict_readf(source, &narrow), 1);
    EXPECT_EQ(parse_env_index_dict_readf_2010(source, &wide), 1);
    EXPECT_EQ(parse_env_index_dict_list_read(source, &narrow), 1);
    EXPECT_EQ(parse_env_index_dict_list_read_2010(source, &wide), 1);
  });
  EXPECT_EQ(xml_library.initialised, 5);
  EXPECT_EQ(xml_library.terminated, 0);
}
