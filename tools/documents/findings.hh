#ifndef FINDINGS_HH
#define FINDINGS_HH

#include <vector>

#include "document_kind.hh"
#include "finding_list.hh"

/// Everything found in the file, by line; of each rule at most so many, and how
/// many more there are.
std::vector<finding> findings_of(input_file& file, document_kind kind, std::size_t most);

#endif
