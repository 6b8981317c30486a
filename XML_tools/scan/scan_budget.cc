#include "scan_budget.hh"

#include <cinttypes>
#include <cstdio>
#include <ctime>

namespace zrt4::detail {

namespace {

constexpr unsigned ticks_between_looks = 16;
constexpr std::uint64_t look_interval = 10'000'000;

std::uint64_t now(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 +
         static_cast<std::uint64_t>(time.tv_nsec);
}

}  // namespace

std::uint64_t scan_budget::thread_time() {
  return now(CLOCK_THREAD_CPUTIME_ID);
}

void* scan_budget::allocate(XMLSize_t size) {
  try {
    tick();
    if (watches && held_bytes() + size > most_held) {
      refuse_cost("memory", (held_bytes() + size - held_before) >> 20, "MB");
    }
  } catch (...) {
    keep_all();
    throw;
  }
  return scanner_memory::allocate(size);
}

void scan_budget::expect(std::uint64_t bytes) {
  document_bytes = bytes;
  most_held = held_before + allowed(scanner_memory_size);
  most_elements = allowed(element_limit);
}

void scan_budget::begin_document() {
  times = false;
  elements = 0;
  message_units = 0;
  held_before = held_bytes();
  expect(document_bytes);
  began = now(CLOCK_MONOTONIC_COARSE);
  next_look = began + look_interval;
  thread_began = 0;
  time_of_steps = 0;
  watches = true;
}

void scan_budget::look() {
  ticks_left = ticks_between_looks;
  if (!watches) return;
  look_at_scanner();
  const nanoseconds coarse_time = now(CLOCK_MONOTONIC_COARSE);
  if (coarse_time >= next_look) look_at_time(coarse_time);
}

// At first all of the thread's time since the document began is taken for the scan's, its user's
// included, which costs nothing to know. When that is as much as the scan may take, each step is
// timed, and may take so much again.
void scan_budget::look_at_time(nanoseconds coarse_time) {
  next_look = coarse_time + look_interval;
  const nanoseconds time = thread_time();
  const nanoseconds most = allowed(scanner_time);
  if (times) {
    const nanoseconds taken = time_of_steps + (time - step_began);
    if (taken > most) refuse_cost("processor time", (most + taken) / 1'000'000, "ms");
    return;
  }
  if (thread_began == 0) thread_began = time - (coarse_time - began);  // or a little later
  // Less than nothing where another thread has taken over.
  if (time - thread_began <= most) return;
  times = true;
  step_began = time;
}

void scan_budget::count_message(std::size_t units) {
  message_units += units;
  if (message_units > allowed(message_limit)) {
    refuse_cost("room for messages", message_units >> 20, "MB");
  }
}

void scan_budget::refuse_cost(const char* what, std::uint64_t amount, const char* unit) {
  char reason[128];
  std::snprintf(reason, sizeof reason,
                "the document takes too much %s: %" PRIu64 " %s for %" PRIu64 " bytes", what,
                amount, unit, document_bytes);
  refuse(reason);
}

}  // namespace zrt4::detail
