#ifndef RECORD_TABLE_HH
#define RECORD_TABLE_HH

// The values of records, copied out of them: what arrays and DataFrames are made of. Records lie
// all over the memory, and change; the columns of a table lie in a row, and stay.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "record_type.hh"

namespace zrt4::python {

/// The values of one field.
class column {
 public:
  explicit column(const field& which)
      : field_of(which), is_string(which.room == record_field::any_length) {}

  const field& of() const { return field_of; }
  bool is_text() const { return field_of.is_text(); }
  /// Where the value is in a record of the type; all records have it at the same place.
  const char* in(const void* record) const {
    return static_cast<const char*>(record) + offset_in(record);
  }
  void add(const void* record);

  /// 32 bits each, of whatever kind of number.
  const std::vector<std::uint32_t>& numbers() const { return bits; }
  std::string_view text(std::size_t i) const {
    const std::size_t begin = i == 0 ? 0 : ends[i - 1];
    return std::string_view(texts).substr(begin, ends[i] - begin);
  }
  /// The most that a text has, but at least 1.
  std::size_t most_bytes() const { return widest_in_bytes; }
  std::size_t most_characters() const { return widest_in_characters; }

 private:
  std::ptrdiff_t offset_in(const void* record) const;
  void add_text(std::string_view text);

  const field& field_of;
  const bool is_string;  // in the record
  mutable std::ptrdiff_t offset = unknown;
  static constexpr std::ptrdiff_t unknown = -1;
  std::string texts;
  std::vector<std::size_t> ends;
  std::vector<std::uint32_t> bits;
  std::size_t widest_in_bytes = 1;
  std::size_t widest_in_characters = 1;
};

class table {
 public:
  /// Throws std::out_of_range, naming the field that there is not.
  table(const record_type& type, const std::vector<std::string>& fields);

  const std::vector<column>& columns() const { return all; }
  std::size_t size() const { return rows; }
  void add(const void* record) {
    for (column& each : all) each.add(record);
    ++rows;
  }
  void add_all(const std::vector<void*>& records);

 private:
  std::vector<column> all;
  std::size_t rows = 0;
};

bool is_ascii(std::string_view text);

/// The characters of a UTF-8 text; U+FFFD for each byte of a piece of one. In the locale of
/// `library_work`.
std::vector<wchar_t> characters_of(std::string_view text);

}  // namespace zrt4::python

#endif
