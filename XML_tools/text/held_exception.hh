#ifndef HELD_EXCEPTION_HH
#define HELD_EXCEPTION_HH

#include <exception>
#include <utility>

namespace zrt4::detail {

/// The first exception of several actions, until all of them are done.
class held_exception {
 public:
  template <class Action>
  void of(Action action) {
    try {
      action();
    } catch (...) {
      if (held == nullptr) held = std::current_exception();
    }
  }

  explicit operator bool() const { return held != nullptr; }

  /// Throws what is held, if anything.
  void release() {
    if (held != nullptr) std::rethrow_exception(std::exchange(held, nullptr));
  }

 private:
  std::exception_ptr held;
};

}  // namespace zrt4::detail

#endif
