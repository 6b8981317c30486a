#ifndef PROPERTY_INDEX_HH
#define PROPERTY_INDEX_HH

#include <cstddef>
#include <vector>

#include "event_util.hh"
#include "text_slots.hh"

namespace zrt4::detail {

/// Finds records of one growing list as `find_chan_entry` does (the first whose property is exactly
/// the text), without walking the list. It catches up with the list at each lookup, so that nothing
/// is indexed before the first. Records must not leave the list meanwhile; a record whose property
/// changes has to be appended again to be found under the new one.
class property_index {
 public:
  chan_descr_2010* find(const std::vector<chan_descr_2010*>& list, const char* property);

 private:
  text_slots slots;         // positions in the list, by property
  std::size_t indexed = 0;  // how much of the list is in
};

}  // namespace zrt4::detail

#endif
