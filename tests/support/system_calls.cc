#include "system_calls.hh"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "zrt4_export.hh"

namespace test {

system_calls calls;

}  // namespace test

using test::calls;

namespace {

bool fails(const char* call) {
  if (!calls.watched || calls.failing != call) return false;
  errno = calls.error;
  return true;
}

ssize_t write_into_file(void* /*cookie*/, const char* bytes, std::size_t size) {
  const auto taken = std::min(static_cast<long>(size), calls.room_in_file);
  calls.in_file.append(bytes, static_cast<std::size_t>(taken));
  calls.room_in_file -= taken;
  if (static_cast<std::size_t>(taken) < size) errno = ENOSPC;
  return taken;
}

int close_file(void* /*cookie*/) {
  if (!calls.close_fails) return 0;
  errno = EIO;
  return -1;
}

}  // namespace

extern "C" {
std::FILE* __real_fopen(const char* name, const char* mode);
int __real_fclose(std::FILE* file);
int __real_mkstemp(char* pattern);
int __real_fchmod(int descriptor, mode_t mode);
int __real_rename(const char* from, const char* to);
int __real_close(int descriptor);
int __real_dup(int descriptor);
int __real_open(const char* name, int flags, ...);
ssize_t __real_write(int descriptor, const void* bytes, std::size_t size);

// Visible, because linkers also count the shared libraries' calls among those that go through
// these.
ZRT4_EXPORT std::FILE* __wrap_fopen(const char* name, const char* mode);
ZRT4_EXPORT int __wrap_fclose(std::FILE* file);
ZRT4_EXPORT int __wrap_mkstemp(char* pattern);
ZRT4_EXPORT int __wrap_fchmod(int descriptor, mode_t mode);
ZRT4_EXPORT int __wrap_rename(const char* from, const char* to);
ZRT4_EXPORT int __wrap_close(int descriptor);
ZRT4_EXPORT int __wrap_dup(int descriptor);
ZRT4_EXPORT int __wrap_open(const char* name, int flags, mode_t mode);
ZRT4_EXPORT ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size);

std::FILE* __wrap_fopen(const char* name, const char* mode) {
  if (!calls.watched) return __real_fopen(name, mode);
  if (fails("fopen")) return nullptr;
  std::FILE* const file =
      calls.room_in_file < 0
          ? __real_fopen(name, mode)
          : fopencookie(nullptr, mode, {nullptr, write_into_file, nullptr, close_file});
  calls.opened.push_back(file);
  return file;
}

int __wrap_fclose(std::FILE* file) {
  if (calls.watched) calls.closed.push_back(file);
  return __real_fclose(file);
}

int __wrap_mkstemp(char* pattern) {
  return fails("mkstemp") ? -1 : __real_mkstemp(pattern);
}

int __wrap_fchmod(int descriptor, mode_t mode) {
  return fails("fchmod") ? -1 : __real_fchmod(descriptor, mode);
}

int __wrap_rename(const char* from, const char* to) {
  return fails("rename") ? -1 : __real_rename(from, to);
}

// A close that fails has closed: what it tells is that something was not written.
int __wrap_close(int descriptor) {
  const int result = __real_close(descriptor);
  return fails("close") ? -1 : result;
}

int __wrap_dup(int descriptor) {
  return fails("dup") ? -1 : __real_dup(descriptor);
}

int __wrap_open(const char* name, int flags, mode_t mode) {
  return fails("open") ? -1 : __real_open(name, flags, mode);
}

ssize_t __wrap_write(int descriptor, const void* bytes, std::size_t size) {
  if (!calls.watched) return __real_write(descriptor, bytes, size);
  if (!calls.write_results.empty()) {
    const ssize_t result = calls.write_results.front();
    calls.write_results.pop_front();
    if (result < 0) errno = calls.error;
    if (result <= 0) return result;
    size = std::min(size, static_cast<std::size_t>(result));
  }
  if (descriptor != test::collector) return __real_write(descriptor, bytes, size);
  calls.written.append(static_cast<const char*>(bytes), size);
  return static_cast<ssize_t>(size);
}
}
