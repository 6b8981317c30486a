// zrt4xml: the library's documents on the command line.

#include <langinfo.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "document_kind.hh"
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
  CLI::App app{"Shows the XML documents through which the DAQ describes itself.", "zrt4xml"};
  app.set_version_flag("--version", "zrt4xml " ZRT4_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Example:\n"
      "  zrt4xml show events.xml\n"
      "  generate-list | zrt4xml show -\n"
      "\n"
      "Exit code: 0 fine; 1 a document could not be read cleanly; 2 wrong usage, or a file that\n"
      "cannot be opened or written. Messages go to standard error.");

  std::vector<std::string> files;
  CLI::App* show_command = app.add_subcommand(
      "show", "Print the listing of each document, recognised by its root element");
  show_command->add_option("FILE", files, "Documents to show; - is standard input")->required();
  show_command->footer("Known: " + known_kinds() + ".\nExample:\n  zrt4xml show events.xml");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? flushed(exit_fine) : exit_no_use;
  }

  choose_code_page();
  const xml_library in_use;
  return flushed(show(files));
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
