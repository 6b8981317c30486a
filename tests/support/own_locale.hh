#ifndef OWN_LOCALE_HH
#define OWN_LOCALE_HH

// Locale categories that tests set for themselves, where the environment's would change what they
// expect.

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace test {

/// For the lifetime of an object.
class own_locale {
 public:
  own_locale(int category, const char* name)
      : category_(category), before_(std::setlocale(category, nullptr)) {
    set_ = std::setlocale(category, name) != nullptr;
  }
  own_locale(const own_locale&) = delete;
  own_locale& operator=(const own_locale&) = delete;
  ~own_locale() { std::setlocale(category_, before_.c_str()); }

  /// False when this machine has no such locale.
  bool set() const { return set_; }

 private:
  int category_;
  std::string before_;
  bool set_ = false;
};

/// For a whole test program: its literals have decimal points (LC_NUMERIC), or are in English
/// (LC_MESSAGES).
class locale_of_literals : public testing::Environment {
 public:
  explicit locale_of_literals(int category) : category_(category) {}
  void SetUp() override { ASSERT_NE(std::setlocale(category_, "C"), nullptr); }

  static testing::Environment* in(int category) {
    return testing::AddGlobalTestEnvironment(new locale_of_literals(category));
  }

 private:
  int category_;
};

}  // namespace test

#endif
