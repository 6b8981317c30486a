#include "xml_writer.hh"

#include <sys/mman.h>
#include <unistd.h>

#include <exception>
#include <memory>

#include "document_head.hh"

namespace zrt4::detail {

namespace {

// The kernel hands out the memory of a long document page by page, which takes longer than writing
// it. Large pages take a sixth of that. It is a hint: whoever has no large pages gets small ones.
void prefer_large_pages(std::string& document) {
#ifdef MADV_HUGEPAGE
  constexpr std::size_t large_page = 2U << 20U;
  void* memory = document.data();
  std::size_t space = document.capacity();
  if (std::align(large_page, large_page, memory, space) == nullptr) return;
  (void)madvise(memory, space / large_page * large_page, MADV_HUGEPAGE);
#endif
}

}  // namespace

std::string begin_document(std::string* destination) {
  std::string document;
  if (destination != nullptr && destination->empty()) document.swap(*destination);
  set_declaration(document);
  return document;
}

void expect_length(std::string& document, std::size_t length) {
  if (length <= document.capacity()) return;
  try {
    document.reserve(length);
  } catch (const std::exception&) {
    return;  // what is written may well be shorter
  }
  prefer_large_pages(document);
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
