#include "plain_number.hh"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "blanks.hh"
#include "encodings.hh"
#include "unseen_characters.hh"

namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool is_all_digits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), is_digit);
}

/// A character as it is typed on a plain keyboard, 0 when it is none.
char plain_character(char32_t code) {
  constexpr char32_t zeros[] = {0x660, 0x6f0, 0x966, 0xff10};
  for (const char32_t zero : zeros) {
    if (code >= zero && code <= zero + 9) return static_cast<char>('0' + (code - zero));
  }
  if (code == 0x2212 || (code >= 0x2010 && code <= 0x2015) || code == 0xff0d) return '-';
  if (code == 0xff0b) return '+';
  if (code == 0x2018 || code == 0x2019) return '\'';
  if (is_unseen(code)) return ' ';
  return code < 0x80 ? static_cast<char>(code) : '\0';
}

/// Empty when a character has no plain one.
std::string in_plain_characters(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const utf8_character each = utf8_at(text);
    const char c = each.size == 0 ? '\0' : plain_character(each.code);
    if (c == '\0') return {};
    plain += c;
    text.remove_prefix(each.size);
  }
  return plain;
}

/// The digits of "1 000 000", empty when they are not in such groups.
std::string without_groups(std::string_view text, char separator) {
  std::size_t at = text.find(separator);
  if (at == text.npos || at == 0 || at > 3) return {};
  std::string digits(text.substr(0, at));
  while (at < text.size()) {
    const std::string_view group = text.substr(at + 1, 3);
    const std::size_t next = at + 1 + group.size();
    if (group.size() != 3 || (next < text.size() && text[next] != separator)) return {};
    digits += group;
    at = next;
  }
  return is_all_digits(digits) ? digits : std::string();
}

/// "1e3" and "2048.0", as long as they are whole.
std::string written_out(std::string_view text) {
  if (text.find_first_not_of("0123456789.eE+") != text.npos || !is_digit(text[0])) return {};
  const std::size_t point = text.find('.');
  const bool may_be_a_group = point != text.npos && text.size() - point == sizeof ".000" - 1;
  if (may_be_a_group) return {};
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  constexpr double beyond = 1e15;
  if (read.ec != std::errc() || read.ptr != end || number >= beyond) return {};
  if (std::floor(number) != number) return {};
  return std::to_string(static_cast<std::int64_t>(number));
}

/// Of letters that look like digits, beside at least one of these.
std::string without_letters(std::string_view text) {
  if (std::none_of(text.begin(), text.end(), is_digit)) return {};
  std::string digits(text);
  for (char& c : digits) {
    if (c == 'O' || c == 'o') c = '0';
    if (c == 'l' || c == 'I') c = '1';
  }
  return is_all_digits(digits) ? digits : std::string();
}

std::string number_in(std::string_view plain) {
  if (is_all_digits(plain)) return std::string(plain);
  for (const char separator : {' ', '\'', '_', ','}) {
    std::string digits = without_groups(plain, separator);
    if (!digits.empty()) return digits;
  }
  if (std::count(plain.begin(), plain.end(), '.') > 1) return without_groups(plain, '.');
  std::string digits = written_out(plain);
  return digits.empty() ? without_letters(plain) : digits;
}

}  // namespace

std::string plain_number(std::string_view text) {
  const std::string characters = in_plain_characters(text);
  std::string_view plain = trimmed(characters);
  if (plain.size() > 2 && plain.front() == plain.back() &&
      (plain.front() == '"' || plain.front() == '\'')) {
    plain = trimmed(plain.substr(1, plain.size() - 2));
  }
  const bool is_negative = !plain.empty() && plain[0] == '-';
  if (is_negative) plain = trimmed(plain.substr(1));
  if (plain.empty()) return {};
  const std::string digits = number_in(plain);
  if (digits.empty()) return {};
  return is_negative ? "-" + digits : digits;
}
