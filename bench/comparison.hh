#ifndef COMPARISON_HH
#define COMPARISON_HH

// Ratios to a reference that is measured in turns with what is compared, and the table of them.

#include <benchmark/benchmark.h>

#include <ctime>
#include <functional>
#include <string>

namespace bench {

/// Runs something once and tells what it cost: seconds, or any other measure.
using measure = std::function<double()>;

inline double processor_seconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Processor time that `code` takes, in the kernel too: other programs on the machine do not count,
/// memory that is touched for the first time does.
template <class Code>
double seconds(Code&& code) {
  const double begin = processor_seconds();
  code();
  return processor_seconds() - begin;
}

struct comparison {
  std::string name;
  double limit;  // that the ratio should not exceed; 0 for none
  int parts;     // that the candidate handles in a run; 0 when it does not cost seconds
  measure reference;
  measure candidate;
};

/// Measures a comparison when its turn comes: in as many turns as it takes for other programs'
/// moments not to count, unless `turns` says how many.
void add(const comparison& compared, int turns = 0);

/// Measures what was added and prints the table. Takes Google Benchmark's options.
int run(int argc, char** argv);

}  // namespace bench

#endif
