#ifndef QUIET_OUTPUT_HH
#define QUIET_OUTPUT_HH

#include <unistd.h>

/// While it lives, what the library prints on standard output (or, as `stream`, standard error) is
/// dropped: remarks that are not part of the result which the tool prints there. With `into` it is
/// written there instead.
class quiet_output {
 public:
  explicit quiet_output(int stream = STDOUT_FILENO, int into = -1);
  quiet_output(const quiet_output&) = delete;
  quiet_output& operator=(const quiet_output&) = delete;
  ~quiet_output();

 private:
  int replaced;
  int original;
};

#endif
