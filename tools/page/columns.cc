#include "columns.hh"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <map>
#include <unordered_map>

#include "in_order.hh"
#include "json.hh"

namespace {

using rows_inside = std::vector<const row*>;

void append_number(std::string& to, std::int64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  to.append(digits, end);
}

void append_quoted(std::string& to, std::string_view utf8) {
  to += '"';
  for (const char c : utf8) {
    if (c == '"' || c == '\\') {
      (to += '\\') += c;
    } else if (c >= 0 && c < 0x20) {
      char escaped[sizeof "\\u0000"];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
      to += escaped;
    } else {
      to += c;
    }
  }
  to += '"';
}

void append_head(std::string& to, std::string_view name, std::string_view kind) {
  to += "{\"name\":";
  append_text(to, name);
  to.append(",\"kind\":\"").append(kind).append("\"");
}

template <class Values, class Append>
void append_list(std::string& to, std::string_view name, const Values& values, Append append) {
  to.append(",\"").append(name).append("\":[");
  bool is_first = true;
  for (const auto& value : values) {
    if (!is_first) to += ',';
    is_first = false;
    append(to, value);
  }
  to += ']';
}

void append_number_values(std::string& to, const std::vector<std::int64_t>& all) {
  if (!all.empty() && std::all_of(all.begin(), all.end(),
                                  [&](std::int64_t number) { return number == all.front(); })) {
    to += ",\"all\":";
    append_number(to, all.front());
    return;
  }
  std::string each;
  append_list(each, "each", all, append_number);
  std::vector<std::int64_t> differences;
  differences.reserve(all.size());
  std::int64_t before = 0;
  for (const std::int64_t number : all) {
    differences.push_back(number - before);
    before = number;
  }
  std::string steps;
  append_list(steps, "steps", differences, append_number);
  to += steps.size() < each.size() ? steps : each;
}

void append_text_values(std::string& to, const std::vector<std::string_view>& all) {
  std::vector<std::string_view> values;
  std::vector<std::int64_t> at;
  std::unordered_map<std::string_view, std::int64_t> known;
  at.reserve(all.size());
  for (const std::string_view text : all) {
    const auto [place, is_new] = known.emplace(text, static_cast<std::int64_t>(values.size()));
    if (is_new) values.push_back(text);
    at.push_back(place->second);
  }
  if (values.size() == 1) {
    to += ",\"all\":";
    append_text(to, values.front());
  } else if (values.size() > all.size() / 2) {
    append_list(to, "each", all, append_text);
  } else {
    append_list(to, "values", values, append_text);
    append_list(to, "at", at, append_number);
  }
}

// The decimal that a person wrote; what is no number has no place in JSON but as a text.
void append_threshold(std::string& to, threshold value) {
  if (std::isfinite(value.value)) {
    to += text_of(value);
  } else {
    append_text(to, text_of(value));
  }
}

// A type that is not told is -1, which no type is: it has another name than type 0.
std::int64_t packed_number(std::int64_t number) {
  return number == untold ? -1 : number;
}

template <class Value>
std::vector<Value> values_of(const rows_inside& rows, std::size_t field) {
  std::vector<Value> values;
  values.reserve(rows.size());
  for (const row* each : rows) values.push_back(std::get<Value>(each->fields[field].value));
  return values;
}

void append_number_names(std::string& to, const rows_inside& rows, std::size_t field) {
  std::map<std::int64_t, std::string_view> names;
  for (const row* each : rows) {
    const row::field& one = each->fields[field];
    if (one.number_name.empty()) continue;
    names.emplace(packed_number(std::get<std::int64_t>(one.value)), one.number_name);
  }
  if (names.empty()) return;
  to += ",\"names\":{";
  for (const auto& [number, name] : names) {
    to += to.back() == '{' ? "\"" : ",\"";
    append_number(to, number);
    to += "\":";
    append_text(to, name);
  }
  to += '}';
}

void append_column(std::string& to, const rows_inside& rows, std::size_t field) {
  const row::field& first = rows.front()->fields[field];
  if (std::holds_alternative<std::string_view>(first.value)) {
    append_head(to, first.name, "text");
    append_text_values(to, values_of<std::string_view>(rows, field));
  } else if (std::holds_alternative<threshold>(first.value)) {
    append_head(to, first.name, "threshold");
    append_list(to, "each", values_of<threshold>(rows, field), append_threshold);
  } else {
    append_head(to, first.name, "number");
    append_number_names(to, rows, field);
    std::vector<std::int64_t> numbers = values_of<std::int64_t>(rows, field);
    std::transform(numbers.begin(), numbers.end(), numbers.begin(), packed_number);
    append_number_values(to, numbers);
  }
  to += '}';
}

// What is inside a table, between its braces, by so many threads.
void append_inside(std::string& to, const rows_inside& rows, std::size_t threads);

void append_group(std::string& to, const rows_inside& outer, std::size_t group) {
  const row_group& first = outer.front()->groups[group];
  rows_inside all;
  std::vector<std::int64_t> counts;
  for (const row* each : outer) {
    const std::vector<row>& inner = each->groups[group].rows;
    counts.push_back(static_cast<std::int64_t>(inner.size()));
    for (const row& one : inner) all.push_back(&one);
  }
  to += "{\"name\":";
  append_text(to, first.name);
  to += ",\"one\":";
  append_text(to, first.one_name);
  to += ",\"counts\":";
  append_numbers(to, "count", counts);
  to += ',';
  append_inside(to, all, 1);
  to += '}';
}

void append_inside(std::string& to, const rows_inside& rows, std::size_t threads) {
  to += "\"rows\":";
  append_number(to, static_cast<std::int64_t>(rows.size()));
  const std::size_t fields = rows.empty() ? 0 : rows.front()->fields.size();
  const std::size_t groups = rows.empty() ? 0 : rows.front()->groups.size();
  in_order<std::string> parts(fields + groups, threads, [&](std::size_t number) {
    std::string part;
    if (number < fields) {
      append_column(part, rows, number);
    } else {
      append_group(part, rows, number - fields);
    }
    return part;
  });
  const auto append_parts = [&](std::string_view name, std::size_t count) {
    to.append(",\"").append(name).append("\":[");
    for (std::size_t i = 0; i < count; ++i) {
      if (i != 0) to += ',';
      to += parts.next();
    }
    to += ']';
  };
  append_parts("columns", fields);
  append_parts("groups", groups);
}

}  // namespace

void append_text(std::string& to, std::string_view text) {
  const bool is_ascii = std::all_of(text.begin(), text.end(), [](char c) { return c >= 0; });
  append_quoted(to, is_ascii ? text : to_utf8(text));
}

void append_numbers(std::string& to, std::string_view name, const std::vector<std::int64_t>& all) {
  append_head(to, name, "number");
  append_number_values(to, all);
  to += '}';
}

void append_table(std::string& to, const std::vector<const row*>& rows, std::size_t threads) {
  to += '{';
  append_inside(to, rows, threads);
  to += '}';
}
