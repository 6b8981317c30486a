#include "lost_characters.hh"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cwchar>

namespace {

constexpr std::uint32_t first_beyond_ascii = 0x80;
constexpr std::uint32_t first_of_pair = 0xd800;
constexpr std::uint32_t second_of_pair = 0xdc00;

bool is_in_code_page(std::uint32_t character) {
  std::mbstate_t state{};
  char bytes[MB_LEN_MAX];
  return std::wcrtomb(bytes, static_cast<wchar_t>(character), &state) !=
         static_cast<std::size_t>(-1);
}

}  // namespace

std::string lost_character(std::string_view element, const XMLCh* text, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    std::uint32_t character = text[i];
    if (character < first_beyond_ascii) continue;
    if (character >= first_of_pair && character < second_of_pair && i + 1 < length) {
      character = 0x10000 + ((character - first_of_pair) << 10U) + (text[++i] - second_of_pair);
    }
    if (is_in_code_page(character)) continue;
    char shown[sizeof "U+10FFFF"];
    std::snprintf(shown, sizeof shown, "U+%04X", character);
    return std::string(element) + " holds " + shown + ", which the code page of this locale lacks";
  }
  return {};
}
