#include "command_line.hh"

#include <map>

#include "document_kind.hh"
#include "find.hh"

namespace {

const std::map<std::string, output_format> channel_formats{{"xml", output_format::xml},
                                                           {"variables", output_format::variables},
                                                           {"text", output_format::text},
                                                           {"short", output_format::short_text}};

CLI::App* add_show(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "show", "Print the listing of each document, recognised by its root element");
  command->add_option("FILE", given.files, "Documents to show; - is standard input")->required();
  command->add_option("--kind", given.kind, "Take every file as a document of this kind")
      ->type_name("KIND")
      ->check(CLI::IsMember(kind_names()));
  command->footer("Known: " + known_kinds() + ".\nExample:\n  zrt4xml show events.xml");
  return command;
}

CLI::App* add_find(CLI::App& app, arguments& given) {
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
  command->footer(
      "Exit code: 1 when the channel is not found or not selected.\n"
      "Example:\n  zrt4xml find --name BPM.7.X --event NORMAL channels.xml");
  return command;
}

void add_output(CLI::App* command, arguments& given) {
  command
      ->add_option("-o,--output", given.output,
                   "File to write; replaced only when all went well. Default: standard output")
      ->type_name("FILE");
}

CLI::App* add_convert(CLI::App& app, arguments& given) {
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
  return command;
}

CLI::App* add_merge(CLI::App& app, arguments& given) {
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
  command->footer("Example:\n  zrt4xml merge master.xml delivered.xml -o complete.xml");
  return command;
}

}  // namespace

command_line::command_line() {
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
  show = add_show(app, given);
  find = add_find(app, given);
  convert = add_convert(app, given);
  merge = add_merge(app, given);
}
