#ifndef PROGRESS_HH
#define PROGRESS_HH

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <thread>
#include <xercesc/util/OutOfMemoryException.hpp>

/// While it lives, and has lived for half a second, a line on standard error names what is being
/// done, how far it is and how long it takes; only on a terminal, and not when the tool was asked
/// to be quiet. It is wiped off at the end.
class progress {
 public:
  /// `doing` is "reading", say. Without `whole`, how far it is is asked of the system, which knows
  /// that of the input files that bear this name (see `read_share`).
  progress(std::string_view doing, const std::string& file, std::uint64_t whole = 0);
  progress(const progress&) = delete;
  progress& operator=(const progress&) = delete;
  ~progress();

  /// So much more of the total is done.
  void advance(std::uint64_t part) { done += part; }

 private:
  void show(const std::string& what, const std::string& file);
  int per_cent(const std::string& file) const;

  const std::uint64_t total;
  std::atomic<std::uint64_t> done{0};
  std::mutex guard;
  std::condition_variable ended;
  bool at_end = false;
  std::thread watch;
};

/// Throws the `file_error` for it.
[[noreturn]] void fail_without_memory(const std::string& file);

/// What `work()` returns, with the line on the terminal while it runs. Running out of memory,
/// which the scanner tells in its own way, becomes a `file_error` that names the file.
template <class Work>
auto with_progress(const std::string& file, Work&& work, std::string_view doing = "reading") {
  const progress shown(doing, file);
  try {
    return work();
  } catch (const std::bad_alloc&) {
    fail_without_memory(file);
  } catch (const xercesc::OutOfMemoryException&) {
    fail_without_memory(file);
  }
}

#endif
