#include "mapped_file.hh"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>

#include "descriptor.hh"

mapped_file::mapped_file(const char* path) {
  const descriptor file(open(path, O_RDONLY | O_CLOEXEC));
  struct stat about {};
  if (fstat(file.get(), &about) == -1) fail(errno);
  if (about.st_size == 0) return;  // which cannot be mapped
  size = static_cast<std::size_t>(about.st_size);
  void* const mapped = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
  if (mapped == MAP_FAILED) fail(errno);
  bytes = static_cast<const char*>(mapped);
}

mapped_file::~mapped_file() {
  if (size != 0) munmap(const_cast<char*>(bytes), size);
}
