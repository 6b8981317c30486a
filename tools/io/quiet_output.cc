#include "quiet_output.hh"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

quiet_output::quiet_output(int stream, int into) : replaced(stream), original(dup(stream)) {
  std::fflush(stdout);
  const int target = into != -1 ? dup(into) : open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(target, replaced);
  close(target);
}

quiet_output::~quiet_output() {
  std::fflush(stdout);
  dup2(original, replaced);
  close(original);
}
