#ifndef TEXT_SLOTS_HH
#define TEXT_SLOTS_HH

// Numbers found by text, for lists whose every name is looked up.

#include <cstdint>
#include <cstring>
#include <vector>

#include "text_hash.hh"

namespace zrt4::detail {

/// A hash table with open addressing, at most half full: finding a text costs the same whatever the
/// number of texts, and allocates nothing. It holds one number per text and not the text itself:
/// `text_of(number)` tells the zero-terminated text that belongs to a number.
class text_slots {
 public:
  static constexpr std::uint32_t none = UINT32_MAX;

  /// Makes room for `texts` texts in all.
  void reserve(std::size_t texts) {
    std::size_t size = smallest;
    while (size < 2 * texts) size *= 2;
    if (size > slots.size()) resize(size);
  }

  /// The number of `text`, or none.
  template <class TextOf>
  std::uint32_t find(const char* text, TextOf text_of) const {
    if (slots.empty()) return none;
    return slots[place_of(text, hash_of(text), text_of)].number;
  }

  std::uint32_t hash_of(const char* text) const { return static_cast<std::uint32_t>(hashed(text)); }

  /// Has the processor fetch what finding a text of this hash begins with.
  [[gnu::always_inline]] void fetch(std::uint32_t hash) const {
    if (!slots.empty()) __builtin_prefetch(&slots[hash & (slots.size() - 1)]);
  }

  /// The number of `text`. It becomes `number` when there was none.
  template <class TextOf>
  std::uint32_t find_or_add(const char* text, std::uint32_t number, TextOf text_of) {
    return find_or_add(text, hash_of(text), number, text_of);
  }

  /// The same for a text whose hash is known.
  template <class TextOf>
  std::uint32_t find_or_add(const char* text, std::uint32_t hash, std::uint32_t number,
                            TextOf text_of) {
    reserve(used + 1);
    slot& place = slots[place_of(text, hash, text_of)];
    if (place.number == none) {
      place = {hash, number};
      ++used;
    }
    return place.number;
  }

 private:
  struct slot {
    std::uint32_t hash = 0;
    std::uint32_t number = none;
  };
  static constexpr std::size_t smallest = 16;

  template <class TextOf>
  std::size_t place_of(const char* text, std::uint32_t hash, TextOf text_of) const {
    const std::size_t mask = slots.size() - 1;
    std::size_t place = hash & mask;
    while (slots[place].number != none &&
           (slots[place].hash != hash || std::strcmp(text_of(slots[place].number), text) != 0)) {
      place = (place + 1) & mask;
    }
    return place;
  }

  void resize(std::size_t size) {
    std::vector<slot> old(size);
    old.swap(slots);
    const std::size_t mask = size - 1;
    for (const slot& moved : old) {
      if (moved.number == none) continue;
      std::size_t place = moved.hash & mask;
      while (slots[place].number != none) place = (place + 1) & mask;
      slots[place] = moved;
    }
  }

  text_hash hashed;
  std::vector<slot> slots;
  std::size_t used = 0;
};

}  // namespace zrt4::detail

#endif
