#ifndef SYSTEM_CALLS_HH
#define SYSTEM_CALLS_HH

// Calls of the system that fail on request. The linker puts those of `system_calls.cc` in front of
// the real ones, in the programs that link zrt4_test_system_calls.

#include <sys/types.h>

#include <cerrno>
#include <cstdio>
#include <deque>
#include <string>
#include <vector>

namespace test {

/// What is asked of the calls while they are watched, and what they saw. Otherwise they are the
/// real ones.
struct system_calls {
  bool watched = false;
  std::string failing;  ///< the name of the call that fails
  int error = EIO;      ///< why it or a write fails

  std::deque<ssize_t> write_results;  ///< what the next writes may write; then as much as given
  std::string written;                ///< to `collector`

  long room_in_file = -1;  ///< bytes, then writes to a file fail; -1: the file is a real one
  bool close_fails = false;
  std::string in_file;
  std::vector<std::FILE*> opened;
  std::vector<std::FILE*> closed;

  /// Runs `code` with the calls watched.
  template <class Code>
  void watch(Code&& code) {
    watched = true;
    code();
    watched = false;
  }
};
extern system_calls calls;

/// A descriptor that takes what is written to it while the calls are watched.
constexpr int collector = 12345;

}  // namespace test

#endif
