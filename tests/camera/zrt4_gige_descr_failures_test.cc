// Failures of the XML library: this program's own definitions of some of its functions come first
// when the dynamic linker binds the calls of the library under test.

#include <dlfcn.h>

#include <functional>
#include <set>
#include <vector>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/parsers/AbstractDOMParser.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "camera_support.hh"
#include "zrt4xml.hh"

namespace {

std::function<void()> instead_of_parsing;
std::function<void()> after_initializing;
std::vector<std::string> calls;

template <class Function>
Function* next(const char* symbol) {
  void* address = dlsym(RTLD_NEXT, symbol);
  if (address == nullptr) std::abort();
  return reinterpret_cast<Function*>(address);
}

}  // namespace

[[gnu::visibility("default")]] void xercesc::XMLPlatformUtils::Initialize(
    const char* const locale, const char* const nls_home, xercesc::PanicHandler* const panic,
    xercesc::MemoryManager* const memory) {
  calls.push_back(std::string("Initialize ") + locale);
  using function = void(const char*, const char*, xercesc::PanicHandler*, xercesc::MemoryManager*);
  static auto* const real = next<function>(
      "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_"
      "13MemoryManagerE");
  real(locale, nls_home, panic, memory);
  if (after_initializing) after_initializing();
}

[[gnu::visibility("default")]] void xercesc::XMLPlatformUtils::Terminate() {
  calls.emplace_back("Terminate");
  static auto* const real = next<void()>("_ZN11xercesc_3_216XMLPlatformUtils9TerminateEv");
  real();
}

[[gnu::visibility("default")]] void xercesc::AbstractDOMParser::parse(const char* const name) {
  calls.push_back(std::string("parse ") + name);
  if (instead_of_parsing) return instead_of_parsing();
  using function = void(xercesc::AbstractDOMParser*, const char*);
  static auto* const real = next<function>("_ZN11xercesc_3_217AbstractDOMParser5parseEPKc");
  real(this, name);
}

namespace {

using test::feature_list;
using test::shown;
using testing::ElementsAre;
using xercesc::DOMException;
using xercesc::XMLPlatformUtils;

class GigeFailure : public testing::Test {
 protected:
  GigeFailure() { calls.clear(); }
  ~GigeFailure() override { instead_of_parsing = after_initializing = nullptr; }

  // Reads into a list with one record, which must stay; gives what was printed.
  static std::string refused() {
    char name[] = "camera.xml";
    feature_list features;
    const auto* canary = &features.add("canary");
    const auto printed =
        test::captured([&] { EXPECT_TRUE(zrt4_fill_gige_descr(name, features.get())); });
    EXPECT_EQ(features.size(), 1U);
    EXPECT_EQ(&features[0], canary);
    EXPECT_EQ(printed.err, "");
    return printed.out;
  }
};

constexpr auto cannot_open = xercesc::XMLExcepts::File_CouldNotOpenFile;

void throw_xml_exception() {
  ThrowXML1(xercesc::RuntimeException, cannot_open, u"disk");
}

/// Knows what is taken and not given back, and gives that back at its end; may refuse a request.
class counting_memory : public xercesc::MemoryManager {
 public:
  counting_memory() = default;
  counting_memory(const counting_memory&) = delete;
  counting_memory& operator=(const counting_memory&) = delete;
  ~counting_memory() override {
    for (void* block : taken) ::operator delete(block);
  }

  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t size) override {
    if (++requests == refused_request) throw xercesc::OutOfMemoryException();
    return *taken.insert(::operator new(size)).first;
  }
  void deallocate(void* block) override {
    taken.erase(block);
    ::operator delete(block);
  }

  long requests = 0;
  long refused_request = -1;
  std::set<void*> taken;
};

}  // namespace

TEST_F(GigeFailure, NullArgumentsDoNotReachTheXmlLibrary) {
  feature_list features;
  EXPECT_TRUE(zrt4_fill_gige_descr(nullptr, features.get()));
  EXPECT_THAT(calls, testing::IsEmpty());
}

TEST_F(GigeFailure, OneReadIsOneUseOfTheXmlLibrary) {
  test::temporary_file file("<Integer Name='n'/>");
  feature_list features;
  EXPECT_FALSE(zrt4_fill_gige_descr(file.name(), features.get()));
  EXPECT_THAT(calls, ElementsAre("Initialize en_US", "parse " + file.path(), "Terminate"));
}

TEST_F(GigeFailure, Initializing) {
  after_initializing = throw_xml_exception;
  EXPECT_EQ(refused(),
            "Error during Xerces-c Initialization.  Exception message: "
            "unable to open file 'disk'\n");
  EXPECT_THAT(calls, ElementsAre("Initialize en_US"));
  XMLPlatformUtils::Terminate();
}

TEST_F(GigeFailure, OutOfMemoryWhileParsing) {
  instead_of_parsing = [] { throw xercesc::OutOfMemoryException(); };
  EXPECT_EQ(refused(), "OutOfMemoryException\n");
  EXPECT_THAT(calls, ElementsAre("Initialize en_US", "parse camera.xml", "Terminate"));
}

TEST_F(GigeFailure, ReceiversLearnWhatItIsAbout) {
  const zrt4::message_list received;
  after_initializing = throw_xml_exception;
  EXPECT_EQ(refused(), "");
  XMLPlatformUtils::Terminate();
  after_initializing = nullptr;
  instead_of_parsing = [] { throw xercesc::OutOfMemoryException(); };
  EXPECT_EQ(refused(), "");
  instead_of_parsing = [] { throw DOMException(49); };
  EXPECT_EQ(refused(), "");
  ASSERT_EQ(received.size(), 3U);
  EXPECT_EQ(received[0].topic, zrt4::message_topic::library);
  EXPECT_EQ(received[0].severity, zrt4::message_severity::fatal_error);
  EXPECT_EQ(received[0].text,
            "Error during Xerces-c Initialization.  Exception message: unable to open file 'disk'");
  EXPECT_EQ(received[1].topic, zrt4::message_topic::out_of_memory);
  EXPECT_EQ(received[1].document, "camera.xml");
  EXPECT_EQ(received[2].topic, zrt4::message_topic::not_read);
}

TEST_F(GigeFailure, XmlExceptionWhileParsing) {
  instead_of_parsing = throw_xml_exception;
  EXPECT_EQ(refused(), "An error occurred during parsing  Message: unable to open file 'disk'\n");
  EXPECT_THAT(calls, ElementsAre("Initialize en_US", "parse camera.xml", "Terminate"));
}

TEST_F(GigeFailure, DomExceptionWhileParsing) {
  instead_of_parsing = [] { throw DOMException(DOMException::NOT_FOUND_ERR); };
  EXPECT_EQ(refused(),
            "\nDOM Error during parsing: 'camera.xml' DOMException code is: 8\n"
            "Message is: attempt is made to reference a node in a context where it does not exist");
  EXPECT_THAT(calls, ElementsAre("Initialize en_US", "parse camera.xml", "Terminate"));
}

TEST_F(GigeFailure, DomExceptionWithoutKnownTextWhileParsing) {
  instead_of_parsing = [] { throw DOMException(49); };
  EXPECT_EQ(refused(), "\nDOM Error during parsing: 'camera.xml' DOMException code is: 49\n");
}

TEST_F(GigeFailure, AnythingElseWhileParsing) {
  instead_of_parsing = [] { throw 42; };
  EXPECT_EQ(refused(), "An error occurred during parsing\n ");
  EXPECT_THAT(calls, ElementsAre("Initialize en_US", "parse camera.xml", "Terminate"));
}

TEST_F(GigeFailure, NoDocumentAndNoReason) {
  instead_of_parsing = [] {};
  EXPECT_EQ(refused(), "An error occurred during parsing  Message: \n");
  EXPECT_THAT(calls, ElementsAre("Initialize en_US", "parse camera.xml", "Terminate"));
}

TEST_F(GigeFailure, NothingIsKeptInTheXmlLibrary) {
  test::temporary_file file(
      "<!DOCTYPE r [<!ENTITY e '<b/>'><!ATTLIST Integer Name CDATA 'd'>]>"
      "<r><Integer/><ToolTip>gr\u00f6\u00dfe</ToolTip>&e;</r>");
  test::temporary_file cut(
      "<!DOCTYPE r [<!ENTITY e 'x'><!ATTLIST r a CDATA 'd'>]><r><Integer>&e;<");
  test::temporary_file cut_early("<!DOCTYPE r [<!ENTITY e 'x'><!ATTLIST r a CDATA 'd'");
  counting_memory memory;
  XMLPlatformUtils::Initialize("en_US", nullptr, nullptr, &memory);
  const auto taken = memory.taken.size();
  for (char* name : {file.name(), cut.name(), cut_early.name()}) {
    feature_list features;
    EXPECT_FALSE(zrt4_fill_gige_descr(name, features.get()));
    EXPECT_EQ(memory.taken.size(), taken);
  }
  (void)refused();
  EXPECT_EQ(memory.taken.size(), taken);
  XMLPlatformUtils::Terminate();
}

// Memory that runs out while parsing refuses the file; what the scanner itself then leaves behind
// stays its own affair. In the walk it passes on to the caller.
TEST_F(GigeFailure, EveryRequestForMemoryMayFail) {
  test::temporary_file file(
      "<r><Integer Name='n'/><Float Name='m'/><ToolTip>gr\u00f6\u00dfe</ToolTip></r>");
  counting_memory memory;
  XMLPlatformUtils::Initialize("en_US", nullptr, nullptr, &memory);
  int refusals = 0;
  int passed_on = 0;
  for (bool failed = true; failed;) {
    feature_list features;
    const auto taken = memory.taken.size();
    memory.refused_request = memory.requests + refusals + passed_on + 1;
    const auto printed = test::captured([&] {
      try {
        failed = zrt4_fill_gige_descr(file.name(), features.get());
        refusals += failed ? 1 : 0;
      } catch (const xercesc::OutOfMemoryException&) {
        ++passed_on;
        EXPECT_EQ(memory.taken.size(), taken);
      }
    });
    if (failed) {
      EXPECT_TRUE(printed.out == "OutOfMemoryException\n" ||
                  (passed_on > 0 && printed.out.empty()));
    } else {
      EXPECT_THAT(shown(features), ElementsAre("1|n|||", testing::StartsWith("2|m||gr")));
    }
  }
  memory.refused_request = -1;
  EXPECT_GT(refusals, 10);
  EXPECT_GT(passed_on, 0);
  XMLPlatformUtils::Terminate();
}
