#include "input_file.hh"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "file_error.hh"

namespace {

int open_to_read(const std::string& path) {
  return open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

descriptor copy_of(descriptor&& original) {
  descriptor copy(memory_file());
  copy.take_all(original);
  return copy;
}

descriptor copy_of(const std::string& name) {
  try {
    return copy_of(descriptor(name == "-" ? dup(STDIN_FILENO) : open_to_read(name)));
  } catch (const std::runtime_error& reason) {
    throw file_error(shown_name(name), reason.what());
  }
}

descriptor copy_of(std::string_view document) {
  descriptor copy(memory_file());
  copy.write_all(document);
  return copy;
}

}  // namespace

std::string shown_name(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

input_file::input_file(const std::string& name)
    : shown(shown_name(name)), copy(copy_of(name)), readable(copy.path()) {}

input_file::input_file(std::string name, descriptor&& open_file)
    : shown(std::move(name)), copy(copy_of(std::move(open_file))), readable(copy.path()) {}

input_file::input_file(std::string name, std::string_view document)
    : shown(std::move(name)), copy(copy_of(document)), readable(copy.path()) {}

std::string input_file::content() const {
  return descriptor(open_to_read(readable)).read_all();
}
