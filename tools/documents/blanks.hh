#ifndef BLANKS_HH
#define BLANKS_HH

#include <string_view>

/// What separates words: nobody sees how much of it there is.
constexpr bool is_blank(unsigned c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// `text` without the blanks around it.
inline std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
  while (!text.empty() && is_blank(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
  return text;
}

#endif
