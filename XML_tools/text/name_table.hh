#ifndef NAME_TABLE_HH
#define NAME_TABLE_HH

// A constant table from element names to what they mean, found with one comparison.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zrt4::detail {

template <class Meaning>
struct named {
  std::string_view name;
  Meaning meaning;
};

/// A perfect hash of up to `Count` names, made by the compiler. An empty name is none.
template <class Meaning, std::size_t Count>
class name_table {
 public:
  constexpr explicit name_table(const named<Meaning> (&names)[Count]) {
    for (int tries = 0; !is_perfect(names); ++tries) {
      if (tries == 1 << 12) throw "two names agree in length and in first, middle and last letter";
      ++multiplier;
    }
    for (const auto& entry : names) {
      if (!entry.name.empty()) slots[slot_of(entry.name)] = entry;
    }
  }

  /// The meaning of `name`, or null when the table does not have it.
  constexpr const Meaning* find(std::string_view name) const {
    if (name.empty()) return nullptr;
    const named<Meaning>& candidate = slots[slot_of(name)];
    return candidate.name == name ? &candidate.meaning : nullptr;
  }

 private:
  static constexpr std::size_t slot_bits = 6;
  static_assert(2 * Count <= 1U << slot_bits);

  constexpr std::size_t slot_of(std::string_view name) const {
    std::uint32_t key = static_cast<unsigned char>(name.front());
    key = key << 8U | static_cast<unsigned char>(name[name.size() / 2]);
    key = key << 8U | static_cast<unsigned char>(name.back());
    key = key << 6U ^ static_cast<std::uint32_t>(name.size());
    return key * multiplier >> (32U - slot_bits);
  }

  constexpr bool is_perfect(const named<Meaning> (&names)[Count]) const {
    std::uint64_t taken = 0;
    for (const auto& entry : names) {
      if (entry.name.empty()) continue;
      const std::uint64_t slot = std::uint64_t{1} << slot_of(entry.name);
      if ((taken & slot) != 0) return false;
      taken |= slot;
    }
    return true;
  }

  std::array<named<Meaning>, std::size_t{1} << slot_bits> slots{};
  std::uint32_t multiplier = 0x9e3779b9U;
};

}  // namespace zrt4::detail

#endif
