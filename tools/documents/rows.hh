#ifndef ROWS_HH
#define ROWS_HH

// Every record as a row of named values: what JSON shows and what documents are compared by. The
// first field of each is the key.

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "record_types.hh"
#include "zrt4xml.hh"

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

/// A record of that type.
row row_of(const record_type& type, const void* record);

std::vector<row> rows_of(const zrt4::event_list& list);
std::vector<row> rows_of(const zrt4::channel_list& list);
std::vector<row> rows_of(const zrt4::env_dictionary_2010& list);
std::vector<row> rows_of(const zrt4::camera_features& list);

/// Makes `rows` refer to copies of their texts, kept in `texts`, instead of the records.
void detach(std::vector<row>& rows, std::deque<std::string>& texts);

#endif
