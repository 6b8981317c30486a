#ifndef FINDINGS_HH
#define FINDINGS_HH

#include <vector>

#include "document_kind.hh"
#include "finding_list.hh"

/// Everything found in the file and in its records, by line.
std::vector<finding> findings_of(input_file& file, document_kind kind,
                                 const loaded_document& document);

#endif
