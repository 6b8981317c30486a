// What the dictionary functions ask of the system, and what they do when it refuses: the linker
// puts this program's malloc, free, fopen, fclose and write in front of the real ones.

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "env_dictionary_support.hh"

namespace {

struct {
  std::size_t entry_size = 0;  // only blocks of this size are watched
  int failing_allocation = 0;  // counted from 1
  std::vector<void*> allocated;
  std::vector<void*> freed;
  bool dumping = false;  // only files opened and closed meanwhile are watched
  std::vector<std::FILE*> opened;
  std::vector<std::FILE*> closed;
  std::vector<ssize_t> write_results;  // what the next writes may write; then as much as given
  std::string written;
  bool initialisation_fails = false;
  int terminated = 0;
} watch;

constexpr int watched_descriptor = 12345;

}  // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void __real_free(void* block);
std::FILE* __real_fopen(const char* name, const char* mode);
int __real_fclose(std::FILE* file);
ssize_t __real_write(int descriptor, const void* bytes, std::size_t size);

// Visible, because linkers also count the shared libraries' calls among those that go through
// these.
ZRT4_EXPORT void* __wrap_malloc(std::size_t size);
ZRT4_EXPORT void __wrap_free(void* block);
ZRT4_EXPORT std::FILE* __wrap_fopen(const char* name, const char* mode);
ZRT4_EXPORT int __wrap_fclose(std::FILE* file);
ZRT4_EXPORT ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size);

void* __wrap_malloc(std::size_t size) {
  if (size != watch.entry_size) return __real_malloc(size);
  const bool fails = --watch.failing_allocation == 0;
  watch.allocated.push_back(fails ? nullptr : __real_malloc(size));
  return watch.allocated.back();
}

void __wrap_free(void* block) {
  if (watch.entry_size != 0) watch.freed.push_back(block);
  __real_free(block);
}

std::FILE* __wrap_fopen(const char* name, const char* mode) {
  std::FILE* file = __real_fopen(name, mode);
  if (watch.dumping) watch.opened.push_back(file);
  return file;
}

int __wrap_fclose(std::FILE* file) {
  if (watch.dumping) watch.closed.push_back(file);
  return __real_fclose(file);
}

ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
  if (descriptor != watched_descriptor) return __real_write(descriptor, bytes, size);
  auto result = static_cast<ssize_t>(size);
  if (!watch.write_results.empty()) {
    result = watch.write_results.front();
    watch.write_results.erase(watch.write_results.begin());
  }
  if (result > 0) {
    watch.written.append(static_cast<const char*>(bytes), static_cast<std::size_t>(result));
  }
  if (result < 0) errno = EINTR;
  return result;
}
}

XERCES_CPP_NAMESPACE_BEGIN

ZRT4_EXPORT void XMLPlatformUtils::Initialize(const char* const locale, const char* const nls_home,
                                              PanicHandler* const panic,
                                              MemoryManager* const memory) {
  if (watch.initialisation_fails) {
    throw RuntimeException("test", 1, XMLExcepts::CM_BinOpHadUnaryType, fgMemoryManager);
  }
  using initialize = void(const char*, const char*, PanicHandler*, MemoryManager*);
  reinterpret_cast<initialize*>(dlsym(RTLD_NEXT,
                                      "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_"
                                      "12PanicHandlerEPNS_13MemoryManagerE"))(locale, nls_home,
                                                                              panic, memory);
}

ZRT4_EXPORT void XMLPlatformUtils::Terminate() {
  ++watch.terminated;
  reinterpret_cast<void (*)()>(
      dlsym(RTLD_NEXT, "_ZN11xercesc_3_216XMLPlatformUtils9TerminateEv"))();
}

XERCES_CPP_NAMESPACE_END

namespace {

std::string channel(const std::string& content) {
  return "<CHANNEL>" + content + "</CHANNEL>";
}

const std::string complete = channel("<INDEX>1</INDEX><PROP>A</PROP>");

template <class Generation>
struct EnvIndexDictFaults : testing::Test {
  EnvIndexDictFaults() {
    xercesc::XMLPlatformUtils::Initialize();
    watch = {};
  }
  ~EnvIndexDictFaults() override {
    watch = {};
    xercesc::XMLPlatformUtils::Terminate();
  }

  // Reads `content` as the content of the root, the n-th allocation of an entry failing.
  void read(const std::string& content, int failing_allocation = 0) {
    std::string document = "<ENVINDEXDICT>" + content + "</ENVINDEXDICT>";
    said = test::captured([&] {
      list.get()->reserve(16);
      watch.failing_allocation = failing_allocation;
      watch.entry_size = sizeof(typename Generation::entry);
      EXPECT_EQ(Generation::read(document.data(), list.get()), 0);
      watch.entry_size = 0;
    });
  }

  int dump_to_watched(char* file) {
    int code = -1;
    list.get()->push_back(
        test::new_entry<typename Generation::entry>(7, "ENV/TEMP.1", 0.5F, 0.01F));
    said = test::captured([&] {
      watch.dumping = true;
      code =
          Generation::dump(list.get(), file, ENV_INDX_DUMP_XML_FILE, watched_descriptor, nullptr);
      watch.dumping = false;
    });
    return code;
  }

  static int dump_text(std::string document) {
    int code = -1;
    test::captured([&] {
      watch.entry_size = sizeof(typename Generation::entry);
      code = Generation::dump(document.data(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1);
      watch.entry_size = 0;
    });
    return code;
  }

  static std::ptrdiff_t times_freed(const void* block) {
    return std::count(watch.freed.begin(), watch.freed.end(), block);
  }

  typename Generation::list list;
  test::output said;
  const std::string no_memory =
      "Failed to allocate memory for " + std::string(Generation::record) + "\n";
};
using generations = testing::Types<test::older, test::y2010>;
TYPED_TEST_SUITE(EnvIndexDictFaults, generations, test::titles);

}  // namespace

TYPED_TEST(EnvIndexDictFaults, AnEntryIsOneBlockOfItsSize) {
  this->read(complete + complete + complete);
  EXPECT_EQ(watch.allocated.size(), 3U);
  ASSERT_EQ(this->list.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(&this->list[i], watch.allocated[i]);
}

TYPED_TEST(EnvIndexDictFaults, AnIncompleteChannelGivesItsBlockToTheNext) {
  this->read(channel("<INDEX>1</INDEX>") + channel("<PROP>A</PROP>") + "<CHANNEL/>" + complete);
  EXPECT_EQ(watch.allocated.size(), 1U);
  ASSERT_EQ(this->list.size(), 1U);
  EXPECT_EQ(&this->list[0], watch.allocated[0]);
}

TYPED_TEST(EnvIndexDictFaults, TheLastIncompleteChannelIsNeitherListedNorFreed) {
  this->read(complete + channel("<INDEX>1</INDEX>"));
  EXPECT_EQ(this->list.size(), 1U);
  ASSERT_EQ(watch.allocated.size(), 2U);
  EXPECT_EQ(this->times_freed(watch.allocated[1]), 0);
  std::free(watch.allocated[1]);
}

TYPED_TEST(EnvIndexDictFaults, WithoutMemoryTheChannelIsSkippedAndReadingGoesOn) {
  for (int failing = 1; failing <= 3; ++failing) {
    this->list.clear();
    this->read(channel("<INDEX>1</INDEX><PROP>A</PROP><DABS>1</DABS>") +
                   channel("<INDEX>2</INDEX><PROP>B</PROP><DREL>2</DREL>") +
                   channel("<PROP>C</PROP><INDEX>3</INDEX>"),
               failing);
    EXPECT_EQ(this->said.out, this->no_memory);
    EXPECT_EQ(this->said.err, "");
    ASSERT_EQ(this->list.size(), 2U);
    EXPECT_EQ(this->list[0].index, failing == 1 ? 2 : 1);
    EXPECT_STREQ(this->list[0].data.env_prop, failing == 1 ? "B" : "A");
    EXPECT_EQ(this->list[0].data.env_ch_abs_delta, failing == 1 ? 0.0F : 1.0F);
    EXPECT_EQ(this->list[0].data.env_ch_rel_delta, failing == 1 ? 2.0F : 0.0F);
    EXPECT_EQ(this->list[1].index, failing == 3 ? 2 : 3);
  }
}

TYPED_TEST(EnvIndexDictFaults, WithoutMemoryTheEntryBeforeStaysAsItWas) {
  this->read(complete + channel("<INDEX>2</INDEX><PROP>B</PROP><DABS>1</DABS><DREL>1</DREL>"), 2);
  ASSERT_EQ(this->list.size(), 1U);
  EXPECT_EQ(this->list[0].index, 1);
  EXPECT_STREQ(this->list[0].data.env_prop, "A");
  EXPECT_EQ(this->list[0].data.env_ch_abs_delta, 0.0F);
  EXPECT_EQ(this->list[0].data.env_ch_rel_delta, 0.0F);
}

TYPED_TEST(EnvIndexDictFaults, DumpingATextFreesEachEntryOnce) {
  EXPECT_EQ(this->dump_text("<ENVINDEXDICT>" + complete +
                            channel("<INDEX>2</INDEX><PROP>B</PROP><PROP>C</PROP><PROP>D</PROP>") +
                            channel("<PROP>E</PROP><INDEX>3</INDEX><INDEX>4</INDEX>") + complete +
                            "</ENVINDEXDICT>"),
            0);
  EXPECT_EQ(watch.allocated.size(), 4U);
  for (const void* entry : watch.allocated) EXPECT_EQ(this->times_freed(entry), 1);
}

TYPED_TEST(EnvIndexDictFaults, DumpingABrokenTextFreesNoEntry) {
  EXPECT_EQ(this->dump_text("<ENVINDEXDICT>" + complete + complete), 3);
  EXPECT_EQ(watch.allocated.size(), 2U);
  for (void* entry : watch.allocated) {
    EXPECT_EQ(this->times_freed(entry), 0);
    std::free(entry);
  }
}

TYPED_TEST(EnvIndexDictFaults, AFileIsClosedOnce) {
  test::temporary_file file("");
  EXPECT_EQ(this->dump_to_watched(file.name()), 0);
  EXPECT_EQ(watch.opened.size(), 1U);
  EXPECT_EQ(watch.closed, watch.opened);
  EXPECT_EQ(watch.written, file.content());
}

TYPED_TEST(EnvIndexDictFaults, AFailedWriteLeavesTheFileOpen) {
  test::temporary_file file("");
  watch.write_results = {-1};
  EXPECT_EQ(this->dump_to_watched(file.name()), 2);
  EXPECT_EQ(this->said.out, std::string(TypeParam::dump_name) + "  file: '" + file.path() +
                                "' has been created\n" + TypeParam::write_failed);
  ASSERT_EQ(watch.opened.size(), 1U);
  EXPECT_TRUE(watch.closed.empty());
  std::fclose(watch.opened[0]);
  EXPECT_THAT(file.content(), testing::EndsWith("</ENVINDEXDICT>\n\n"));
}

TYPED_TEST(EnvIndexDictFaults, AShortWriteIsContinued) {
  test::temporary_file file("");
  watch.write_results = {1, 7, 30};
  EXPECT_EQ(this->dump_to_watched(file.name()), 0);
  EXPECT_TRUE(watch.write_results.empty());
  EXPECT_EQ(watch.written, file.content());
}

TYPED_TEST(EnvIndexDictFaults, AWriteThatFailsLaterIsAFailedWrite) {
  watch.write_results = {10, -1};
  EXPECT_EQ(this->dump_to_watched(nullptr), 2);
  EXPECT_EQ(this->said.out, TypeParam::write_failed);
  EXPECT_EQ(watch.written, "<?xml vers");
}

TYPED_TEST(EnvIndexDictFaults, AWriteThatTakesNothingEndsTheDump) {
  watch.write_results = {10, 0};
  EXPECT_EQ(this->dump_to_watched(nullptr), 0);
  EXPECT_EQ(this->said.out, "");
  EXPECT_EQ(watch.written, "<?xml vers");
}

TYPED_TEST(EnvIndexDictFaults, WithoutXmlLibraryReadersReturnOneAndKeepTheirParser) {
  char document[] = "<ENVINDEXDICT/>";
  watch.initialisation_fails = true;
  this->said = test::captured([&] {
    const test::kept_leak parsers;
    EXPECT_EQ(TypeParam::read(document, this->list.get()), 1);
    EXPECT_EQ(TypeParam::readf(document, this->list.get()), 1);
  });
  EXPECT_EQ(watch.terminated, 0);
  EXPECT_EQ(this->said.out, "");
  const std::string message =
      "Error during initialization! Message:\nbinary operation node has unary node type\n";
  EXPECT_EQ(this->said.err, message + message);
}

TYPED_TEST(EnvIndexDictFaults, EveryOtherEndTerminatesTheXmlLibraryOnce) {
  char missing[] = "/tmp/zrt4_no_such_folder/dictionary.xml";
  test::captured([&] {
    EXPECT_EQ(TypeParam::readf(missing, this->list.get()), 1);
    EXPECT_EQ(watch.terminated, 1);
    for (std::string document : {"", "<X/>", "<ENVINDEXDICT>", "<ENVINDEXDICT/>"}) {
      watch.terminated = 0;
      TypeParam::read(document.data(), this->list.get());
      EXPECT_EQ(watch.terminated, 1) << document;
    }
  });
}
