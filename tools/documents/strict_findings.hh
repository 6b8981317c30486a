#ifndef STRICT_FINDINGS_HH
#define STRICT_FINDINGS_HH

#include <vector>

#include "document_kind.hh"
#include "finding_list.hh"

/// Adds to what was found in a document where it deviates from the grammar of its kind, but for
/// places of which that is told already.
void add_strict_findings(input_file& file, document_kind kind, std::vector<finding>& found);

#endif
