// Memory exhaustion as the system knows it: this program's own malloc fails at the n-th request,
// once or from there on, for every n. All requests come through here, those of the library, its XML
// scanner, the scanner's transcoder and the standard libraries.

#include <cerrno>
#include <cstddef>

#include "allocation_failures.hh"
#include "own_locale.hh"

#ifndef ZRT4_LEAK_CHECKED  // the address sanitizer has a malloc of its own, which none may replace

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

template <class Request>
void* met(Request request) {
  if (test::request_fails()) {
    errno = ENOMEM;
    return nullptr;
  }
  void* block = request();
  if (block != nullptr) ++test::requests.live_blocks;
  return block;
}

}  // namespace

extern "C" {

ZRT4_EXPORT void* malloc(std::size_t size) noexcept {
  return met([=] { return __libc_malloc(size); });
}

ZRT4_EXPORT void* calloc(std::size_t count, std::size_t size) noexcept {
  return met([=] { return __libc_calloc(count, size); });
}

ZRT4_EXPORT void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return met([=] { return __libc_memalign(alignment, size); });
}

ZRT4_EXPORT void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return memalign(alignment, size);
}

ZRT4_EXPORT int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
  void* aligned = memalign(alignment, size);
  if (aligned == nullptr) return ENOMEM;
  *block = aligned;
  return 0;
}

ZRT4_EXPORT void free(void* block) noexcept {
  if (block != nullptr) --test::requests.live_blocks;
  __libc_free(block);
}

ZRT4_EXPORT void* realloc(void* block, std::size_t size) noexcept {
  if (block == nullptr) return malloc(size);
  if (size == 0) {
    free(block);
    return nullptr;
  }
  if (test::request_fails()) {
    errno = ENOMEM;
    return nullptr;
  }
  return __libc_realloc(block, size);
}
}

#endif

namespace {

// The C library loads the messages of another locale when it first has one to tell, and keeps them.
[[maybe_unused]] const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

struct MallocFailures : testing::Test {
  void SetUp() override {
    const long before = test::requests.live_blocks;
    void* (*const request)(std::size_t) = std::malloc;
    void* volatile block = request(1);
    const bool is_own = test::requests.live_blocks != before;
    std::free(block);
    if (!is_own) GTEST_SKIP() << "malloc is not this program's own under a sanitizer or valgrind";
    // One use of the XML library stays: its own set-up ends the process when there is no memory.
    xercesc::XMLPlatformUtils::Initialize();
    in_use = true;
  }
  void TearDown() override {
    if (in_use) xercesc::XMLPlatformUtils::Terminate();
  }
  bool in_use = false;
  static constexpr long least = 5;
};

}  // namespace

TEST_F(MallocFailures, EachRequestOfAReaderOnce) {
  test::expect_survival(test::readers(), false, least);
}

TEST_F(MallocFailures, EachRequestOfAReaderAndAllAfter) {
  test::expect_survival(test::readers(), true, least);
}

TEST_F(MallocFailures, EachRequestWhereverThePiecesOfMemoryEnd) {
  test::expect_survival(test::shifted_readers(), false, least);
  test::expect_survival(test::shifted_readers(), true, least);
}

TEST_F(MallocFailures, EachRequestOfAWriterOnce) {
  test::expect_survival(test::writers(), false, least);
}

TEST_F(MallocFailures, EachRequestOfAWriterAndAllAfter) {
  test::expect_survival(test::writers(), true, least);
}
