#include "json.hh"

#include <cstdio>
#include <cwchar>
#include <nlohmann/json.hpp>

#include "output_file.hh"
#include "standard_output.hh"
#include "utf8.hh"

namespace {

constexpr std::string_view replacement = "\xef\xbf\xbd";

constexpr std::size_t indentation = 2;
constexpr std::size_t printed_at_once = 1U << 16U;

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
      append_utf8(utf8, static_cast<char32_t>(character));
      local.remove_prefix(size);
    }
  }
  return utf8;
}

void print_json(const json& value) {
  write_output("-", value.dump(indentation) + "\n");
}

void json_printer::begin_object() {
  if (!open.empty()) begin_line();
  begin('{', '}');
}

void json_printer::begin_array(std::string_view name) {
  append_name(name);
  begin('[', ']');
}

void json_printer::member(std::string_view name, const json& value) {
  append_name(name);
  append(value);
}

void json_printer::members(const json& value) {
  for (const auto& [name, held] : value.items()) member(name, held);
}

void json_printer::element(const json& value) {
  begin_line();
  append(value);
}

void json_printer::end() {
  const level ended = open.back();
  open.pop_back();
  if (ended.has_any) pending.append(1, '\n').append(indentation * open.size(), ' ');
  pending += ended.closing;
  if (open.empty()) pending += '\n';
  if (open.empty() || pending.size() > printed_at_once) write_out();
}

void json_printer::begin_line() {
  if (pending.size() > printed_at_once) write_out();
  if (open.back().has_any) pending += ',';
  open.back().has_any = true;
  pending.append(1, '\n').append(indentation * open.size(), ' ');
}

void json_printer::append_name(std::string_view name) {
  begin_line();
  pending.append(json(name).dump()).append(": ");
}

// No text holds a line end as such.
void json_printer::append(const json& value) {
  const std::string text = value.dump(indentation);
  std::size_t at = 0;
  for (std::size_t end = 0; (end = text.find('\n', at)) != text.npos; at = end + 1) {
    pending.append(text, at, end + 1 - at).append(indentation * open.size(), ' ');
  }
  pending.append(text, at);
}

void json_printer::begin(char opening, char closing) {
  pending += opening;
  open.push_back({closing, false});
}

void json_printer::write_out() {
  print_or_throw(stdout, pending, open.empty());
  pending.clear();
}
