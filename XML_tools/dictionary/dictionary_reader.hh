#ifndef DICTIONARY_READER_HH
#define DICTIONARY_READER_HH

#include <vector>

namespace zrt4::detail {

/// Reads a dictionary of records of `Width` (see record_widths.hh) from a text or a file, as
/// `Variant` says, and appends its entries to `list`.
template <class Width, class Variant>
int read_dictionary(char* source, std::vector<typename Width::entry*>* list);

}  // namespace zrt4::detail

#endif
