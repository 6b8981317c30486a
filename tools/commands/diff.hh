#ifndef DIFF_HH
#define DIFF_HH

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"
#include "rows.hh"

/// `zrt4xml diff`: what two documents of one kind have not in common, record by record; exit code 1
/// when there is anything.
exit_code diff(const std::string& before, const std::string& after, answer_format format);

/// Prints that there is nothing to compare, for programs: the answer of a subcommand that compares,
/// with the files that could not be used, each as `json_of_unusable` tells it.
void print_no_comparison(std::string_view subcommand, const std::string& before,
                         const std::string& after, const nlohmann::ordered_json& unusable);

/// Two lists of records, compared, and what they are called.
struct compared {
  std::string_view subcommand;
  std::string before_name;
  std::string after_name;
  row_list before;
  row_list after;
  std::string_view record_name;                ///< of one record, for a person: "channel"
  std::vector<std::string> not_compared = {};  ///< what of the records is left out, for programs
};

/// Prints the differences under the names of both sides; for a person nothing when there are none.
/// Returns whether there are any.
bool print_differences(const compared& both, answer_format format);

#endif
