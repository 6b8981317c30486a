#ifndef COMMAND_LINE_HH
#define COMMAND_LINE_HH

// The one definition of the command line: the tool parses with it; --help, the manual page and the
// completion are written from it.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "answer_format.hh"
#include "check.hh"
#include "convert.hh"

namespace CLI {
class App;
}

/// What the subcommands were given.
struct arguments {
  std::vector<std::string> files;
  std::vector<std::string> types;
  std::string file;
  std::string other;
  std::string kind;
  std::string name;
  std::string event;
  std::string output;
  std::string form;
  std::string rows;
  std::vector<std::string> where;
  std::vector<std::string> columns;
  std::vector<std::string> assignments;
  std::string format_name;
  std::vector<std::string> rule_values;  ///< of -W, in their order
  std::size_t most_findings = 100;       ///< of each rule, told one by one
  bool only_findings = false;
  bool lists_rules = false;
  std::string title;
  std::string word;
  std::size_t jobs = 0;  ///< as many files at once as there are processor cores
  bool wide = false;
  bool ignore_case = false;
  bool force = false;
  bool strict = false;
  bool overwrite = false;
  bool lossy = false;
  bool dry_run = false;
  bool as_json = false;
  bool as_csv = false;
  bool all = false;
  bool quiet = false;

  /// What `--to` names.
  document_form to() const;
  /// How many files are read at once.
  std::size_t files_at_once() const;
  /// Standard input is there only once.
  bool name_standard_input_twice() const;
  answer_format format() const;
  /// What `check` was asked for.
  check_wishes checking() const;
};

class command_line {
 public:
  command_line();
  command_line(const command_line&) = delete;
  command_line& operator=(const command_line&) = delete;
  ~command_line();

  /// The exit code when that was all, as after --help or wrong usage, which it has printed.
  std::optional<exit_code> parse(int argc, char** argv);
  /// Runs the subcommand that was chosen.
  exit_code execute() const { return chosen(given); }

  const CLI::App& definition() const { return *app; }

  arguments given;

 private:
  using action = exit_code (*)(const arguments&);
  void add(CLI::App* subcommand, action run);

  std::unique_ptr<CLI::App> app;
  action chosen = nullptr;
};

#endif
