#include "csv_writing.hh"

#include <cstddef>

#include "given_value.hh"
#include "json.hh"
#include "nearest.hh"
#include "selection.hh"

namespace {

std::string shown(const cell& value) {
  if (const auto* text = std::get_if<std::string_view>(&value)) return to_utf8(*text);
  if (const auto* number = std::get_if<std::int64_t>(&value)) return text_of(*number);
  return text_of(std::get<threshold>(value));
}

// The fields, and a number's name beside it.
void add_titles(std::vector<std::string>& titles, const record_type& type,
                const std::string& prefix) {
  for (std::size_t i = 0; i < type.field_count; ++i) {
    const record_field& field = type.fields[i];
    titles.push_back(prefix + std::string(field.name));
    if (field.names != nullptr) titles.push_back(titles.back() + "_name");
  }
  for (std::size_t i = 0; i < type.group_count; ++i) {
    titles.push_back(prefix + std::string(type.groups[i].name));
  }
}

void add_values(std::vector<std::string>& values, const record_type& type, const void* record) {
  for (std::size_t i = 0; i < type.field_count; ++i) {
    const cell value = type.get(record, i);
    values.push_back(shown(value));
    if (type.fields[i].names == nullptr) continue;
    values.emplace_back(name_in(type.fields[i], std::get<std::int64_t>(value)));
  }
  for (std::size_t i = 0; i < type.group_count; ++i) {
    values.push_back(std::to_string(type.groups[i].size(record)));
  }
}

// How many records each group within `type` has, all records taken together.
struct group_count {
  const record_group* group;
  std::size_t records;
};
void count(std::vector<group_count>& counts, const record_type& type, const void* record) {
  for (std::size_t i = 0; i < type.group_count; ++i) {
    const record_group& group = type.groups[i];
    const std::size_t size = group.size(record);
    std::size_t at = 0;
    while (at < counts.size() && counts[at].group != &group) ++at;
    if (at == counts.size()) counts.push_back({&group, 0});
    counts[at].records += size;
    for (std::size_t k = 0; k < size; ++k) count(counts, *group.type, group.at(record, k));
  }
}

}  // namespace

std::string csv_line(const std::vector<std::string>& values) {
  std::string line;
  for (const std::string& value : values) {
    if (!line.empty() || &value != &values.front()) line += ',';
    if (value.find_first_of(",\"\r\n") == value.npos) {
      line += value;
      continue;
    }
    line += '"';
    for (const char c : value) line.append(c == '"' ? 2 : 1, c);
    line += '"';
  }
  return line + "\r\n";
}

std::vector<std::string> group_names(const record_type& type) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < type.group_count; ++i) {
    names.emplace_back(type.groups[i].name);
    for (std::string& inner : group_names(*type.groups[i].type)) {
      names.push_back(std::move(inner));
    }
  }
  return names;
}

bool csv_table::find(const record_type& type, std::string_view name, path& found) {
  for (std::size_t i = 0; i < type.group_count; ++i) {
    const std::string_view own = type.groups[i].name;
    found.push_back(&type.groups[i]);
    if (own == name || find(*type.groups[i].type, name, found)) return true;
    // Also with the names of those around it, as fields are named elsewhere.
    const bool is_within =
        name.size() > own.size() && name[own.size()] == '.' && name.substr(0, own.size()) == own;
    if (is_within && find(*type.groups[i].type, name.substr(own.size() + 1), found)) return true;
    found.pop_back();
  }
  return false;
}

csv_table::csv_table(any_list& list, std::string_view rows, std::string_view records_name)
    : records(records_of(list)) {
  if (rows.empty() || rows == records_name || find(records.type(), rows, inwards)) return;
  std::vector<std::string> names = group_names(records.type());
  names.emplace(names.begin(), records_name);
  throw wrong_selection("there are no " + in_quotes(rows) + " in it to have a line each" +
                        did_you_mean_or_all(rows, {names.begin(), names.end()}, "; there are "));
}

void csv_table::add_lines(std::string& into, std::vector<std::string>& keys,
                          const record_type& type, const void* record, std::size_t depth) const {
  const std::size_t before = keys.size();
  if (depth == inwards.size()) {
    add_values(keys, type, record);
    into += csv_line(keys);
  } else {
    keys.push_back(shown(type.get(record, 0)));
    const record_group& group = *inwards[depth];
    for (std::size_t i = 0; i < group.size(record); ++i) {
      add_lines(into, keys, *group.type, group.at(record, i), depth + 1);
    }
  }
  keys.resize(before);
}

std::string csv_table::text() const {
  std::vector<std::string> titles;
  std::string prefix;
  const record_type* type = &records.type();
  for (const record_group* group : inwards) {
    titles.push_back(prefix + std::string(type->fields[0].name));
    type = group->type;
    prefix += std::string(group->name) + ".";
  }
  add_titles(titles, *type, prefix);
  std::string result = csv_line(titles);
  std::vector<std::string> values;
  for (std::size_t i = 0; i < records.size(); ++i) {
    add_lines(result, values, records.type(), records[i], 0);
  }
  return result;
}

std::vector<std::string> csv_table::losses() const {
  std::vector<group_count> counts;
  for (std::size_t i = 0; i < records.size(); ++i) count(counts, records.type(), records[i]);
  std::vector<std::string> result;
  for (const group_count& each : counts) {
    const bool has_lines = !inwards.empty() && inwards.back() == each.group;
    if (each.records == 0 || has_lines) continue;
    result.push_back(std::to_string(each.records) + " " +
                     std::string(each.records == 1 ? each.group->one_name : each.group->name) +
                     ": --rows " + std::string(each.group->name) + " has a line for each");
  }
  return result;
}
