#ifndef PULL_PARSER_SUPPORT_HH
#define PULL_PARSER_SUPPORT_HH

// The same document through both variants of the pull parser.

#include <climits>
#include <cstdlib>
#include <string>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "support.hh"

namespace test {

struct in_memory {
  using parser_type = SAX_Memory_Parser;
  using handler_type = MemParseHandlers;
  using attribute_type = attr;

  explicit in_memory(const std::string& document) : text(document), parser(text.data()) {}
  bool start() { return parser.start(); }
  static std::string system_id() { return "my_mem_info"; }

  std::string text;
  SAX_Memory_Parser parser;
};

struct in_file {
  using parser_type = SAX_File_Parser;
  using handler_type = FileParseHandlers;
  using attribute_type = attrf;

  explicit in_file(const std::string& document) : file(document) {}
  bool start() { return parser.start(file.name()); }
  std::string system_id() const { return file.path(); }

  temporary_file file;
  SAX_File_Parser parser;
};

inline std::string shown(const char* text) {
  return text == nullptr ? "-" : "'" + std::string(text) + "'";
}

/// One step as "code tag value", absent texts as "-".
template <class Parser>
std::string step(Parser& parser) {
  static char untouched[] = "untouched";
  char* tag = untouched;
  char* val = untouched;
  const int code = parser.parse(&tag, &val);
  return std::to_string(code) + " " + shown(tag) + " " + shown(val);
}

/// Every step up to the first that returns non-zero, one line each.
template <class Parser>
std::string trace(Parser& parser) {
  std::string lines;
  for (;;) {
    const std::string line = step(parser);
    lines += line + "\n";
    if (line.rfind("0 ", 0) != 0) return lines;
  }
}

}  // namespace test

#endif
