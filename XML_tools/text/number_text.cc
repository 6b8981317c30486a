#include "number_text.hh"

#include <langinfo.h>

#include <algorithm>
#include <cfenv>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>

namespace zrt4::detail {

namespace {

constexpr int precision = 6;

// Every integer up to here is a float, and so is every power of ten of the table.
constexpr std::uint64_t largest_exact = std::uint64_t{1} << std::numeric_limits<float>::digits;
constexpr std::uint64_t powers_of_ten[] = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000, 10000000000};

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

constexpr std::uint64_t digit(char c) {
  return static_cast<std::uint64_t>(c - '0');
}

bool decimal_point_is_plain() {
  const char* point = nl_langinfo(RADIXCHAR);
  return point[0] == '.' && point[1] == '\0';
}

// std::to_chars prints what printf prints when the decimal point is '.' and ties go to even.
bool prints_like_to_chars() {
  return decimal_point_is_plain() && std::fegetround() == FE_TONEAREST;
}

}  // namespace

// A decimal point is one or, in UTF-8, more bytes.
void number_text::make_point_plain() {
  const std::string_view point = nl_langinfo(RADIXCHAR);
  char* const end = characters.data() + size;
  char* const found = std::search(characters.data(), end, point.begin(), point.end());
  if (point.empty() || found == end) return;
  *found = '.';
  std::copy(found + point.size(), end + 1, found + 1);
  size -= point.size() - 1;
}

template <class... Format>
void number_text::print(Format... format) {
  char* end = std::to_chars(characters.data(), characters.data() + room - 1, format...).ptr;
  *end = '\0';
  size = static_cast<std::size_t>(end - characters.data());
}

number_text number_text::local(double number, std::chars_format format) {
  number_text text;
  if (prints_like_to_chars()) {
    text.print(number, format, precision);
  } else {
    const int length = format == std::chars_format::fixed
                           ? std::snprintf(text.characters.data(), room, "%f", number)
                           : std::snprintf(text.characters.data(), room, "%e", number);
    text.size = static_cast<std::size_t>(length);
  }
  return text;
}

number_text decimal(int number) {
  number_text text;
  text.print(number);
  return text;
}

number_text fixed(double number) {
  return number_text::local(number, std::chars_format::fixed);
}

number_text scientific(double number) {
  return number_text::local(number, std::chars_format::scientific);
}

number_text general(double number) {
  number_text text;
  if (std::fegetround() == FE_TONEAREST) {
    text.print(number, std::chars_format::general, precision);
    return text;
  }
  const int length = std::snprintf(text.characters.data(), number_text::room, "%g", number);
  text.size = static_cast<std::size_t>(length);
  text.make_point_plain();
  return text;
}

// Digits and power of ten are exact as floats, so that their quotient is rounded once, as sscanf
// rounds: also towards another direction, and also when it is computed in a wider format.
bool read_plain_number(const char* text, float& number) {
  const bool negative = *text == '-';
  const char* at = negative ? text + 1 : text;
  if (!is_digit(*at)) return false;
  std::uint64_t digits = 0;
  for (; is_digit(*at); ++at) {
    digits = 10 * digits + digit(*at);
    if (digits > largest_exact) return false;
  }
  std::size_t decimals = 0;
  if (*at == '.' && decimal_point_is_plain()) {
    std::size_t pending = 0;  // zeros count only when another digit follows
    for (++at; is_digit(*at); ++at) {
      ++pending;
      if (*at == '0') continue;
      if (decimals + pending >= std::size(powers_of_ten)) return false;
      digits = powers_of_ten[pending] * digits + digit(*at);
      if (digits > largest_exact) return false;
      decimals += pending;
      pending = 0;
    }
  }
  if (*at != '\0') return false;
  const auto magnitude = static_cast<float>(digits);
  number = (negative ? -magnitude : magnitude) / static_cast<float>(powers_of_ten[decimals]);
  return true;
}

}  // namespace zrt4::detail
