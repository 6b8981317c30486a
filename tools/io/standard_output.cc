#include "standard_output.hh"

#include <stdio_ext.h>

#include <cerrno>
#include <cstring>

#include "file_error.hh"

void print_or_throw(std::FILE* output, std::string_view text, bool flush) {
  errno = 0;
  const std::size_t written = std::fwrite(text.data(), 1, text.size(), output);
  if (written == text.size() && (!flush || std::fflush(output) == 0)) return;
  const int reason = errno;
  std::clearerr(output);  // it is told here
  __fpurge(output);
  throw file_error("standard output", reason != 0 ? std::strerror(reason) : "write error");
}
