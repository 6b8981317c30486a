#include "SAX_File_Parser.hh"

FileParseHandlers::FileParseHandlers() = default;
FileParseHandlers::~FileParseHandlers() = default;

void FileParseHandlers::resetErrors() {
  fSawErrors = false;
}

SAX_File_Parser::SAX_File_Parser() {
  set_up(nullptr);
}
SAX_File_Parser::~SAX_File_Parser() = default;

bool SAX_File_Parser::start(char* file) {
  return begin(file);
}
