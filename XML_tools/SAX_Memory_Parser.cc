#include "SAX_Memory_Parser.hh"

MemParseHandlers::MemParseHandlers() = default;
MemParseHandlers::~MemParseHandlers() = default;

SAX_Memory_Parser::SAX_Memory_Parser(char* text) {
  set_up(text);
}
SAX_Memory_Parser::~SAX_Memory_Parser() = default;

bool SAX_Memory_Parser::start() {
  return begin(nullptr);
}
