#include "json.hh"

#include <cstdint>
#include <cwchar>
#include <nlohmann/json.hpp>

#include "output_file.hh"

namespace {

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

void print_json(const json& value) {
  write_output("-", value.dump(2) + "\n");
}
