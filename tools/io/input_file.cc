#include "input_file.hh"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <mutex>
#include <set>
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

/// The files that are there, for the thread that tells how far their readers are.
struct present_files {
  std::mutex guard;
  std::set<const input_file*> all;
};

present_files& present() {
  static present_files files;
  return files;
}

// The system's own account of an open file.
double position_in(const std::string& descriptor) {
  std::ifstream account("/proc/self/fdinfo/" + descriptor);
  std::string word;
  double position = -1;
  if (account >> word >> position && word == "pos:") return position;
  return -1;
}

// The farthest that another descriptor of the same file has been read.
double position_of_readers(int copy) {
  struct stat wanted {};
  const std::unique_ptr<DIR, int (*)(DIR*)> all(opendir("/proc/self/fd"), closedir);
  if (!all || fstat(copy, &wanted) != 0 || wanted.st_size == 0) return -1;
  double farthest = -1;
  while (const dirent* entry = readdir(all.get())) {
    const int number = std::atoi(entry->d_name);
    struct stat status {};
    if (number == copy || fstat(number, &status) != 0) continue;
    const bool is_same = status.st_dev == wanted.st_dev && status.st_ino == wanted.st_ino;
    if (is_same) farthest = std::max(farthest, position_in(entry->d_name));
  }
  return farthest < 0 ? farthest : farthest / static_cast<double>(wanted.st_size);
}

}  // namespace

std::string shown_name(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

input_file::input_file(const std::string& name)
    : shown(shown_name(name)), copy(copy_of(name)), readable(copy.path()) {
  enter_present();
}

void input_file::enter_present() {
  const std::lock_guard lock(present().guard);
  present().all.insert(this);
}

input_file::~input_file() {
  const std::lock_guard lock(present().guard);
  present().all.erase(this);
}

input_file::input_file(std::string name, descriptor&& open_file)
    : shown(std::move(name)), copy(copy_of(std::move(open_file))), readable(copy.path()) {
  enter_present();
}

input_file::input_file(std::string name, descriptor&& open_file, as_it_stands /*how*/)
    : shown(std::move(name)), copy(std::move(open_file)), readable(copy.path()) {
  enter_present();
}

std::unique_ptr<input_file> input_file::for_one_pass(std::string name, descriptor&& whole_file) {
  struct stat status {};
  const bool is_file = fstat(whole_file.get(), &status) == 0 && S_ISREG(status.st_mode);
  const int again = is_file ? open_to_read(whole_file.path()) : -1;
  if (again == -1) return std::make_unique<input_file>(std::move(name), std::move(whole_file));
  const descriptor closes_it(again);
  return std::unique_ptr<input_file>(
      new input_file(std::move(name), std::move(whole_file), as_it_stands()));
}

input_file::input_file(std::string name, std::string_view document)
    : shown(std::move(name)), copy(copy_of(document)), readable(copy.path()) {
  enter_present();
}

std::string input_file::content() const {
  return descriptor(open_to_read(readable)).read_all();
}

double input_file::read_share(const std::string& name) {
  const std::lock_guard lock(present().guard);
  double share = -1;
  for (const input_file* file : present().all) {
    if (file->shown == name) share = std::max(share, position_of_readers(file->copy.get()));
  }
  return share;
}
