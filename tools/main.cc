// zrt4xml: the library's documents on the command line.

#include <langinfo.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bad_document.hh"
#include "convert.hh"
#include "document_kind.hh"
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

const std::map<std::string, output_format> channel_formats{{"xml", output_format::xml},
                                                           {"variables", output_format::variables},
                                                           {"text", output_format::text},
                                                           {"short", output_format::short_text}};

/// The command line: what each subcommand was given.
struct arguments {
  std::vector<std::string> files;
  std::string file;
  std::string kind;
  std::string name;
  std::string event;
  std::string output;
  output_format to = output_format::same;
  bool wide = false;
  bool force = false;
};

CLI::App* add_show(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "show", "Print the listing of each document, recognised by its root element");
  command->add_option("FILE", given.files, "Documents to show; - is standard input")->required();
  command->add_option("--kind", given.kind, "Take every file as a document of this kind")
      ->check(CLI::IsMember(kind_names()));
  command->footer("Known: " + known_kinds() + ".\nExample:\n  zrt4xml show events.xml");
  return command;
}

CLI::App* add_find(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("find", "Look a channel up in channel descriptions, as a DAQ client does");
  command->add_option("FILE", given.files, "Channel descriptions; - is standard input")->required();
  command->add_option("--name", given.name, "DAQ name or property of the channel")->required();
  command->add_option("--event", given.event, "Is it selected for this event type?")
      ->type_name("NAME|NUMBER")
      ->check([](const std::string& text) -> std::string {
        return event_type_of(text) ? "" : "no such event type: " + text;
      });
  command->footer(
      "Exit code: 1 when the channel is not found or not selected.\n"
      "Example:\n  zrt4xml find --name BPM.7.X --event NORMAL channels.xml");
  return command;
}

void add_output(CLI::App* command, arguments& given) {
  command->add_option("-o,--output", given.output,
                      "File to write; replaced only when all went well. Default: standard output");
}

CLI::App* add_convert(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("convert", "Write channel descriptions or a dictionary in another form");
  command->add_option("FILE", given.file, "Document to convert; - is standard input")->required();
  command->add_option("--to", given.to, "xml, variables, text or short; dictionaries: xml or text")
      ->required()
      ->type_name("FORM")
      ->transform(CLI::CheckedTransformer(channel_formats).description(""));
  command->add_flag("--wide", given.wide, "Dictionaries: property names of up to 255 characters");
  add_output(command, given);
  command->footer("Example:\n  zrt4xml convert channels.xml --to variables -o variables.xml");
  return command;
}

CLI::App* add_merge(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "merge", "Complete the channel descriptions of one file with what others know");
  command->add_option("BASE FROM", given.files, "The file to complete, then those to take from")
      ->required()
      ->expected(2, CLI::detail::expected_max_vector_size);
  command->add_flag("--force", given.force, "What the others know replaces what the first knows");
  command->add_option("--to", given.to, "xml, variables, text or short; default: as the first file")
      ->type_name("FORM")
      ->transform(CLI::CheckedTransformer(channel_formats).description(""));
  add_output(command, given);
  command->footer("Example:\n  zrt4xml merge master.xml delivered.xml -o complete.xml");
  return command;
}

int run(int argc, char** argv) {
  CLI::App app{"Shows and converts the XML documents through which the DAQ describes itself.",
               "zrt4xml"};
  app.set_version_flag("--version", "zrt4xml " ZRT4_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Example:\n"
      "  zrt4xml show events.xml\n"
      "  generate-list | zrt4xml show -\n"
      "\n"
      "Exit code: 0 fine; 1 a document could not be read or written cleanly, or a channel was not\n"
      "found; 2 wrong usage, or a file that cannot be opened or written. Messages go to standard\n"
      "error.");
  arguments given;
  const CLI::App* const show_command = add_show(app, given);
  const CLI::App* const find_command = add_find(app, given);
  const CLI::App* const convert_command = add_convert(app, given);
  add_merge(app, given);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? flushed(exit_fine) : exit_no_use;
  }

  choose_code_page();
  const xml_library in_use;
  const std::string& first = given.files.empty() ? given.file : given.files.front();
  try {
    if (show_command->parsed()) return flushed(show(given.files, given.kind));
    if (find_command->parsed()) {
      return flushed(find(given.files, given.name, event_type_of(given.event)));
    }
    if (convert_command->parsed()) {
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
