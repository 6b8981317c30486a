#ifndef RECORD_TYPES_HH
#define RECORD_TYPES_HH

// What each kind of record is made of, told at run time from the library's tables: its fields, in
// the order in which a person sees them, and the records inside it. Rows, JSON in and out, tables,
// selecting and setting all walk these, so that a field of a table is known to all of them.

#include <cstddef>
#include <cstdint>
#include <limits>
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

/// The value of a field. A text refers to the record.
using cell = std::variant<std::int64_t, threshold, std::string_view>;

/// The number of a type that nothing tells: clients have none then, whereas 0 is a type with a
/// name.
constexpr std::int64_t untold = std::numeric_limits<std::int64_t>::min();
/// As a person sees it: what is not told is 0, with a name that says so.
std::string text_of(std::int64_t number);

/// What the library calls a type without a name, and one that is not told.
constexpr std::string_view nameless = "UNKNOWN";

/// What a channel has as its number of an event type when nothing tells it, as long as the tool
/// holds it. A document in which this number stands is taken for one that tells nothing.
constexpr std::uint32_t untold_event_type = 0x9D2F55E3;

/// The name of a number, as of an event type.
using name_of_number = const char* (*)(int);

enum class value_kind { number, threshold, text };

struct record_field {
  static constexpr std::size_t any_length = std::numeric_limits<std::size_t>::max();

  std::string_view name;  ///< as in JSON
  value_kind holds = value_kind::text;
  std::int64_t least = 0;         ///< of a number
  std::int64_t most = 0;          ///< of a number
  std::size_t room = any_length;  ///< bytes that a text may have
  name_of_number names = nullptr;
  std::string_view member = {};   ///< of the record, as programs in other languages call it
  std::string_view meaning = {};  ///< for a person; empty when nobody writes it into documents
  bool may_be_untold = false;     ///< its numbers, that may be `untold`
};

struct record_type;

/// Records inside a record, as the bits of a channel, or in a list.
struct record_group {
  std::string_view name;      ///< of all, as in JSON
  std::string_view one_name;  ///< of one, for a person
  const record_type* type;
  std::size_t (*size)(const void* holder);
  const void* (*at)(const void* holder, std::size_t position);
  /// Appends an empty record, which the holder owns.
  void* (*add)(void* holder);
};

/// Records are handed to its functions as pointers to the type that it describes.
struct record_type {
  const record_field* fields;  ///< the first is the key
  std::size_t field_count;
  const record_group* groups;
  std::size_t group_count;
  cell (*get)(const void* record, std::size_t field);
  /// The value is of the field's kind and within its limits.
  void (*set)(void* record, std::size_t field, const cell& value);
  /// Where the value is: 32 bits of a number or threshold, characters with a zero at their end, or,
  /// where they may be any number, a `std::string` or a pointer to them. It is at the same place in
  /// each record.
  const void* (*address)(const void* record, std::size_t field);

  /// A record of one value without groups is shown as that value.
  bool is_one_value() const { return field_count == 1 && group_count == 0; }
};

/// The records of a list, whose holder is the list.
const record_group& records_in(const zrt4::event_list& list);
const record_group& records_in(const zrt4::channel_list& list);
const record_group& records_in(const zrt4::env_dictionary& list);
const record_group& records_in(const zrt4::env_dictionary_2010& list);
const record_group& records_in(const zrt4::camera_features& list);

/// Makes the types of a new record untold, where they may be that.
void tell_no_types(const record_type& type, void* record);

/// The name of a number of the field; empty where numbers have none.
std::string_view name_in(const record_field& field, std::int64_t number);

/// The number of a field that is called so, in any case; nothing when none is. `found` is as it was
/// then. `untold` has a name where a number may be that.
bool number_named(const record_field& field, std::string_view name, std::int64_t& found);

/// All names that numbers of the field have; none when they have none.
std::vector<std::string_view> names_in(const record_field& field);

#endif
