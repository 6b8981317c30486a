#ifndef FIND_HH
#define FIND_HH

#include <optional>
#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"
#include "name_pattern.hh"

/// What `find` is asked for.
struct wanted_channel {
  std::string name;  ///< or a pattern
  bool ignore_case;  ///< and any part of a name will do
  std::optional<int> event;

  name_pattern names() const;
};

/// `zrt4xml find`: loads all files as one selector does and prints the channel that it would find
/// by the name, and, with an event type, whether it selects the name for that. By a pattern, all
/// channels that match, each with what a selector says of it. Exit code 1 when there is none, or
/// one is not selected.
exit_code find(const std::vector<std::string>& files, const wanted_channel& wanted,
               answer_format format);

#endif
