#ifndef FILE_ERROR_HH
#define FILE_ERROR_HH

#include <stdexcept>
#include <string>
#include <utility>

/// A file that cannot be opened, read or written, or is of no use to the subcommand (exit code 2).
struct file_error : std::runtime_error {
  file_error(std::string name, const std::string& reason)
      : std::runtime_error(reason), file(std::move(name)) {}

  std::string file;
};

#endif
