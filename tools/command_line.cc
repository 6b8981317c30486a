#include "command_line.hh"

#include <map>

#include "document_kind.hh"
#include "find.hh"

namespace {

const std::map<std::string, output_format> channel_formats{{"xml", output_format::xml},
                                                           {"variables", output_format::variables},
                                                           {"text", output_format::text},
                                                           {"short", output_format::short_text}};

void add_json(CLI::App* command, arguments& given) {
  command->add_flag("--json", given.as_json, "Print JSON, for programs");
}

void add_show(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "show", "Print the listing of each document, recognised by its root element");
  command->add_option("FILE", given.files, "Documents to show; - is standard input")->required();
  command->add_option("--kind", given.kind, "Take every file as a document of this kind")
      ->type_name("KIND")
      ->check(CLI::IsMember(kind_names()));
  add_json(command, given);
  command->footer("Known: " + known_kinds() + ".\nExample:\n  zrt4xml show events.xml");
}

void add_find(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("find", "Look a channel up in channel descriptions, as a DAQ client does");
  command->add_option("FILE", given.files, "Channel descriptions; - is standard input")->required();
  command->add_option("--name", given.name, "DAQ name or property of the channel")
      ->required()
      ->type_name("CHANNEL");
  command->add_option("--event", given.event, "Is it selected for this event type, name or number?")
      ->type_name("EVENT")
      ->check([](const std::string& text) -> std::string {
        return event_type_of(text) ? "" : "no such event type: " + text;
      });
  add_json(command, given);
  command->footer(
      "Exit code: 1 when the channel is not found or not selected.\n"
      "Example:\n  zrt4xml find --name BPM.7.X --event NORMAL channels.xml");
}

void add_output(CLI::App* command, arguments& given) {
  command
      ->add_option("-o,--output", given.output,
                   "File to write; replaced only when all went well. Default: standard output")
      ->type_name("FILE");
}

void add_convert(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("convert", "Write channel descriptions or a dictionary in another form");
  command->add_option("FILE", given.file, "Document to convert; - is standard input")->required();
  command->add_option("--to", given.to, "Form to write; of a dictionary: xml or text")
      ->required()
      ->type_name("FORM")
      ->transform(
          CLI::CheckedTransformer(channel_formats).description("{xml,variables,text,short}"));
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
  command->add_option("--to", given.to, "Form to write; default: as the first file")
      ->type_name("FORM")
      ->transform(
          CLI::CheckedTransformer(channel_formats).description("{xml,variables,text,short}"));
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
      "a\nrecord's limit or interrupted, event and data types without a name, elements that no "
      "reader\nknows, characters that the locale lacks.\n"
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

}  // namespace

command_line::command_line() {
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
}
