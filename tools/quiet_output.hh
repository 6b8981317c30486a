#ifndef QUIET_OUTPUT_HH
#define QUIET_OUTPUT_HH

#include <unistd.h>

/// While it lives, what the library says on standard output (or, as `fd`, standard error) is
/// dropped: remarks that are not part of the result which the tool prints there.
class quiet_output {
 public:
  explicit quiet_output(int fd = STDOUT_FILENO);
  quiet_output(const quiet_output&) = delete;
  quiet_output& operator=(const quiet_output&) = delete;
  ~quiet_output();

 private:
  int stream;
  int original;
};

#endif
