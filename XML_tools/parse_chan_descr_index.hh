#ifndef PARSE_CHAN_DESCR_INDEX_HH
#define PARSE_CHAN_DESCR_INDEX_HH

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "event_util.hh"

namespace zrt4::detail {

/// Finds records of one growing list as `find_chan_entry` does (the first whose property is exactly
/// the text), without walking the list. It catches up with the list at each lookup, so that nothing
/// is indexed before the first. Records must not leave the list meanwhile; a record whose property
/// changes has to be appended again to be found under the new one.
class property_index {
 public:
  chan_descr_2010* find(const std::vector<chan_descr_2010*>& list, std::string_view property);

  /// Saves the next lookup from indexing the list's last record, which was appended, with exactly
  /// that property, after a lookup that did not find it.
  void appended_missing(const std::vector<chan_descr_2010*>& list);

 private:
  struct slot {
    std::uint32_t hash;   // of the property
    std::uint32_t order;  // position in the list + 1, 0 for a free slot
  };

  void catch_up(const std::vector<chan_descr_2010*>& list);
  void make_room(std::size_t records);
  void place(const std::vector<chan_descr_2010*>& list, std::size_t position);

  std::vector<slot> slots;  // open addressing, a power of two
  std::size_t indexed = 0;  // how much of the list is in
  std::uint32_t missing_hash = 0;
  std::size_t missing_slot = 0;
};

}  // namespace zrt4::detail

#endif
