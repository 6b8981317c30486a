// zrt4xml: the library's documents on the command line.

#include <langinfo.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bad_document.hh"
#include "check.hh"
#include "convert.hh"
#include "diff.hh"
#include "document_kind.hh"
#include "find.hh"
#include "message.hh"
#include "show.hh"
#include "stat.hh"

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
  insist("standard output", errno != 0 ? std::strerror(errno) : "write error");
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
  std::string other;
  std::string kind;
  std::string name;
  std::string event;
  std::string output;
  output_format to = output_format::same;
  bool wide = false;
  bool force = false;
  bool dry_run = false;
  bool as_json = false;
  bool quiet = false;

  look wanted() const { return as_json ? look::json : quiet ? look::nothing : look::text; }
};

void add_json(CLI::App* command, arguments& given) {
  command->add_flag("--json", given.as_json, "Print JSON, for programs");
}

void add_show(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "show", "Print the listing of each document, recognised by its root element");
  command->add_option("FILE", given.files, "Documents to show; - is standard input")->required();
  command->add_option("--kind", given.kind, "Take every file as a document of this kind")
      ->check(CLI::IsMember(kind_names()));
  add_json(command, given);
  command->footer("Known: " + known_kinds() + ".\nExample:\n  zrt4xml show events.xml");
}

void add_find(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("find", "Look a channel up in channel descriptions, as a DAQ client does");
  command->add_option("FILE", given.files, "Channel descriptions; - is standard input")->required();
  command->add_option("--name", given.name, "DAQ name or property of the channel")->required();
  command->add_option("--event", given.event, "Is it selected for this event type?")
      ->type_name("NAME|NUMBER")
      ->check([](const std::string& text) -> std::string {
        return event_type_of(text) ? "" : "no such event type: " + text;
      });
  add_json(command, given);
  command->footer(
      "Exit code: 1 when the channel is not found or not selected.\n"
      "Example:\n  zrt4xml find --name BPM.7.X --event NORMAL channels.xml");
}

void add_output(CLI::App* command, arguments& given) {
  command->add_option("-o,--output", given.output,
                      "File to write; replaced only when all went well. Default: standard output");
}

void add_convert(CLI::App& app, arguments& given) {
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
}

void add_merge(CLI::App& app, arguments& given) {
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
  command->add_flag("--dry-run", given.dry_run, "Only print what would change, as diff does")
      ->excludes("--to")
      ->excludes("--output");
  command->footer("Example:\n  zrt4xml merge master.xml delivered.xml -o complete.xml");
}

void add_check(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "check", "Read each document and tell what is wrong or odd about it, with line and column");
  command->add_option("FILE", given.files, "Documents to check; - is standard input")->required();
  add_json(command, given);
  command->footer(
      "Found: XML errors, duplicate properties and features, channels without name, texts cut at "
      "a\n"
      "record's limit or interrupted, event and data types without a name, elements that no "
      "reader\n"
      "knows, characters that the locale lacks.\n"
      "Exit code: 1 when anything is found.\n"
      "Example:\n  zrt4xml check *.xml");
}

void add_stat(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "stat", "Count the records of each document by event type, data type, subsystem and stream");
  command->add_option("FILE", given.files, "Documents to count; - is standard input")->required();
  add_json(command, given);
  command->footer("Example:\n  zrt4xml stat channels.xml");
}

void add_diff(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "diff", "Compare two documents record by record, whatever the order of the records");
  command->add_option("A", given.file, "The document as it was; - is standard input")->required();
  command->add_option("B", given.other, "The document as it is")->required();
  add_json(command, given);
  command->footer(
      "Exit code: 1 when they differ.\n"
      "Example:\n  zrt4xml diff old.xml new.xml");
}

exit_code execute(const std::string& subcommand, const arguments& given) {
  if (subcommand == "show") {
    return (given.as_json ? show_json : show)(given.files, given.kind);
  }
  if (subcommand == "find") {
    return find(given.files, given.name, event_type_of(given.event), given.wanted());
  }
  if (subcommand == "check") return check(given.files, given.wanted());
  if (subcommand == "diff") return diff(given.file, given.other, given.wanted());
  if (subcommand == "stat") return stat(given.files, given.wanted());
  if (subcommand == "convert") return convert(given.file, given.to, given.wide, given.output);
  if (given.dry_run) return merge_dry_run(given.files, given.force);
  return merge(given.files, given.force, given.to, given.output);
}

exit_code executed(const std::string& subcommand, const arguments& given) {
  try {
    return execute(subcommand, given);
  } catch (const bad_document& reason) {
    complain(reason.file + reason.place, reason.what());
    return exit_bad_document;
  } catch (const file_error& reason) {
    insist(reason.file, reason.what());
  } catch (const std::runtime_error& reason) {
    insist(given.files.empty() ? given.file : given.files.front(), reason.what());
  }
  return exit_no_use;
}

int run(int argc, char** argv) {
  arguments given;
  CLI::App app{
      "Shows, checks, compares and converts the XML documents through which the DAQ describes "
      "itself.",
      "zrt4xml"};
  app.set_version_flag("--version", "zrt4xml " ZRT4_VERSION);
  app.require_subcommand(1);
  app.fallthrough();
  app.add_flag("-q,--quiet", given.quiet,
               "No messages but those of exit code 2; find, check and diff print nothing either");
  app.footer(
      "Example:\n"
      "  zrt4xml show events.xml\n"
      "  generate-list | zrt4xml show -\n"
      "\n"
      "Exit code: 0 fine; 1 a document could not be read or written cleanly, documents differ, a\n"
      "channel was not found, or check found something; 2 wrong usage, or a file that cannot be\n"
      "opened or written. Messages go to standard error.");
  add_show(app, given);
  add_find(app, given);
  add_check(app, given);
  add_diff(app, given);
  add_stat(app, given);
  add_convert(app, given);
  add_merge(app, given);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? flushed(exit_fine) : exit_no_use;
  }

  if (given.quiet) be_quiet();
  // A reader that went away is no error, however this process was started.
  std::signal(SIGPIPE, SIG_DFL);
  choose_code_page();
  const xml_library in_use;
  return flushed(executed(app.get_subcommands().front()->get_name(), given));
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& exception) {
    insist("error", exception.what());
  } catch (...) {
    insist("error", "out of memory");
  }
  return exit_no_use;
}
