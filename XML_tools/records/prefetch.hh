#ifndef PREFETCH_HH
#define PREFETCH_HH

// Has the processor fetch memory before its turn comes: records lie all over the memory, and
// waiting for one takes longer than reading or writing it. docs/measurements/performance.md tells
// what that brings.
//
// All is always inline: to the compiler, a function that only fetches is one without effects, and
// it removes the calls. `scripts/check speed` looks for the instructions.

#include <cstddef>
#include <cstdint>

namespace zrt4::detail {

enum class fetched_for { reading = 0, writing = 1 };

/// Fetches the memory from `address` on: a number, because it may be where no pointer may point.
/// Where there is no memory, nothing is fetched.
template <fetched_for Use>
[[gnu::always_inline]] inline void fetch_lines(std::uintptr_t address, std::size_t size) {
  constexpr std::size_t cache_line = 64;
  for (std::size_t line = 0; line <= size; line += cache_line) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    __builtin_prefetch(reinterpret_cast<const void*>(address + line), static_cast<int>(Use));
  }
}

/// Fetches a record that will be read.
template <class Record>
[[gnu::always_inline]] inline void fetch_record(const Record& record) {
  fetch_lines<fetched_for::reading>(reinterpret_cast<std::uintptr_t>(&record), sizeof record);
}

/// Fetches the memory behind a new record. The heap mostly hands memory out in a row, so that the
/// next record will lie there: it has arrived a few microseconds of scanning later.
template <class Record>
[[gnu::always_inline]] inline void fetch_behind(const Record* record) {
  fetch_lines<fetched_for::writing>(reinterpret_cast<std::uintptr_t>(record + 1), sizeof *record);
}

}  // namespace zrt4::detail

#endif
