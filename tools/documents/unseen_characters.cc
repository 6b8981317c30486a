#include "unseen_characters.hh"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "encodings.hh"

namespace {

struct range {
  char32_t first, last;
};

constexpr range unseen[] = {
    {0x85, 0x85},     {0xa0, 0xa0},     {0xad, 0xad},     {0x61c, 0x61c},
    {0x1680, 0x1680}, {0x180e, 0x180e}, {0x2000, 0x200f}, {0x2028, 0x202f},
    {0x205f, 0x206f}, {0x3000, 0x3000}, {0xfeff, 0xfeff},
};

/// Calls `use` with each character until it returns true.
template <class Use>
void for_each_character(std::string_view text, Use use) {
  while (!text.empty()) {
    const utf8_character each = utf8_at(text);
    if (each.size != 0 && use(each.code)) return;
    text.remove_prefix(std::max<std::size_t>(each.size, 1));
  }
}

bool is_beyond_ascii(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c >= 0x80; });
}

}  // namespace

bool is_unseen(char32_t character) {
  return std::any_of(std::begin(unseen), std::end(unseen),
                     [&](range each) { return each.first <= character && character <= each.last; });
}

char32_t first_unseen(std::string_view text) {
  char32_t found = 0;
  if (!is_beyond_ascii(text)) return found;
  for_each_character(text, [&](char32_t each) {
    if (is_unseen(each)) found = each;
    return found != 0;
  });
  return found;
}

char32_t unseen_at_end(std::string_view text) {
  if (text.empty() || !is_beyond_ascii(text)) return 0;
  char32_t first = 0;
  char32_t last = 0;
  for_each_character(text, [&](char32_t each) {
    if (first == 0) first = each;
    last = each;
    return false;
  });
  if (is_unseen(first)) return first;
  return is_unseen(last) ? last : 0;
}

std::string code_point(char32_t character) {
  char shown[sizeof "U+FFFFFFFF"];
  std::snprintf(shown, sizeof shown, "U+%04X", static_cast<unsigned>(character));
  return shown;
}
