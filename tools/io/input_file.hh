#ifndef INPUT_FILE_HH
#define INPUT_FILE_HH

#include <optional>
#include <string>

#include "descriptor.hh"

/// The name of a file to show to a person.
std::string shown_name(const std::string& name);

/// A file named on the command line, readable more than once: what is no regular file (standard
/// input as "-", a pipe, a device) is first copied into memory.
class input_file {
 public:
  /// Throws `file_error` when the file cannot be read.
  explicit input_file(const std::string& name);

  const std::string& name() const { return shown; }
  /// The path to read, writable because the library's readers declare it so.
  char* path() { return readable.data(); }
  /// Everything that stands in it. Throws `std::runtime_error` with the reason.
  std::string content() const;

 private:
  void copy_from(descriptor source);

  std::string shown;
  std::string readable;
  std::optional<descriptor> copy;
};

#endif
