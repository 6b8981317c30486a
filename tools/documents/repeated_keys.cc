#include "repeated_keys.hh"

#include <algorithm>
#include <functional>
#include <utility>

#include "shown_text.hh"

namespace {

constexpr std::size_t first_slots = 16;
std::uint32_t narrowed(std::uint64_t number) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(number, UINT32_MAX));
}

}  // namespace

// The one under a secret key lets some short texts collide under each, which tables that compare
// texts do not mind; the other lets nobody collide but who tries to. Together they do not.
std::uint64_t repeated_keys::hash_of(std::string_view text) const {
  constexpr std::uint64_t odd = 0x9e3779b97f4a7c15U;
  return keyed_hash(text) ^ odd * std::hash<std::string_view>()(text);
}

bool repeated_keys::add(std::string_view name, file_place place) {
  return add_hash(hash_of(name), place, [name] { return quoted(name); });
}

bool repeated_keys::add(std::int64_t number, file_place place) {
  const std::string_view bytes(reinterpret_cast<const char*>(&number), sizeof number);
  return add_hash(hash_of(bytes), place, [number] { return std::to_string(number); });
}

template <class Shown>
bool repeated_keys::add_hash(std::uint64_t hash, file_place place, Shown shown) {
  if (2 * used >= slots.size()) grow();
  slot& known = slot_of(hash);
  if (known.part != part) {
    known = {hash, narrowed(place.line), narrowed(place.column), part, 1};
    ++used;
    return false;
  }
  const file_place first{known.line, known.column};
  if (known.times == 1) {
    known.times = 2;
    if (repeats.size() < found.most()) {
      known_repeats[hash] = repeats.size();
      repeats.push_back({shown(), {first}, 1});
    } else {
      found.leave_out(about.if_shared, first);
    }
  }
  const auto known_repeat = known_repeats.find(hash);
  if (known_repeat == known_repeats.end()) return true;
  repeated& again = repeats[known_repeat->second];
  ++again.times;
  if (again.places.size() < finding_list::most_places) again.places.push_back(place);
  return true;
}

repeated_keys::slot& repeated_keys::slot_of(std::uint64_t hash) {
  std::size_t at = static_cast<std::uint32_t>(hash) & (slots.size() - 1);
  while (slots[at].part == part && slots[at].hash != hash) at = (at + 1) & (slots.size() - 1);
  return slots[at];
}

void repeated_keys::grow() {
  std::vector<slot> old =
      std::exchange(slots, std::vector<slot>(std::max(first_slots, 2 * slots.size())));
  for (const slot& each : old) {
    if (each.part == part) slot_of(each.hash) = each;
  }
}

void repeated_keys::end_part() {
  for (const repeated& again : repeats) {
    const auto text = [&] {
      return std::string(about.noun) + " " + again.shown + " stands here " +
             times_and_lines(again.places, again.times) + std::string(about.effect);
    };
    found.add(about.if_shared, again.places.front(), text, again.places);
  }
  repeats.clear();
  known_repeats.clear();
  used = 0;
  if (++part == 0) {  // so many parts that a slot of the first would seem to be one of this
    slots.clear();
    part = 1;
  }
}
