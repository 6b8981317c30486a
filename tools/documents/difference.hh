#ifndef DIFFERENCE_HH
#define DIFFERENCE_HH

// What two lists of records have not in common, whatever their order.

#include <cstddef>
#include <functional>
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
  std::size_t before = 0;          ///< of a record that was there: those of its key before it
};

/// Which of several records of one key belong together, beside those that are equal: the others in
/// the order of what they hold, which is the same in whatever order they stand, or in their order.
enum class matching { by_content, in_order };

/// Calls `use` with each difference, in the order of the keys, by which records are matched. What a
/// difference refers to lives as long as the call.
void for_each_difference(const row_list& before, const row_list& after, std::string_view one_name,
                         const std::function<void(const difference&)>& use,
                         matching among_several = matching::by_content);

#endif
