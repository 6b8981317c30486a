#ifndef FINDINGS_HH
#define FINDINGS_HH

#include <vector>

#include "document_kind.hh"
#include "finding_list.hh"

/// Everything found in the file, by line; of each rule at most so many, and how many more there
/// are. Names of a dictionary are measured as its older records keep them, or as the `wide` ones
/// do.
std::vector<finding> findings_of(input_file& file, document_kind kind, std::size_t most,
                                 bool wide = false);

#endif
