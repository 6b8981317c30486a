#ifndef FUZZ_HH
#define FUZZ_HH

// What the fuzz targets share.

#include <sys/mman.h>
#include <unistd.h>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

inline std::string text(const std::uint8_t* data, std::size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

/// What a target states about the library does not hold.
[[noreturn]] inline void broken(const char* promise) {
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

/// Set up once: what the library prints goes nowhere, and the XML library stays initialised, which
/// makes an execution ten times as fast.
inline bool set_up() {
  static const bool done = [] {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) std::abort();
    xercesc::XMLPlatformUtils::Initialize();
    return true;
  }();
  return done;
}

/// A file in memory that holds the input, for the readers of files.
class input_file {
 public:
  input_file(const std::uint8_t* data, std::size_t size)
      : descriptor(memfd_create("input", 0)), path("/proc/self/fd/" + std::to_string(descriptor)) {
    if (descriptor == -1 || write(descriptor, data, size) != static_cast<ssize_t>(size)) {
      std::abort();
    }
  }
  input_file(const input_file&) = delete;
  input_file& operator=(const input_file&) = delete;
  ~input_file() { close(descriptor); }
  char* name() { return path.data(); }

 private:
  int descriptor;
  std::string path;
};

}  // namespace fuzz

#endif
