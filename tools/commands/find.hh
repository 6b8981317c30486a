#ifndef FIND_HH
#define FIND_HH

#include <optional>
#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"

/// The number of an event type given by name ("NORMAL") or number; nothing when it is neither.
std::optional<int> event_type_of(const std::string& text);

/// `zrt4xml find`: loads all files as one selector does and prints the description that it would
/// find by `name`, and, with `event`, whether it selects the name for that event type. Exit code 1
/// when not.
exit_code find(const std::vector<std::string>& files, const std::string& name,
               std::optional<int> event, answer_format format);

#endif
