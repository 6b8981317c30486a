#ifndef DIAGNOSTICS_HH
#define DIAGNOSTICS_HH

// Messages: plain lines, without levels and time stamps, or records for the thread's receiver.

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

#include "messages.hh"

namespace zrt4::detail {

/// What a message is about, and how it is printed.
struct notice {
  message_topic topic;
  message_severity severity;
  std::FILE* stream;
  bool is_flushed = true;
};

/// Where a document was left when a message arose.
struct place {
  std::string document;
  std::uint64_t line = 0;
  std::uint64_t column = 0;
};

/// Whether this thread has a receiver.
bool is_received();

/// Gives the parts to the receiver, which there is, as one text without the line ends around it.
void deliver(const notice& about, std::initializer_list<std::string_view> parts,
             const place& where);

/// Prints the parts as one piece, so that lines of several processes do not mix.
void say(std::FILE* stream, std::initializer_list<std::string_view> parts, bool is_flushed = true);

/// Gives the parts to the receiver, with the place that `find_place` finds, or prints them.
template <class FindPlace>
void tell(const notice& about, std::initializer_list<std::string_view> parts,
          FindPlace find_place) {
  if (is_received()) {
    deliver(about, parts, find_place());
  } else {
    say(about.stream, parts, about.is_flushed);
  }
}
inline void tell(const notice& about, std::initializer_list<std::string_view> parts) {
  tell(about, parts, [] { return place(); });
}

/// A function of that name could not open a file to write, for the reason in `errno`.
void tell_not_opened(std::string_view function, const char* file_name);

}  // namespace zrt4::detail

#endif
