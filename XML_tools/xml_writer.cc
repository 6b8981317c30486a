#include "xml_writer.hh"

#include <unistd.h>

#include "parse_chan_descr.hh"

namespace zrt4::detail {

std::string begin_document() {
  std::string document;
  set_xml_header(document);
  return document;
}

void end_document(std::string& document) {
  document += '\n';
}

void write_document(std::FILE* file, const std::string& document) {
  (void)std::fputs(document.c_str(), file);
  (void)std::fflush(file);
}

bool write_document(int descriptor, const std::string& document) {
  std::string_view rest = document;
  ssize_t written = 0;
  do {
    written = write(descriptor, rest.data(), rest.size());
    if (written == -1) return false;
    rest.remove_prefix(static_cast<std::size_t>(written));
  } while (!rest.empty() && written != 0);
  return true;
}

}  // namespace zrt4::detail
