#include "rows.hh"

#include <array>
#include <charconv>
#include <cstring>
#include <tuple>

#include "event_util.hh"

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

template <class Record, class Value>
Record record_of(Value Record::*);

template <auto Member>
cell value_of(const decltype(record_of(Member))& record) {
  return to_cell(record.*Member);
}

template <class Record>
struct column {
  std::string_view name;
  cell (*value)(const Record&);
  const char* (*says)(int) = nullptr;
};

const char* feature_name(int type) {
  return FeatureTags[type];
}

// The fields of each type of record. The first is what records are told apart by.

constexpr column<bit_descr> bit_columns[] = {
    {"number", value_of<&bit_descr::bit>},
    {"name", value_of<&bit_descr::bit_name>},
    {"description", value_of<&bit_descr::bit_desc>},
};

constexpr column<stat_descr> statistic_columns[] = {
    {"number", value_of<&stat_descr::stat>},
    {"name", value_of<&stat_descr::stat_name>},
    {"description", value_of<&stat_descr::stat_desc>},
    {"units", value_of<&stat_descr::units>},
};

constexpr column<dim_descr> dimension_columns[] = {
    {"number", value_of<&dim_descr::dim>},
    {"name", value_of<&dim_descr::dim_name>},
    {"description", value_of<&dim_descr::dim_desc>},
    {"units", value_of<&dim_descr::units>},
};

constexpr column<chan_descr_2010> channel_columns[] = {
    {"property", value_of<&chan_descr_2010::prop_name>},
    {"name", value_of<&chan_descr_2010::daq_name>},
    {"event_type", value_of<&chan_descr_2010::ev_type>, event_name_itoa},
    {"data_type", value_of<&chan_descr_2010::dtype>, block_name_itoa},
    {"stream", value_of<&chan_descr_2010::stream>},
    {"subsystem", value_of<&chan_descr_2010::subsystem>},
    {"server_block", value_of<&chan_descr_2010::sb_name>},
    {"description", value_of<&chan_descr_2010::prop_desc>},
    {"units", value_of<&chan_descr_2010::units>},
    {"size", value_of<&chan_descr_2010::max_size>},
    {"set_point", value_of<&chan_descr_2010::set_point>},
    {"db_key", value_of<&chan_descr_2010::db_key>},
    {"count", value_of<&chan_descr_2010::count>},
};

constexpr column<zrt4_ev_entry> event_columns[] = {
    {"event_type",
     [](const zrt4_ev_entry& entry) { return to_cell(static_cast<std::uint32_t>(entry.evtype)); },
     event_name_itoa},
    {"trigger_mask", value_of<&zrt4_ev_entry::tmask>},
    {"min_time_seconds",
     [](const zrt4_ev_entry& entry) { return to_cell(entry.min_ev_time.timeup); }},
    {"min_time_microseconds",
     [](const zrt4_ev_entry& entry) { return to_cell(entry.min_ev_time.timelow); }},
    {"priority", value_of<&zrt4_ev_entry::priority>},
};

constexpr column<zrt4_ev_sb_list> server_block_columns[] = {
    {"name", value_of<&zrt4_ev_sb_list::sb_list>},
};

using dictionary_entry = zrt4_env_index_dictionary_entry_2010;
constexpr column<dictionary_entry> dictionary_columns[] = {
    {"index", value_of<&dictionary_entry::index>},
    {"property", [](const dictionary_entry& entry) { return to_cell(entry.data.env_prop); }},
    {"absolute_threshold",
     [](const dictionary_entry& entry) { return to_cell(entry.data.env_ch_abs_delta); }},
    {"relative_threshold",
     [](const dictionary_entry& entry) { return to_cell(entry.data.env_ch_rel_delta); }},
};

constexpr column<ZRT4GigEFeature> feature_columns[] = {
    {"name", value_of<&ZRT4GigEFeature::name>},
    {"type", value_of<&ZRT4GigEFeature::type>, feature_name},
    {"control_name", value_of<&ZRT4GigEFeature::extension>},
    {"tool_tip", value_of<&ZRT4GigEFeature::tooltip>},
    {"description", value_of<&ZRT4GigEFeature::description>},
};

template <class Record, std::size_t Count>
row fields_of(const Record& record, const column<Record> (&columns)[Count]) {
  row result;
  result.fields.reserve(Count);
  for (const column<Record>& each : columns) {
    const cell value = each.value(record);
    const char* says = "";
    if (each.says != nullptr) says = each.says(static_cast<int>(std::get<std::int64_t>(value)));
    result.fields.push_back({each.name, value, says});
  }
  return result;
}

row row_of(const bit_descr& bit) {
  return fields_of(bit, bit_columns);
}

row row_of(const stat_descr& statistic) {
  return fields_of(statistic, statistic_columns);
}

row row_of(const char& name) {
  return {{{"name", to_cell(&name), ""}}, {}};
}

row row_of(const dictionary_entry& entry) {
  return fields_of(entry, dictionary_columns);
}

row row_of(const ZRT4GigEFeature& feature) {
  return fields_of(feature, feature_columns);
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
  row result = fields_of(dimension, dimension_columns);
  result.groups.push_back({"statistics", "statistic", all(dimension.stats)});
  return result;
}

row row_of(const chan_descr_2010& channel) {
  row result = fields_of(channel, channel_columns);
  result.groups.push_back({"bits", "bit", all(channel.bits)});
  result.groups.push_back({"dimensions", "dimension", all(channel.dims)});
  return result;
}

row row_of(const zrt4_ev_sb_list& block) {
  row result = fields_of(block, server_block_columns);
  result.groups.push_back({"channels", "channel", all(*block.ch_list)});
  return result;
}

row row_of(const zrt4_ev_entry& entry) {
  row result = fields_of(entry, event_columns);
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
