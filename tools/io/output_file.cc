#include "output_file.hh"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "descriptor.hh"
#include "file_error.hh"
#include "progress.hh"
#include "temporary_file.hh"

namespace {

namespace fs = std::filesystem;

/// Where to write: a descriptor of this process, or a path without links.
struct destination {
  std::optional<int> descriptor;
  fs::path path;
};

// Such as /proc/self/fd/1, to which /dev/stdout leads.
std::optional<int> descriptor_named(const fs::path& path) {
  const std::string number = path.filename();
  const bool is_number = !number.empty() && number.size() < 6 &&
                         std::all_of(number.begin(), number.end(),
                                     [](unsigned char c) { return std::isdigit(c) != 0; });
  if (!is_number) return {};
  std::error_code missing;
  const fs::path own = fs::canonical("/proc/self/fd", missing);
  if (missing || fs::canonical(path.parent_path(), missing) != own) return {};
  return std::stoi(number);
}

destination resolve(const std::string& name) {
  constexpr int most_links = 40;  // as the system follows
  fs::path path = name;
  for (int links = 0; links <= most_links; ++links) {
    if (const auto number = descriptor_named(path)) return {number, path};
    std::error_code reason;
    if (!fs::is_symlink(fs::symlink_status(path, reason))) return {{}, path};
    const fs::path target = fs::read_symlink(path, reason);
    if (reason) fail(reason.value());
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  fail(ELOOP);
}

std::optional<struct stat> status_of(const fs::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return status;
  if (errno == ENOENT) return {};
  fail(errno);
}

// For the superuser, whom no protection stops, the permissions speak.
bool is_protected(const fs::path& path, const struct stat& status) {
  return (status.st_mode & 0222U) == 0 || euidaccess(path.c_str(), W_OK) != 0;
}

void refuse(const fs::path& path, const std::optional<struct stat>& status, write_protected file) {
  if (!status) return;
  if (S_ISDIR(status->st_mode)) fail(EISDIR);
  if (S_ISREG(status->st_mode) && file == write_protected::is_refused &&
      is_protected(path, *status)) {
    throw std::runtime_error("is write-protected; with -f it is replaced all the same");
  }
}

void write_and_close(int fd, const std::string& name, const std::string& content) {
  constexpr std::size_t at_once = 1U << 20U;
  descriptor to(fd);
  progress shown("writing", name, content.size());
  for (std::string_view rest = content; !rest.empty();) {
    const std::string_view part = rest.substr(0, at_once);
    to.write_all(part);
    rest.remove_prefix(part.size());
    shown.advance(part.size());
  }
  to.close();
}

mode_t mode_of_new_file() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666U & ~mask;
}

void replace(const fs::path& path, const std::optional<struct stat>& old, const std::string& name,
             const std::string& content) {
  const fs::path folder = path.parent_path();
  temporary_file beside(folder.empty() ? "." : folder.string());
  const int fd = beside.descriptor();
  // Only the superuser gives files away; for everybody else it is the owner's already.
  if (old && fchown(fd, old->st_uid, old->st_gid) != 0) errno = 0;
  const bool as_wished = fchmod(fd, old ? old->st_mode & 07777U : mode_of_new_file()) == 0;
  const int reason = errno;
  write_and_close(fd, name, content);
  if (!as_wished) fail(reason);
  beside.rename_to(path);
}

void write_to_file(const std::string& name, const std::string& content, write_protected file) {
  const destination to = resolve(name);
  if (to.descriptor) {
    std::fflush(stdout);
    return write_and_close(dup(*to.descriptor), name, content);
  }
  const auto status = status_of(to.path);
  refuse(to.path, status, file);
  if (status && !S_ISREG(status->st_mode)) {  // a device or a pipe
    return write_and_close(open(name.c_str(), O_WRONLY | O_CLOEXEC), name, content);
  }
  replace(to.path, status, name, content);
}

}  // namespace

bool is_standard_output(const std::string& name) {
  return name.empty() || name == "-";
}

void check_output(const std::string& name, write_protected file) {
  if (is_standard_output(name)) return;
  try {
    const destination to = resolve(name);
    if (!to.descriptor) refuse(to.path, status_of(to.path), file);
  } catch (const std::runtime_error& reason) {
    throw file_error(name, reason.what());
  }
}

void write_output(const std::string& name, const std::string& content, write_protected file) {
  if (!is_standard_output(name)) {
    try {
      return write_to_file(name, content, file);
    } catch (const std::runtime_error& reason) {
      throw file_error(name, reason.what());
    }
  }
  static const std::string standard_output = "standard output";
  try {
    std::fflush(stdout);
    write_and_close(dup(STDOUT_FILENO), standard_output, content);
  } catch (const std::runtime_error& reason) {
    throw file_error(standard_output, reason.what());
  }
}
