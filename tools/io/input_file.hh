#ifndef INPUT_FILE_HH
#define INPUT_FILE_HH

#include <memory>
#include <string>
#include <string_view>

#include "descriptor.hh"

/// The name of a file to show to a person.
std::string shown_name(const std::string& name);

/// A file named on the command line, or standard input as "-". As a rule it is read once, into
/// memory: each pass over it sees the same bytes, also when a pipe delivers them or someone
/// replaces the file meanwhile.
class input_file {
 public:
  /// Throws `file_error` when the file cannot be read.
  explicit input_file(const std::string& name);
  /// What an open file has from here to its end, shown under that name. Throws `std::system_error`.
  input_file(std::string name, descriptor&& open_file);
  /// A whole file for who reads it in one pass: no copy is made where it can be opened once more.
  static std::unique_ptr<input_file> for_one_pass(std::string name, descriptor&& whole_file);
  /// A document in memory, shown under that name. Throws `std::system_error`.
  input_file(std::string name, std::string_view document);
  input_file(const input_file&) = delete;
  input_file& operator=(const input_file&) = delete;
  ~input_file();

  const std::string& name() const { return shown; }
  /// The path to read it by, writable because the library's readers declare it so.
  char* path() { return readable.data(); }
  /// Everything that stands in it. Throws `std::runtime_error` with the reason.
  std::string content() const;

  /// How much of the file shown as `name` the reader at work has behind it, from 0 to 1; -1 when no
  /// reader is at work. For another thread than that of the reader.
  static double read_share(const std::string& name);

 private:
  struct as_it_stands {};
  input_file(std::string name, descriptor&& open_file, as_it_stands how);
  void enter_present();

  std::string shown;
  descriptor copy;
  std::string readable;
};

#endif
