#ifndef SCANNER_HEAP_HH
#define SCANNER_HEAP_HH

// The memory of the XML library while fuzzing. A scanner makes hundreds of blocks, some of 160 kB,
// which the sanitizer's allocator takes most of an execution for. Here a block is the next piece of
// one large area; it is poisoned when it is released, and is not used again before the execution
// has ended, so that every access to a released block or beside a block is still reported.

#include <sanitizer/asan_interface.h>
#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>
#include <new>

#include "fuzz.hh"

// For the two functions that every execution calls most: they are no part of what is examined, and
// read headers that are poisoned.
#ifdef __clang__
#define FUZZ_UNWATCHED __attribute__((no_sanitize("address", "undefined", "coverage")))
#else
#define FUZZ_UNWATCHED __attribute__((no_sanitize("address", "undefined")))
#endif

namespace fuzz {

class scanner_heap : public xercesc::MemoryManager {
 public:
  void begin() {
    used = 0;
    held = 0;
    executing = true;
  }

  /// False when not all blocks of this execution were released.
  bool end() {
    executing = false;
    return held == 0;
  }

  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }

  FUZZ_UNWATCHED void* allocate(XMLSize_t size) override {
    const std::size_t whole = (size + sizeof(header) + gap - 1) / gap * gap + gap;
    if (!executing || whole > area_size - used) return from_system(size);
    header* const front = reinterpret_cast<header*>(start + used);
    used += whole;
    ++held;
    front->size = size;
    ASAN_UNPOISON_MEMORY_REGION(front + 1, size);
    return front + 1;
  }

  FUZZ_UNWATCHED void deallocate(void* memory) override {
    if (memory == nullptr) return;
    if (memory < start || memory >= start + area_size) return to_system(memory);
    header* const front = static_cast<header*>(memory) - 1;
    if (front->size == released) broken("a block is released once");
    ASAN_POISON_MEMORY_REGION(memory, front->size);
    front->size = released;
    --held;
  }

 private:
  struct alignas(std::max_align_t) header {
    std::size_t size;
    bool counted;
  };
  static constexpr std::size_t gap = sizeof(header);
  static constexpr std::size_t released = ~std::size_t{0};
  static constexpr std::size_t area_size = std::size_t{8} << 20;

  static char* poisoned_area() {
    auto* const made = static_cast<char*>(::operator new(area_size));
    ASAN_POISON_MEMORY_REGION(made, area_size);
    return made;
  }

  // Lasting blocks, and those that the area has no room for.
  void* from_system(std::size_t size) {
    auto* const front = static_cast<header*>(::operator new(sizeof(header) + size));
    front->counted = executing;
    if (executing) ++held;
    return front + 1;
  }
  void to_system(void* memory) {
    header* const front = static_cast<header*>(memory) - 1;
    if (front->counted) --held;
    ::operator delete(front);
  }

  char* const start = poisoned_area();  // kept to the end
  std::size_t used = 0;
  std::size_t held = 0;
  bool executing = false;
};

}  // namespace fuzz

#endif
