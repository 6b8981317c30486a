#ifndef PLACES_HH
#define PLACES_HH

// Where records stand in their document.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "document_kind.hh"

/// The element of a record.
struct record_place {
  std::uint64_t line = 0;    ///< 0: not known
  std::uint64_t column = 0;  ///< just behind the start tag
  std::size_t begin = 0;     ///< of the element in the text that was handed over
  std::size_t end = 0;       ///< behind it; 0: not known, or inside another record
  std::string key;           ///< of the record, as it stands there
};

/// All elements that start a record, in their order, also those that the reader leaves out. `text`
/// is the document as `utf8_text` returns it; without it only lines and columns are found.
std::vector<record_place> record_places(input_file& file, document_kind kind,
                                        std::string_view text = {});

/// The place of each of the document's records, which stand in its order.
std::vector<record_place> places_of(const row_list& rows, std::vector<record_place> all);

/// What stands in the file, in UTF-8 with lines as the XML library counts them; empty when its
/// encoding is not known.
std::string utf8_text(const input_file& file);

#endif
