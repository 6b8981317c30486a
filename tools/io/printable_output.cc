#include "printable_output.hh"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "standard_output.hh"
#include "terminal.hh"

namespace {

bool is_plain(char c) {
  return (c >= 0x20 && c < 0x7f) || c == '\t' || c == '\n';
}

// What is between the signs of a listing.
std::string shown_between_signs(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t size = std::min(text.find_first_of("\t\n"), text.size());
    shown += printable(text.substr(0, size));
    if (size != text.size()) shown += text[size];
    text.remove_prefix(std::min(size + 1, text.size()));
  }
  return shown;
}

/// Takes the place of standard output for its lifetime.
class filter {
 public:
  explicit filter(std::FILE* output) : to(output) {
    own = fopencookie(this, "w", {nullptr, take, nullptr, nullptr});
    if (own == nullptr) throw std::bad_alloc();
    stdout = own;
  }
  filter(const filter&) = delete;
  filter& operator=(const filter&) = delete;
  ~filter() { end(); }

  /// Throws what went wrong in between.
  void finish() {
    end();
    if (failure) std::rethrow_exception(failure);
    write(rest);
  }

 private:
  static ssize_t take(void* self, const char* bytes, std::size_t size) {
    auto& own = *static_cast<filter*>(self);
    try {
      if (!own.failure) own.take({bytes, size});
    } catch (...) {  // it passes no function of C
      own.failure = std::current_exception();
    }
    return static_cast<ssize_t>(size);
  }

  // A character may begin here and end in the next part; a line end belongs to none.
  void take(std::string_view part) {
    const std::size_t lines = part.rfind('\n') + 1;
    if (lines == 0) {
      rest += part;
      return;
    }
    if (rest.empty()) {
      write(part.substr(0, lines));
    } else {
      write(rest.append(part.substr(0, lines)));
    }
    rest = part.substr(lines);
  }

  void write(std::string_view text) {
    const bool all_plain = std::all_of(text.begin(), text.end(), is_plain);
    const std::string shown = all_plain ? std::string() : shown_between_signs(text);
    const std::string_view result = all_plain ? text : shown;
    print_or_throw(to, result);
  }

  void end() {
    if (own == nullptr) return;
    stdout = to;
    std::fclose(std::exchange(own, nullptr));
  }

  std::FILE* const to;
  std::FILE* own;
  std::string rest;  ///< the beginning of a line
  std::exception_ptr failure;
};

}  // namespace

void print_as_printable(const std::function<void()>& print) {
  filter output(stdout);
  print();
  output.finish();
}
