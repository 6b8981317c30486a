#include "row_json.hh"

#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace {

json of(std::int64_t number) {
  return number == untold ? 0 : number;
}

json of(std::string_view text) {
  return to_utf8(text);
}

// The decimal that a person wrote rather than the nearest binary fraction; what is no number has no
// place in JSON, but a name beside it.
json of(threshold value) {
  if (!std::isfinite(value.value)) return nullptr;
  return std::strtod(text_of(value).c_str(), nullptr);
}

}  // namespace

json to_json(const cell& value) {
  return std::visit([](const auto& held) { return of(held); }, value);
}

std::string name_beside(const row::field& field) {
  const auto* value = std::get_if<threshold>(&field.value);
  if (value != nullptr && !std::isfinite(value->value)) return text_of(*value);
  return std::string(field.number_name);
}

json to_json(const row& record) {
  if (record.fields.size() == 1 && record.groups.empty()) return to_json(record.key().value);
  json object = json::object();
  for (const row::field& field : record.fields) {
    const std::string name(field.name);
    object[name] = to_json(field.value);
    const std::string beside = name_beside(field);
    if (!beside.empty()) object[name + "_name"] = beside;
  }
  for (const row_group& group : record.groups) {
    json& rows = object[std::string(group.name)] = json::array();
    for (const row& inner : group.rows) rows.push_back(to_json(inner));
  }
  return object;
}
