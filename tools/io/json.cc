#include "json.hh"

#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <nlohmann/json.hpp>

#include "each_file.hh"
#include "output_file.hh"

namespace {

// Raised when a program that reads the output would have to be changed.
constexpr int format_version = 1;

constexpr std::string_view replacement = "\xef\xbf\xbd";

void append_utf8(std::string& text, std::uint32_t code) {
  const auto continued = [&](unsigned shift) {
    text += static_cast<char>(0x80U | (code >> shift & 0x3fU));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xc0U | code >> 6);
    continued(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xe0U | code >> 12);
    continued(6);
    continued(0);
  } else {
    text += static_cast<char>(0xf0U | code >> 18);
    continued(12);
    continued(6);
    continued(0);
  }
}

json of(std::int64_t number) {
  return number;
}

json of(std::string_view text) {
  return to_utf8(text);
}

// The decimal that a person wrote rather than the nearest binary fraction; what is no number has no
// place in JSON.
json of(threshold value) {
  if (!std::isfinite(value.value)) return nullptr;
  return std::strtod(text_of(value).c_str(), nullptr);
}

}  // namespace

std::string to_utf8(std::string_view local) {
  std::string utf8;
  utf8.reserve(local.size());
  std::mbstate_t state{};
  while (!local.empty()) {
    wchar_t character = 0;
    const std::size_t size = std::mbrtowc(&character, local.data(), local.size(), &state);
    if (size == 0 || size > local.size()) {  // no character, or not all of one
      utf8 += replacement;
      state = {};
      local.remove_prefix(1);
    } else {
      append_utf8(utf8, static_cast<std::uint32_t>(character));
      local.remove_prefix(size);
    }
  }
  return utf8;
}

json to_json(const cell& value) {
  return std::visit([](const auto& held) { return of(held); }, value);
}

json to_json(const row& record) {
  if (record.fields.size() == 1 && record.groups.empty()) return to_json(record.key().value);
  json object = json::object();
  for (const row::field& field : record.fields) {
    const std::string name(field.name);
    object[name] = to_json(field.value);
    if (!field.number_name.empty()) object[name + "_name"] = field.number_name;
  }
  for (const row_group& group : record.groups) {
    object[std::string(group.name)] = to_json(group.rows);
  }
  return object;
}

json to_json(const std::vector<row>& records) {
  json array = json::array();
  for (const row& record : records) array.push_back(to_json(record));
  return array;
}

json json_head(std::string_view subcommand) {
  return {{"format_version", format_version}, {"subcommand", subcommand}};
}

json json_of_file(const std::string& name, std::string_view kind) {
  return {{"file", to_utf8(name)}, {"kind", kind}};
}

json json_of_unusable(const unusable_file& file) {
  return {{"file", to_utf8(file.name)}, {"kind", nullptr}, {"unusable", to_utf8(file.reason)}};
}

void print_json(const json& value) {
  write_output("-", value.dump(2) + "\n");
}
