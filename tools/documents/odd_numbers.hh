#ifndef ODD_NUMBERS_HH
#define ODD_NUMBERS_HH

#include <string>
#include <vector>

#include "document_kind.hh"

class input_file;

/// Lines to report about the numbers of a document that are read as others than are written, each
/// with its place: "FILE:LINE:COLUMN: SIZE: '2k' is read as 2, the rest is ignored". None of JSON,
/// whose reader tells them.
std::vector<std::string> odd_numbers_in(input_file& file, document_kind kind);

/// Whether some number of a document may be such a one. It looks at the bytes alone, which takes
/// little time: where it cannot tell, one may be.
bool may_have_odd_numbers(std::string_view document, const known_elements& elements);

#endif
