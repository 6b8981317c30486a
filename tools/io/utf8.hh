#ifndef UTF8_HH
#define UTF8_HH

#include <string>

inline void append_utf8(std::string& text, char32_t code) {
  const auto continued = [&](unsigned shift) {
    text += static_cast<char>(0x80U | (code >> shift & 0x3fU));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xc0U | code >> 6);
    continued(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xe0U | code >> 12);
    continued(6);
    continued(0);
  } else {
    text += static_cast<char>(0xf0U | code >> 18);
    continued(12);
    continued(6);
    continued(0);
  }
}

#endif
