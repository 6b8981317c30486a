#include "terminal.hh"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace {

bool colours_are_wanted() {
  const char* refused = std::getenv("NO_COLOR");
  if (refused != nullptr && *refused != '\0') return false;
  const char* terminal = std::getenv("TERM");
  return output_is_terminal() && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

const char* code_of(colour wanted) {
  switch (wanted) {
    case colour::red:
      return "31";
    case colour::green:
      return "32";
    case colour::yellow:
      return "33";
    case colour::bold:
      break;
  }
  return "1";
}

// Terminals obey these, too.
bool is_control(wchar_t code) {
  return code >= 0x80 && code < 0xa0;
}

void append_escaped(std::string& to, char c) {
  char escaped[sizeof "\\x00"];
  std::snprintf(escaped, sizeof escaped, "\\x%02x",
                static_cast<unsigned>(static_cast<unsigned char>(c)));
  to += escaped;
}

}  // namespace

bool output_is_terminal() {
  return isatty(STDOUT_FILENO) == 1;
}

std::string coloured(colour wanted, const std::string& text) {
  if (!colours_are_wanted()) return text;
  return std::string("\033[") + code_of(wanted) + "m" + text + "\033[0m";
}

std::string printable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  std::mbstate_t state{};
  while (!text.empty()) {
    const auto unit = static_cast<unsigned char>(text[0]);
    std::size_t size = 1;
    bool is_shown = unit >= 0x20 && unit < 0x7f;
    if (unit >= 0x80) {
      wchar_t code = 0;
      size = std::mbrtowc(&code, text.data(), text.size(), &state);
      const bool is_character = size != 0 && size <= text.size();
      is_shown = is_character && !is_control(code);
      if (!is_character) {
        state = {};
        size = 1;
      }
    }
    if (is_shown) {
      shown += text.substr(0, size);
    } else {
      for (const char c : text.substr(0, size)) append_escaped(shown, c);
    }
    text.remove_prefix(size);
  }
  return shown;
}

std::string shortened(const std::string& text) {
  constexpr std::size_t enough = 80;
  if (text.size() <= enough) return text;
  std::size_t end = 0;
  std::mbstate_t state{};
  while (end < enough) {
    const std::size_t size = std::mbrlen(text.data() + end, text.size() - end, &state);
    const bool is_character = size != 0 && size <= text.size() - end;
    if (!is_character) state = {};
    end += is_character ? size : 1;
  }
  return text.substr(0, end) + "...";
}
