#ifndef TEMPORARY_FILE_HH
#define TEMPORARY_FILE_HH

#include <csignal>
#include <string>

/// Keeps every signal from this thread for its lifetime.
class held_signals {
 public:
  held_signals();
  held_signals(const held_signals&) = delete;
  held_signals& operator=(const held_signals&) = delete;
  ~held_signals();

 private:
  sigset_t before{};
};

/// A new file that is to replace another. Unless it does, it is removed with the object, and by a
/// signal that ends the program. There is one at a time. Everything throws `std::runtime_error`
/// with the system's reason when it fails.
class temporary_file {
 public:
  /// In `folder`, so that it can be renamed to any name there.
  explicit temporary_file(const std::string& folder);
  temporary_file(const temporary_file&) = delete;
  temporary_file& operator=(const temporary_file&) = delete;
  ~temporary_file();

  /// The descriptor, whose owner the caller becomes.
  int descriptor() const { return fd; }
  void rename_to(const std::string& place);

 private:
  std::string name;
  int fd;
};

#endif
