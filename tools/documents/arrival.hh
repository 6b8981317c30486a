#ifndef ARRIVAL_HH
#define ARRIVAL_HH

// What of the records that are written does not arrive where they are read.

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "merged_origins.hh"
#include "rows.hh"
#include "writing.hh"

/// Something that a record loses, or a record that is lost.
struct loss {
  std::string kind;                  ///< the same for all that are alike: "bit description"
  std::string property;              ///< of the record
  std::string text;                  ///< for a person
  std::vector<const void*> records;  ///< the record that was sent, then what is lost inside it
  field_set field;                   ///< of the last of them, or it itself
  std::size_t before;                ///< records of the same key that were sent before the first
};

/// Where what is lost stands: the value in the document that it was taken from, else the record.
/// Nothing of a record that was not sent.
std::optional<record_origin> origin_of(const loss& lost, merged_origins* origins);

/// Calls `use` with everything in which the rows that arrive differ from those that were sent, with
/// the reason where that is known. Of several records of one key, the first ones arrive.
void for_each_loss(const row_list& sent, const row_list& arriving, std::string_view record_name,
                   document_form form, const std::function<void(const loss&)>& use);

#endif
