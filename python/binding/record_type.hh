#ifndef RECORD_TYPE_HH
#define RECORD_TYPE_HH

// What Python needs to know of a kind of record: its fields, from the library's tables, and the
// records inside it. Everything else here works for all of them alike.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "event_util.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "zrt4_gige_descr.hh"

namespace zrt4::python {

class record;
struct record_type;

/// A text of fixed length in a record.
struct text_place {
  char* bytes;
  std::size_t size;  ///< with the zero at its end
};

/// Where a field's value is in a record.
using place =
    std::variant<text_place, std::string*, std::int32_t*, std::uint32_t*, float*, ZRT4_EVTYPE*>;

/// The enumeration that has names for a number.
enum class number_names { none, event_types, data_types, feature_types };

struct field {
  std::string_view name;  ///< in Python
  std::string_view row;   ///< in the tool's JSON
  number_names names;
  std::size_t longest;       ///< bytes that a text may have; 0: any number, or no text
  std::int64_t least, most;  ///< of a whole number
  place (*find)(const void* row_of_table, void* of);
  const void* row_of_table;
  bool is_key = false;            ///< records are looked up by it
  std::string_view meaning = {};  ///< for a person

  place in(void* of) const { return find(row_of_table, of); }
  bool is_text() const { return least > most; }
};

/// Records inside a record.
struct group {
  std::string_view name;
  const record_type& (*type)();
  std::size_t (*size)(const void* of);
  void* (*at)(const void* of, std::size_t position);
  void (*insert)(void* of, std::size_t position, void* inner);
  void (*take_out)(void* of, std::size_t position);
};

/// Names inside a record.
struct name_list {
  std::string_view name;
  std::vector<std::string> (*get)(const void* of);
  void (*set)(void* of, const std::vector<std::string>& names);
};

struct record_type {
  std::string_view name;
  std::vector<field> fields;
  std::vector<group> groups;
  std::vector<name_list> names;
  /// What a record of a list is looked up by, in this order.
  std::vector<std::string_view (*)(const void* of)> keys;
  void* (*make)();  ///< with the values of a field that a document does not name
  void (*release)(void* of) noexcept;
  std::shared_ptr<record> (*wrap)(void* of);

  const field* find_field(std::string_view wanted) const;
  const group* find_group(std::string_view wanted) const;
};

/// The type of a record of the library.
template <class Raw>
const record_type& type_of();
template <>
const record_type& type_of<bit_descr>();
template <>
const record_type& type_of<stat_descr>();
template <>
const record_type& type_of<dim_descr>();
template <>
const record_type& type_of<chan_descr_2010>();
template <>
const record_type& type_of<zrt4_env_index_dictionary_entry_2010>();
template <>
const record_type& type_of<zrt4_ev_sb_list>();
template <>
const record_type& type_of<zrt4_ev_entry>();
template <>
const record_type& type_of<ZRT4GigEFeature>();

/// All types, those inside others behind them.
std::vector<const record_type*> all_record_types();

}  // namespace zrt4::python

#endif
