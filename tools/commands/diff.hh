#ifndef DIFF_HH
#define DIFF_HH

#include <string>
#include <string_view>
#include <vector>

#include "answer_format.hh"
#include "difference.hh"
#include "exit_code.hh"

/// `zrt4xml diff`: what two documents of one kind have not in common, record by record; exit code 1
/// when there is anything.
exit_code diff(const std::string& before, const std::string& after, answer_format format);

/// The differences under the names of both sides; for a person nothing when there are none.
void print_differences(std::string_view subcommand, const std::string& before,
                       const std::string& after, const std::vector<difference>& found,
                       answer_format format);

#endif
