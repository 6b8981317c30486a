#include "output_file.hh"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "descriptor.hh"
#include "file_error.hh"

namespace {

mode_t mode_for(const std::string& name) {
  struct stat status {};
  if (stat(name.c_str(), &status) == 0) return status.st_mode & 07777;
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void write_and_close(int fd, const std::string& content) {
  descriptor to(fd);
  to.write_all(content);
  to.close();
}

void replace(const std::string& name, const std::string& content) {
  std::string beside = name + ".XXXXXX";
  const int fd = mkstemp(beside.data());
  if (fd == -1) fail(errno);
  try {
    const bool as_wished = fchmod(fd, mode_for(name)) == 0;
    const int reason = errno;
    write_and_close(fd, content);
    if (!as_wished) fail(reason);
    if (std::rename(beside.c_str(), name.c_str()) == -1) fail(errno);
  } catch (...) {
    unlink(beside.c_str());
    throw;
  }
}

}  // namespace

bool is_standard_output(const std::string& name) {
  return name.empty() || name == "-";
}

void write_output(const std::string& name, const std::string& content) {
  namespace fs = std::filesystem;
  const bool to_standard_output = is_standard_output(name);
  try {
    if (to_standard_output) {
      std::fflush(stdout);
      write_and_close(dup(STDOUT_FILENO), content);
      return;
    }
    std::error_code ignored;
    const fs::file_status status = fs::status(name, ignored);
    if (fs::is_directory(status)) fail(EISDIR);
    if (fs::exists(status) && !fs::is_regular_file(status)) {  // a device or a pipe
      write_and_close(open(name.c_str(), O_WRONLY | O_CLOEXEC), content);
    } else {
      // Behind a link, the file that it names is replaced.
      const fs::path place = fs::exists(status) ? fs::canonical(name, ignored) : fs::path(name);
      replace(place.string(), content);
    }
  } catch (const std::runtime_error& reason) {
    throw file_error(to_standard_output ? "standard output" : name, reason.what());
  }
}
