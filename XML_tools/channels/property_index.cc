#include "property_index.hh"

#include <cstdint>

namespace zrt4::detail {

chan_descr_2010* property_index::find(const std::vector<chan_descr_2010*>& list,
                                      const char* property) {
  const auto property_of = [&list](std::uint32_t position) { return list[position]->prop_name; };
  if (indexed == 0) slots.reserve(list.size());
  for (; indexed < list.size(); ++indexed) {
    if (list[indexed] == nullptr) continue;
    slots.find_or_add(list[indexed]->prop_name, static_cast<std::uint32_t>(indexed), property_of);
  }
  const std::uint32_t position = slots.find(property, property_of);
  return position != text_slots::none ? list[position] : nullptr;
}

}  // namespace zrt4::detail
