#ifndef TYPE_MASKS_HH
#define TYPE_MASKS_HH

// Event types and data types as numbers and as masks.

#include <cstdint>

#include "number_text.hh"

namespace zrt4::detail {

/// 1 << n, the count taken modulo 32.
constexpr std::uint32_t bit_mask(std::int32_t n) {
  return 1U << (static_cast<std::uint32_t>(n) & 31U);
}

constexpr bool has_bit(std::uint32_t mask, std::int32_t n) {
  return (mask & bit_mask(n)) != 0;
}

/// The bit of a data type's mask that stands for the family above 31.
constexpr std::uint32_t upper_data_types = 0x80000000U;

/// The event type that `text` tells: its number, or with `shift` its mask.
inline std::uint32_t event_type_of(const char* text, bool shift) {
  const std::int32_t number = read_decimal(text);
  return shift ? bit_mask(number) : static_cast<std::uint32_t>(number);
}

/// The mask of a data type. Both families share the lower bits, so that 63, whose own bit is the
/// one that marks its family, leaves nothing.
constexpr std::uint32_t data_type_mask(std::int32_t number) {
  return number <= 31 ? bit_mask(number) : upper_data_types + bit_mask(number - 32);
}

/// The data type that `text` tells: its number, or with `shift` its mask.
inline std::uint32_t data_type_of(const char* text, bool shift) {
  const std::int32_t number = read_decimal(text);
  return shift ? data_type_mask(number) : static_cast<std::uint32_t>(number);
}

}  // namespace zrt4::detail

#endif
