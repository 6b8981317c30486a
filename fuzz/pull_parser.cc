#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "fuzz.hh"

namespace {

void note(std::string& steps, const char* text) {
  if (text != nullptr) steps += text;
  steps += text != nullptr ? '\n' : '\0';
}

// All steps, and how they end.
template <class Parser>
std::string walk(Parser& parser) {
  std::string steps;
  char name[] = "name";
  char* tag = nullptr;
  char* value = nullptr;
  int code = 0;
  while ((code = parser.parse(&tag, &value)) == 0) {
    note(steps, tag);
    note(steps, value);
    if (tag != nullptr && parser.get_attr(name, &value) == 0) note(steps, value);
  }
  if (code == -1 && parser.get_error_counter() != 0) fuzz::broken("an end without errors");
  if (code > 0 && parser.get_error_counter() != code) fuzz::broken("the code is the error count");
  return steps + std::to_string(code);
}

std::string in_memory(std::string text) {
  SAX_Memory_Parser parser(text.data());
  if (!parser.init_ok()) fuzz::broken("a parser is set up");
  return parser.start() ? "no start" : walk(parser);
}

std::string in_file(const std::string& text) {
  char* const name = fuzz::file_of(text);
  SAX_File_Parser parser;
  if (!parser.init_ok()) fuzz::broken("a parser is set up");
  return parser.start(name) ? "no start" : walk(parser);
}

}  // namespace

const unsigned fuzz::ways = 3;

void fuzz::read(const std::string& input, unsigned way) {
  if (way == 0) {
    in_memory(input);
  } else if (way == 1) {
    in_file(input);
  } else if (in_memory(input) != in_file(input.c_str())) {
    broken("text and file read alike");
  }
}
