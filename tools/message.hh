#ifndef MESSAGE_HH
#define MESSAGE_HH

#include <cstdio>
#include <string>

/// One line on standard error: "zrt4xml: FILE: text".
inline void complain(const std::string& file, const std::string& text) {
  std::fflush(stdout);
  std::fprintf(stderr, "zrt4xml: %s: %s\n", file.c_str(), text.c_str());
}

/// Tells that `errors` were met while reading `file`, and what becomes of the rest.
inline void complain_of_errors(const std::string& file, int errors, const std::string& rest) {
  complain(file, "not read cleanly (" + std::to_string(errors) +
                     (errors == 1 ? " error" : " errors") + "); " + rest);
}

#endif
