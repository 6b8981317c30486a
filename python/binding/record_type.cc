#include "record_type.hh"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "channel_records.hh"
#include "record.hh"
#include "zrt4xml.hh"

namespace zrt4::python {

namespace {

using entry_2010 = zrt4_env_index_dictionary_entry_2010;

number_names enumeration_of(const record_field& field) {
  if (field.names == nullptr) return number_names::none;
  if (field.names == event_name_itoa) return number_names::event_types;
  if (field.names == block_name_itoa) return number_names::data_types;
  return number_names::feature_types;
}

/// What the tool knows of the records, with the members that are keys.
struct known_record {
  const ::record_type& type;
  std::vector<std::string_view> keys;

  std::vector<field> fields() const {
    std::vector<field> all;
    for (std::size_t i = 0; i < type.field_count; ++i) {
      const record_field& each = type.fields[i];
      const bool is_key = std::find(keys.begin(), keys.end(), each.member) != keys.end();
      all.push_back({each, &type, i, enumeration_of(each), is_key});
    }
    return all;
  }
};

const ::record_type& channel_type() {
  return *records_in(zrt4::channel_list()).type;
}
const ::record_type& event_type() {
  return *records_in(zrt4::event_list()).type;
}

// The groups of a channel, in the order in which the tool has them.
enum { bits_of_channel, dimensions_of_channel };

const ::record_type& dimension_type() {
  return *channel_type().groups[dimensions_of_channel].type;
}
const ::record_type& block_type() {
  return *event_type().groups->type;
}

/// The counter says that the records are its own.
template <auto list, auto counter, class Outer>
void recount(Outer& outer) {
  outer.*counter = static_cast<std::int32_t>((outer.*list).size());
}

/// Records inside a record, with their counter.
template <class Outer, class Inner, std::vector<Inner*> Outer::*list, std::int32_t Outer::*counter>
group counted_group(std::string_view name, const record_group& known) {
  const auto insert = [](void* of, std::size_t position, void* inner) {
    Outer& outer = *static_cast<Outer*>(of);
    auto& records = outer.*list;
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(position),
                   static_cast<Inner*>(inner));
    recount<list, counter>(outer);
  };
  const auto take_out = [](void* of, std::size_t position) {
    Outer& outer = *static_cast<Outer*>(of);
    auto& records = outer.*list;
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(position));
    recount<list, counter>(outer);
  };
  return {name, type_of<Inner>, insert, take_out, &known};
}

group server_blocks() {
  const auto insert = [](void* of, std::size_t position, void* inner) {
    auto& blocks = *static_cast<zrt4_ev_entry*>(of)->sb_list;
    blocks.insert(blocks.begin() + static_cast<std::ptrdiff_t>(position),
                  static_cast<zrt4_ev_sb_list*>(inner));
  };
  const auto take_out = [](void* of, std::size_t position) {
    auto& blocks = *static_cast<zrt4_ev_entry*>(of)->sb_list;
    blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(position));
  };
  return {"server_blocks", type_of<zrt4_ev_sb_list>, insert, take_out, event_type().groups};
}

char* new_name(const std::string& name) {
  char* const made = new char[name.size() + 1];
  std::memcpy(made, name.c_str(), name.size() + 1);
  return made;
}

name_list channel_names() {
  const auto set = [](void* of, const std::vector<std::string>& names) {
    std::vector<std::unique_ptr<char[]>> made_names;
    for (const std::string& name : names) made_names.emplace_back(new_name(name));
    std::vector<char*> taken;
    taken.reserve(names.size());
    for (auto& name : made_names) taken.push_back(name.release());
    static_cast<zrt4_ev_sb_list*>(of)->ch_list->swap(taken);
    for (const char* name : taken) delete[] name;
  };
  return {"channels", set, block_type().groups};
}

/// As the library releases a list of them.
void release_event(void* of) noexcept {
  std::vector<zrt4_ev_entry*> one{static_cast<zrt4_ev_entry*>(of)};
  const zrt4::event_list owner(std::move(one));
}

void release_channel(void* of) noexcept {
  try {
    detail::release_channel(static_cast<const chan_descr_2010*>(of));
  } catch (...) {  // of a receiver of messages: the record is released
  }
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

void release_entry(void* of) noexcept {
  std::free(of);
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

template <class Raw>
record_type made_type(std::string_view name, const known_record& known, std::vector<group> groups,
                      std::vector<name_list> names, void* (*make)(),
                      void (*release)(void*) noexcept) {
  std::vector<field> fields = known.fields();
  std::vector<std::size_t> keys;
  for (const std::string_view key : known.keys) {
    const auto is_it = [&](const field& each) { return each.member == key; };
    keys.push_back(static_cast<std::size_t>(std::find_if(fields.begin(), fields.end(), is_it) -
                                            fields.begin()));
  }
  return {name, std::move(fields), std::move(groups), std::move(names), std::move(keys),
          make, release,           wrap<Raw>};
}

}  // namespace

std::vector<std::string> name_list::get(const void* of) const {
  std::vector<std::string> all;
  const std::size_t count = known->size(of);
  all.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    all.emplace_back(std::get<std::string_view>(known->type->get(known->at(of, i), 0)));
  }
  return all;
}

std::string_view record_type::key_of(const void* record, std::size_t field) const {
  const cell value = fields[field].get(record);
  if (const auto* const text = std::get_if<std::string_view>(&value)) return *text;
  return fields[field].names(static_cast<int>(std::get<std::int64_t>(value)));
}

const field* record_type::find_field(std::string_view wanted) const {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const field& each) { return each.member == wanted; });
  return found != fields.end() ? &*found : nullptr;
}

const group* record_type::find_group(std::string_view wanted) const {
  const auto found = std::find_if(groups.begin(), groups.end(),
                                  [&](const group& each) { return each.name == wanted; });
  return found != groups.end() ? &*found : nullptr;
}

template <>
const record_type& type_of<bit_descr>() {
  static const record_type type =
      made_type<bit_descr>("Bit", {*channel_type().groups[bits_of_channel].type, {"bit_name"}}, {},
                           {}, make_new<bit_descr>, release_new<bit_descr>);
  return type;
}

template <>
const record_type& type_of<stat_descr>() {
  static const record_type type =
      made_type<stat_descr>("Statistic", {*dimension_type().groups->type, {"stat_name"}}, {}, {},
                            make_new<stat_descr>, release_new<stat_descr>);
  return type;
}

template <>
const record_type& type_of<dim_descr>() {
  static const record_type type = made_type<dim_descr>(
      "Dimension", {dimension_type(), {"dim_name"}},
      {counted_group<dim_descr, stat_descr, &dim_descr::stats, &dim_descr::nstats>(
          "stats", *dimension_type().groups)},
      {}, make_new<dim_descr>, release_dimension);
  return type;
}

template <>
const record_type& type_of<chan_descr_2010>() {
  using chan = chan_descr_2010;
  static const record_type type =
      made_type<chan>("Channel", {channel_type(), {"prop_name", "daq_name"}},
                      {counted_group<chan, bit_descr, &chan::bits, &chan::nbits>(
                           "bits", channel_type().groups[bits_of_channel]),
                       counted_group<chan, dim_descr, &chan::dims, &chan::ndims>(
                           "dims", channel_type().groups[dimensions_of_channel])},
                      {}, make_new<chan>, release_channel);
  return type;
}

template <>
const record_type& type_of<entry_2010>() {
  static const record_type type = made_type<entry_2010>(
      "DictionaryEntry", {*records_in(zrt4::env_dictionary_2010()).type, {"env_prop"}}, {}, {},
      make_entry, release_entry);
  return type;
}

template <>
const record_type& type_of<zrt4_ev_sb_list>() {
  static const record_type type = made_type<zrt4_ev_sb_list>(
      "ServerBlock", {block_type(), {"name"}}, {}, {channel_names()}, make_block, release_block);
  return type;
}

template <>
const record_type& type_of<zrt4_ev_entry>() {
  static const record_type type = made_type<zrt4_ev_entry>(
      "Event", {event_type(), {"evtype"}}, {server_blocks()}, {}, make_event, release_event);
  return type;
}

template <>
const record_type& type_of<ZRT4GigEFeature>() {
  static const record_type type =
      made_type<ZRT4GigEFeature>("Feature", {*records_in(zrt4::camera_features()).type, {"name"}},
                                 {}, {}, make_new<ZRT4GigEFeature>, release_new<ZRT4GigEFeature>);
  return type;
}

std::vector<const record_type*> all_record_types() {
  return {&type_of<bit_descr>(),       &type_of<stat_descr>(),     &type_of<dim_descr>(),
          &type_of<chan_descr_2010>(), &type_of<entry_2010>(),     &type_of<zrt4_ev_sb_list>(),
          &type_of<zrt4_ev_entry>(),   &type_of<ZRT4GigEFeature>()};
}

}  // namespace zrt4::python
