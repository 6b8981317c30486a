#include "encodings.hh"

#include <algorithm>
#include <array>
#include <climits>
#include <cwchar>

#include "blanks.hh"

namespace {

constexpr std::string_view utf8_mark = "\xef\xbb\xbf";

unsigned char byte_at(std::string_view text, std::size_t place) {
  return static_cast<unsigned char>(text[place]);
}

bool is_continuation(unsigned char byte) {
  return (byte & 0xc0U) == 0x80;
}

std::string in_upper_case(std::string_view name) {
  std::string upper(name);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (c == '_') c = '-';
  }
  return upper;
}

bool is_one_of(const std::string& name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool begins_with(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

// The value of `encoding` in "<?xml ... encoding='...' ...?>".
std::string declared_in(std::string_view declaration) {
  std::size_t at = declaration.find("encoding");
  if (at == declaration.npos) return {};
  at += std::string_view("encoding").size();
  while (at < declaration.size() && (is_blank(byte_at(declaration, at)) || declaration[at] == '='))
    ++at;
  if (at == declaration.size()) return {};
  const char quote = declaration[at++];
  if (quote != '"' && quote != '\'') return {};
  return std::string(declaration.substr(at, declaration.find(quote, at) - at));
}

constexpr std::array<char32_t, 0x20> between_latin = {
    0x20ac, 0xfffd, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xfffd, 0x017d, 0xfffd, 0xfffd, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0xfffd, 0x017e, 0x0178};

}  // namespace

encoding_family family_of(std::string_view encoding) {
  const std::string name = in_upper_case(encoding);
  if (is_one_of(name, {"UTF-8", "UTF8"})) return encoding_family::utf8;
  if (is_one_of(name, {"US-ASCII", "USASCII", "ASCII", "ISO646-US"})) return encoding_family::ascii;
  if (is_one_of(name, {"ISO-8859-1", "ISO8859-1", "LATIN1", "LATIN-1", "L1", "ISO-8859-9", "LATIN5",
                       "ISO-8859-15", "LATIN9", "LATIN-9"})) {
    return encoding_family::latin;
  }
  if (is_one_of(name, {"WINDOWS-1252", "CP1252"})) return encoding_family::windows_1252;
  for (const char* const start : {"UTF-16", "UTF16", "UTF-32", "UCS", "ISO-10646"}) {
    if (begins_with(name, start)) return encoding_family::wide;
  }
  return encoding_family::other;
}

document_start start_of(std::string_view document) {
  constexpr std::size_t longest_declaration = 1024;
  document_start start;
  if (begins_with(document, utf8_mark)) start.mark = utf8_mark.size();
  if (begins_with(document, "\xff\xfe") || begins_with(document, "\xfe\xff")) start.mark = 2;
  std::string head(document.substr(start.mark, longest_declaration));
  start.is_wide = start.mark == 2 || begins_with(head, std::string_view("<\0?\0", 4)) ||
                  begins_with(head, std::string_view("\0<\0?", 4));
  if (start.is_wide) head.erase(std::remove(head.begin(), head.end(), '\0'), head.end());
  if (begins_with(head, "<?xml") && head.size() > 5 && is_blank(byte_at(head, 5))) {
    start.encoding = declared_in(std::string_view(head).substr(0, head.find("?>")));
  }
  return start;
}

utf8_character utf8_at(std::string_view text) {
  const unsigned char lead = byte_at(text, 0);
  if (lead < 0x80) return {1, lead};
  const std::size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4 || text.size() < size) return {};
  char32_t code = lead & (0xffU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if (!is_continuation(byte_at(text, i))) return {};
    code = code << 6U | (byte_at(text, i) & 0x3fU);
  }
  const bool is_short = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool is_half_a_pair = code >= 0xd800 && code < 0xe000;
  if (is_short || is_half_a_pair || code > 0x10ffff) return {};
  return {size, code};
}

char32_t windows_1252(unsigned char byte) {
  return byte >= 0x80 && byte < 0xa0 ? between_latin[byte - 0x80U] : byte;
}

unsigned char windows_1252_byte(char32_t character) {
  if (character < 0x80 || (character >= 0xa0 && character < 0x100)) {
    return static_cast<unsigned char>(character);
  }
  const auto* const found = std::find(between_latin.begin(), between_latin.end(), character);
  if (character == 0xfffd || found == between_latin.end()) {
    // A control character, which those who read it in ISO-8859-1 made of it.
    return character < 0xa0 ? static_cast<unsigned char>(character) : 0;
  }
  return static_cast<unsigned char>(0x80 + (found - between_latin.begin()));
}

std::string in_locale(char32_t character) {
  std::mbstate_t state{};
  char bytes[MB_LEN_MAX];
  const std::size_t size = std::wcrtomb(bytes, static_cast<wchar_t>(character), &state);
  return size == static_cast<std::size_t>(-1) ? "?" : std::string(bytes, size);
}

bool is_certainly_utf8(std::string_view bytes, utf8_character read, encoding_family family) {
  if (read.size < 2) return false;
  if (read.size > 2) return true;
  const unsigned char lead = byte_at(bytes, 0);
  const bool is_letter_or_sign = lead == 0xc2 || lead == 0xc3;
  const bool is_greek = lead == 0xce || lead == 0xcf;
  const bool is_cyrillic = lead == 0xd0 || lead == 0xd1;
  const bool is_control = family == encoding_family::latin && byte_at(bytes, 1) < 0xa0;
  return is_letter_or_sign || is_greek || is_cyrillic || is_control;
}
