#include "quiet_output.hh"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

quiet_output::quiet_output(int fd) : stream(fd), original(dup(fd)) {
  std::fflush(stdout);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, stream);
  close(nowhere);
}

quiet_output::~quiet_output() {
  std::fflush(stdout);
  dup2(original, stream);
  close(original);
}
