// Memory exhaustion: this program's own operator new, or a memory manager that it gives to the XML
// library, fails at the n-th request, once or from there on, for every n.

#include "allocation_failures.hh"

#include <cstdlib>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace {

bool new_may_fail = false;

void* request(std::size_t size) {
  if (new_may_fail && test::request_fails()) return nullptr;
  void* block = std::malloc(size != 0 ? size : 1);
  if (block != nullptr) ++test::requests.live_blocks;
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  --test::requests.live_blocks;
  std::free(block);
}

}  // namespace

ZRT4_EXPORT void* operator new(std::size_t size) {
  if (void* block = request(size)) return block;
  throw std::bad_alloc();
}
ZRT4_EXPORT void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return request(size);
}
ZRT4_EXPORT void* operator new[](std::size_t size) {
  return operator new(size);
}
ZRT4_EXPORT void operator delete(void* block) noexcept {
  release(block);
}
ZRT4_EXPORT void operator delete(void* block, std::size_t /*size*/) noexcept {
  release(block);
}
ZRT4_EXPORT void operator delete[](void* block) noexcept {
  release(block);
}
ZRT4_EXPORT void operator delete[](void* block, std::size_t /*size*/) noexcept {
  release(block);
}

namespace {

// One use of the XML library stays in both: its own set-up ends the process when there is no
// memory.
struct OperatorNewFailures : testing::Test {
  OperatorNewFailures() {
    xercesc::XMLPlatformUtils::Initialize();
    new_may_fail = true;
  }
  ~OperatorNewFailures() override {
    new_may_fail = false;
    xercesc::XMLPlatformUtils::Terminate();
  }
  static constexpr long least = 5;
};

/// As a caller may give it to the XML library; also for the library's exceptions.
class failing_manager : public xercesc::MemoryManager {
 public:
  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t size) override {
    if (test::request_fails()) throw xercesc::OutOfMemoryException();
    ++held;
    return ::operator new(size);
  }
  void deallocate(void* block) override {
    if (block != nullptr) --held;
    ::operator delete(block);
  }
  long held = 0;
};

struct MemoryManagerFailures : testing::Test {
  MemoryManagerFailures() {
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, nullptr,
                                          &manager);
  }
  ~MemoryManagerFailures() override {
    xercesc::XMLPlatformUtils::Terminate();
    EXPECT_EQ(manager.held, 0);
  }
  failing_manager manager;
  static constexpr long least = 2;
};

}  // namespace

TEST_F(OperatorNewFailures, EachRequestOfAReaderOnce) {
  test::expect_survival(test::readers(), false, least);
}

TEST_F(OperatorNewFailures, EachRequestOfAReaderAndAllAfter) {
  test::expect_survival(test::readers(), true, least);
}

TEST_F(OperatorNewFailures, EachRequestWhereverThePiecesOfMemoryEnd) {
  test::expect_survival(test::shifted_readers(), false, least);
  test::expect_survival(test::shifted_readers(), true, least);
}

TEST_F(OperatorNewFailures, EachRequestOfAWriterOnce) {
  test::expect_survival(test::writers(), false, least);
}

TEST_F(OperatorNewFailures, EachRequestOfAWriterAndAllAfter) {
  test::expect_survival(test::writers(), true, least);
}

TEST_F(MemoryManagerFailures, EachRequestOfAReaderOnce) {
  test::expect_survival(test::readers(), false, least);
}

TEST_F(MemoryManagerFailures, EachRequestOfAReaderAndAllAfter) {
  test::expect_survival(test::readers(), true, least);
}

TEST_F(MemoryManagerFailures, EachRequestWhereverThePiecesOfMemoryEnd) {
  test::expect_survival(test::shifted_readers(), false, least);
  test::expect_survival(test::shifted_readers(), true, least);
}

// A channel that never got its property is kept, also by a reader that runs while some exception of
// the caller's is on its way: only one that began in the reader itself releases what it was
// reading.
TEST(ReaderDuringUnwinding, KeepsWhatItAlwaysKeeps) {
  struct reads_when_released {
    long& kept;
    ~reads_when_released() {
      char document[] = "<CHANDESCRIPTIONS><CHANNEL><NAME>n</NAME></CHANNEL></CHANDESCRIPTIONS>";
      std::vector<chan_descr_2010*> list;
      const test::kept_leak leak;
      const long before = test::requests.live_blocks;
      parse_descr_list_read(document, &list, false, false);
      kept = test::requests.live_blocks - before;
    }
  };
  long usually = 0;
  { const reads_when_released now{usually}; }
  long unwinding = 0;
  try {
    const reads_when_released later{unwinding};
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(usually, 1);
  EXPECT_EQ(unwinding, 1);
}
