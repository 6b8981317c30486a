// Runs a fuzz target over the files that are named on the command line.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** names) {
  if (count < 2) {
    std::fprintf(stderr, "usage: %s FILE ...\n", names[0]);
    return 2;
  }
  for (int i = 1; i < count; ++i) {
    std::ifstream file(names[i], std::ios::binary);
    if (!file) {
      std::perror(names[i]);
      return 1;
    }
    std::vector<char> text{std::istreambuf_iterator<char>(file), {}};
    std::vector<std::uint8_t> bytes(text.begin(), text.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::printf("%d files\n", count - 1);
  return 0;
}
