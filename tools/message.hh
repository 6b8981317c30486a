#ifndef MESSAGE_HH
#define MESSAGE_HH

#include <cstdio>
#include <string>

/// One line on standard error: "zrt4xml: FILE: text".
inline void complain(const std::string& file, const std::string& text) {
  std::fflush(stdout);
  std::fprintf(stderr, "zrt4xml: %s: %s\n", file.c_str(), text.c_str());
}

#endif
