#ifndef KNOWN_ELEMENTS_HH
#define KNOWN_ELEMENTS_HH

#include <array>
#include <cstddef>
#include <string_view>

/// What the text of an element is for.
enum class text_role { none, number, name, property, event_type, data_type };

/// An element that a reader of the library knows, or that a writer of it makes.
struct known_element {
  std::string_view name;
  text_role role = text_role::none;
  std::size_t limit = 0;            ///< bytes that a record keeps of its text; 0: all
  std::string_view parent = {};     ///< only directly in this one
  const char* attribute = nullptr;  ///< without which it is an error
  /// For one that starts a record: elements without whose texts the reader leaves the record out.
  std::array<std::string_view, 2> needs = {};
};

/// All that a kind of document has; none when its other elements only group.
struct known_elements {
  constexpr known_elements() = default;
  constexpr known_elements(const known_element* table, std::size_t size)
      : first(table), count(size) {}

  bool empty() const { return count == 0; }
  const known_element* begin() const { return first; }
  const known_element* end() const { return first + count; }

 private:
  const known_element* first = nullptr;
  std::size_t count = 0;
};

extern const known_elements known_in_events;
extern const known_elements known_in_channels;
extern const known_elements known_in_variables;
extern const known_elements known_in_dictionary;
extern const known_elements known_in_camera;

#endif
