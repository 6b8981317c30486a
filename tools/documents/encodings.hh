#ifndef ENCODINGS_HH
#define ENCODINGS_HH

// As much of encodings as it takes to tell that a text was written in another one than it is read
// in.

#include <cstddef>
#include <string>
#include <string_view>

enum class encoding_family {
  utf8,
  ascii,
  latin,         ///< ISO-8859-1 and its likes: 0x80 to 0x9F are control characters
  windows_1252,  ///< where those are characters
  wide,          ///< units of 2 or 4 bytes
  other
};

encoding_family family_of(std::string_view encoding);

/// How a document begins.
struct document_start {
  std::size_t mark = 0;  ///< bytes of a byte order mark
  bool is_wide = false;  ///< its units have 2 bytes
  std::string encoding;  ///< as it is declared; empty when it is not
};

document_start start_of(std::string_view document);

/// A character of UTF-8: bytes, 0 when these are none.
struct utf8_character {
  std::size_t size = 0;
  char32_t code = 0;
};
utf8_character utf8_at(std::string_view text);

/// The character of a byte in windows-1252, which is that of ISO-8859-1 but for 0x80 to 0x9F. Those
/// that it lacks are U+FFFD.
char32_t windows_1252(unsigned char byte);
/// The byte of a character in windows-1252; 0 when it has none.
unsigned char windows_1252_byte(char32_t character);

/// A character in the code page of the locale; "?" where this lacks it.
std::string in_locale(char32_t character);

/// Whether bytes that are read in a Latin encoding are so certainly a character of UTF-8 that
/// nobody means what is read. A few pairs, such as the letter and the sign of an upper case
/// "CAFÉ»", are meant.
bool is_certainly_utf8(std::string_view bytes, utf8_character read, encoding_family family);

#endif
