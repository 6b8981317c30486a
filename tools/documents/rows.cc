#include "rows.hh"

#include <tuple>

#include "terminal.hh"

namespace {

std::vector<row> rows_in(const record_group& group, const void* holder) {
  std::vector<row> rows;
  const std::size_t size = group.size(holder);
  rows.reserve(size);
  for (std::size_t i = 0; i < size; ++i) {
    rows.push_back(row_of(*group.type, group.at(holder, i)));
    rows.back().at = i;
  }
  return rows;
}

template <class List>
row_list all_of(const List& list) {
  return {&list, list.size(), [](const void* of, std::size_t at) {
            const record_group& records = records_in(*static_cast<const List*>(of));
            return row_of(*records.type, records.at(of, at));
          }};
}

}  // namespace

bool operator==(const row_group& a, const row_group& b) {
  return a.rows == b.rows;
}
bool operator<(const row_group& a, const row_group& b) {
  return a.rows < b.rows;
}

bool operator==(const row& a, const row& b) {
  return a.fields == b.fields && a.groups == b.groups;
}
bool operator<(const row& a, const row& b) {
  return std::tie(a.fields, a.groups) < std::tie(b.fields, b.groups);
}

std::string described(const row::field& field) {
  struct {
    std::string operator()(std::int64_t number) const { return text_of(number); }
    std::string operator()(threshold value) const { return text_of(value); }
    std::string operator()(std::string_view text) const { return '"' + printable(text) + '"'; }
  } to_text;
  std::string result = std::visit(to_text, field.value);
  if (!field.number_name.empty()) result.append(" ").append(field.number_name);
  return result;
}

std::string shown_key(const row& record) {
  const row::field& key = record.key();
  const auto* text = std::get_if<std::string_view>(&key.value);
  return text != nullptr ? "'" + printable(*text) + "'" : described(key);
}

row row_of(const record_type& type, const void* record) {
  row result;
  result.record = record;
  result.fields.reserve(type.field_count);
  for (std::size_t i = 0; i < type.field_count; ++i) {
    const record_field& field = type.fields[i];
    const cell value = type.get(record, i);
    std::string_view number_name;
    if (field.names != nullptr) number_name = name_in(field, std::get<std::int64_t>(value));
    result.fields.push_back({field.name, value, number_name});
  }
  result.groups.reserve(type.group_count);
  for (std::size_t i = 0; i < type.group_count; ++i) {
    const record_group& group = type.groups[i];
    result.groups.push_back({group.name, group.one_name, rows_in(group, record)});
  }
  return result;
}

row_list rows_of(const zrt4::event_list& list) {
  return all_of(list);
}
row_list rows_of(const zrt4::channel_list& list) {
  return all_of(list);
}
row_list rows_of(const zrt4::env_dictionary& list) {
  return all_of(list);
}
row_list rows_of(const zrt4::env_dictionary_2010& list) {
  return all_of(list);
}
row_list rows_of(const zrt4::camera_features& list) {
  return all_of(list);
}
