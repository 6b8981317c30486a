#ifndef ARRIVAL_HH
#define ARRIVAL_HH

// What of the records that are written does not arrive where they are read.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "rows.hh"
#include "writing.hh"

/// Something that a record loses, or a record that is lost.
struct loss {
  std::string kind;      ///< the same for all that are alike: "bit description"
  std::string property;  ///< of the record
  bool is_record;        ///< the whole record does not arrive
  std::string text;      ///< for a person
};

/// Everything in which the rows that arrive differ from those that were sent, with the reason where
/// that is known.
std::vector<loss> losses_between(const row_list& sent, const row_list& arriving,
                                 std::string_view record_name, document_form form);

#endif
