#include "descriptor.hh"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

descriptor::descriptor(int number) : fd(number) {
  if (fd == -1) fail(errno);
}

descriptor::descriptor(descriptor&& other) noexcept : fd(std::exchange(other.fd, -1)) {}

descriptor::~descriptor() {
  if (fd != -1) ::close(fd);
}

std::string descriptor::path() const {
  return "/proc/self/fd/" + std::to_string(fd);
}

void descriptor::write_all(std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = write(fd, content.data(), content.size());
    if (written == -1 && errno == EINTR) continue;
    if (written == -1) fail(errno);
    if (written == 0) fail(ENOSPC);  // a device that takes nothing and does not say why
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

void descriptor::take_all(descriptor& source) {
  constexpr std::size_t at_once = 1 << 24;
  for (;;) {
    const ssize_t moved = sendfile(fd, source.fd, nullptr, at_once);
    if (moved == -1 && errno == EINTR) continue;
    if (moved == 0) return;
    if (moved == -1) break;
  }
  // The system moves no bytes out of a terminal, nor out of anything that has begun to fail.
  write_all(source.read_all());
}

std::string descriptor::read_all() {
  std::string content;
  std::array<char, 1 << 16> buffer{};
  for (;;) {
    const ssize_t got = read(fd, buffer.data(), buffer.size());
    if (got == -1 && errno == EINTR) continue;
    if (got == -1) fail(errno);
    if (got == 0) return content;
    content.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

std::string descriptor::read_from_start() {
  if (lseek(fd, 0, SEEK_SET) == -1) fail(errno);
  return read_all();
}

void descriptor::close() {
  if (::close(std::exchange(fd, -1)) == -1) fail(errno);
}

void fail(int reason) {
  throw std::system_error(reason, std::generic_category());
}

int memory_file() {
  return memfd_create("zrt4xml", MFD_CLOEXEC);
}

void fill_closed_streams() {
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const bool closed = fcntl(fd, F_GETFD) == -1;
    if (closed) (void)open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}
