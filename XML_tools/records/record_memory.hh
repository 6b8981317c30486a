#ifndef RECORD_MEMORY_HH
#define RECORD_MEMORY_HH

#include <cstddef>
#include <cstdint>

namespace zrt4::detail {

/// Has the processor fetch the memory behind a new record. The heap mostly hands memory out in a
/// row, so that the next record will lie there: it has arrived when its turn comes, a few
/// microseconds of scanning later. Where nothing lies behind, nothing is fetched.
/// Always inline: a function that only fetches is, to the compiler, one without effects, and it
/// removes the calls.
template <class Record>
[[gnu::always_inline]] inline void fetch_behind(const Record* record) {
  constexpr std::size_t cache_line = 64;
  // A number, because no pointer may point there.
  const auto behind = reinterpret_cast<std::uintptr_t>(record + 1);
  for (std::size_t line = 0; line <= sizeof(Record); line += cache_line) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    __builtin_prefetch(reinterpret_cast<const void*>(behind + line), 1);
  }
}

}  // namespace zrt4::detail

#endif
