#ifndef PAGES_HH
#define PAGES_HH

// What is installed beside the tool, written from the command line's definition.

#include <string>
#include <vector>

/// What a person reads about one option or positional argument.
struct option_page {
  std::vector<std::string> names;   ///< "-o", "--output"; empty for a positional argument
  std::string value;                ///< "FILE"; empty for a flag
  std::vector<std::string> values;  ///< when there are only these
  std::string text;
  bool required = false;
  bool repeated = false;  ///< takes several values
};

/// And about the tool, or one of its subcommands.
struct command_page {
  std::string name;
  std::string text;
  std::string footer;
  std::vector<option_page> options;  ///< positional arguments first, in the order of --help
  std::vector<command_page> subcommands;
};

/// The manual page, in the man macros.
std::string manual_page(const command_page& tool, const std::string& version,
                        const std::string& date);

/// The tables that completion.bash completes from, as functions.
std::string completion_tables(const command_page& tool);

#endif
