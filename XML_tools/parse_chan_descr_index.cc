#include "parse_chan_descr_index.hh"

#include <algorithm>
#include <cstring>
#include <functional>

namespace zrt4::detail {

namespace {

constexpr std::size_t fewest_slots = 64;

std::uint32_t hash_of(std::string_view property) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>{}(property));
}

}  // namespace

chan_descr_2010* property_index::find(const std::vector<chan_descr_2010*>& list,
                                      std::string_view property) {
  catch_up(list);
  const std::uint32_t hash = hash_of(property);
  const std::size_t mask = slots.size() - 1;
  for (std::size_t slot = hash & mask; slots[slot] != 0; slot = (slot + 1) & mask) {
    const std::uint32_t position = slots[slot] - 1;
    if (hashes[position] == hash && list[position]->prop_name == property) return list[position];
  }
  return nullptr;
}

void property_index::catch_up(const std::vector<chan_descr_2010*>& list) {
  make_room(list);
  while (hashes.size() < list.size()) {
    const chan_descr_2010* record = list[hashes.size()];
    hashes.push_back(record != nullptr ? hash_of(record->prop_name) : 0);
    place(list, hashes.size() - 1);
  }
}

// At most three quarters of the slots are taken.
void property_index::make_room(const std::vector<chan_descr_2010*>& list) {
  std::size_t size = std::max(slots.size(), fewest_slots);
  while (size / 4 * 3 < list.size()) size *= 2;
  if (size == slots.size()) return;
  hashes.reserve(size / 4 * 3);
  slots = {};
  slots.resize(size);
  for (std::size_t position = 0; position < hashes.size(); ++position) place(list, position);
}

// Only the first of equal properties is placed: any number of them costs one step each.
void property_index::place(const std::vector<chan_descr_2010*>& list, std::size_t position) {
  const chan_descr_2010* record = list[position];
  if (record == nullptr) return;
  const std::size_t mask = slots.size() - 1;
  std::size_t slot = hashes[position] & mask;
  for (; slots[slot] != 0; slot = (slot + 1) & mask) {
    const std::uint32_t earlier = slots[slot] - 1;
    if (hashes[earlier] == hashes[position] &&
        std::strcmp(list[earlier]->prop_name, record->prop_name) == 0)
      return;
  }
  slots[slot] = static_cast<std::uint32_t>(position + 1);
}

}  // namespace zrt4::detail
