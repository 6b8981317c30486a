#include "record_type.hh"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

#include "channel_fields.hh"
#include "dictionary_fields.hh"
#include "event_fields.hh"
#include "feature_fields.hh"
#include "record.hh"
#include "zrt4xml.hh"

namespace zrt4::python {

namespace {

using entry_2010 = zrt4_env_index_dictionary_entry_2010;

template <std::size_t Size>
place place_of(char (&text)[Size]) {
  return text_place{text, Size};
}
template <class Value>
place place_of(Value& value) {
  return &value;
}

/// What holds for every field with values of this type.
template <class Value>
field field_of(std::string_view name, std::string_view row) {
  field made{name, row, number_names::none, 0, 1, 0, nullptr, nullptr};
  if constexpr (std::is_array_v<Value>) made.longest = sizeof(Value) - 1;
  if constexpr (std::is_integral_v<Value>) {
    made.least = std::numeric_limits<Value>::min();
    made.most = std::numeric_limits<Value>::max();
  }
  if constexpr (std::is_same_v<Value, float>) made.least = made.most = 0;
  return made;
}

/// A field whose row of a table has a variant of members, or of functions that return them.
template <class Record, class Row>
field field_of_row(const Row& row, std::string_view row_name) {
  Record blank{};
  field made = detail::with_value(row.member, blank, [&](auto& value) {
    return field_of<std::remove_reference_t<decltype(value)>>(row.name, row_name);
  });
  made.meaning = row.meaning;
  made.row_of_table = &row;
  made.find = [](const void* of_table, void* of) {
    return detail::with_value(static_cast<const Row*>(of_table)->member, *static_cast<Record*>(of),
                              [](auto& value) { return place_of(value); });
  };
  return made;
}

number_names names_of(detail::field_role role) {
  if (role == detail::field_role::event_type) return number_names::event_types;
  if (role == detail::field_role::data_type) return number_names::data_types;
  return number_names::none;
}

// In the order in which a person reads them, which is that of the tool's JSON.
template <class Record>
std::vector<field> channel_fields() {
  using table_row = detail::channel_field<Record>;
  std::vector<field> fields;
  for (const table_row* row :
       detail::in_order<&table_row::row>(detail::fields_of(static_cast<const Record*>(nullptr)))) {
    field made = field_of_row<Record>(*row, row->row.name);
    made.names = names_of(row->role);
    made.is_key =
        row->role == detail::field_role::property || row->role == detail::field_role::daq_name;
    fields.push_back(made);
  }
  return fields;
}

std::vector<field> entry_fields() {
  std::vector<field> fields;
  for (const auto& row : detail::dictionary_fields<entry_2010>) {
    fields.push_back(field_of_row<entry_2010>(row, row.row));
    fields.back().is_key = fields.back().is_text();
  }
  return fields;
}

std::vector<field> event_fields() {
  field type{"evtype", "event_type", number_names::event_types, 0, 0, ZRT4_EV_EVMAX, nullptr,
             nullptr,  true};
  type.find = [](const void*, void* of) -> place {
    return &static_cast<zrt4_ev_entry*>(of)->evtype;
  };
  std::vector<field> fields{type};
  for (const detail::event_number& row : detail::event_numbers) {
    field made = field_of<std::uint32_t>(row.name, row.row);
    made.meaning = row.meaning;
    made.row_of_table = &row;
    made.find = [](const void* of_table, void* of) -> place {
      return &static_cast<const detail::event_number*>(of_table)->in(
          *static_cast<zrt4_ev_entry*>(of));
    };
    fields.push_back(made);
  }
  return fields;
}

std::vector<field> block_fields() {
  field name{"name",  "name", number_names::none, detail::longest_block_name, 1, 0,
             nullptr, nullptr};
  name.find = [](const void*, void* of) {
    return place_of(static_cast<zrt4_ev_sb_list*>(of)->sb_list);
  };
  return {name};
}

std::vector<field> feature_fields() {
  std::vector<field> fields;
  for (const detail::feature_field& row : detail::feature_fields) {
    field made = field_of<std::string>(row.name, row.row);
    made.row_of_table = &row;
    made.find = [](const void* of_table, void* of) -> place {
      return &(static_cast<ZRT4GigEFeature*>(of)
                   ->*static_cast<const detail::feature_field*>(of_table)
                   ->text);
    };
    made.is_key = row.text == &ZRT4GigEFeature::name;
    fields.push_back(made);
    if (!made.is_key) continue;
    field type{"type",  "type", number_names::feature_types, 0, 0, FEATURE_TYPE_MAX - 1,
               nullptr, nullptr};
    type.find = [](const void*, void* of) -> place {
      return &static_cast<ZRT4GigEFeature*>(of)->type;
    };
    fields.push_back(type);
  }
  return fields;
}

/// The counter says that the records are its own.
template <auto list, auto counter, class Outer>
void recount(Outer& outer) {
  outer.*counter = static_cast<std::int32_t>((outer.*list).size());
}

/// Records inside a record, with their counter.
template <class Outer, class Inner, std::vector<Inner*> Outer::*list, std::int32_t Outer::*counter>
group counted_group(std::string_view name) {
  group made{};
  made.name = name;
  made.type = type_of<Inner>;
  made.size = [](const void* of) { return (static_cast<const Outer*>(of)->*list).size(); };
  made.at = [](const void* of, std::size_t position) -> void* {
    return (static_cast<const Outer*>(of)->*list)[position];
  };
  made.insert = [](void* of, std::size_t position, void* inner) {
    Outer& outer = *static_cast<Outer*>(of);
    auto& records = outer.*list;
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(position),
                   static_cast<Inner*>(inner));
    recount<list, counter>(outer);
  };
  made.take_out = [](void* of, std::size_t position) {
    Outer& outer = *static_cast<Outer*>(of);
    auto& records = outer.*list;
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(position));
    recount<list, counter>(outer);
  };
  return made;
}

group server_blocks() {
  group made{};
  made.name = "server_blocks";
  made.type = type_of<zrt4_ev_sb_list>;
  made.size = [](const void* of) { return static_cast<const zrt4_ev_entry*>(of)->sb_list->size(); };
  made.at = [](const void* of, std::size_t position) -> void* {
    return (*static_cast<const zrt4_ev_entry*>(of)->sb_list)[position];
  };
  made.insert = [](void* of, std::size_t position, void* inner) {
    auto& blocks = *static_cast<zrt4_ev_entry*>(of)->sb_list;
    blocks.insert(blocks.begin() + static_cast<std::ptrdiff_t>(position),
                  static_cast<zrt4_ev_sb_list*>(inner));
  };
  made.take_out = [](void* of, std::size_t position) {
    auto& blocks = *static_cast<zrt4_ev_entry*>(of)->sb_list;
    blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(position));
  };
  return made;
}

char* new_name(const std::string& name) {
  char* const made = new char[name.size() + 1];
  std::memcpy(made, name.c_str(), name.size() + 1);
  return made;
}

name_list channel_names() {
  name_list made{};
  made.name = "channels";
  made.get = [](const void* of) {
    const auto& names = *static_cast<const zrt4_ev_sb_list*>(of)->ch_list;
    return std::vector<std::string>(names.begin(), names.end());
  };
  made.set = [](void* of, const std::vector<std::string>& names) {
    std::vector<std::unique_ptr<char[]>> made_names;
    for (const std::string& name : names) made_names.emplace_back(new_name(name));
    std::vector<char*> taken;
    taken.reserve(names.size());
    for (auto& name : made_names) taken.push_back(name.release());
    static_cast<zrt4_ev_sb_list*>(of)->ch_list->swap(taken);
    for (const char* name : taken) delete[] name;
  };
  return made;
}

/// Releases one record as the library releases a list of them.
template <class List, class Raw>
void release_as_list(void* of) noexcept {
  std::vector<Raw*> one{static_cast<Raw*>(of)};
  const List owner(std::move(one));
}

void release_dimension(void* of) noexcept {
  auto* const dimension = static_cast<dim_descr*>(of);
  for (const stat_descr* statistic : dimension->stats) delete statistic;
  delete dimension;
}

void release_block(void* of) noexcept {
  auto* const block = static_cast<zrt4_ev_sb_list*>(of);
  for (const char* name : *block->ch_list) delete[] name;
  delete block->ch_list;
  delete block;
}

void* make_block() {
  auto names = std::make_unique<std::vector<char*>>();
  auto* const block = new zrt4_ev_sb_list{};
  block->ch_list = names.release();
  return block;
}

void* make_event() {
  auto blocks = std::make_unique<std::vector<zrt4_ev_sb_list*>>();
  auto* const event = new zrt4_ev_entry{};
  event->sb_list = blocks.release();
  return event;
}

// The library's entries come from malloc and go to free.
void* make_entry() {
  void* const made = std::calloc(1, sizeof(entry_2010));
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

template <class Raw>
void* make_new() {
  return new Raw{};
}

template <class Raw>
void release_new(void* of) noexcept {
  delete static_cast<Raw*>(of);
}

template <class Raw>
std::shared_ptr<record> wrap(void* of) {
  return std::make_shared<record_of<Raw>>(of);
}

template <class Raw, auto Member>
std::string_view key(const void* of) {
  return static_cast<const Raw*>(of)->*Member;
}

}  // namespace

const field* record_type::find_field(std::string_view wanted) const {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const field& each) { return each.name == wanted; });
  return found != fields.end() ? &*found : nullptr;
}

const group* record_type::find_group(std::string_view wanted) const {
  const auto found = std::find_if(groups.begin(), groups.end(),
                                  [&](const group& each) { return each.name == wanted; });
  return found != groups.end() ? &*found : nullptr;
}

template <>
const record_type& type_of<bit_descr>() {
  static const record_type type{"Bit",
                                channel_fields<bit_descr>(),
                                {},
                                {},
                                {key<bit_descr, &bit_descr::bit_name>},
                                make_new<bit_descr>,
                                release_new<bit_descr>,
                                wrap<bit_descr>};
  return type;
}

template <>
const record_type& type_of<stat_descr>() {
  static const record_type type{"Statistic",
                                channel_fields<stat_descr>(),
                                {},
                                {},
                                {key<stat_descr, &stat_descr::stat_name>},
                                make_new<stat_descr>,
                                release_new<stat_descr>,
                                wrap<stat_descr>};
  return type;
}

template <>
const record_type& type_of<dim_descr>() {
  static const record_type type{
      "Dimension",
      channel_fields<dim_descr>(),
      {counted_group<dim_descr, stat_descr, &dim_descr::stats, &dim_descr::nstats>("stats")},
      {},
      {key<dim_descr, &dim_descr::dim_name>},
      make_new<dim_descr>,
      release_dimension,
      wrap<dim_descr>};
  return type;
}

template <>
const record_type& type_of<chan_descr_2010>() {
  using chan = chan_descr_2010;
  static const record_type type{"Channel",
                                channel_fields<chan>(),
                                {counted_group<chan, bit_descr, &chan::bits, &chan::nbits>("bits"),
                                 counted_group<chan, dim_descr, &chan::dims, &chan::ndims>("dims")},
                                {},
                                {key<chan, &chan::prop_name>, key<chan, &chan::daq_name>},
                                make_new<chan>,
                                release_as_list<zrt4::channel_list, chan>,
                                wrap<chan>};
  return type;
}

template <>
const record_type& type_of<entry_2010>() {
  static const record_type type{"DictionaryEntry",
                                entry_fields(),
                                {},
                                {},
                                {[](const void* of) -> std::string_view {
                                  return static_cast<const entry_2010*>(of)->data.env_prop;
                                }},
                                make_entry,
                                release_as_list<zrt4::env_dictionary_2010, entry_2010>,
                                wrap<entry_2010>};
  return type;
}

template <>
const record_type& type_of<zrt4_ev_sb_list>() {
  static const record_type type{"ServerBlock",
                                block_fields(),
                                {},
                                {channel_names()},
                                {key<zrt4_ev_sb_list, &zrt4_ev_sb_list::sb_list>},
                                make_block,
                                release_block,
                                wrap<zrt4_ev_sb_list>};
  return type;
}

template <>
const record_type& type_of<zrt4_ev_entry>() {
  static const record_type type{
      "Event",
      event_fields(),
      {server_blocks()},
      {},
      {[](const void* of) -> std::string_view {
        return event_name_itoa(static_cast<int>(static_cast<const zrt4_ev_entry*>(of)->evtype));
      }},
      make_event,
      release_as_list<zrt4::event_list, zrt4_ev_entry>,
      wrap<zrt4_ev_entry>};
  return type;
}

template <>
const record_type& type_of<ZRT4GigEFeature>() {
  static const record_type type{"Feature",
                                feature_fields(),
                                {},
                                {},
                                {key<ZRT4GigEFeature, &ZRT4GigEFeature::name>},
                                make_new<ZRT4GigEFeature>,
                                release_new<ZRT4GigEFeature>,
                                wrap<ZRT4GigEFeature>};
  return type;
}

std::vector<const record_type*> all_record_types() {
  return {&type_of<bit_descr>(),       &type_of<stat_descr>(),     &type_of<dim_descr>(),
          &type_of<chan_descr_2010>(), &type_of<entry_2010>(),     &type_of<zrt4_ev_sb_list>(),
          &type_of<zrt4_ev_entry>(),   &type_of<ZRT4GigEFeature>()};
}

}  // namespace zrt4::python
