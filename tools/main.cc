// zrt4xml: the library's documents on the command line.

#include <langinfo.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "bad_document.hh"
#include "command_line.hh"
#include "descriptor.hh"
#include "file_error.hh"
#include "message.hh"
#include "zrt4xml.hh"

namespace {

// The scanner makes UTF-8 of texts whatever the locale is, where it converts by ICU, and what the
// locale says otherwise. Numbers keep their decimal point.
void choose_code_page() {
  std::setlocale(LC_CTYPE, "");
  if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) std::setlocale(LC_CTYPE, "C.UTF-8");
}

exit_code flushed(exit_code result) {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return result;
  report_always("standard output", errno != 0 ? std::strerror(errno) : "write error");
  return exit_trouble;
}

exit_code execute(const command_line& line) {
  const arguments& given = line.given;
  const std::string& first = given.files.empty() ? given.file : given.files.front();
  try {
    const zrt4::xml_session in_use;
    return line.execute();
  } catch (const bad_document& reason) {
    report(reason.file + reason.place.shown(), reason.what());
    return exit_not_fine;
  } catch (const file_error& reason) {
    report_always(reason.file, reason.what());
  } catch (const std::runtime_error& reason) {
    report_always(first, reason.what());
  } catch (const std::bad_alloc&) {
    report_always(first, "out of memory");
  } catch (const xercesc::OutOfMemoryException&) {
    report_always(first, "out of memory");
  }
  return exit_trouble;
}

int run(int argc, char** argv) {
  choose_code_page();
  command_line line;
  if (const auto ended = line.parse(argc, argv))
    return *ended == exit_fine ? flushed(*ended) : *ended;
  if (line.given.quiet) be_quiet();
  // A reader that went away is no error, however this process was started.
  std::signal(SIGPIPE, SIG_DFL);
  return flushed(execute(line));
}

}  // namespace

int main(int argc, char** argv) {
  fill_closed_streams();
  try {
    return run(argc, argv);
  } catch (const std::exception& exception) {
    report_always("error", exception.what());
  } catch (...) {
    report_always("error", "out of memory");
  }
  return exit_trouble;
}
