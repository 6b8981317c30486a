// Prints what hostile documents cost their readers:
//   cost_table [SIZE...] [FAMILY]
// for each family, multiplier, size and reader the processor time and the memory, in all and by the
// byte, and whether that is more than is promised.

#include <cstdio>
#include <cstdlib>

#include "cost_of_reading.hh"
#include "hostile_documents.hh"

namespace {

void print(const cost::hostile_document& document, const cost::reader& with) {
  const cost::taken taken = cost::measure(with, document.text);
  const auto size = static_cast<double>(document.text.size());
  const bool is_over = taken.seconds > 1 + size * (with.makes_tree ? 4e-6 : 1e-6) ||
                       taken.bytes > (1 << 26) + size * (with.makes_tree ? 256 : 64);
  std::printf("%s | %s | %s | %zu | %.3f | %.3f | %.1f | %.0f | %.2f | %s\n",
              document.family.c_str(), document.multiplier.c_str(), with.name, document.text.size(),
              taken.seconds, taken.seconds * 1e6 / size, taken.bytes / 1048576, taken.bytes / size,
              taken.bytes_of_messages / 1048576,
              !taken.ended ? "stopped"
              : is_over    ? "over"
                           : "");
  std::fflush(stdout);
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::size_t> sizes;
  std::string only;
  for (int i = 1; i < count; ++i) {
    const std::size_t size = std::strtoul(arguments[i], nullptr, 10);
    if (size != 0) {
      sizes.push_back(size);
    } else {
      only = arguments[i];
    }
  }
  if (sizes.empty()) sizes = {8'000, 65'536, 1'048'576};
  std::puts("family | multiplier | reader | bytes | s | us/byte | MB | bytes/byte | messages MB |");
  for (const std::string& family : cost::families()) {
    if (!only.empty() && family != only) continue;
    for (const std::string& multiplier : cost::multipliers_of(family)) {
      for (const std::size_t size : sizes) {
        for (const cost::reader& with : cost::readers()) {
          print(cost::make(family, multiplier, size, with.root), with);
        }
      }
    }
  }
}
