#ifndef ROWS_HH
#define ROWS_HH

// Every record as a row of named values: what JSON shows and what documents are compared by. A
// field of a record comes from the library's table of its fields; the first of each is the key.

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "zrt4xml.hh"

/// A threshold as the records hold it. Compared by its bits, so that even what is no number has its
/// place in an order.
struct threshold {
  float value;
};
bool operator==(threshold a, threshold b);
bool operator<(threshold a, threshold b);
/// The shortest decimal that reads back as the same value.
std::string text_of(threshold value);

using cell = std::variant<std::int64_t, threshold, std::string_view>;

struct row;

/// Rows inside a row, as the bits of a channel.
struct row_group {
  std::string_view name;      ///< of all, as in JSON
  std::string_view one_name;  ///< of one, for a person
  std::vector<row> rows;

  friend bool operator==(const row_group& a, const row_group& b);
  friend bool operator<(const row_group& a, const row_group& b);
};

/// The values refer to the record, which must live as long.
struct row {
  struct field {
    std::string_view name;
    cell value;
    std::string_view number_name;  ///< empty when the number has none

    friend bool operator==(const field& a, const field& b) { return a.value == b.value; }
    friend bool operator<(const field& a, const field& b) { return a.value < b.value; }
  };
  std::vector<field> fields;
  std::vector<row_group> groups;

  const field& key() const { return fields.front(); }
};
bool operator==(const row& a, const row& b);
bool operator<(const row& a, const row& b);

std::vector<row> rows_of(const zrt4::event_list& list);
std::vector<row> rows_of(const zrt4::channel_list& list);
std::vector<row> rows_of(const zrt4::env_dictionary_2010& list);
std::vector<row> rows_of(const zrt4::camera_features& list);

/// Makes `rows` refer to copies of their texts, kept in `texts`, instead of the records.
void detach(std::vector<row>& rows, std::deque<std::string>& texts);

#endif
