#ifndef PROPERTY_INDEX_HH
#define PROPERTY_INDEX_HH

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "event_util.hh"
#include "text_hash.hh"

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
  // Position in the list + 1, 0 for a free slot. The bits that no position needs, those above the
  // number of slots, are those of the property's hash.
  using slot = std::uint32_t;

  struct place {
    std::size_t slot;
    chan_descr_2010* record;  // null in a free slot
  };

  void catch_up(const std::vector<chan_descr_2010*>& list);
  void make_room(std::size_t records);
  void add(const std::vector<chan_descr_2010*>& list, std::size_t position);
  place look_up(const std::vector<chan_descr_2010*>& list, std::string_view property,
                std::uint32_t hash) const;

  std::uint32_t hash_of(std::string_view property) const {
    return static_cast<std::uint32_t>(hashed(property));
  }
  slot make_slot(std::size_t order, std::uint32_t hash_of_property) const {
    return static_cast<slot>((hash_of_property & ~(slots.size() - 1)) | order);
  }

  const text_hash hashed;
  std::vector<slot> slots;  // open addressing, a power of two
  std::size_t indexed = 0;  // how much of the list is in
  std::uint32_t missing_hash = 0;
  std::size_t missing_slot = 0;
};

}  // namespace zrt4::detail

#endif
