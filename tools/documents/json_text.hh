#ifndef JSON_TEXT_HH
#define JSON_TEXT_HH

// The text of a JSON file, on its way through the parser.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

#include "file_place.hh"

class input_file;

/// Where the parser is in a text, so that what is wrong can be told with its place.
struct json_place {
  const char* begin;
  const char* at;
  const char* end;

  /// Whether there is more than blanks.
  bool skip_blanks();
  /// Of what was read last.
  file_place in_file() const;
  /// Whether what was read last begins a number as some programs write one that is none.
  bool begins_no_number() const;
};

/// Walks with the place itself, because a parser keeps its iterators to itself.
class json_iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  json_iterator() = default;  ///< the end
  explicit json_iterator(json_place& walked) : place(&walked) {}
  reference operator*() const { return *place->at; }
  json_iterator& operator++() {
    ++place->at;
    return *this;
  }
  friend bool operator==(json_iterator a, json_iterator b) { return a.is_end() == b.is_end(); }
  friend bool operator!=(json_iterator a, json_iterator b) { return !(a == b); }

 private:
  bool is_end() const { return place == nullptr || place->at == place->end; }

  json_place* place = nullptr;
};

/// The whole of a file.
class json_text {
 public:
  explicit json_text(const input_file& file);
  explicit json_text(std::string text);

  /// Behind the byte order mark, where there is one.
  json_place start() const;

 private:
  const std::string content;
};

/// Whether a file is JSON rather than XML: its first byte that is no blank opens an object or a
/// list.
bool is_json(input_file& file);

/// Texts of JSON in the code page of the records.
class local_texts {
 public:
  local_texts();

  /// `utf8`, which a parser has found to be that. False when a character is not in the code page:
  /// then `lacked` is it. `local` holds until the next call, or as long as `utf8`.
  bool convert(std::string_view utf8, std::string_view& local, std::uint32_t& lacked);

 private:
  const bool is_utf8;
  std::string converted;
};

#endif
