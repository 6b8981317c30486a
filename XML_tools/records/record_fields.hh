#ifndef RECORD_FIELDS_HH
#define RECORD_FIELDS_HH

// How a table tells the fields of a record: each field once, with its name in every list of fields
// that has it. Readers, writers and whoever shows or compares records walk such a table.

#include <array>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace zrt4::detail {

/// A field's name in one list of fields, and its place there; without a name it is not in it.
struct listed {
  std::string_view name = {};
  int place = 0;

  constexpr explicit operator bool() const { return !name.empty(); }
};

/// Copies as much of `text` as `field` holds, and a zero behind it. What follows in the field is
/// zero, too, when it was before.
template <std::size_t Size>
void set_text(char (&field)[Size], const char* text) {
  const std::size_t length = strnlen(text, Size - 1);
  std::memmove(field, text, length);
  if (field[length] != '\0') std::memset(field + length, 0, Size - length);
}

/// Calls `use` with what `member`, a variant of members or of functions of a record that return
/// one, is in `record`.
template <class Members, class Record, class Use>
decltype(auto) with_value(const Members& member, Record& record, Use&& use) {
  return std::visit(
      [&](auto held) -> decltype(auto) {
        if constexpr (std::is_member_object_pointer_v<decltype(held)>) {
          return use(record.*held);
        } else {
          auto& value = held(const_cast<std::remove_const_t<Record>&>(record));
          if constexpr (std::is_const_v<Record>) {
            return use(std::as_const(value));
          } else {
            return use(value);
          }
        }
      },
      member);
}

/// The fields that the list `List` has, in its order.
template <auto List, class Field, std::size_t Count>
constexpr auto in_order(const Field (&fields)[Count]) {
  struct {
    std::array<const Field*, Count> all{};
    std::size_t count = 0;

    constexpr const Field* const* begin() const { return all.data(); }
    constexpr const Field* const* end() const { return all.data() + count; }
  } result;
  for (const Field& field : fields) {
    if (!(field.*List)) continue;
    std::size_t at = result.count++;
    for (; at != 0 && (result.all[at - 1]->*List).place > (field.*List).place; --at) {
      result.all[at] = result.all[at - 1];
    }
    result.all[at] = &field;
  }
  return result;
}

}  // namespace zrt4::detail

#endif
