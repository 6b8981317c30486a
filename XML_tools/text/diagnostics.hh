#ifndef DIAGNOSTICS_HH
#define DIAGNOSTICS_HH

// Plain diagnostic lines: no levels, no time stamps.

#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zrt4::detail {

/// Writes the parts as one piece, so that lines of several processes do not mix, and flushes.
inline void say(std::FILE* stream, std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

}  // namespace zrt4::detail

#endif
