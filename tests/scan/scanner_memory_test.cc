#include "scanner_memory.hh"

#include <algorithm>
#include <cstdint>
#include <set>
#include <vector>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "support.hh"

using xercesc::XMLPlatformUtils;

namespace {

/// The memory that scanners' memory comes from: counts, and refuses on request.
struct counting_memory : xercesc::MemoryManager {
  xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t size) override {
    if (refuses) throw xercesc::OutOfMemoryException();
    ++requests;
    void* const block = ::operator new(size);
    held.insert(block);
    return block;
  }
  void deallocate(void* block) override {
    if (block == nullptr) return;
    EXPECT_EQ(held.erase(block), 1U) << "not held";
    ::operator delete(block);
  }

  std::set<void*> held;
  int requests = 0;
  bool refuses = false;
};

/// A scanner's memory with what its owner does to it.
struct memory_of_a_scanner : zrt4::detail::scanner_memory {
  using scanner_memory::keep_all;
  using scanner_memory::prepare_end;
};

struct scanner_memory_test : testing::Test {
  scanner_memory_test() {
    XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, nullptr,
                                 &system);
    of_the_xml_library = system.held.size();
    requests_before = system.requests;
  }
  ~scanner_memory_test() override {
    system.refuses = false;
    memory.reset();
    EXPECT_EQ(system.held.size(), of_the_xml_library) << "not released with the scanner";
    XMLPlatformUtils::Terminate();
  }

  std::size_t held() const { return system.held.size() - of_the_xml_library; }
  int requests() const { return system.requests - requests_before; }

  counting_memory system;
  std::size_t of_the_xml_library = 0;
  int requests_before = 0;
  std::unique_ptr<memory_of_a_scanner> memory = std::make_unique<memory_of_a_scanner>();
};

constexpr std::size_t small = 40;
constexpr std::size_t large = 1000;

bool has_cells() {
  return zrt4::detail::scanner_cells::fits(small);
}

}  // namespace

using ScannerMemory = scanner_memory_test;

TEST_F(ScannerMemory, EachRequestHasBytesOfItsOwn) {
  constexpr std::size_t largest = 600;
  std::vector<unsigned char*> blocks;
  const auto filler = [](std::size_t size) { return static_cast<unsigned char>(size % 251); };
  for (int round = 0; round < 2; ++round) {
    for (std::size_t size = 1; size <= largest; ++size) {
      auto* block = static_cast<unsigned char*>(memory->allocate(size));
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
      std::fill_n(block, size, filler(size));
      blocks.push_back(block);
    }
    for (std::size_t size = 1; size <= largest; ++size) {
      unsigned char* const block = blocks[size - 1];
      EXPECT_TRUE(std::all_of(block, block + size, [&](auto byte) { return byte == filler(size); }))
          << size;
      memory->deallocate(block);
    }
    blocks.clear();
  }
}

TEST_F(ScannerMemory, WhatIsNotReleasedIsReleasedWithTheScanner) {
  for (int n = 0; n < 1000; ++n) {
    memory->allocate(small);
    memory->allocate(large);
  }
  EXPECT_GT(held(), 1000U);
  memory.reset();
  EXPECT_EQ(held(), 0U);
}

TEST_F(ScannerMemory, NothingIsAskedForInAdvance) {
  EXPECT_EQ(requests(), 0);
}

TEST_F(ScannerMemory, ReleasingNullDoesNothing) {
  memory->deallocate(nullptr);
  EXPECT_EQ(held(), 0U);
}

// The ring

TEST_F(ScannerMemory, LargeBlocksAreReleasedAtOnceInAnyOrder) {
  const std::vector<std::vector<std::size_t>> orders = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2},
                                                        {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
  for (const auto& order : orders) {
    void* const blocks[] = {memory->allocate(large), memory->allocate(large),
                            memory->allocate(large)};
    EXPECT_EQ(held(), 3U);
    std::size_t left = 3;
    for (const std::size_t n : order) {
      memory->deallocate(blocks[n]);
      EXPECT_EQ(held(), --left);
    }
  }
}

TEST_F(ScannerMemory, TheRestOfTheRingIsReleasedWithTheScanner) {
  for (const int released : {0, 1, 2}) {
    memory_of_a_scanner own;
    void* const blocks[] = {own.allocate(large), own.allocate(large), own.allocate(large)};
    own.deallocate(blocks[released]);
    EXPECT_EQ(held(), 2U);
  }
  EXPECT_EQ(held(), 0U);
}

// Cells

TEST_F(ScannerMemory, SmallObjectsAreCutFromChunks) {
  if (!has_cells()) GTEST_SKIP() << "the sanitizer watches blocks";
  for (int n = 0; n < 200; ++n) memory->allocate(small);
  EXPECT_EQ(requests(), 1);
}

TEST_F(ScannerMemory, AReleasedCellServesTheNextRequestOfItsSize) {
  if (!has_cells()) GTEST_SKIP() << "the sanitizer watches blocks";
  void* const first = memory->allocate(small);
  void* const second = memory->allocate(small);
  memory->deallocate(first);
  memory->deallocate(second);
  EXPECT_NE(memory->allocate(2 * small), first);
  EXPECT_EQ(memory->allocate(small), second);
  EXPECT_EQ(memory->allocate(small), first);
}

TEST_F(ScannerMemory, OneByteMoreThanFitsIsABlock) {
  if (!has_cells()) GTEST_SKIP() << "the sanitizer watches blocks";
  std::size_t most = small;
  while (zrt4::detail::scanner_cells::fits(most + 1)) ++most;
  memory->allocate(most);
  memory->allocate(most);
  EXPECT_EQ(requests(), 1);
  memory->allocate(most + 1);
  memory->allocate(most + 1);
  EXPECT_EQ(requests(), 3);
}

// Exhaustion

TEST_F(ScannerMemory, ARequestThatCannotBeMetThrows) {
  system.refuses = true;
  EXPECT_THROW(memory->allocate(large), xercesc::OutOfMemoryException);
  EXPECT_THROW(memory->allocate(small), xercesc::OutOfMemoryException);
  system.refuses = false;
  EXPECT_NE(memory->allocate(large), nullptr);
}

TEST_F(ScannerMemory, AfterAFailedRequestNothingIsReleasedBeforeTheEnd) {
  void* const block = memory->allocate(large);
  void* const cell = memory->allocate(small);
  const std::size_t before = held();
  system.refuses = true;
  EXPECT_THROW(memory->allocate(large), xercesc::OutOfMemoryException);
  system.refuses = false;
  for (int times = 0; times < 2; ++times) {
    memory->deallocate(block);
    memory->deallocate(cell);
  }
  EXPECT_EQ(held(), before);
  EXPECT_NE(memory->allocate(small), cell);
}

TEST_F(ScannerMemory, NothingIsReleasedOnceAllIsKept) {
  void* const block = memory->allocate(large);
  memory->keep_all();
  memory->deallocate(block);
  EXPECT_EQ(held(), 1U);
}

// The reserve

TEST_F(ScannerMemory, AtTheEndARequestThatCannotBeMetIsMetFromTheReserve) {
  memory->prepare_end();
  system.refuses = true;
  std::vector<char*> blocks;
  for (int n = 0; n < 3; ++n) {
    blocks.push_back(static_cast<char*>(memory->allocate(large / 2)));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back()) % alignof(void*), 0U);
    std::fill_n(blocks.back(), large / 2, static_cast<char>('0' + n));
  }
  for (std::size_t n = 0; n < blocks.size(); ++n) {
    EXPECT_EQ(std::string(blocks[n], large / 2),
              std::string(large / 2, static_cast<char>('0' + n)));
    memory->deallocate(blocks[n]);
  }
  EXPECT_EQ(held(), 0U);
}

TEST_F(ScannerMemory, TheReserveIsTakenOnlyWhenThereIsNoOther) {
  memory->prepare_end();
  memory->allocate(large);
  EXPECT_EQ(held(), 1U);
}

TEST_F(ScannerMemory, TheReserveEndsAfterTwoKilobytes) {
  memory->prepare_end();
  system.refuses = true;
  for (int n = 0; n < 2048 / 16; ++n) EXPECT_NE(memory->allocate(n % 2 == 0 ? 1 : 16), nullptr);
  EXPECT_THROW(memory->allocate(1), xercesc::OutOfMemoryException);
}

TEST_F(ScannerMemory, ARequestBeyondTheReserveThrowsAndLeavesIt) {
  memory->prepare_end();
  system.refuses = true;
  EXPECT_THROW(memory->allocate(2049), xercesc::OutOfMemoryException);
  EXPECT_NE(memory->allocate(2048), nullptr);
}
