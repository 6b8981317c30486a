#ifndef DIALECT_ROWS_HH
#define DIALECT_ROWS_HH

// Channels of the two dialects side by side: what only one of them has elements for is no
// difference.

#include <string>
#include <vector>

#include "rows.hh"

/// Leaves out of a channel what the variable dialect's readers take from no element.
void keep_what_variables_have(row& channel);

/// The names of what is left out: "stream", "bits.description".
std::vector<std::string> missing_in_variables();

/// Has two lists of channels in different dialects compared by what both dialects have. Returns the
/// names of the rest.
std::vector<std::string> keep_what_both_have(row_list& before, row_list& after);

#endif
