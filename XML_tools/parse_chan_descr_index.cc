#include "parse_chan_descr_index.hh"

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
  std::size_t i = hash & mask;
  for (; slots[i].order != 0; i = (i + 1) & mask) {
    if (slots[i].hash != hash) continue;
    chan_descr_2010* const record = list[slots[i].order - 1];
    if (record->prop_name == property) return record;
  }
  missing_hash = hash;
  missing_slot = i;
  return nullptr;
}

void property_index::appended_missing(const std::vector<chan_descr_2010*>& list) {
  indexed = list.size();
  slots[missing_slot] = {missing_hash, static_cast<std::uint32_t>(indexed)};
}

void property_index::catch_up(const std::vector<chan_descr_2010*>& list) {
  if (slots.size() / 4 * 3 < list.size() || slots.empty()) make_room(list.size());
  for (; indexed < list.size(); ++indexed) {
    if (list[indexed] != nullptr) place(list, indexed);
  }
}

// At most three quarters of the slots are taken.
void property_index::make_room(std::size_t records) {
  std::size_t size = slots.empty() ? fewest_slots : slots.size();
  while (size / 4 * 3 < records) size *= 2;
  std::vector<slot> larger(size);
  const std::size_t mask = size - 1;
  for (const slot& taken : slots) {
    if (taken.order == 0) continue;
    std::size_t i = taken.hash & mask;
    while (larger[i].order != 0) i = (i + 1) & mask;
    larger[i] = taken;
  }
  slots.swap(larger);
}

// Only the first of equal properties takes a slot, so that any number of them costs one step each.
void property_index::place(const std::vector<chan_descr_2010*>& list, std::size_t position) {
  const char* const property = list[position]->prop_name;
  const std::uint32_t hash = hash_of(property);
  const std::size_t mask = slots.size() - 1;
  std::size_t i = hash & mask;
  for (; slots[i].order != 0; i = (i + 1) & mask) {
    if (slots[i].hash == hash && std::strcmp(list[slots[i].order - 1]->prop_name, property) == 0)
      return;
  }
  slots[i] = {hash, static_cast<std::uint32_t>(position + 1)};
}

}  // namespace zrt4::detail
