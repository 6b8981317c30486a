#include "input_file.hh"

#include <fcntl.h>
#include <unistd.h>

#include "file_error.hh"

namespace {

int open_to_read(const std::string& path) {
  return open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

descriptor copy_of(const std::string& name) {
  try {
    descriptor original(name == "-" ? dup(STDIN_FILENO) : open_to_read(name));
    descriptor copy(memory_file());
    copy.take_all(original);
    return copy;
  } catch (const std::runtime_error& reason) {
    throw file_error(shown_name(name), reason.what());
  }
}

}  // namespace

std::string shown_name(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

input_file::input_file(const std::string& name)
    : shown(shown_name(name)), copy(copy_of(name)), readable(copy.path()) {}

std::string input_file::content() const {
  return descriptor(open_to_read(readable)).read_all();
}
