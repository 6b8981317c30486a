#ifndef EVENT_NUMBER_TEXT_HH
#define EVENT_NUMBER_TEXT_HH

// The numbers of event lists, as text.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace zrt4::detail {

constexpr unsigned no_digit = 16;

constexpr unsigned digit_of(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return no_digit;
}

/// Reads a text that is wholly digits, few enough to fit in any case.
inline bool read_digits(const char* text, unsigned base, std::ptrdiff_t longest,
                        std::uint32_t& field) {
  std::uint32_t number = 0;
  const char* at = text;
  for (; digit_of(*at) < base; ++at) number = base * number + digit_of(*at);
  if (at == text || at - text > longest || *at != '\0') return false;
  field = number;
  return true;
}

/// What nearly all numbers look like, read as the general rule below would.
inline bool read_plain_event_number(const char* text, std::uint32_t& field) {
  if (text[0] == '0' && text[1] == 'x') return read_digits(text + 2, 16, 8, field);
  return read_digits(text, 10, 9, field);
}

/// A text that is no number leaves the field as it was. Only a lower-case x makes it hexadecimal.
inline void read_event_number(const char* text, std::uint32_t& field) {
  if (read_plain_event_number(text, field)) return;
  if (std::strchr(text, 'x') != nullptr) {
    std::sscanf(text, " 0x%X ", &field);
  } else {
    std::sscanf(text, "%u", &field);
  }
}

}  // namespace zrt4::detail

#endif
