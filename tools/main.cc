// zrt4xml: the library's documents on the command line.

#include <langinfo.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <xercesc/util/PlatformUtils.hpp>

#include "bad_document.hh"
#include "command_line.hh"
#include "convert.hh"
#include "find.hh"
#include "message.hh"
#include "show.hh"

namespace {

// Texts are shown in the user's code page; where the environment names none, as UTF-8 rather than
// as ASCII with holes. Numbers keep their decimal point.
void choose_code_page() {
  std::setlocale(LC_CTYPE, "");
  if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
}

struct xml_library {
  xml_library() { xercesc::XMLPlatformUtils::Initialize(); }
  xml_library(const xml_library&) = delete;
  xml_library& operator=(const xml_library&) = delete;
  ~xml_library() { xercesc::XMLPlatformUtils::Terminate(); }
};

exit_code flushed(exit_code result) {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return result;
  complain("standard output", errno != 0 ? std::strerror(errno) : "write error");
  return exit_no_use;
}

int run(int argc, char** argv) {
  command_line line;
  const arguments& given = line.given;
  try {
    line.app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return line.app.exit(error) == 0 ? flushed(exit_fine) : exit_no_use;
  }

  choose_code_page();
  const xml_library in_use;
  const std::string& first = given.files.empty() ? given.file : given.files.front();
  try {
    if (line.show->parsed()) return flushed(show(given.files, given.kind));
    if (line.find->parsed()) {
      return flushed(find(given.files, given.name, event_type_of(given.event)));
    }
    if (line.convert->parsed()) {
      return flushed(convert(given.file, given.to, given.wide, given.output));
    }
    return flushed(merge(given.files, given.force, given.to, given.output));
  } catch (const bad_document& reason) {
    complain(first + reason.place, reason.what());
    return exit_bad_document;
  } catch (const std::runtime_error& reason) {
    complain(first, reason.what());
    return exit_no_use;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& exception) {
    complain("error", exception.what());
  } catch (...) {
    complain("error", "out of memory");
  }
  return exit_no_use;
}
