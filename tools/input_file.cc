#include "input_file.hh"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace {

[[noreturn]] void fail(int reason) {
  throw std::runtime_error(std::generic_category().message(reason));
}

class descriptor {
 public:
  explicit descriptor(int number) : fd(number) {
    if (fd == -1) fail(errno);
  }
  descriptor(const descriptor&) = delete;
  descriptor& operator=(const descriptor&) = delete;
  ~descriptor() {
    if (fd != -1) close(fd);
  }
  int get() const { return fd; }
  int release() {
    const int released = fd;
    fd = -1;
    return released;
  }

 private:
  int fd;
};

void write_all(int to, const char* bytes, std::size_t size) {
  while (size != 0) {
    const ssize_t written = write(to, bytes, size);
    if (written == -1) fail(errno);
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
}

int copy_into_memory(int from) {
  descriptor memory(memfd_create("zrt4xml", MFD_CLOEXEC));
  std::array<char, 1 << 16> buffer{};
  for (;;) {
    const ssize_t got = read(from, buffer.data(), buffer.size());
    if (got == -1) fail(errno);
    if (got == 0) return memory.release();
    write_all(memory.get(), buffer.data(), static_cast<std::size_t>(got));
  }
}

bool is_regular(int fd) {
  struct stat status {};
  if (fstat(fd, &status) == -1) fail(errno);
  if (S_ISDIR(status.st_mode)) fail(EISDIR);
  return S_ISREG(status.st_mode);
}

}  // namespace

input_file::input_file(const std::string& name) : shown(name), readable(name) {
  if (name == "-") {
    shown = "standard input";
    copy = copy_into_memory(STDIN_FILENO);
  } else {
    const descriptor opened(open(name.c_str(), O_RDONLY | O_CLOEXEC));
    if (!is_regular(opened.get())) copy = copy_into_memory(opened.get());
  }
  if (copy != -1) readable = "/proc/self/fd/" + std::to_string(copy);
}

input_file::~input_file() {
  if (copy != -1) close(copy);
}
