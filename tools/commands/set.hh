#ifndef SET_HH
#define SET_HH

#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"
#include "writing.hh"

/// `zrt4xml set`: gives fields of the records that fit all conditions a value, FIELD=VALUE, and
/// writes the whole document, or, when something is wrong or would be lost, nothing.
exit_code set(const std::string& file, const std::vector<std::string>& where,
              const std::vector<std::string>& assignments, const target& where_to);

/// `zrt4xml set --dry-run`: prints the differences between the document and what would be written,
/// as it is read then.
exit_code set_dry_run(const std::string& file, const std::vector<std::string>& where,
                      const std::vector<std::string>& assignments, bool lossy,
                      answer_format format);

#endif
