#ifndef RECORD_TYPE_HH
#define RECORD_TYPE_HH

// What Python needs to know of a kind of record beyond what the tool's documents know of it: names
// of classes, keys, and how records come and go. Everything else here works for all of them alike.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "event_util.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "record_types.hh"
#include "zrt4_gige_descr.hh"

namespace zrt4::python {

class record;
struct record_type;

/// The enumeration that has names for a number.
enum class number_names { none, event_types, data_types, feature_types };

/// A field, which Python calls as the member of the record is called.
struct field : record_field {
  const ::record_type* of;
  std::size_t position;
  number_names enumeration;
  bool is_key;  ///< records are looked up by it

  bool is_text() const { return holds == value_kind::text; }
  cell get(const void* record) const { return of->get(record, position); }
  void set(void* record, const cell& value) const { of->set(record, position, value); }
  const void* in(const void* record) const { return of->address(record, position); }
};

/// Records inside a record.
struct group {
  std::string_view name;
  const record_type& (*type)();
  void (*insert)(void* of, std::size_t position, void* inner);
  void (*take_out)(void* of, std::size_t position);
  const record_group* known;

  std::size_t size(const void* of) const { return known->size(of); }
  void* at(const void* of, std::size_t position) const {
    return const_cast<void*>(known->at(of, position));
  }
};

/// Names inside a record.
struct name_list {
  std::string_view name;
  void (*set)(void* of, const std::vector<std::string>& names);
  const record_group* known;

  std::vector<std::string> get(const void* of) const;
};

struct record_type {
  std::string_view name;
  std::vector<field> fields;
  std::vector<group> groups;
  std::vector<name_list> names;
  std::vector<std::size_t> keys;  ///< the fields that a record is looked up by, in this order
  void* (*make)();                ///< with the values of a field that a document does not name
  void (*release)(void* of) noexcept;
  std::shared_ptr<record> (*wrap)(void* of);

  /// The text by which a record is found; of a number, its name.
  std::string_view key_of(const void* record, std::size_t field) const;
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
