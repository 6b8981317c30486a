#ifndef COMMA_LOCALE_HH
#define COMMA_LOCALE_HH

// A locale whose decimal point is a comma, for the lifetime of an object.

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace test {

class comma_locale {
 public:
  comma_locale() : before(std::setlocale(LC_NUMERIC, nullptr)) {
    if (const char* place = std::getenv("LOCPATH")) place_before = place;
    if (!set("de_DE.UTF-8") && !set("fr_FR.UTF-8")) make();
  }
  comma_locale(const comma_locale&) = delete;
  comma_locale& operator=(const comma_locale&) = delete;
  ~comma_locale() {
    unsetenv("LOCPATH");
    if (!place_before.empty()) setenv("LOCPATH", place_before.c_str(), 1);
    std::setlocale(LC_NUMERIC, before.c_str());
    std::error_code ignored;
    if (!folder.empty()) std::filesystem::remove_all(folder, ignored);
  }

  /// False when this machine has no such locale and cannot make one.
  bool active() const { return std::strcmp(std::localeconv()->decimal_point, ",") == 0; }

 private:
  static bool set(const char* name) { return std::setlocale(LC_NUMERIC, name) != nullptr; }

  void make() {
    char pattern[] = "/tmp/zrt4_locale_XXXXXX";
    if (mkdtemp(pattern) == nullptr) return;
    folder = pattern;
    const std::string command =
        "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) return;
    setenv("LOCPATH", folder.c_str(), 1);
    set("de_DE.UTF-8");
  }

  std::string before;
  std::string place_before;
  std::string folder;
};

}  // namespace test

#endif
