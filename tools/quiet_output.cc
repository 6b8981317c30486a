#include "quiet_output.hh"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

quiet_output::quiet_output() {
  std::fflush(stdout);
  original = dup(STDOUT_FILENO);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDOUT_FILENO);
  close(nowhere);
}

quiet_output::~quiet_output() {
  std::fflush(stdout);
  dup2(original, STDOUT_FILENO);
  close(original);
}
