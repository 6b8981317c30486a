#include "json_text.hh"

#include <langinfo.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>
#include <fstream>
#include <utility>

#include "input_file.hh"

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";

bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The first character, which is taken off.
std::uint32_t take_character(std::string_view& utf8) {
  const auto first = static_cast<unsigned char>(utf8.front());
  const std::size_t more = first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : first >= 0xc0 ? 1 : 0;
  std::uint32_t code = more == 0 ? first : first & (0x3fU >> more);
  for (std::size_t i = 1; i <= more; ++i) {
    code = code << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3fU);
  }
  utf8.remove_prefix(more + 1);
  return code;
}

}  // namespace

bool json_place::skip_blanks() {
  while (at != end && blanks.find(*at) != blanks.npos) ++at;
  return at != end;
}

file_place json_place::in_file() const {
  const char* const last = at == begin ? at : at - 1;
  const char* line = last;
  while (line != begin && line[-1] != '\n') --line;
  return {static_cast<std::uint64_t>(std::count(begin, last, '\n')) + 1,
          static_cast<std::uint64_t>(last - line) + 1};
}

bool json_place::begins_no_number() const {
  if (at == begin) return false;
  const std::string_view rest(at - 1, static_cast<std::size_t>(end - at) + 1);
  return rest.substr(0, 3) == "NaN" || rest.substr(0, 8) == "Infinity";
}

json_text::json_text(const input_file& file) : content(file.content()) {}
json_text::json_text(std::string text) : content(std::move(text)) {}

json_place json_text::start() const {
  const bool marked = content.compare(0, byte_order_mark.size(), byte_order_mark) == 0;
  const char* const begin = content.data();
  return {begin, begin + (marked ? byte_order_mark.size() : 0), begin + content.size()};
}

bool is_json(input_file& file) {
  std::ifstream content(file.path(), std::ios::binary);
  char c = 0;
  for (const char expected : byte_order_mark) {
    if (content.peek() != static_cast<unsigned char>(expected)) break;
    content.get(c);
  }
  while (content.get(c) && blanks.find(c) != blanks.npos) {
  }
  if (!content || (c != '{' && c != '[')) return false;
  // A sign that was typed before a document makes no JSON of it.
  while (content.get(c) && blanks.find(c) != blanks.npos) {
  }
  return !content || c != '<';
}

local_texts::local_texts() : is_utf8(std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0) {}

bool local_texts::convert(std::string_view utf8, std::string_view& local, std::uint32_t& lacked) {
  local = utf8;
  if (is_utf8 || is_ascii(utf8)) return true;
  converted.clear();
  std::mbstate_t state{};
  while (!utf8.empty()) {
    const std::uint32_t code = take_character(utf8);
    char bytes[MB_LEN_MAX];
    const std::size_t size = std::wcrtomb(bytes, static_cast<wchar_t>(code), &state);
    if (size == static_cast<std::size_t>(-1)) {
      lacked = code;
      return false;
    }
    converted.append(bytes, size);
  }
  local = converted;
  return true;
}
