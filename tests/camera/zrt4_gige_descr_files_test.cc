// Camera files that cannot be read, or only in part, and large ones.

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "camera_support.hh"

namespace {

using test::feature_list;
using test::read;
using test::read_one;
using test::repeated;
using test::shown;
using testing::StartsWith;

// What is printed for a file that must be refused with the list untouched.
std::string refused(std::string name) {
  feature_list features;
  const auto* canary = &features.add("canary");
  const auto printed =
      test::captured([&] { EXPECT_TRUE(zrt4_fill_gige_descr(name.data(), features.get())); });
  EXPECT_EQ(features.size(), 1U);
  EXPECT_EQ(&features[0], canary);
  EXPECT_EQ(canary->name, "canary");
  EXPECT_EQ(printed.err, "");
  return printed.out;
}

// To root nothing is forbidden.
class not_root {
 public:
  not_root() : was(geteuid()) {
    if (was == 0) {
      EXPECT_EQ(seteuid(65534), 0);
    }
  }
  not_root(const not_root&) = delete;
  not_root& operator=(const not_root&) = delete;
  ~not_root() { EXPECT_EQ(seteuid(was), 0); }

 private:
  uid_t was;
};

}  // namespace

TEST(GigeFile, AMissingFileIsAnXmlException) {
  EXPECT_EQ(refused("/nowhere/camera.xml"),
            "An error occurred during parsing  Message: "
            "unable to open primary document entity '/nowhere/camera.xml'\n");
}

TEST(GigeFile, ARelativeNameIsReportedAbsolute) {
  EXPECT_EQ(refused("no_such_camera.xml"),
            "An error occurred during parsing  Message: unable to open primary document entity '" +
                (std::filesystem::current_path() / "no_such_camera.xml").string() + "'\n");
}

// The scanner forgets its copy of the name of a file whose reading fails.
TEST(GigeFile, ADirectoryIsAnXmlException) {
  const test::kept_leak of_the_scanner;
  EXPECT_EQ(refused("/tmp"),
            "An error occurred during parsing  Message: unable to read data from file\n");
}

TEST(GigeFile, AFileThatOpensButCannotBeReadIsAnXmlException) {
  const test::kept_leak of_the_scanner;
  EXPECT_EQ(refused("/proc/self/mem"),
            "An error occurred during parsing  Message: unable to read data from file\n");
}

TEST(GigeFile, AFileWithoutPermissionIsAnXmlException) {
  test::temporary_file file("<Integer Name='n'/>");
  ASSERT_EQ(chmod(file.name(), 0), 0);
  const not_root without_privileges;
  EXPECT_EQ(refused(file.path()),
            "An error occurred during parsing  Message: "
            "unable to open primary document entity '" +
                file.path() + "'\n");
}

TEST(GigeFile, AnUndecodableFirstLineIsAnXmlException) {
  test::temporary_file file("<?xml version='1.0'?\xff\xfe><Integer/>");
  EXPECT_EQ(refused(file.path()),
            "An error occurred during parsing  Message: "
            "unable to decode first line in entity '" +
                file.path() + "'\n");
}

TEST(GigeFile, AFileNameIsPassedAsItIs) {
  const std::string name = testing::TempDir() + "zrt4 camera %41 #1 & co.xml";
  std::ofstream(name) << "<Integer Name='n'/>";
  feature_list features;
  EXPECT_FALSE(zrt4_fill_gige_descr(std::string(name).data(), features.get()));
  EXPECT_EQ(shown(features), std::vector<std::string>{"1|n|||"});
  std::remove(name.c_str());
}

TEST(GigeFile, ADocumentWithoutRootEmptiesTheList) {
  for (const char* document :
       {"", " ", "text", "<?xml version='1.0'?>", "<!-- c -->", "<?xml version='1.0'?><!DOCTYPE r>",
        "<?xml version='1.0' encoding='no-such-encoding'?><Integer/>"}) {
    test::temporary_file file(document);
    ZRT4GigEFeature mine;
    feature_list features;
    features.get()->push_back(&mine);
    const auto printed =
        test::captured([&] { EXPECT_FALSE(zrt4_fill_gige_descr(file.name(), features.get())); });
    EXPECT_TRUE(features.empty()) << document;
    EXPECT_EQ(printed.out + printed.err, "") << document;
    (void)features.release();
  }
}

TEST(GigeFile, OfAMalformedFileCountsWhatWasReadBefore) {
  const std::string begun = "<r><Integer Name='n'><ToolTip>t</ToolTip>";
  const std::vector<std::string> kept{"1|n||t|"};
  EXPECT_EQ(read(begun), kept);
  EXPECT_EQ(read(begun + "</r>"), kept);
  EXPECT_EQ(read(begun + "<"), kept);
  EXPECT_EQ(read(begun + "<Float"), kept);
  EXPECT_EQ(read(begun + "<Float Name='m'"), kept);
  EXPECT_EQ(read(begun + "<Float Name=m/>"), kept);
  EXPECT_EQ(read(begun + "<Float Name='m' Name='o'/>"), kept);
  EXPECT_EQ(read(begun + "<Float Name='&none;'/>"), kept);
  EXPECT_EQ(read(begun + "&none;<Float Name='m'/>"), kept);
  EXPECT_EQ(read(begun + "\x01<Float Name='m'/>"), kept);
  EXPECT_EQ(read(begun + "<!-- -- --><Float Name='m'/>"), kept);
  EXPECT_EQ(read(begun + "</Integer></r><Float Name='m'/>"), kept);
}

TEST(GigeFile, AnElementCompleteBeforeTheErrorCounts) {
  EXPECT_THAT(read("<r><Integer Name='n'/><Float Name='m'></Int64>"),
              testing::ElementsAre("1|n|||", "2|m|||"));
}

TEST(GigeFile, NothingThatADocumentNamesIsOpened) {
  test::temporary_file outside("<Float Name='outside'/>");
  test::temporary_file declarations("<!ATTLIST Integer Name CDATA 'outside'>");
  EXPECT_THAT(read("<!DOCTYPE r [<!ENTITY e SYSTEM '" + outside.path() +
                   "'>]><r><Integer Name='n'/>&e;<Boolean Name='b'/></r>"),
              testing::ElementsAre("1|n|||"));
  EXPECT_THAT(read("<!DOCTYPE r SYSTEM '" + declarations.path() + "'><r><Integer/></r>"),
              testing::IsEmpty());
  EXPECT_THAT(
      read("<!DOCTYPE r [<!ENTITY % e SYSTEM '" + declarations.path() + "'>%e;]><r><Integer/></r>"),
      testing::IsEmpty());
}

TEST(GigeFile, OtherUsesOfTheXmlLibraryGoOn) {
  xercesc::XMLPlatformUtils::Initialize();
  EXPECT_EQ(read_one("<Integer Name='n'/>"), "1|n|||");
  EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
  EXPECT_THAT(refused("/nowhere/camera.xml"), StartsWith("An error occurred"));
  EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
  xercesc::XMLPlatformUtils::Terminate();
  EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
}

TEST(GigeFile, EndsItsUseOfTheXmlLibrary) {
  EXPECT_EQ(read_one("<Integer Name='n'/>"), "1|n|||");
  EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
  EXPECT_THAT(refused("/nowhere/camera.xml"), StartsWith("An error occurred"));
  EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
}

namespace {

// Runs `code` in a thread with little stack, as a server's worker has.
template <class Code>
void on_a_small_stack(Code&& code) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 256 * 1024);
  pthread_t thread;
  const auto run = [](void* given) -> void* {
    (*static_cast<std::remove_reference_t<Code>*>(given))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &code), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

template <class Code>
double seconds(Code&& code) {
  const auto start = std::chrono::steady_clock::now();
  code();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

TEST(GigeFile, ADeeplyNestedFileIsReadOnASmallStack) {
  constexpr int depth = 100000;
  on_a_small_stack([] {
    EXPECT_THAT(read(repeated("<a>", depth) + "<Integer Name='n'/>" + repeated("</a>", depth)),
                testing::ElementsAre("1|n|||"));
    EXPECT_THAT(read(repeated("<a>", depth) + "<Integer Name='cut'/>"),
                testing::ElementsAre("1|cut|||"));
    EXPECT_EQ(read(repeated("<Float Name='n'>", depth)).size(), std::size_t{depth});
  });
}

TEST(GigeFile, ADeeplyNestedEntityIsReadOnASmallStack) {
  constexpr int depth = 100000;
  on_a_small_stack([] {
    EXPECT_THAT(read("<!DOCTYPE r [<!ENTITY d '" + repeated("<a>", depth) +
                     "<Integer Name=\"n\"/>" + repeated("</a>", depth) + "'>]><r>&d;</r>"),
                testing::ElementsAre("1|n|||"));
  });
}

// Counting from the first sibling at every step would take minutes.
TEST(GigeFile, AWideFileTakesLinearTime) {
  constexpr int width = 400000;
  const std::string document = "<r>" + repeated("<Int64/>", width) + "</r>";
  std::size_t found = 0;
  EXPECT_LT(seconds([&] { found = read(document).size(); }), 30);
  EXPECT_EQ(found, std::size_t{width});
}
