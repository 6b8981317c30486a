#include "progress.hh"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <system_error>

#include "file_error.hh"
#include "input_file.hh"
#include "message.hh"
#include "temporary_file.hh"
#include "terminal.hh"

namespace {

using namespace std::chrono_literals;

// Shorter work needs no word.
constexpr auto patience = 500ms;
constexpr auto refreshed_every = 200ms;

constexpr int unknown = -1;

}  // namespace

progress::progress(std::string_view doing, const std::string& file, std::uint64_t whole)
    : total(whole) {
  if (is_quiet() || isatty(STDERR_FILENO) != 1) return;
  // Signals are for the thread that works.
  const held_signals in_watch;
  try {
    watch = std::thread([this, doing = std::string(doing), file] { show(doing, file); });
  } catch (const std::system_error&) {
    // The system gives no more threads: nobody watches.
  }
}

progress::~progress() {
  if (!watch.joinable()) return;
  {
    const std::lock_guard lock(guard);
    at_end = true;
  }
  ended.notify_one();
  watch.join();
}

int progress::per_cent(const std::string& file) const {
  const double share = total != 0 ? static_cast<double>(done) / static_cast<double>(total)
                                  : input_file::read_share(file);
  return share < 0 || share >= 1 ? unknown : static_cast<int>(100 * share);
}

void progress::show(const std::string& what, const std::string& file) {
  const auto begin = std::chrono::steady_clock::now();
  const auto is_over = [this] { return at_end; };
  std::unique_lock lock(guard);
  if (ended.wait_for(lock, patience, is_over)) return;
  mark_open_line(true);
  do {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    const int reached = per_cent(file);
    const std::string share = reached == unknown ? "" : " " + std::to_string(reached) + " %";
    dprintf(STDERR_FILENO, "\r\033[Kzrt4xml: %s %s ...%s %.1f s", what.c_str(),
            printable(file).c_str(), share.c_str(), elapsed.count());
  } while (!ended.wait_for(lock, refreshed_every, is_over));
  mark_open_line(false);
  dprintf(STDERR_FILENO, "\r\033[K");
}

void fail_without_memory(const std::string& file) {
  throw file_error(file, "out of memory");
}
