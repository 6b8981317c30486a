#ifndef INPUT_FILE_HH
#define INPUT_FILE_HH

#include <stdexcept>
#include <string>

/// A file named on the command line, readable more than once: what is no regular file (standard
/// input as "-", a pipe, a device) is first copied into memory.
class input_file {
 public:
  /// Throws `std::runtime_error` with the reason when the file cannot be read.
  explicit input_file(const std::string& name);
  input_file(const input_file&) = delete;
  input_file& operator=(const input_file&) = delete;
  ~input_file();

  /// The name to show to a person.
  const std::string& name() const { return shown; }
  /// The path to read, writable because the library's readers declare it so.
  char* path() { return readable.data(); }

 private:
  std::string shown;
  std::string readable;
  int copy = -1;
};

#endif
