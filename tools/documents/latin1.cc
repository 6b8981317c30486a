#include "latin1.hh"

#include <cstdint>
#include <optional>

namespace {

constexpr std::uint32_t last_of_latin1 = 0xff;

struct character {
  std::optional<std::uint32_t> code;  ///< nothing when the bytes are no character
  std::size_t size;                   ///< in bytes
};

character next(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(0);
  if (first < 0x80) return {first, 1};
  const std::size_t size = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : first >= 0xc0 ? 2 : 0;
  if (size == 0 || size > text.size()) return {{}, 1};
  std::uint32_t code = first & (0xffU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xc0U) != 0x80) return {{}, 1};
    code = code << 6 | (byte(i) & 0x3fU);
  }
  return {code, size};
}

template <class Use>
void for_each_character(std::string_view text, Use&& use) {
  while (!text.empty()) {
    const character here = next(text);
    use(here.code);
    text.remove_prefix(here.size);
  }
}

}  // namespace

std::string to_latin1(std::string_view utf8) {
  std::string latin1;
  latin1.reserve(utf8.size());
  for_each_character(utf8, [&](std::optional<std::uint32_t> code) {
    if (!code) return;
    if (*code <= last_of_latin1) {
      latin1 += static_cast<char>(*code);
    } else {
      latin1.append("&#").append(std::to_string(*code)).append(";");
    }
  });
  return latin1;
}

std::string unwritable(std::string_view text, bool& fatal) {
  fatal = true;
  if (text.find('&') != text.npos) return "holds '&'";
  if (text.find('<') != text.npos) return "holds '<'";
  if (text.find("]]>") != text.npos) return "holds ']]>'";
  for (const char c : text) {
    const auto unit = static_cast<unsigned char>(c);
    if (unit < 0x20 && c != '\t' && c != '\n' && c != '\r') return "holds a control character";
  }
  fatal = false;
  if (text.find('\r') != text.npos) return "holds a carriage return, which reading drops";
  if (!text.empty() && text.find_first_not_of(" \n\t") == text.npos) {
    return "is white space only, which reading drops";
  }
  // The readers keep what follows a reference, not what precedes it.
  bool lost = false;
  bool at_start = true;
  for_each_character(text, [&](std::optional<std::uint32_t> code) {
    lost = lost || (code && *code > last_of_latin1 && !at_start);
    at_start = false;
  });
  return lost ? "holds a character that ISO-8859-1 lacks: readers lose what stands before it" : "";
}
