#ifndef MAPPED_FILE_HH
#define MAPPED_FILE_HH

#include <cstddef>
#include <string_view>

/// The bytes of a file, which take no memory of their own.
class mapped_file {
 public:
  /// Throws `std::runtime_error` with the system's reason.
  explicit mapped_file(const char* path);
  mapped_file(const mapped_file&) = delete;
  mapped_file& operator=(const mapped_file&) = delete;
  ~mapped_file();

  std::string_view content() const { return {bytes, size}; }

 private:
  const char* bytes = nullptr;
  std::size_t size = 0;
};

#endif
