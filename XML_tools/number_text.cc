#include "number_text.hh"

#include <langinfo.h>

#include <cfenv>
#include <cstdio>
#include <cstring>
#include <system_error>

namespace zrt4::detail {

namespace {

constexpr int precision = 6;

// std::to_chars and std::from_chars do what printf and scanf do while the decimal point is '.' and
// results are rounded to the nearest number.
bool stdio_is_plain() {
  const char* point = nl_langinfo(RADIXCHAR);
  return point[0] == '.' && point[1] == '\0' && std::fegetround() == FE_TONEAREST;
}

}  // namespace

template <class... Format>
void number_text::print(Format... format) {
  char* end = std::to_chars(characters.data(), characters.data() + room - 1, format...).ptr;
  *end = '\0';
  size = static_cast<std::size_t>(end - characters.data());
}

number_text number_text::local(double number, std::chars_format format) {
  number_text text;
  if (stdio_is_plain()) {
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
  text.print(number, std::chars_format::general, precision);
  return text;
}

bool read_plain_number(const char* text, float& number) {
  const char first = text[text[0] == '-' ? 1 : 0];
  const bool a_name_or_a_blank = first != '.' && (first < '0' || first > '9');
  if (a_name_or_a_blank || !stdio_is_plain()) return false;
  const char* end = text + std::strlen(text);
  float read = 0;
  const auto [stopped, error] = std::from_chars(text, end, read);
  if (error != std::errc() || stopped != end) return false;
  number = read;
  return true;
}

}  // namespace zrt4::detail
