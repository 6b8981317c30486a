#ifndef KNOWN_VALUES_HH
#define KNOWN_VALUES_HH

#include <type_traits>

#include "channel_fields.hh"

namespace zrt4::detail {

/// Whether a value of a field tells something: an empty text, the number 0 and a database key that
/// is not above 0 stand for none.
template <class Value>
bool is_known(const Value& value, field_role role) {
  if constexpr (std::is_array_v<Value>) {
    return *value != '\0';
  } else {
    return role == field_role::database_key ? value > 0 : value != 0;
  }
}

/// Gives a field the value of another record's.
template <class Value>
void copy_value(Value& to, const Value& from) {
  if constexpr (std::is_array_v<Value>) {
    set_text(to, from);
  } else {
    to = from;
  }
}

}  // namespace zrt4::detail

#endif
