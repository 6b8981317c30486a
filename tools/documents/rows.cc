#include "rows.hh"

#include <array>
#include <charconv>
#include <cstring>
#include <tuple>

#include "channel_fields.hh"
#include "dictionary_fields.hh"
#include "event_fields.hh"
#include "event_util.hh"
#include "feature_fields.hh"

namespace {

cell to_cell(std::int32_t number) {
  return std::int64_t{number};
}
cell to_cell(std::uint32_t number) {
  return std::int64_t{number};
}
cell to_cell(float number) {
  return threshold{number};
}
cell to_cell(const char* text) {
  return std::string_view(text);
}
cell to_cell(const std::string& text) {
  return std::string_view(text);
}

using name_of_number = const char* (*)(int);

const char* feature_name(int type) {
  return FeatureTags[type];
}

void add(row& to, std::string_view name, cell value, name_of_number names = nullptr) {
  const char* number_name = "";
  if (names != nullptr) number_name = names(static_cast<int>(std::get<std::int64_t>(value)));
  to.fields.push_back({name, value, number_name});
}

name_of_number names_for(zrt4::detail::field_role role) {
  if (role == zrt4::detail::field_role::event_type) return event_name_itoa;
  if (role == zrt4::detail::field_role::data_type) return block_name_itoa;
  return nullptr;
}

// A channel, or what belongs to one.
template <class Record>
row fields_of(const Record& record) {
  using field = zrt4::detail::channel_field<Record>;
  static constexpr auto shown =
      zrt4::detail::in_order<&field::row>(zrt4::detail::fields_of(static_cast<Record*>(nullptr)));
  row result;
  result.fields.reserve(shown.count);
  for (const field* each : shown) {
    zrt4::detail::with_value(each->member, record, [&](const auto& value) {
      add(result, each->row.name, to_cell(value), names_for(each->role));
    });
  }
  return result;
}

row row_of(const bit_descr& bit) {
  return fields_of(bit);
}

row row_of(const stat_descr& statistic) {
  return fields_of(statistic);
}

row row_of(const char& name) {
  return {{{"name", to_cell(&name), ""}}, {}};
}

row row_of(const zrt4_env_index_dictionary_entry_2010& entry) {
  row result;
  for (const auto& field : zrt4::detail::dictionary_fields<zrt4_env_index_dictionary_entry_2010>) {
    zrt4::detail::with_value(field.member, entry,
                             [&](const auto& value) { add(result, field.row, to_cell(value)); });
  }
  return result;
}

row row_of(const ZRT4GigEFeature& feature) {
  row result;
  for (const auto& field : zrt4::detail::feature_fields) {
    add(result, field.row, to_cell(feature.*field.text));
    if (field.text != &ZRT4GigEFeature::name) continue;
    add(result, "type", to_cell(std::int32_t{feature.type}), feature_name);
  }
  return result;
}

row row_of(const dim_descr& dimension);
row row_of(const chan_descr_2010& channel);
row row_of(const zrt4_ev_sb_list& block);
row row_of(const zrt4_ev_entry& entry);

template <class Record>
std::vector<row> all(const std::vector<Record*>& records) {
  std::vector<row> rows;
  rows.reserve(records.size());
  for (const Record* record : records) rows.push_back(row_of(*record));
  return rows;
}

template <class List>
std::vector<row> all_of(const List& list) {
  std::vector<row> rows;
  rows.reserve(list.size());
  for (const auto& record : list) rows.push_back(row_of(record));
  return rows;
}

row row_of(const dim_descr& dimension) {
  row result = fields_of(dimension);
  result.groups.push_back({"statistics", "statistic", all(dimension.stats)});
  return result;
}

row row_of(const chan_descr_2010& channel) {
  row result = fields_of(channel);
  result.groups.push_back({"bits", "bit", all(channel.bits)});
  result.groups.push_back({"dimensions", "dimension", all(channel.dims)});
  return result;
}

row row_of(const zrt4_ev_sb_list& block) {
  row result;
  add(result, "name", to_cell(block.sb_list));
  result.groups.push_back({"channels", "channel", all(*block.ch_list)});
  return result;
}

row row_of(const zrt4_ev_entry& entry) {
  row result;
  add(result, "event_type", to_cell(static_cast<std::uint32_t>(entry.evtype)), event_name_itoa);
  for (const auto& number : zrt4::detail::event_numbers) {
    add(result, number.row, to_cell(number.in(const_cast<zrt4_ev_entry&>(entry))));
  }
  result.groups.push_back({"server_blocks", "server block", all(*entry.sb_list)});
  return result;
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

bool operator==(const row_group& a, const row_group& b) {
  return a.rows == b.rows;
}
bool operator<(const row_group& a, const row_group& b) {
  return a.rows < b.rows;
}

std::string text_of(threshold value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value.value).ptr;
  return {text.data(), end};
}

bool operator==(const row& a, const row& b) {
  return a.fields == b.fields && a.groups == b.groups;
}
bool operator<(const row& a, const row& b) {
  return std::tie(a.fields, a.groups) < std::tie(b.fields, b.groups);
}

std::vector<row> rows_of(const zrt4::event_list& list) {
  return all_of(list);
}
std::vector<row> rows_of(const zrt4::channel_list& list) {
  return all_of(list);
}
std::vector<row> rows_of(const zrt4::env_dictionary_2010& list) {
  return all_of(list);
}
std::vector<row> rows_of(const zrt4::camera_features& list) {
  return all_of(list);
}

void detach(std::vector<row>& rows, std::deque<std::string>& texts) {
  for (row& record : rows) {
    for (row::field& field : record.fields) {
      if (auto* text = std::get_if<std::string_view>(&field.value)) {
        *text = texts.emplace_back(*text);
      }
    }
    for (row_group& group : record.groups) detach(group.rows, texts);
  }
}
