#include "command_line.hh"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <thread>

#include "bits.hh"
#include "check.hh"
#include "convert.hh"
#include "diff.hh"
#include "document_kind.hh"
#include "file_error.hh"
#include "find.hh"
#include "list.hh"
#include "merge.hh"
#include "page.hh"
#include "set.hh"
#include "show.hh"
#include "stat.hh"
#include "terminal.hh"
#include "type_names.hh"
#include "types.hh"

namespace {

constexpr struct {
  const char* name;
  document_form form;
} forms[] = {{"xml", document_form::xml},
             {"variables", document_form::variables},
             {"text", document_form::text},
             {"short", document_form::short_text},
             {"csv", document_form::csv}};

/// All forms, or those of documents that keep what they are.
CLI::Option* add_form(CLI::App* command, arguments& given, const std::string& description,
                      bool with_csv) {
  std::vector<std::string> names;
  for (const auto& form : forms) {
    if (with_csv || form.form != document_form::csv) names.emplace_back(form.name);
  }
  return command->add_option("--to", given.form, description)
      ->type_name("FORM")
      ->check(CLI::IsMember(names));
}

CLI::Option* add_json(CLI::App* command, arguments& given) {
  return command->add_flag("--json", given.as_json, "Print JSON, for programs");
}

// Each file in work takes a thread and a few descriptors.
constexpr std::size_t most_jobs = 256;

CLI::Option* add_jobs(CLI::App* command, arguments& given) {
  return command
      ->add_option("-j,--jobs", given.jobs,
                   "Files read at once, at most 256. Default: as many as there are processor cores")
      ->type_name("N")
      ->check([](const std::string& text) -> std::string {
        std::size_t jobs = 0;
        const bool is_number = CLI::detail::lexical_cast(text, jobs);
        return is_number && jobs >= 1 && jobs <= most_jobs
                   ? ""
                   : "not a number from 1 to " + std::to_string(most_jobs) + ": " + text;
      });
}

CLI::App* add_show(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "show", "Print the listing of each document, recognised by its root element");
  command->add_option("FILE", given.files, "Documents to show; - is standard input")
      ->required()
      ->type_name("");
  command->add_option("--kind", given.kind, "Take every file as a document of this kind")
      ->type_name("KIND")
      ->check(CLI::IsMember(kind_names()));
  CLI::Option* bits =
      command
          ->add_option("--bits", given.name,
                       "Draw the word of the channel with this DAQ name or property, with its bits")
          ->type_name("CHANNEL")
          ->check([](const std::string& name) { return name.empty() ? "the name is empty" : ""; })
          ->excludes("--kind");
  command
      ->add_option("--value", given.word,
                   "With --bits: which bits this value has, such as 43, 0x2B or 0b101011")
      ->type_name("NUMBER")
      ->needs(bits)
      ->check([](const std::string& text) -> std::string {
        return word_of(text) ? "" : "no number of 32 bits: " + text;
      });
  add_jobs(command, given);
  add_json(command, given)->excludes(bits);
  command->footer("Known: " + known_kinds() +
                  ".\nExample:\n  zrt4xml show events.xml\n"
                  "  zrt4xml show channels.xml --bits RF.A1.STATUS --value 0x2B");
  return command;
}

exit_code run_show(const arguments& given) {
  if (!given.name.empty()) return show_bits(given.files, given.name, word_of(given.word));
  const auto kind = kind_named(given.kind);
  return given.as_json ? show_json(given.files, kind, given.files_at_once())
                       : show(given.files, kind, given.files_at_once());
}

CLI::App* add_find(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("find", "Look a channel up in channel descriptions, as a DAQ client does");
  command->add_option("FILE", given.files, "Channel descriptions; - is standard input")
      ->required()
      ->type_name("");
  command
      ->add_option(
          "--name", given.name,
          "DAQ name or property of the channel, or a pattern ('BPM.*.X') for all that match")
      ->required()
      ->type_name("CHANNEL")
      ->check([](const std::string& name) { return name.empty() ? "the name is empty" : ""; });
  command->add_flag("-i,--ignore-case", given.ignore_case,
                    "All channels with it in their names, in any case of letters");
  command->add_option("--event", given.event, "Is it selected for this event type, name or number?")
      ->type_name("EVENT")
      ->check([](const std::string& text) -> std::string {
        return event_type_of(text) ? ""
                                   : "no such event type: " + text + "; zrt4xml types lists them";
      });
  add_json(command, given);
  command->footer(
      "Exit code: 1 when no channel is found, or one is not selected.\n"
      "Name the file first to have its channels completed by the shell.\n"
      "Example:\n"
      "  zrt4xml find --name LINAC.DIAG/BPM/3.L1/X.TRAIN --event NORMAL channels.xml\n"
      "  zrt4xml find --name 'BPM.*.X' channels.xml\n"
      "  zrt4xml find -i --name otr1 channels.xml");
  return command;
}

exit_code run_find(const arguments& given) {
  return find(given.files, {given.name, given.ignore_case, event_type_of(given.event)},
              given.format());
}

CLI::Option* add_output(CLI::App* command, arguments& given) {
  command->add_flag("-f,--overwrite", given.overwrite,
                    "Replace the file even when it is write-protected");
  command->add_flag("--lossy", given.lossy,
                    "What does not arrive is meant not to: it is told, and the exit code is 0");
  return command
      ->add_option("-o,--output", given.output,
                   "File to write; replaced only when all went well. Default: standard output")
      ->type_name("FILE")
      ->check([](const std::string& name) { return name.empty() ? "the name is empty" : ""; });
}

target target_of(const arguments& given) {
  return {given.output,
          given.overwrite ? write_protected::is_replaced : write_protected::is_refused,
          given.lossy};
}

CLI::App* add_convert(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("convert", "Write channel descriptions or a dictionary in another form");
  command->add_option("FILE", given.file, "Document to convert; - is standard input")
      ->required()
      ->type_name("");
  add_form(command, given, "Form to write; of a dictionary: xml, text or csv; of others: csv", true)
      ->required();
  command
      ->add_option("--rows", given.rows,
                   "Of csv: what has a line each. Default: the records; or channels, bits, "
                   "dimensions, statistics, entries, events, server_blocks, features")
      ->type_name("RECORDS");
  command->add_flag("--wide", given.wide, "Dictionaries: property names of up to 255 characters");
  add_output(command, given);
  command->footer(
      "Whatever does not arrive is told, with its place, and then the exit code is 1.\n"
      "Example:\n  zrt4xml convert channels.xml --to variables --lossy -o variables.xml");
  return command;
}

exit_code run_convert(const arguments& given) {
  if (given.to() == document_form::csv) {
    return convert_to_csv(given.file, given.rows, target_of(given));
  }
  if (!given.rows.empty()) throw file_error("--rows", "is for --to csv only");
  return convert(given.file, given.to(), given.wide, target_of(given));
}

// An option that may stand several times, with a value each.
CLI::Option* add_where(CLI::App* command, arguments& given) {
  return command
      ->add_option(
          "--where", given.where,
          "Only records that fit: FIELD=TEXT, FIELD~REGEX, FIELD:NUMBER or FIELD:FROM..TO; "
          "several times: all of them")
      ->type_name("CONDITION")
      ->allow_extra_args(false);
}

constexpr const char* about_fields =
    "A field is named as in JSON: units, bits.name, dimensions.statistics.number; bits alone is "
    "how\n"
    "many there are. Types go by number or name. REGEX is an extended regular expression.\n";

CLI::App* add_list(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("list", "Print a table of the records that fit, of one kind of document");
  command->add_option("FILE", given.files, "Documents to list; - is standard input")
      ->required()
      ->type_name("");
  add_where(command, given);
  command
      ->add_option("--columns", given.columns,
                   "Fields to show, with commas between them. Default: all of a record")
      ->type_name("FIELDS")
      ->delimiter(',')
      ->allow_extra_args(false);
  CLI::Option* as_json = add_json(command, given)->excludes("--columns");
  command->add_flag("--csv", given.as_csv, "Print comma-separated values, for spreadsheets")
      ->excludes(as_json);
  add_jobs(command, given);
  command->footer(
      std::string(about_fields) +
      "On a terminal the table fits its width; otherwise tabs stand between the values.\n"
      "Example:\n  zrt4xml list channels.xml --where subsystem=RF --where bits.name~QUENCH "
      "--columns "
      "name,units");
  return command;
}

exit_code run_list(const arguments& given) {
  const list_format format = given.as_json  ? list_format::json
                             : given.as_csv ? list_format::csv
                                            : list_format::table;
  return list(given.files, given.where, given.columns, given.files_at_once(), format);
}

CLI::App* add_set(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("set", "Change fields of the records that fit, and write the document");
  command->add_option("FILE", given.file, "Document to change; - is standard input")
      ->required()
      ->type_name("");
  command->add_option("FIELD=VALUE", given.assignments, "What to change of each record")
      ->required()
      ->type_name("");
  CLI::Option* where = add_where(command, given);
  command->add_flag("--all", given.all, "All records")->excludes(where);
  CLI::Option* output = add_output(command, given);
  CLI::Option* dry_run =
      command->add_flag("--dry-run", given.dry_run, "Only print what would change, as diff does")
          ->excludes(output);
  add_json(command, given)->needs(dry_run);
  command->footer(
      std::string(about_fields) +
      "The document is written whole, or not at all when a value does not fit its field or a key "
      "would\nstand there twice.\n"
      "Example:\n  zrt4xml set channels.xml --where units=MV units=kV data_type=BPM_2010 -o "
      "channels.xml");
  return command;
}

exit_code run_set(const arguments& given) {
  if (given.where.empty() && !given.all) {
    throw file_error("set", "--where says which records to change, or --all");
  }
  if (given.dry_run) {
    return set_dry_run(given.file, given.where, given.assignments, given.lossy, given.format());
  }
  return set(given.file, given.where, given.assignments, target_of(given));
}

CLI::App* add_merge(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "merge", "Complete the channel descriptions of one file with what others know");
  command
      ->add_option("BASE FROM", given.files,
                   "The file to complete, then those to take from; - is standard input")
      ->required()
      ->type_name("")
      ->expected(2, CLI::detail::expected_max_vector_size);
  command->add_flag("--force", given.force, "What the others know replaces what the first knows");
  add_form(command, given, "Form to write; default: as the first file", false);
  add_output(command, given);
  command->add_flag("--dry-run", given.dry_run, "Only print what would change, as diff does")
      ->excludes("--output");
  add_json(command, given)->needs("--dry-run");
  command->footer(
      "Channels that the first file lacks are added; --dry-run has exit code 0 also when it finds "
      "changes.\n"
      "Example:\n  zrt4xml merge master.xml delivered.xml -o complete.xml");
  return command;
}

exit_code run_merge(const arguments& given) {
  if (given.dry_run) {
    return merge_dry_run(given.files, given.force, given.to(), given.lossy, given.format());
  }
  return merge(given.files, given.force, given.to(), target_of(given));
}

constexpr struct {
  const char* name;
  finding_format format;
} finding_formats[] = {{"text", finding_format::text},
                       {"gcc", finding_format::gcc},
                       {"github", finding_format::github},
                       {"json", finding_format::json}};

CLI::App* add_check(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "check", "Read each document and tell what is wrong or odd about it, with line and column");
  command->add_option("FILE", given.files, "Documents to check; - is standard input")
      ->type_name("");
  command
      ->add_option("-W", given.rule_values,
                   "How much a rule weighs: RULE=error, RULE=warning, RULE=off or no-RULE, RULE as "
                   "it is; error: every warning is an error; none, all: of the rules count")
      ->type_name("RULE")
      ->allow_extra_args(false)
      ->check([](const std::string& value) { return rule_choice().take(value); });
  std::vector<std::string> names;
  for (const auto& format : finding_formats) names.emplace_back(format.name);
  CLI::Option* const format =
      command
          ->add_option("--format", given.format_name,
                       "For people, for editors, for annotations in continuous integration, or "
                       "for programs. Default: text")
          ->type_name("FORMAT")
          ->check(CLI::IsMember(names));
  command->add_flag("--only-findings", given.only_findings,
                    "Nothing about documents in which nothing is found");
  command
      ->add_option("--most", given.most_findings,
                   "Findings of one rule that are told one by one in each document; the rest is "
                   "summed up. Default: 100")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  command->add_flag("--rules", given.lists_rules, "Print all rules instead");
  command->add_flag("--wide", given.wide, "Dictionaries: property names of up to 255 characters");
  command->add_flag("--strict", given.strict,
                    "Also tell what the grammar of such a document does not allow");
  add_jobs(command, given);
  add_json(command, given)->excludes(format);
  command->parse_complete_callback([&given] {
    if (given.files.empty() && !given.lists_rules) throw CLI::RequiredError("FILE");
  });
  command->footer(
      "An error is something that is lost, or read as something else than is written; a warning\n"
      "is odd. Each finding names its rule; docs/check.md tells what it means and how to mend it.\n"
      "Exit code: 1 when there is an error; with -W error also when there is a warning.\n"
      "Example:\n  zrt4xml check *.xml\n  zrt4xml check -W error -W no-unknown_element *.xml");
  return command;
}

exit_code run_check(const arguments& given) {
  return given.lists_rules ? list_rules() : check(given.files, given.checking());
}

CLI::App* add_stat(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand("stat",
                                         "Count the records of each document by what groups them: "
                                         "types, subsystem, stream, thresholds");
  command->add_option("FILE", given.files, "Documents to count; - is standard input")
      ->required()
      ->type_name("");
  add_jobs(command, given);
  add_json(command, given);
  command->footer("Example:\n  zrt4xml stat channels.xml");
  return command;
}

exit_code run_stat(const arguments& given) {
  return stat(given.files, given.files_at_once(), given.format());
}

CLI::App* add_diff(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "diff", "Compare two documents record by record, whatever the order of the records");
  command->add_option("A", given.file, "The document as it was; - is standard input")
      ->required()
      ->type_name("");
  command->add_option("B", given.other, "The document as it is; - is standard input")
      ->required()
      ->type_name("");
  add_json(command, given);
  command->footer(
      "Exit code: 1 when they differ.\n"
      "Example:\n  zrt4xml diff old.xml new.xml");
  return command;
}

exit_code run_diff(const arguments& given) {
  return diff(given.file, given.other, given.format());
}

CLI::App* add_types(CLI::App& app, arguments& given) {
  CLI::App* command =
      app.add_subcommand("types", "Print the event types and data types: number, name and mask");
  command
      ->add_option(
          "TYPE", given.types,
          "Only those of this number, mask, name or pattern of names, in any case of letters")
      ->type_name("");
  add_json(command, given);
  command->footer(
      "Exit code: 1 when a TYPE is none.\n"
      "Example:\n  zrt4xml types NORMAL 38 'bpm*' 0x80000040");
  return command;
}

exit_code run_types(const arguments& given) {
  return list_types(given.types, given.format());
}

CLI::App* add_page(CLI::App& app, arguments& given) {
  CLI::App* command = app.add_subcommand(
      "page", "Write one HTML file in which the documents can be read, searched and filtered");
  command->add_option("FILE", given.files, "Documents of any kind; - is standard input")
      ->required()
      ->type_name("");
  add_output(command, given);
  command->add_option("--title", given.title, "Title of the page; default: the name of the file")
      ->type_name("TEXT");
  command
      ->add_option("--diff", given.other,
                   "The one document as it was: the page also tells what changed since")
      ->type_name("FILE");
  add_jobs(command, given);
  command->parse_complete_callback([&given] {
    if (!given.other.empty() && given.files.size() != 1) {
      throw CLI::ValidationError("--diff", "takes two documents: --diff OLD NEW");
    }
  });
  command->footer(
      "The file needs nothing but a browser: it asks for nothing outside.\n"
      "Example:\n  zrt4xml page channels.xml events.xml -o channels.html");
  return command;
}

exit_code run_page(const arguments& given) {
  return page(given.files, given.other, given.title, given.output, given.files_at_once());
}

std::string wrong_usage(const CLI::App* app, const CLI::Error& error) {
  const auto chosen = app->get_subcommands();
  const auto unknown = app->remaining();
  std::string text = error.what();
  if (chosen.empty() && !unknown.empty()) text = "no such subcommand: " + unknown.front();
  const std::string help = "zrt4xml " + (chosen.empty() ? "" : chosen.front()->get_name() + " ");
  return "zrt4xml: " + printable(text) + "\nTry '" + help + "--help'.\n";
}

}  // namespace

document_form arguments::to() const {
  for (const auto& known : forms) {
    if (form == known.name) return known.form;
  }
  return document_form::same;
}

answer_format arguments::format() const {
  if (as_json) return answer_format::json;
  return quiet ? answer_format::nothing : answer_format::text;
}

check_wishes arguments::checking() const {
  check_wishes wishes;
  for (const auto& known : finding_formats) {
    if (format_name == known.name) wishes.format = known.format;
  }
  if (as_json) wishes.format = finding_format::json;
  if (quiet && wishes.format == finding_format::text) wishes.format = finding_format::nothing;
  for (const std::string& value : rule_values) wishes.rules.take(value);
  wishes.most = most_findings;
  wishes.wide = wide;
  wishes.strict = strict;
  wishes.only_findings = only_findings;
  wishes.jobs = files_at_once();
  return wishes;
}

std::size_t arguments::files_at_once() const {
  if (jobs != 0) return jobs;
  return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, most_jobs);
}

bool arguments::name_standard_input_twice() const {
  const auto in_files = std::count(files.begin(), files.end(), "-");
  return in_files + (file == "-" ? 1 : 0) + (other == "-" ? 1 : 0) > 1;
}

command_line::command_line()
    : app(std::make_unique<CLI::App>(
          "Shows, checks, compares and converts the XML documents through which the DAQ describes "
          "itself.",
          "zrt4xml")) {
  app->set_version_flag("--version", "zrt4xml " ZRT4_VERSION);
  app->require_subcommand(1);
  app->failure_message(wrong_usage);
  app->callback([this] {
    if (given.name_standard_input_twice()) {
      throw CLI::ValidationError("-", "standard input can be read only once");
    }
  });
  app->fallthrough();
  app->add_flag(
      "-q,--quiet", given.quiet,
      "No messages but those of exit code 2; find, check, diff, types and dry runs print nothing "
      "either");
  app->footer(
      "Example:\n"
      "  zrt4xml show events.xml\n"
      "  generate-list | zrt4xml show -\n"
      "\n"
      "Exit code:\n"
      "  0  all is fine\n"
      "  1  a document could not be read or written cleanly, documents differ, a channel was not\n"
      "     found or not selected, or check found something\n"
      "  2  wrong usage, or a file that cannot be opened, used or written\n"
      "\n"
      "Environment:\n"
      "  NO_COLOR  when set, no colour on a terminal\n"
      "\n"
      "Texts are UTF-8, whatever the locale. Messages go to standard error.");
  add(add_show(*app, given), run_show);
  add(add_find(*app, given), run_find);
  add(add_check(*app, given), run_check);
  add(add_diff(*app, given), run_diff);
  add(add_stat(*app, given), run_stat);
  add(add_convert(*app, given), run_convert);
  add(add_merge(*app, given), run_merge);
  add(add_list(*app, given), run_list);
  add(add_set(*app, given), run_set);
  add(add_types(*app, given), run_types);
  add(add_page(*app, given), run_page);
}

command_line::~command_line() = default;

std::optional<exit_code> command_line::parse(int argc, char** argv) {
  try {
    app->parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app->exit(error) == 0 ? exit_fine : exit_trouble;
  }
  return {};
}

void command_line::add(CLI::App* subcommand, action run) {
  subcommand->callback([this, run] { chosen = run; });
}
