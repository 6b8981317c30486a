#include "message.hh"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace {

// Standard error as it was before `be_quiet`.
int original_stderr = STDERR_FILENO;

std::string line(const std::string& file, const std::string& text) {
  return "zrt4xml: " + file + ": " + text + "\n";
}

}  // namespace

void report(const std::string& file, const std::string& text) {
  std::fflush(stdout);
  std::fputs(line(file, text).c_str(), stderr);
}

void report_always(const std::string& file, const std::string& text) {
  std::fflush(stdout);
  std::fflush(stderr);
  dprintf(original_stderr, "%s", line(file, text).c_str());
}

void report_errors(const std::string& file, int errors, const std::string& rest) {
  if (errors == 0) return;
  report(file, "not read cleanly (" + std::to_string(errors) +
                   (errors == 1 ? " error" : " errors") + "); " + rest);
}

void be_quiet() {
  original_stderr = dup(STDERR_FILENO);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDERR_FILENO);
  close(nowhere);
}
