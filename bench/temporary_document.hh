#ifndef TEMPORARY_DOCUMENT_HH
#define TEMPORARY_DOCUMENT_HH

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

namespace bench {

/// A document in a file, as long as it lives.
class temporary_document {
 public:
  explicit temporary_document(const std::string& text) {
    std::FILE* out = fdopen(mkstemp(name.data()), "w");
    if (out == nullptr || std::fwrite(text.data(), 1, text.size(), out) != text.size() ||
        std::fclose(out) != 0) {
      std::perror("a document of the benchmark");
      std::abort();
    }
  }
  temporary_document(temporary_document&& other) noexcept : name(std::exchange(other.name, {})) {}
  temporary_document& operator=(temporary_document&&) = delete;
  ~temporary_document() {
    if (!name.empty()) unlink(name.c_str());
  }

  char* path() { return name.data(); }

 private:
  std::string name = "/tmp/zrt4_bench_XXXXXX";
};

}  // namespace bench

#endif
