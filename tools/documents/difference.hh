#ifndef DIFFERENCE_HH
#define DIFFERENCE_HH

// What two lists of records have not in common, whatever their order.

#include <string>
#include <string_view>
#include <vector>

#include "rows.hh"

struct difference {
  enum class kind { added, removed, changed };
  struct field {
    const row::field* before;
    const row::field* after;
  };

  kind what;
  std::string_view one_name;       ///< of what differs, for a person: "bit"
  const row* record;               ///< as it was, or as it was added
  std::vector<field> fields;       ///< that changed
  std::vector<difference> inside;  ///< of rows inside the record
};

/// Records are matched by their keys; among several of one key, equal ones first. Sorts the lists,
/// to which the result refers.
std::vector<difference> differences(std::vector<row>& before, std::vector<row>& after,
                                    std::string_view one_name);

#endif
