#include "progress.hh"

#include <unistd.h>

#include <chrono>
#include <cstdio>

#include "message.hh"

namespace {

using namespace std::chrono_literals;

// Shorter work needs no word.
constexpr auto patience = 500ms;
constexpr auto refreshed_every = 200ms;

}  // namespace

progress::progress(const std::string& file) {
  if (is_quiet() || isatty(STDERR_FILENO) != 1) return;
  watch = std::thread([this, file] { show(file); });
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

void progress::show(const std::string& file) {
  const auto begin = std::chrono::steady_clock::now();
  const auto is_over = [this] { return at_end; };
  std::unique_lock lock(guard);
  if (ended.wait_for(lock, patience, is_over)) return;
  do {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    dprintf(STDERR_FILENO, "\r\033[Kzrt4xml: reading %s ... %.1f s", file.c_str(), elapsed.count());
  } while (!ended.wait_for(lock, refreshed_every, is_over));
  dprintf(STDERR_FILENO, "\r\033[K");
}
