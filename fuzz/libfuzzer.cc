// Runs a fuzz target for libFuzzer.

#include <cstddef>
#include <cstdint>
#include <functional>

#include "fuzz.hh"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t hash = std::hash<std::string_view>()(input);
  fuzz::run(input, static_cast<unsigned>(hash % fuzz::ways));
  return 0;
}
