#include "number_text.hh"

#include <langinfo.h>

#include <cfenv>
#include <cstdio>

namespace zrt4::detail {

namespace {

constexpr int precision = 6;

// std::to_chars prints what printf prints when the decimal point is '.' and ties go to even.
bool prints_like_to_chars() {
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
  text.print(number, std::chars_format::general, precision);
  return text;
}

}  // namespace zrt4::detail
