#ifndef SET_HH
#define SET_HH

#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"

/// `zrt4xml set`: gives fields of the records that fit all conditions a value, FIELD=VALUE, and
/// writes the whole document, or, when something is wrong, nothing.
exit_code set(const std::string& file, const std::vector<std::string>& where,
              const std::vector<std::string>& assignments, const std::string& output);

/// `zrt4xml set --dry-run`: prints the differences that it would make.
exit_code set_dry_run(const std::string& file, const std::vector<std::string>& where,
                      const std::vector<std::string>& assignments, answer_format format);

#endif
