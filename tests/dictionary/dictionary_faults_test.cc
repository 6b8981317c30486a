// What the dictionary functions ask of the system, and what they do when it refuses: the linker
// puts this program's malloc and free in front of the real ones.

#include <algorithm>
#include <xercesc/util/PlatformUtils.hpp>

#include "dictionary_support.hh"
#include "system_calls.hh"
#include "xml_library_calls.hh"
#include "zrt4xml.hh"

using test::calls;

namespace {

struct {
  std::size_t entry_size = 0;  // only blocks of this size are watched
  int failing_allocation = 0;  // counted from 1
  std::vector<void*> allocated;
  std::vector<void*> freed;
} memory;

}  // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void __real_free(void* block);

// Visible, because linkers also count the shared libraries' calls among those that go through
// these.
ZRT4_EXPORT void* __wrap_malloc(std::size_t size);
ZRT4_EXPORT void __wrap_free(void* block);

void* __wrap_malloc(std::size_t size) {
  if (size != memory.entry_size) return __real_malloc(size);
  const bool fails = --memory.failing_allocation == 0;
  memory.allocated.push_back(fails ? nullptr : __real_malloc(size));
  return memory.allocated.back();
}

void __wrap_free(void* block) {
  if (memory.entry_size != 0) memory.freed.push_back(block);
  __real_free(block);
}
}

namespace {

std::string channel(const std::string& content) {
  return "<CHANNEL>" + content + "</CHANNEL>";
}

const std::string complete = channel("<INDEX>1</INDEX><PROP>A</PROP>");

template <class Generation>
struct EnvIndexDictFaults : testing::Test {
  EnvIndexDictFaults() {
    xercesc::XMLPlatformUtils::Initialize();
    memory = {};
    calls = {};
    test::xml_library = {};
  }
  ~EnvIndexDictFaults() override {
    memory = {};
    calls = {};
    test::xml_library = {};
    xercesc::XMLPlatformUtils::Terminate();
  }

  // Reads `content` as the content of the root, the n-th allocation of an entry failing.
  void read(const std::string& content, int failing_allocation = 0) {
    std::string document = "<ENVINDEXDICT>" + content + "</ENVINDEXDICT>";
    said = test::captured([&] {
      list.get()->reserve(16);
      memory.failing_allocation = failing_allocation;
      memory.entry_size = sizeof(typename Generation::entry);
      EXPECT_EQ(Generation::read(document.data(), list.get()), 0);
      memory.entry_size = 0;
    });
  }

  int dump_to_watched(char* file) {
    int code = -1;
    list.get()->push_back(
        test::new_entry<typename Generation::entry>(7, "ENV/TEMP.1", 0.5F, 0.01F));
    said = test::captured([&] {
      calls.watch([&] {
        code = Generation::dump(list.get(), file, ENV_INDX_DUMP_XML_FILE, test::collector, nullptr);
      });
    });
    return code;
  }

  static int dump_text(std::string document) {
    int code = -1;
    test::captured([&] {
      memory.entry_size = sizeof(typename Generation::entry);
      code = Generation::dump(document.data(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1);
      memory.entry_size = 0;
    });
    return code;
  }

  static std::ptrdiff_t times_freed(const void* block) {
    return std::count(memory.freed.begin(), memory.freed.end(), block);
  }

  typename Generation::list list;
  test::output said;
  const std::string no_memory =
      "Failed to allocate memory for " + std::string(Generation::record) + "\n";
};
TYPED_TEST_SUITE(EnvIndexDictFaults, test::generations, test::titles);

}  // namespace

TYPED_TEST(EnvIndexDictFaults, AnEntryIsOneBlockOfItsSize) {
  this->read(complete + complete + complete);
  EXPECT_EQ(memory.allocated.size(), 3U);
  ASSERT_EQ(this->list.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(&this->list[i], memory.allocated[i]);
}

TYPED_TEST(EnvIndexDictFaults, AnIncompleteChannelGivesItsBlockToTheNext) {
  this->read(channel("<INDEX>1</INDEX>") + channel("<PROP>A</PROP>") + "<CHANNEL/>" + complete);
  EXPECT_EQ(memory.allocated.size(), 1U);
  ASSERT_EQ(this->list.size(), 1U);
  EXPECT_EQ(&this->list[0], memory.allocated[0]);
}

TYPED_TEST(EnvIndexDictFaults, TheLastIncompleteChannelIsNeitherListedNorFreed) {
  this->read(complete + channel("<INDEX>1</INDEX>"));
  EXPECT_EQ(this->list.size(), 1U);
  ASSERT_EQ(memory.allocated.size(), 2U);
  EXPECT_EQ(this->times_freed(memory.allocated[1]), 0);
  std::free(memory.allocated[1]);
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

TYPED_TEST(EnvIndexDictFaults, WithoutMemoryAReceiverLearnsWhere) {
  const zrt4::message_list received;
  this->read("\n" + complete, 1);
  EXPECT_EQ(this->said.out, "");
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0].topic, zrt4::message_topic::out_of_memory);
  EXPECT_EQ(received[0].severity, zrt4::message_severity::error);
  EXPECT_EQ(received[0].document, "my_mem_info");
  EXPECT_EQ(received[0].line, 2U);
  EXPECT_EQ(received[0].text + "\n", this->no_memory);
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
  EXPECT_EQ(memory.allocated.size(), 4U);
  for (const void* entry : memory.allocated) EXPECT_EQ(this->times_freed(entry), 1);
}

TYPED_TEST(EnvIndexDictFaults, DumpingABrokenTextFreesNoEntry) {
  EXPECT_EQ(this->dump_text("<ENVINDEXDICT>" + complete + complete), 3);
  EXPECT_EQ(memory.allocated.size(), 2U);
  for (void* entry : memory.allocated) {
    EXPECT_EQ(this->times_freed(entry), 0);
    std::free(entry);
  }
}

TYPED_TEST(EnvIndexDictFaults, AFileIsClosedOnce) {
  test::temporary_file file("");
  EXPECT_EQ(this->dump_to_watched(file.name()), 0);
  EXPECT_EQ(calls.opened.size(), 1U);
  EXPECT_EQ(calls.closed, calls.opened);
  EXPECT_EQ(calls.written, file.content());
}

TYPED_TEST(EnvIndexDictFaults, AFailedWriteLeavesTheFileOpen) {
  test::temporary_file file("");
  calls.write_results = {-1};
  EXPECT_EQ(this->dump_to_watched(file.name()), 2);
  EXPECT_EQ(this->said.out, std::string(TypeParam::dump_name) + "  file: '" + file.path() +
                                "' has been created\n" + TypeParam::write_failed);
  ASSERT_EQ(calls.opened.size(), 1U);
  EXPECT_TRUE(calls.closed.empty());
  std::fclose(calls.opened[0]);
  EXPECT_THAT(file.content(), testing::EndsWith("</ENVINDEXDICT>\n\n"));
}

TYPED_TEST(EnvIndexDictFaults, AShortWriteIsContinued) {
  test::temporary_file file("");
  calls.write_results = {1, 7, 30};
  EXPECT_EQ(this->dump_to_watched(file.name()), 0);
  EXPECT_TRUE(calls.write_results.empty());
  EXPECT_EQ(calls.written, file.content());
}

TYPED_TEST(EnvIndexDictFaults, AWriteThatFailsLaterIsAFailedWrite) {
  calls.write_results = {10, -1};
  EXPECT_EQ(this->dump_to_watched(nullptr), 2);
  EXPECT_EQ(this->said.out, TypeParam::write_failed);
  EXPECT_EQ(calls.written, "<?xml vers");
}

TYPED_TEST(EnvIndexDictFaults, AWriteThatTakesNothingEndsTheDump) {
  calls.write_results = {10, 0};
  EXPECT_EQ(this->dump_to_watched(nullptr), 0);
  EXPECT_EQ(this->said.out, "");
  EXPECT_EQ(calls.written, "<?xml vers");
}

TYPED_TEST(EnvIndexDictFaults, WithoutXmlLibraryReadersReturnOneAndKeepTheirParser) {
  char document[] = "<ENVINDEXDICT/>";
  test::xml_library.initialisation_fails = true;
  this->said = test::captured([&] {
    const test::kept_leak parsers;
    EXPECT_EQ(TypeParam::read(document, this->list.get()), 1);
    EXPECT_EQ(TypeParam::readf(document, this->list.get()), 1);
  });
  EXPECT_EQ(test::xml_library.terminated, 0);
  EXPECT_EQ(this->said.out, "");
  const std::string message =
      "Error during initialization! Message:\nbinary operation node has unary node type\n";
  EXPECT_EQ(this->said.err, message + message);
}

TYPED_TEST(EnvIndexDictFaults, EveryOtherEndTerminatesTheXmlLibraryOnce) {
  char missing[] = "/tmp/zrt4_no_such_folder/dictionary.xml";
  test::captured([&] {
    EXPECT_EQ(TypeParam::readf(missing, this->list.get()), 1);
    EXPECT_EQ(test::xml_library.terminated, 1);
    for (std::string document : {"", "<X/>", "<ENVINDEXDICT>", "<ENVINDEXDICT/>"}) {
      test::xml_library.terminated = 0;
      TypeParam::read(document.data(), this->list.get());
      EXPECT_EQ(test::xml_library.terminated, 1) << document;
    }
  });
}
