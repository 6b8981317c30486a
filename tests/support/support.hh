#ifndef SUPPORT_HH
#define SUPPORT_HH

// What the tests share: captured output, temporary files, writable texts.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>

#if defined(__SANITIZE_ADDRESS__)
#define ZRT4_LEAK_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZRT4_LEAK_CHECKED 1
#endif
#endif
#ifdef ZRT4_LEAK_CHECKED
#include <sanitizer/lsan_interface.h>
#endif

namespace test {

/// With sanitizers, which take a multiple of the time, a tenth of many random cases, and of what is
/// large so that it takes long.
#ifdef ZRT4_LEAK_CHECKED
constexpr int random_share = 10;
#else
constexpr int random_share = 1;
#endif

/// While it lives, what is allocated may leak: for the leaks that the library keeps deliberately
/// and a test cannot reach.
class kept_leak {
 public:
#ifdef ZRT4_LEAK_CHECKED
  kept_leak() {
    __lsan_disable();
  }
  ~kept_leak() {
    __lsan_enable();
  }
#else
  kept_leak() = default;
  ~kept_leak() {}
#endif
  kept_leak(const kept_leak&) = delete;
  kept_leak& operator=(const kept_leak&) = delete;
};

/// What a piece of code wrote to standard output and standard error.
struct output {
  std::string out;
  std::string err;
};

template <class Code>
output captured(Code&& code) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  std::forward<Code>(code)();
  std::fflush(nullptr);
  std::cout.flush();
  output result;
  result.out = testing::internal::GetCapturedStdout();
  result.err = testing::internal::GetCapturedStderr();
  return result;
}

/// A file that lives as long as the object.
class temporary_file {
 public:
  explicit temporary_file(const std::string& content) {
    char pattern[] = "/tmp/zrt4_test_XXXXXX";
    const int descriptor = mkstemp(pattern);
    if (descriptor == -1) throw std::runtime_error("no temporary file");
    std::fclose(fdopen(descriptor, "w"));
    path_ = pattern;
    std::ofstream(path_, std::ios::binary) << content;
  }
  temporary_file(const temporary_file&) = delete;
  temporary_file& operator=(const temporary_file&) = delete;
  ~temporary_file() { std::remove(path_.c_str()); }

  char* name() { return path_.data(); }
  const std::string& path() const { return path_; }
  std::string content() const {
    std::ostringstream text;
    text << std::ifstream(path_, std::ios::binary).rdbuf();
    return text.str();
  }

 private:
  std::string path_;
};

}  // namespace test

#endif
