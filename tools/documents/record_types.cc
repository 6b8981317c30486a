#include "record_types.hh"

#include <strings.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "channel_fields.hh"
#include "dictionary_fields.hh"
#include "event_fields.hh"
#include "event_util.hh"
#include "feature_fields.hh"

namespace {

namespace library = zrt4::detail;
using library::field_role;

template <class Value>
constexpr record_field field_of(std::string_view name, name_of_number names = nullptr) {
  using number = std::remove_cv_t<Value>;
  if constexpr (std::is_same_v<number, float>) {
    return {name, value_kind::threshold};
  } else if constexpr (std::is_array_v<Value>) {
    return {name, value_kind::text, 0, 0, sizeof(Value) - 1};
  } else if constexpr (std::is_class_v<Value> || std::is_pointer_v<Value>) {
    return {name, value_kind::text};
  } else {
    static_assert(sizeof(number) == sizeof(std::int32_t));
    return {name,
            value_kind::number,
            std::is_signed_v<number> ? INT32_MIN : 0,
            std::is_signed_v<number> ? INT32_MAX : UINT32_MAX,
            0,
            names};
  }
}

/// The field of what `member` is in a `Record`, be it a member or a function.
template <class Record, class Member>
constexpr record_field field_behind(std::string_view name, Member /*member*/,
                                    name_of_number names = nullptr) {
  using held = std::remove_reference_t<std::invoke_result_t<Member, Record&>>;
  return field_of<held>(name, names);
}

/// With what its row of a table tells of it.
template <class Row>
constexpr record_field told_by(const Row& row, record_field field) {
  field.member = row.name;
  field.meaning = row.meaning;
  return field;
}

constexpr name_of_number names_for(field_role role) {
  if (role == field_role::event_type) return event_name_itoa;
  if (role == field_role::data_type) return block_name_itoa;
  return nullptr;
}

const char* feature_name(int type) {
  return FeatureTags[type];
}

// A channel, or what belongs to one.
template <class Record>
struct channel_part {
  using field = library::channel_field<Record>;
  static constexpr auto shown =
      library::in_order<&field::row>(library::fields_of(static_cast<Record*>(nullptr)));

  static constexpr auto make_fields() {
    std::array<record_field, shown.count> result{};
    for (std::size_t i = 0; i < shown.count; ++i) {
      const field& each = *shown.all[i];
      result[i] = std::visit(
          [&](auto member) {
            return told_by(each, field_behind<Record>(each.row.name, member, names_for(each.role)));
          },
          each.member);
      result[i].may_be_untold = each.role == field_role::event_type;
    }
    return result;
  }

  template <class Any, class Use>
  static decltype(auto) with(Any& record, std::size_t position, Use&& use) {
    return library::with_value(shown.all[position]->member, record, use);
  }
};

template <class Record>
struct traits : channel_part<Record> {};

template <class Entry>
struct dictionary_traits {
  static constexpr auto make_fields() {
    std::array<record_field, std::size(library::dictionary_fields<Entry>)> result{};
    std::size_t position = 0;
    for (const auto& each : library::dictionary_fields<Entry>) {
      result[position++] = std::visit(
          [&](auto member) { return told_by(each, field_behind<Entry>(each.row, member)); },
          each.member);
    }
    return result;
  }

  template <class Any, class Use>
  static decltype(auto) with(Any& entry, std::size_t position, Use&& use) {
    return library::with_value(library::dictionary_fields<Entry>[position].member, entry, use);
  }
};

template <>
struct traits<zrt4_env_index_dictionary_entry>
    : dictionary_traits<zrt4_env_index_dictionary_entry> {};
template <>
struct traits<zrt4_env_index_dictionary_entry_2010>
    : dictionary_traits<zrt4_env_index_dictionary_entry_2010> {};

template <>
struct traits<zrt4_ev_entry> {
  static constexpr auto make_fields() {
    std::array<record_field, 1 + std::size(library::event_numbers)> result{};
    // Of any other type there is no entry.
    result[0] = {"event_type", value_kind::number, 0, ZRT4_EV_EVMAX, 0, event_name_itoa, "evtype"};
    std::size_t position = 1;
    for (const auto& each : library::event_numbers) {
      result[position++] = told_by(each, field_behind<zrt4_ev_entry>(each.row, each.in));
    }
    return result;
  }

  template <class Any, class Use>
  static decltype(auto) with(Any& entry, std::size_t position, Use&& use) {
    if (position == 0) return use(entry.evtype);
    return use(library::event_numbers[position - 1].in(const_cast<zrt4_ev_entry&>(entry)));
  }
};

template <>
struct traits<zrt4_ev_sb_list> {
  static constexpr auto make_fields() {
    std::array<record_field, 1> result{field_of<char[library::longest_block_name + 1]>("name")};
    result[0].member = "name";
    return result;
  }

  template <class Any, class Use>
  static decltype(auto) with(Any& block, std::size_t /*position*/, Use&& use) {
    return use(block.sb_list);
  }
};

/// The name of a wanted channel.
template <>
struct traits<char*> {
  static constexpr auto make_fields() {
    std::array<record_field, 1> result{field_of<char*>("name")};
    return result;
  }

  template <class Any, class Use>
  static decltype(auto) with(Any& name, std::size_t /*position*/, Use&& use) {
    return use(name);
  }
};

template <>
struct traits<ZRT4GigEFeature> {
  static constexpr std::size_t type_place = 1;  // behind the name

  static constexpr auto make_fields() {
    constexpr std::size_t count = std::size(library::feature_fields);
    std::array<record_field, count + 1> result{};
    for (std::size_t i = 0; i < count; ++i) {
      const library::feature_field& row = library::feature_fields[i];
      record_field& made = result[i < type_place ? i : i + 1];
      made = field_of<std::string>(row.row);
      made.member = row.name;
    }
    result[type_place] = {"type", value_kind::number, 0,     FEATURE_TYPE_MAX - 1,
                          0,      feature_name,       "type"};
    return result;
  }

  template <class Any, class Use>
  static decltype(auto) with(Any& feature, std::size_t position, Use&& use) {
    if (position == type_place) return use(feature.type);
    return use(feature.*library::feature_fields[position - (position > type_place ? 1 : 0)].text);
  }
};

template <class Record>
constexpr auto fields = traits<Record>::make_fields();

struct to_cell {
  cell operator()(float number) const { return threshold{number}; }
  cell operator()(const char* text) const { return std::string_view(text); }
  cell operator()(const std::string& text) const { return std::string_view(text); }
  template <class Number,
            class = std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>>>
  cell operator()(Number number) const {
    return static_cast<std::int64_t>(number);
  }
};

template <class Record>
cell get(const void* record, std::size_t field) {
  const cell value = traits<Record>::with(*static_cast<const Record*>(record), field, to_cell{});
  if (fields<Record>[field].may_be_untold && value == cell(std::int64_t{untold_event_type})) {
    return untold;
  }
  return value;
}

struct from_cell {
  const cell& value;

  std::string_view text() const { return std::get<std::string_view>(value); }
  void operator()(float& number) const { number = std::get<threshold>(value).value; }
  void operator()(std::string& held) const { held = text(); }
  void operator()(char*& held) const {
    std::unique_ptr<char[]> copy(new char[text().size() + 1]);
    copy[text().copy(copy.get(), text().size())] = '\0';
    delete[] held;
    held = copy.release();
  }
  template <std::size_t Size>
  void operator()(char (&held)[Size]) const {
    std::memset(held, 0, Size);
    text().copy(held, Size - 1);
  }
  template <class Number,
            class = std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>>>
  void operator()(Number& number) const {
    number = static_cast<Number>(std::get<std::int64_t>(value));
  }
};

template <class Record>
void set(void* record, std::size_t field, const cell& value) {
  const bool is_told = !fields<Record>[field].may_be_untold || !(value == cell(untold));
  const cell held = is_told ? value : cell(std::int64_t{untold_event_type});
  traits<Record>::with(*static_cast<Record*>(record), field, from_cell{held});
}

template <class Record>
const void* address(const void* record, std::size_t field) {
  return traits<Record>::with(*static_cast<const Record*>(record), field,
                              [](const auto& value) -> const void* { return &value; });
}

template <class Record>
constexpr record_type type_without_groups() {
  return {fields<Record>.data(), fields<Record>.size(), nullptr,        0,
          get<Record>,           set<Record>,           address<Record>};
}

template <class Record, std::size_t Count>
constexpr record_type type_with_groups(const record_group (&groups)[Count]) {
  return {fields<Record>.data(), fields<Record>.size(), groups,         Count,
          get<Record>,           set<Record>,           address<Record>};
}

/// Appends `record` to those that the list owns.
template <class Record, class Pointer>
void* append(std::vector<Record*>& records, Pointer&& record) {
  records.push_back(record.get());
  return record.release();
}

/// Records of a vector that is a member of their holder, as is their number.
template <class Holder, class Record, std::vector<Record*> Holder::*In,
          std::int32_t Holder::*Counter>
struct counted {
  static std::size_t size(const void* holder) {
    return (static_cast<const Holder*>(holder)->*In).size();
  }
  static const void* at(const void* holder, std::size_t position) {
    return (static_cast<const Holder*>(holder)->*In)[position];
  }
  static void* add(void* holder) {
    auto& of = *static_cast<Holder*>(holder);
    void* added = append(of.*In, std::make_unique<Record>());
    of.*Counter = static_cast<std::int32_t>((of.*In).size());
    return added;
  }
};

struct server_blocks {
  static const auto& in(const void* holder) {
    return *static_cast<const zrt4_ev_entry*>(holder)->sb_list;
  }
  static std::size_t size(const void* holder) { return in(holder).size(); }
  static const void* at(const void* holder, std::size_t position) { return in(holder)[position]; }
  static void* add(void* holder) {
    auto channels = std::make_unique<std::vector<char*>>();
    auto block = std::make_unique<zrt4_ev_sb_list>();
    block->ch_list = channels.get();
    void* added = append(*static_cast<zrt4_ev_entry*>(holder)->sb_list, std::move(block));
    (void)channels.release();
    return added;
  }
};

struct wanted_channels {
  static auto& in(const void* holder) {
    return *static_cast<const zrt4_ev_sb_list*>(holder)->ch_list;
  }
  static std::size_t size(const void* holder) { return in(holder).size(); }
  static const void* at(const void* holder, std::size_t position) { return &in(holder)[position]; }
  static void* add(void* holder) {
    append(in(holder), std::make_unique<char[]>(1));
    return &in(holder).back();
  }
};

struct made_by_malloc {
  void operator()(void* memory) const { std::free(memory); }
};

std::unique_ptr<chan_descr_2010> make(const chan_descr_2010*) {
  return std::make_unique<chan_descr_2010>();
}
std::unique_ptr<ZRT4GigEFeature> make(const ZRT4GigEFeature*) {
  return std::make_unique<ZRT4GigEFeature>();
}
template <class Entry>
std::unique_ptr<Entry, made_by_malloc> make_entry() {
  std::unique_ptr<Entry, made_by_malloc> made(static_cast<Entry*>(std::calloc(1, sizeof(Entry))));
  if (made == nullptr) throw std::bad_alloc();
  return made;
}
auto make(const zrt4_env_index_dictionary_entry*) {
  return make_entry<zrt4_env_index_dictionary_entry>();
}
auto make(const zrt4_env_index_dictionary_entry_2010*) {
  return make_entry<zrt4_env_index_dictionary_entry_2010>();
}

template <class List>
struct listed {
  using record = typename List::value_type;

  static std::size_t size(const void* list) { return static_cast<const List*>(list)->size(); }
  static const void* at(const void* list, std::size_t position) {
    return &(*static_cast<const List*>(list))[position];
  }
  static void* add(void* list) {
    return append(*static_cast<List*>(list)->get(), make(static_cast<const record*>(nullptr)));
  }
};

template <>
void* listed<zrt4::event_list>::add(void* list) {
  auto blocks = std::make_unique<std::vector<zrt4_ev_sb_list*>>();
  auto entry = std::make_unique<zrt4_ev_entry>();
  entry->sb_list = blocks.get();
  void* added = append(*static_cast<zrt4::event_list*>(list)->get(), std::move(entry));
  (void)blocks.release();
  return added;
}

template <class Group>
constexpr record_group group(std::string_view name, std::string_view one_name,
                             const record_type& type) {
  return {name, one_name, &type, Group::size, Group::at, Group::add};
}

constexpr record_type bit = type_without_groups<bit_descr>();
constexpr record_type statistic = type_without_groups<stat_descr>();

constexpr record_group of_dimension[] = {
    group<counted<dim_descr, stat_descr, &dim_descr::stats, &dim_descr::nstats>>(
        "statistics", "statistic", statistic)};
constexpr record_type dimension = type_with_groups<dim_descr>(of_dimension);

constexpr record_group of_channel[] = {
    group<counted<chan_descr_2010, bit_descr, &chan_descr_2010::bits, &chan_descr_2010::nbits>>(
        "bits", "bit", bit),
    group<counted<chan_descr_2010, dim_descr, &chan_descr_2010::dims, &chan_descr_2010::ndims>>(
        "dimensions", "dimension", dimension)};
constexpr record_type channel = type_with_groups<chan_descr_2010>(of_channel);

constexpr record_type narrow_entry = type_without_groups<zrt4_env_index_dictionary_entry>();
constexpr record_type entry = type_without_groups<zrt4_env_index_dictionary_entry_2010>();

constexpr record_type wanted_channel = type_without_groups<char*>();
constexpr record_group of_server_block[] = {
    group<wanted_channels>("channels", "channel", wanted_channel)};
constexpr record_type server_block = type_with_groups<zrt4_ev_sb_list>(of_server_block);
constexpr record_group of_event[] = {
    group<server_blocks>("server_blocks", "server block", server_block)};
constexpr record_type event = type_with_groups<zrt4_ev_entry>(of_event);

constexpr record_type feature = type_without_groups<ZRT4GigEFeature>();

constexpr record_group events = group<listed<zrt4::event_list>>("records", "event", event);
constexpr record_group channels = group<listed<zrt4::channel_list>>("records", "channel", channel);
constexpr record_group narrow_entries =
    group<listed<zrt4::env_dictionary>>("records", "entry", narrow_entry);
constexpr record_group entries =
    group<listed<zrt4::env_dictionary_2010>>("records", "entry", entry);
constexpr record_group features =
    group<listed<zrt4::camera_features>>("records", "feature", feature);

// Whether `is_it` is true of one of the numbers that have a name, and that name.
template <class Condition>
bool any_name(const record_field& field, Condition is_it) {
  // All of them are below this, the number of data types.
  constexpr std::int64_t beyond = ZRT4_BLOCK_MAX_2010 + 1;
  if (field.names == nullptr) return false;
  for (std::int64_t number = 0; number <= field.most && number < beyond; ++number) {
    const std::string_view known = field.names(static_cast<int>(number));
    if (known != nameless && is_it(number, known)) return true;
  }
  return false;
}

std::uint32_t bits_of(threshold value) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value.value, sizeof bits);
  return bits;
}

}  // namespace

bool operator==(threshold a, threshold b) {
  return bits_of(a) == bits_of(b);
}
bool operator<(threshold a, threshold b) {
  return bits_of(a) < bits_of(b);
}

std::string text_of(std::int64_t number) {
  return std::to_string(number == untold ? 0 : number);
}
std::string text_of(threshold value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value.value).ptr;
  return {text.data(), end};
}

const record_group& records_in(const zrt4::event_list& /*list*/) {
  return events;
}
const record_group& records_in(const zrt4::channel_list& /*list*/) {
  return channels;
}
const record_group& records_in(const zrt4::env_dictionary& /*list*/) {
  return narrow_entries;
}
const record_group& records_in(const zrt4::env_dictionary_2010& /*list*/) {
  return entries;
}
const record_group& records_in(const zrt4::camera_features& /*list*/) {
  return features;
}

void tell_no_types(const record_type& type, void* record) {
  for (std::size_t i = 0; i < type.field_count; ++i) {
    if (type.fields[i].may_be_untold) type.set(record, i, untold);
  }
}

std::string_view name_in(const record_field& field, std::int64_t number) {
  if (field.names == nullptr) return {};
  return number == untold ? nameless : field.names(static_cast<int>(number));
}

bool number_named(const record_field& field, std::string_view name, std::int64_t& found) {
  const auto is_name = [name](std::string_view known) {
    return known.size() == name.size() && strncasecmp(known.data(), name.data(), name.size()) == 0;
  };
  if (field.may_be_untold && is_name(nameless)) {
    found = untold;
    return true;
  }
  return any_name(field, [&](std::int64_t number, std::string_view known) {
    if (is_name(known)) found = number;
    return is_name(known);
  });
}

std::vector<std::string_view> names_in(const record_field& field) {
  std::vector<std::string_view> names;
  any_name(field, [&](std::int64_t /*number*/, std::string_view known) {
    names.push_back(known);
    return false;
  });
  return names;
}
