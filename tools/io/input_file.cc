#include "input_file.hh"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "file_error.hh"
#include "progress.hh"

namespace {

int open_to_read(const std::string& path) {
  return open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

bool is_regular(int fd) {
  struct stat status {};
  if (fstat(fd, &status) == -1) fail(errno);
  if (S_ISDIR(status.st_mode)) fail(EISDIR);
  return S_ISREG(status.st_mode);
}

}  // namespace

std::string shown_name(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

input_file::input_file(const std::string& name) : shown(shown_name(name)), readable(name) {
  try {
    descriptor opened(name == "-" ? dup(STDIN_FILENO) : open_to_read(name));
    if (name == "-" || !is_regular(opened.get())) copy_from(std::move(opened));
  } catch (const std::runtime_error& reason) {
    throw file_error(shown, reason.what());
  }
}

void input_file::copy_from(descriptor source) {
  const progress waiting(shown);
  copy.emplace(memory_file());
  copy->write_all(source.read_all());
  readable = copy->path();
}

std::string input_file::content() const {
  return descriptor(open_to_read(readable)).read_all();
}
