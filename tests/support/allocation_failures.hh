#ifndef ALLOCATION_FAILURES_HH
#define ALLOCATION_FAILURES_HH

// Every reader and every writer with each of its requests for memory failing, once and from there
// on. Where requests fail (operator new, malloc, the scanner's memory manager) is the program's
// choice: it calls `request_fails` for each and counts `live_blocks`.

#include <fcntl.h>
#include <unistd.h>

#include <new>
#include <string>
#include <vector>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "every_operation.hh"

namespace test {

struct failing_requests {
  long before = -1;  ///< requests that are still met; none fails while negative
  bool for_ever = false;
  bool failed = false;
  long live_blocks = 0;
};
inline failing_requests requests;

inline bool request_fails() {
  if (requests.before < 0) return false;
  if (requests.before > 0) {
    --requests.before;
    return false;
  }
  requests.failed = true;
  if (!requests.for_ever) requests.before = -1;
  return true;
}

/// Declarations behind others that only take memory: the scanner's comes in large pieces, and each
/// step of a scan may be the one that needs the next piece.
inline std::string shifted_declarations(int others) {
  std::string text = declarations;
  std::string first;
  for (int n = 0; n < others; ++n) first += "<!ENTITY e" + std::to_string(n) + " 'v'>";
  return text.insert(text.find('[') + 1, first);
}

inline std::vector<operation> shifted_readers() {
  std::vector<operation> all;
#ifdef ZRT4_LEAK_CHECKED
  return all;  // each step takes a piece of its own there, and `readers` has them all fail
#endif
  for (int others = 0; others < 60; ++others) {
    all.push_back(events_of("declarations, shifted", shifted_declarations(others)));
    if (others % 3 != 0) continue;
    all.push_back(camera_of("camera, declarations shifted", shifted_declarations(others)));
  }
  return all;
}

/// What came of letting each request of `each` fail in turn.
struct failures {
  long requests = 0;
  std::string leaks;          ///< "request:blocks " of those after which blocks were left
  long kept_files = 0;        ///< requests after which a file was open
  std::string silent_losses;  ///< of those where the operation succeeded with less than usual
  std::string other_results;  ///< of those after which the operation gave something else
};

inline int lowest_descriptor() {
  const int fd = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(fd);
  return fd;
}

/// Of the scanner, while it has opened a file and has not yet stored it: as many requests, or as
/// few, as it has of its memory in cells.
constexpr long requests_while_opening = 10;

constexpr std::size_t longest_result = 10'000;

inline failures fail_each_request(const operation& each, bool for_ever) {
  failures seen;
  std::string expected;
  captured([&] {  // what is made once and kept
    each.run(&expected);
    expected.clear();
    each.run(&expected);
  });
  captured([&] {
    do {
      std::string result;
      result.reserve(longest_result);
      const long before = requests.live_blocks;
      const int free_descriptor = lowest_descriptor();
      requests.failed = false;
      requests.for_ever = for_ever;
      requests.before = seen.requests;
      bool reached_caller = false;
      try {
        each.run(&result);
      } catch (const std::bad_alloc&) {
        reached_caller = true;
      } catch (const xercesc::OutOfMemoryException&) {
        reached_caller = true;
      }
      requests.before = -1;
      const std::string number = std::to_string(seen.requests);
      const bool keeps_file = lowest_descriptor() != free_descriptor;
      if (keeps_file) ++seen.kept_files;
      // Where files are opened by malloc, the block of one that is kept is kept, too.
      const long left = requests.live_blocks - before;
      if (left != 0 && !(left == 1 && keeps_file)) {
        seen.leaks += number + ":" + std::to_string(left) + " ";
      }
      const bool succeeded = !reached_caller && result.rfind("0\n", 0) == 0;
      if (succeeded && result != expected && !each.may_skip_records) {
        seen.silent_losses += number + ":" + result + " ";
      }
      result.clear();
      each.run(&result);
      if (result != expected) seen.other_results += number + ":" + result + " ";
      ++seen.requests;
    } while (requests.failed);
  });
  return seen;
}

/// For each operation: no crash, no exit, nothing left, and all as usual afterwards.
inline void expect_survival(const std::vector<operation>& operations, bool for_ever, long least) {
  for (const operation& each : operations) {
    SCOPED_TRACE(each.name);
    const failures seen = fail_each_request(each, for_ever);
    EXPECT_EQ(seen.leaks, "");
    EXPECT_LE(seen.kept_files, each.may_keep_file ? requests_while_opening : 0);
    EXPECT_EQ(seen.silent_losses, "");
    EXPECT_EQ(seen.other_results, "");
    EXPECT_GE(seen.requests, least);
  }
}

}  // namespace test

#endif
