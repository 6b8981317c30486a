// How the library holds the XML library: this program's Initialize and Terminate stand in front of
// the real ones, count the calls and fail on request.

#include <dlfcn.h>

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "pull_parser_support.hh"

namespace {

int initialised = 0;
int terminated = 0;
bool initialisation_fails = false;

template <class Function>
Function* real(const char* symbol) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

}  // namespace

XERCES_CPP_NAMESPACE_BEGIN

ZRT4_EXPORT void XMLPlatformUtils::Initialize(const char* const locale, const char* const nls_home,
                                              PanicHandler* const panic,
                                              MemoryManager* const memory) {
  ++initialised;
  if (initialisation_fails) {
    throw RuntimeException("test", 1, XMLExcepts::CM_BinOpHadUnaryType, fgMemoryManager);
  }
  using initialize = void(const char*, const char*, PanicHandler*, MemoryManager*);
  real<initialize>(
      "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_"
      "13MemoryManagerE")(locale, nls_home, panic, memory);
}

ZRT4_EXPORT void XMLPlatformUtils::Terminate() {
  ++terminated;
  // A failed initialisation took no use of the library that could be given back here.
  if (!initialisation_fails) real<void()>("_ZN11xercesc_3_216XMLPlatformUtils9TerminateEv")();
}

XERCES_CPP_NAMESPACE_END

namespace {

struct XmlLibrary : testing::Test {
  XmlLibrary() {
    xercesc::XMLPlatformUtils::Initialize();
    initialised = terminated = 0;
  }
  ~XmlLibrary() override {
    initialisation_fails = false;
    xercesc::XMLPlatformUtils::Terminate();
  }
  static void fail() { initialisation_fails = true; }
};

const char* const initialisation_message =
    "Error during initialization! Message:\nbinary operation node has unary node type\n";

}  // namespace

TEST_F(XmlLibrary, EachParserHoldsOneUse) {
  {
    test::in_memory memory("<R/>");
    EXPECT_EQ(initialised, 1);
    test::in_file file("<R/>");
    EXPECT_EQ(initialised, 2);
    EXPECT_FALSE(memory.start());
    EXPECT_FALSE(file.start());
    EXPECT_EQ(terminated, 0);
  }
  EXPECT_EQ(initialised, 2);
  EXPECT_EQ(terminated, 2);
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
  EXPECT_EQ(initialised, 1);
  EXPECT_EQ(terminated, 1);
}

TEST_F(XmlLibrary, FailureLeavesAFileParserThatCanOnlyBeDestroyed) {
  fail();
  const test::output said = test::captured([&] {
    const SAX_File_Parser parser;
    EXPECT_FALSE(parser.init_ok());
  });
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(terminated, 1);
}

TEST_F(XmlLibrary, FailureMakesTheMemoryEventListReaderReturnOne) {
  fail();
  char text[] = "<BMR/>";
  std::vector<zrt4_ev_entry*> list;
  const test::output said =
      test::captured([&] { EXPECT_EQ(zrt4_parse_ev_list_read(text, &list), 1); });
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(terminated, 1);
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
  EXPECT_EQ(initialised, 1);
  EXPECT_EQ(terminated, 0);
}

TEST_F(XmlLibrary, FailureMakesTheMemoryChannelReaderReturnOne) {
  fail();
  char text[] = "<CHANDESCRIPTIONS/>";
  std::vector<chan_descr_2010*> list;
  const test::output said =
      test::captured([&] { EXPECT_EQ(parse_descr_list_read(text, &list, false, false), 1); });
  EXPECT_EQ(said.err, initialisation_message);
  EXPECT_EQ(terminated, 1);
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
  EXPECT_EQ(initialised, 5);
  EXPECT_EQ(terminated, 0);
}
