#ifndef TYPES_HH
#define TYPES_HH

#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"

/// `zrt4xml types`: prints the table of event types and data types, or those that bear one of the
/// `wanted` names (in any case, or as a pattern) or numbers; exit code 1 when one of them is no
/// type's.
exit_code list_types(const std::vector<std::string>& wanted, answer_format format);

#endif
