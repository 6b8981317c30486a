#ifndef UNTOLD_HH
#define UNTOLD_HH

#include <cstdint>
#include <type_traits>

#include "channel_fields.hh"
#include "record_types.hh"

/// Whether a value of such a field is the event type of a channel whose document tells none.
template <class Value>
bool is_untold(const Value& value, zrt4::detail::field_role role) {
  if constexpr (std::is_same_v<Value, std::uint32_t>) {
    return role == zrt4::detail::field_role::event_type && value == untold_event_type;
  }
  return false;
}

#endif
