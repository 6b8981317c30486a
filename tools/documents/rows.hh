#ifndef ROWS_HH
#define ROWS_HH

// Every record as a row of named values: what JSON shows and what documents are compared by. The
// first field of each is the key.

#include <cstddef>
#include <iterator>
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
  const void* record = nullptr;  ///< of which the row was made
  std::size_t at = 0;            ///< its position in its list

  const field& key() const { return fields.front(); }
};
bool operator==(const row& a, const row& b);
bool operator<(const row& a, const row& b);

/// A record of that type.
row row_of(const record_type& type, const void* record);

/// A value as a person reads it: "38 BPM_2010", or a text in quotes.
std::string described(const row::field& field);
/// The key of a record in a message: 'A/B/C', or 3.
std::string shown_key(const row& record);

/// The rows of a list, each made when it is asked for: all of them would take as much memory as the
/// records. The list must live as long.
class row_list {
 public:
  /// Walks the rows; what it yields is a row of its own.
  class iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = row;
    using difference_type = std::ptrdiff_t;
    using pointer = const row*;
    using reference = row;

    row operator*() const { return (*list)[at]; }
    iterator& operator++() {
      ++at;
      return *this;
    }
    friend bool operator==(iterator a, iterator b) { return a.at == b.at; }
    friend bool operator!=(iterator a, iterator b) { return a.at != b.at; }

   private:
    friend row_list;
    iterator(const row_list& of, std::size_t place) : list(&of), at(place) {}
    const row_list* list;
    std::size_t at;
  };

  row_list() = default;
  row_list(const void* records, std::size_t size, row (*row_at)(const void*, std::size_t))
      : list(records), count(size), make(row_at) {}
  /// The same rows, each of them changed by `adapt` when it is made.
  row_list(const row_list& rows, void (*adapt)(row&)) : row_list(rows) { change = adapt; }

  std::size_t size() const { return count; }
  bool empty() const { return count == 0; }
  row operator[](std::size_t at) const {
    row result = make(list, at);
    result.at = at;
    if (change != nullptr) change(result);
    return result;
  }
  iterator begin() const { return {*this, 0}; }
  iterator end() const { return {*this, count}; }

 private:
  const void* list = nullptr;
  std::size_t count = 0;
  row (*make)(const void*, std::size_t) = nullptr;
  void (*change)(row&) = nullptr;
};

row_list rows_of(const zrt4::event_list& list);
row_list rows_of(const zrt4::channel_list& list);
row_list rows_of(const zrt4::env_dictionary& list);
row_list rows_of(const zrt4::env_dictionary_2010& list);
row_list rows_of(const zrt4::camera_features& list);

#endif
