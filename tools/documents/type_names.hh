#ifndef TYPE_NAMES_HH
#define TYPE_NAMES_HH

// Event types and data types as the event-utility library names them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "record_types.hh"

/// A type that has a name.
struct named_type {
  int number;
  std::string_view name;
  std::optional<std::uint32_t> mask;  ///< where one bit tells it
};

/// By number; the last is the number behind all event types, which only event lists have.
std::vector<named_type> event_types();
std::vector<named_type> data_types();

/// The name of a data type's mask, of the older or of the newer family; several are joined by ":".
std::string names_of_data_types(std::uint32_t mask);

/// The number of an event type that channels can have, given by number or by name in any case;
/// nothing when it is neither.
std::optional<int> event_type_of(const std::string& text);

#endif
