#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "fuzz.hh"

namespace {

template <class Parser>
int walk(Parser& parser) {
  char name[] = "name";
  char* tag = nullptr;
  char* value = nullptr;
  int code = 0;
  while ((code = parser.parse(&tag, &value)) == 0) {
    if (tag != nullptr) parser.get_attr(name, &value);
  }
  if (code == -1 && parser.get_error_counter() != 0) fuzz::broken("an end without errors");
  if (code > 0 && parser.get_error_counter() != code) fuzz::broken("the code is the error count");
  return code;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::set_up();
  std::string text = fuzz::text(data, size);
  int in_memory = 1;
  {
    SAX_Memory_Parser parser(text.data());
    if (!parser.init_ok()) fuzz::broken("a parser is set up");
    if (!parser.start()) in_memory = walk(parser);
  }
  if (text.find('\0') != std::string::npos) return 0;
  fuzz::input_file file(data, size);
  SAX_File_Parser parser;
  const int in_file = parser.start(file.name()) ? 1 : walk(parser);
  if ((in_memory == -1) != (in_file == -1)) fuzz::broken("text and file read alike");
  return 0;
}
