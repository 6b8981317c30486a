#ifndef KNOWN_ELEMENTS_HH
#define KNOWN_ELEMENTS_HH

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "rules.hh"

/// What elements begin, and what they are part of: a reader gives each to the one of this kind that
/// began last. Those behind a kind end with it.
enum class part : unsigned char {
  none,
  document,
  record,  ///< an event, a channel, a dictionary's entry
  block,   ///< a server block
  list,    ///< its channels
  bit,
  dimension,
  statistic,
};
constexpr std::size_t number_of_parts = 8;

/// What the text of an element is for.
enum class text_role {
  none,     ///< there should be none
  ignored,  ///< written, and skipped when read
  text,
  name,  ///< compared with others, so that each character counts
  number,
};

/// How the reader of a number reads it.
enum class number_form : unsigned char {
  decimal,                 ///< 32 bits with a sign
  type,                    ///< the same of an event's or data's type: also without a sign
  listed_type,             ///< the type of an event in a list: whole
  decimal_or_hexadecimal,  ///< 32 bits without a sign, hexadecimal behind 0x
  fraction,
};

/// What the number of an element may be, without being odd.
struct number_range {
  std::int64_t least = 0;
  std::int64_t most = std::numeric_limits<std::int64_t>::max();
};

/// What names the numbers of a type.
enum class number_names : unsigned char { none, event_types, data_types };

/// What two records of one part of a document should not share.
struct key_of {
  std::string_view noun = {};  ///< what a person calls it; empty: no key
  rule if_shared = rule::duplicate_property;
  part within = part::document;
  std::string_view effect = {};  ///< what its reader makes of them
};

/// An element that a reader of the library knows, or that a writer of it makes.
struct known_element {
  std::string_view name;
  text_role role = text_role::none;
  part of = part::document;
  part begins = part::none;
  bool is_required = false;  ///< the reader leaves the record out without its text
  bool is_expected = false;  ///< a record without it is odd
  rule if_missing = rule::channel_without_name;
  bool describes_record = false;    ///< the record, as long as there is not what it is part of
  bool is_single = true;            ///< once in what it is part of
  bool may_follow = false;          ///< as well behind what it is part of as within
  bool merges = false;              ///< a record with the key of one before goes into that
  std::string_view elsewhere = {};  ///< its name in the other dialect
  std::string_view only_in = {};    ///< the one element that begins such a record
  const char* attribute = nullptr;  ///< without which it is an error
  std::size_t limit = 0;            ///< bytes that a record keeps of its text; 0: all
  number_form form = number_form::decimal;
  number_range range = {};
  number_names names = number_names::none;
  key_of key = {};
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
extern const known_elements known_in_dictionary;       ///< as the older records hold it
extern const known_elements known_in_wide_dictionary;  ///< as those of the year 2010 do
extern const known_elements known_in_camera;

#endif
