#include "rows.hh"

#include <tuple>

namespace {

std::vector<row> rows_in(const record_group& group, const void* holder) {
  std::vector<row> rows;
  const std::size_t size = group.size(holder);
  rows.reserve(size);
  for (std::size_t i = 0; i < size; ++i) rows.push_back(row_of(*group.type, group.at(holder, i)));
  return rows;
}

template <class List>
std::vector<row> all_of(const List& list) {
  return rows_in(records_in(list), &list);
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

row row_of(const record_type& type, const void* record) {
  row result;
  result.fields.reserve(type.field_count);
  for (std::size_t i = 0; i < type.field_count; ++i) {
    const record_field& field = type.fields[i];
    const cell value = type.get(record, i);
    const char* number_name = "";
    if (field.names != nullptr) {
      number_name = field.names(static_cast<int>(std::get<std::int64_t>(value)));
    }
    result.fields.push_back({field.name, value, number_name});
  }
  result.groups.reserve(type.group_count);
  for (std::size_t i = 0; i < type.group_count; ++i) {
    const record_group& group = type.groups[i];
    result.groups.push_back({group.name, group.one_name, rows_in(group, record)});
  }
  return result;
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
