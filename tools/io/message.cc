#include "message.hh"

#include <atomic>
#include <cstdio>

#include "terminal.hh"

namespace {

bool quiet = false;
std::atomic<bool> line_is_open{false};

void wipe_open_line() {
  if (line_is_open) std::fputs("\r\033[K", stderr);
}

}  // namespace

std::string message_line(const std::string& file, const std::string& text) {
  const std::string name = file.empty() ? "''" : printable(file);
  return "zrt4xml: " + name + ": " + text + "\n";
}

void report(const std::vector<std::string>& lines) {
  if (quiet || lines.empty()) return;
  std::fflush(stdout);
  wipe_open_line();
  for (const std::string& line : lines) std::fputs(line.c_str(), stderr);
}

void report(const std::string& file, const std::string& text) {
  report({message_line(file, text)});
}

void report_always(const std::string& file, const std::string& text) {
  std::fflush(stdout);
  wipe_open_line();
  std::fputs(message_line(file, text).c_str(), stderr);
}

void report_errors(const std::string& file, int errors, const std::string& rest) {
  if (errors == 0) return;
  report(file, "not read cleanly (" + std::to_string(errors) +
                   (errors == 1 ? " error" : " errors") + "); " + rest);
}

void be_quiet() {
  quiet = true;
}

bool is_quiet() {
  return quiet;
}

void mark_open_line(bool is_open) {
  line_is_open = is_open;
}
