#ifndef NUMBER_TEXT_HH
#define NUMBER_TEXT_HH

// Numbers as text for the writers of listings, text files and documents, and back: what printf
// would print and scanf would read, without a stream, an allocation or, in the usual case, a format
// string.

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace zrt4::detail {

/// One number as zero-terminated text in memory of its own. Made by the functions below; use it
/// while the object lives, for instance `append_leaf(out, "INDEX", decimal(7))`.
class number_text {
 public:
  operator std::string_view() const { return {characters.data(), size}; }
  const char* c_str() const { return characters.data(); }

 private:
  friend number_text decimal(int number);
  friend number_text fixed(double number);
  friend number_text scientific(double number);
  friend number_text general(double number);

  template <class... Format>
  void print(Format... format);
  static number_text local(double number, std::chars_format format);
  void make_point_plain();

  // Enough for every number: -1.8e308 in fixed notation has 309 digits before its decimal point.
  static constexpr std::size_t room = 352;
  std::array<char, room> characters;
  std::size_t size;
};

number_text decimal(int number);        ///< "%d"
number_text fixed(double number);       ///< "%f", with the decimal point of LC_NUMERIC
number_text scientific(double number);  ///< "%e", with the decimal point of LC_NUMERIC
number_text general(double number);     ///< "%g", always with '.', as a C++ stream prints it

/// The decimal number at the start of `text` as strtol reads it, wrapped into 32 bits. Nearly all
/// are a few digits, maybe with a line end.
inline std::int32_t read_decimal(const char* text) {
  constexpr std::ptrdiff_t digits_that_fit = 9;
  std::int32_t number = 0;
  const char* digit = text;
  for (; *digit >= '0' && *digit <= '9' && digit - text < digits_that_fit; ++digit)
    number = 10 * number + (*digit - '0');
  const bool complete = digit != text && !(*digit >= '0' && *digit <= '9');
  return complete ? number : static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
}

/// Reads a text that is wholly one plain number (digits, maybe after a minus sign, maybe with a
/// decimal point) of few digits exactly as sscanf's "%f" reads it. False, and `number` as it was,
/// for any other text: leave those to sscanf.
bool read_plain_number(const char* text, float& number);

/// Reads a number as sscanf's "%f" does. False, and `number` as it was, when the text begins with
/// none.
inline bool read_number(const char* text, float& number) {
  return read_plain_number(text, number) || std::sscanf(text, "%f", &number) == 1;
}

}  // namespace zrt4::detail

#endif
