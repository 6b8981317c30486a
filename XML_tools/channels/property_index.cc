#include "property_index.hh"

#include <cstring>

namespace zrt4::detail {

namespace {

constexpr std::size_t fewest_slots = 64;

}  // namespace

chan_descr_2010* property_index::find(const std::vector<chan_descr_2010*>& list,
                                      std::string_view property) {
  catch_up(list);
  missing_hash = hash_of(property);
  const place at = look_up(list, property, missing_hash);
  missing_slot = at.slot;
  return at.record;
}

void property_index::appended_missing(const std::vector<chan_descr_2010*>& list) {
  indexed = list.size();
  slots[missing_slot] = make_slot(indexed, missing_hash);
}

void property_index::catch_up(const std::vector<chan_descr_2010*>& list) {
  if (slots.size() / 4 * 3 < list.size() || slots.empty()) make_room(list.size());
  for (; indexed < list.size(); ++indexed) {
    if (list[indexed] != nullptr) add(list, indexed);
  }
}

// At most three quarters of the slots are taken. A slot does not hold the whole hash: the list is
// indexed again.
void property_index::make_room(std::size_t records) {
  std::size_t size = slots.empty() ? fewest_slots : slots.size();
  while (size / 4 * 3 < records) size *= 2;
  indexed = 0;
  slots = std::vector<slot>();  // before there are more
  slots.resize(size);
}

// Only the first of equal properties takes a slot, so that any number of them costs one step each.
void property_index::add(const std::vector<chan_descr_2010*>& list, std::size_t position) {
  const char* const property = list[position]->prop_name;
  const std::uint32_t hash = hash_of(property);
  const place at = look_up(list, property, hash);
  if (at.record == nullptr) slots[at.slot] = make_slot(position + 1, hash);
}

property_index::place property_index::look_up(const std::vector<chan_descr_2010*>& list,
                                              std::string_view property, std::uint32_t hash) const {
  const std::size_t mask = slots.size() - 1;
  std::size_t i = hash & mask;
  for (; slots[i] != 0; i = (i + 1) & mask) {
    if (((slots[i] ^ hash) & ~mask) != 0) continue;
    chan_descr_2010* const record = list[(slots[i] & mask) - 1];
    if (record->prop_name == property) return {i, record};
  }
  return {i, nullptr};
}

}  // namespace zrt4::detail
