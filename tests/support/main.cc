// The main of every test program: it runs in the source tree, wherever it is started, and in the
// locale that the environment names.

#include <gmock/gmock.h>

#include <clocale>
#include <cstdio>
#include <filesystem>

int main(int count, char** arguments) {
  std::filesystem::current_path(ZRT4_TESTS_RUN_IN);
  if (std::setlocale(LC_ALL, "") == nullptr) {
    std::fputs("The environment names a locale that this machine lacks\n", stderr);
    return 1;
  }
  testing::InitGoogleMock(&count, arguments);
  return RUN_ALL_TESTS();
}
