#ifndef CHECK_HH
#define CHECK_HH

#include <cstddef>
#include <string>
#include <vector>

#include "exit_code.hh"
#include "rule_choice.hh"

/// How findings are told: to a person, to an editor as compilers tell theirs, to GitHub as the
/// commands that make annotations, to a program, or not at all.
enum class finding_format { text, gcc, github, json, nothing };

struct check_wishes {
  finding_format format = finding_format::text;
  rule_choice rules;
  std::size_t most = 0;        ///< findings of each rule that are told one by one
  bool wide = false;           ///< dictionaries: names of up to 255 bytes are not cut
  bool strict = false;         ///< also where a document deviates from the grammar of its kind
  bool only_findings = false;  ///< nothing about documents without any
  std::size_t jobs = 1;        ///< files that are read at once
};

/// `zrt4xml check`: reads each document and tells what it is, then what a person wants to know
/// about it. Exit code 1 when an error is among that.
exit_code check(const std::vector<std::string>& files, const check_wishes& wishes);

/// `zrt4xml check --rules`: prints all rules.
exit_code list_rules();

#endif
