// Results made in several threads and handed out in their order.

#include "in_order.hh"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "each_file.hh"
#include "support.hh"

using namespace std::chrono_literals;

TEST(InOrder, ResultsComeInOrderWhateverTheyTake) {
  for (const unsigned threads : {1U, 2U, 3U, 8U, 100U}) {
    in_order<int> results(50, threads, [](std::size_t number) {
      if (number % 5 == 0) std::this_thread::sleep_for(2ms);
      return static_cast<int>(number * number);
    });
    for (int i = 0; i < 50; ++i) EXPECT_EQ(results.next(), i * i) << threads;
  }
}

TEST(InOrder, OneThreadIsTheCallersAndMakesWhatIsAskedFor) {
  int made = 0;
  std::set<std::thread::id> threads;
  in_order<int> results(3, 1, [&](std::size_t number) {
    threads.insert(std::this_thread::get_id());
    ++made;
    return static_cast<int>(number);
  });
  EXPECT_EQ(made, 0);
  EXPECT_EQ(results.next(), 0);
  EXPECT_EQ(made, 1);
  EXPECT_EQ(results.next(), 1);
  EXPECT_EQ(threads, std::set{std::this_thread::get_id()});
}

TEST(InOrder, AsManyAreMadeAtOnceAsThereAreThreads) {
  std::atomic<int> arrived = 0;
  in_order<bool> results(3, 3, [&](std::size_t) {
    ++arrived;
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (arrived < 3 && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    return arrived == 3;
  });
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(results.next());
}

TEST(InOrder, NoMoreThanTheThreadsAreAheadOfTheCaller) {
  constexpr std::size_t threads = 3;
  std::atomic<std::size_t> begun = 0;
  in_order<int> results(100, threads, [&](std::size_t number) {
    ++begun;
    return static_cast<int>(number);
  });
  for (std::size_t taken = 0; taken < 100; ++taken) {
    if (taken % 10 == 0) std::this_thread::sleep_for(5ms);
    EXPECT_LE(begun, taken + threads);
    EXPECT_EQ(results.next(), static_cast<int>(taken));
  }
}

TEST(InOrder, WhatIsThrownArrivesInItsPlace) {
  for (const unsigned threads : {1U, 4U}) {
    in_order<int> results(10, threads, [](std::size_t number) {
      if (number % 3 == 1) throw std::runtime_error(std::to_string(number));
      return static_cast<int>(number);
    });
    for (int i = 0; i < 10; ++i) {
      try {
        EXPECT_EQ(results.next(), i);
        EXPECT_NE(i % 3, 1);
      } catch (const std::runtime_error& reason) {
        EXPECT_EQ(i % 3, 1);
        EXPECT_EQ(reason.what(), std::to_string(i));
      }
    }
  }
}

TEST(InOrder, WhatIsNotTakenIsReleased) {
  const auto shared = std::make_shared<int>(7);
  {
    in_order<std::shared_ptr<int>> results(100, 4, [&](std::size_t) { return shared; });
    EXPECT_EQ(*results.next(), 7);
  }
  EXPECT_EQ(shared.use_count(), 1);
}

TEST(InOrder, NoResultsNeedNoThreads) {
  const in_order<int> results(0, 8, [](std::size_t) -> int { throw std::logic_error("called"); });
}

namespace {

std::atomic<bool> memory_is_short = false;

}  // namespace

void* operator new(std::size_t size) {
  void* const memory = memory_is_short ? nullptr : std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

TEST(InOrder, ResultsArriveWhereThereIsNoMemoryLeft) {
  std::atomic<bool> go = false;
  in_order<int> results(2, 2, [&](std::size_t number) {
    while (!go) std::this_thread::yield();
    if (number == 1) throw std::bad_alloc();
    return 7;
  });
  memory_is_short = true;
  go = true;
  const int first = results.next();
  bool second_failed = false;
  try {
    (void)results.next();
  } catch (const std::bad_alloc&) {
    second_failed = true;
  }
  memory_is_short = false;
  EXPECT_EQ(first, 7);
  EXPECT_TRUE(second_failed);
}

TEST(ForEachFile, TheScannersWordForNoMemoryNamesTheFile) {
  const test::temporary_file file("<BMR/>");
  const auto read = [](input_file&) -> int { throw xercesc::OutOfMemoryException(); };
  for (const std::size_t jobs : {1U, 2U}) {
    std::string told;
    exit_code code = exit_fine;
    const test::output printed = test::captured([&] {
      code = for_each_file(
          {file.path(), file.path()}, jobs, read, [](int) { return exit_fine; },
          [&](const unusable_file& unusable) {
            told += unusable.name + ": " + unusable.reason + "\n";
          });
    });
    const std::string each = file.path() + ": out of memory\n";
    EXPECT_EQ(code, exit_trouble);
    EXPECT_EQ(told, each + each);
    EXPECT_EQ(printed.err, "zrt4xml: " + each + "zrt4xml: " + each);
  }
}
