#include "text_table.hh"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <variant>

#include "channel_fields.hh"
#include "descriptor.hh"
#include "dictionary_fields.hh"
#include "event_util.hh"
#include "number_text.hh"
#include "received_messages.hh"
#include "type_masks.hh"
#include "written_channels.hh"

namespace {

constexpr std::string_view ends = "\t\n\r";

// Of a channel; what belongs to one is in the longer table with all its fields, and not in the
// shorter.
constexpr std::string_view columns[] = {"stream",    "event_type",  "name",  "property",
                                        "set_point", "description", "units", "size"};
constexpr std::string_view short_columns[] = {"name", "size", "data_type"};

template <std::size_t Count>
bool has(const std::string_view (&names)[Count], std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool ends_column(char c) {
  return ends.find(c) != ends.npos;
}

/// Keeps blanks in texts where these would end a column or a line, as long as it lives.
class kept_in_line {
 public:
  kept_in_line() = default;
  kept_in_line(const kept_in_line&) = delete;
  kept_in_line& operator=(const kept_in_line&) = delete;
  ~kept_in_line() {
    for (const auto& [text, held] : altered) held.copy(text, held.size());
  }

  template <std::size_t Size>
  void text(char (&held)[Size]) {
    const std::string_view all(held);
    if (all.find_first_of(ends) == all.npos) return;
    altered.emplace_back(held, all);
    std::replace_if(held, held + all.size(), ends_column, ' ');
  }

  template <class Record>
  void record(Record& of) {
    for (const auto& field : zrt4::detail::fields_of(static_cast<const Record*>(nullptr))) {
      zrt4::detail::with_value(field.member, of, [&](auto& value) {
        if constexpr (std::is_array_v<std::remove_reference_t<decltype(value)>>) text(value);
      });
    }
  }

 private:
  std::vector<std::pair<char*, std::string>> altered;
};

// The number whose name the shorter table tells.
std::int32_t lowest_bit(std::uint32_t mask) {
  std::int32_t bit = 0;
  while (mask != 0 && !zrt4::detail::has_bit(mask, bit)) ++bit;
  return bit;
}

// The type that became a mask.
std::int32_t data_type_in(std::uint32_t mask) {
  const std::uint32_t lower = mask & ~zrt4::detail::upper_data_types;
  return lower != mask && lower != 0 ? 32 + lowest_bit(lower) : lowest_bit(mask);
}

void set_type(row::field& field, std::int32_t type) {
  field.value = std::int64_t{type};
  field.number_name = block_name_itoa(type);
}

std::uint32_t mask_in(const row::field& field) {
  return static_cast<std::uint32_t>(std::get<std::int64_t>(field.value));
}

/// A channel of which nothing is known, with one of each of what belongs to one.
row unknown_channel() {
  zrt4::channel_list list;
  list.get()->push_back(new chan_descr_2010);
  return rows_of(list)[0];
}

/// What `dump(file name)` writes.
template <class Dump>
std::string dumped(Dump&& dump) {
  descriptor memory(memory_file());
  std::string path = memory.path();
  {
    const received_messages unheard;
    if (dump(path.data()) != 0) throw std::runtime_error("cannot write to memory");
  }
  return memory.read_all();
}

template <class List>
std::vector<std::size_t> all_of(const List& list) {
  std::vector<std::size_t> places(list.size());
  for (std::size_t i = 0; i < places.size(); ++i) places[i] = i;
  return places;
}

}  // namespace

bool has_column(document_form form, std::string_view owner, std::string_view field) {
  if (form == document_form::text) return owner != "channel" || has(columns, field);
  return owner == "channel" && has(short_columns, field);
}

text_table::text_table(const zrt4::channel_list& list, document_form of)
    : records(rows_of(list)), form(of) {
  std::set<std::string_view> properties;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (properties.insert(list[i].prop_name).second) written.push_back(i);
  }
}
text_table::text_table(const zrt4::env_dictionary& list, document_form of)
    : records(rows_of(list)), form(of), written(all_of(list)) {}
text_table::text_table(const zrt4::env_dictionary_2010& list, document_form of)
    : records(rows_of(list)), form(of), written(all_of(list)) {}

row_list text_table::sent() const {
  return {this, records.size(), [](const void* table, std::size_t at) {
            row record = static_cast<const text_table*>(table)->records[at];
            for (row::field& field : record.fields) {
              if (field.name == "data_type") set_type(field, data_type_in(mask_in(field)));
            }
            return record;
          }};
}

row_list text_table::arriving() const {
  return {this, written.size(), [](const void* table, std::size_t at) {
            return static_cast<const text_table*>(table)->arriving_row(at);
          }};
}

row text_table::arriving_row(std::size_t at) const {
  static const row unknown = unknown_channel();
  row record = records[written[at]];
  const bool is_channel = !record.groups.empty();
  put_into_columns(record, is_channel ? "channel" : "entry", is_channel ? &unknown : nullptr);
  return record;
}

void text_table::put_into_columns(row& record, std::string_view owner, const row* unknown) const {
  for (std::size_t i = 0; i < record.fields.size(); ++i) {
    row::field& field = record.fields[i];
    const bool is_key = i == 0;  // by which the record is found again
    if (is_key || unknown == nullptr || has_column(form, owner, field.name)) {
      put_into_column(field);
    } else {
      field = unknown->fields[i];
    }
  }
  for (row_group& group : record.groups) {
    if (form == document_form::short_text) group.rows.clear();
    for (row& inner : group.rows) put_into_columns(inner, group.one_name, nullptr);
  }
}

void text_table::put_into_column(row::field& field) const {
  if (field.name == "data_type") return set_type(field, lowest_bit(mask_in(field)));
  if (const auto* held = std::get_if<threshold>(&field.value)) {
    const auto digits = zrt4::detail::fixed(static_cast<double>(held->value));
    field.value = threshold{std::strtof(digits.c_str(), nullptr)};
  } else if (const auto* text = std::get_if<std::string_view>(&field.value)) {
    if (text->empty() && field.name == "name") {
      field.value = std::string_view(zrt4::detail::undefined_daq_name);
    } else if (text->find_first_of(ends) != text->npos) {
      std::string& in_line = texts.emplace_back(*text);
      std::replace_if(in_line.begin(), in_line.end(), ends_column, ' ');
      field.value = std::string_view(in_line);
    }
  }
}

std::string table_of(zrt4::channel_list& list, document_form form) {
  kept_in_line kept;
  for (chan_descr_2010& channel : list) {
    kept.record(channel);
    for (bit_descr* bit : channel.bits) kept.record(*bit);
    for (dim_descr* dim : channel.dims) {
      kept.record(*dim);
      for (stat_descr* stat : dim->stats) kept.record(*stat);
    }
  }
  const int mode = form == document_form::text ? DUMP_TXT_FILE : DUMP_TXT_FILE_SHORT;
  return dumped([&](char* path) {
    return dump_chan_desr(list.get(), path, mode, ZRT4_FORMAT, -1, nullptr, nullptr);
  });
}

std::string table_of(zrt4::env_dictionary& list) {
  kept_in_line kept;
  for (zrt4_env_index_dictionary_entry& entry : list) kept.text(entry.data.env_prop);
  return dumped([&](char* path) {
    return dump_env_index_dict(list.get(), path, ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  });
}
std::string table_of(zrt4::env_dictionary_2010& list) {
  kept_in_line kept;
  for (zrt4_env_index_dictionary_entry_2010& entry : list) kept.text(entry.data.env_prop);
  return dumped([&](char* path) {
    return dump_env_index_dict_2010(list.get(), path, ENV_INDX_DUMP_TXT_FILE, -1, nullptr);
  });
}
