#ifndef PAGES_HH
#define PAGES_HH

// What is installed beside the tool, written from the command line's definition.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// What a person reads about one option or positional argument.
struct option_page {
  explicit option_page(const CLI::Option& option);

  std::vector<std::string> names;   ///< "-o", "--output"; empty for a positional argument
  std::string value;                ///< "FILE"; empty for a flag
  std::vector<std::string> values;  ///< when there are only these
  std::string text;
  bool required;
  bool repeated;  ///< takes several values
};

/// All options of a command, positional arguments first, in the order of --help.
std::vector<option_page> pages_of(const CLI::App& command);

/// All subcommands.
std::vector<const CLI::App*> subcommands_of(const CLI::App& app);

/// The manual page, in the man macros.
std::string manual_page(const CLI::App& app, const std::string& version, const std::string& date);

/// The tables that completion.bash completes from, as functions.
std::string completion_tables(const CLI::App& app);

#endif
