#ifndef COMMAND_LINE_HH
#define COMMAND_LINE_HH

// The one definition of the command line: the tool parses with it; --help, the manual page and the
// completion are written from it.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "answer_format.hh"
#include "convert.hh"

/// What the subcommands were given.
struct arguments {
  std::vector<std::string> files;
  std::string file;
  std::string other;
  std::string kind;
  std::string name;
  std::string event;
  std::string output;
  std::string form;
  bool wide = false;
  bool force = false;
  bool dry_run = false;
  bool as_json = false;
  bool quiet = false;

  output_format to() const;
  /// Standard input is there only once.
  bool name_standard_input_twice() const;
  answer_format wanted() const {
    return as_json ? answer_format::json : quiet ? answer_format::nothing : answer_format::text;
  }
};

struct command_line {
  command_line();

  arguments given;
  CLI::App app{
      "Shows, checks, compares and converts the XML documents through which the DAQ describes "
      "itself.",
      "zrt4xml"};
};

#endif
