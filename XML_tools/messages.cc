#include "messages.hh"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include "diagnostics.hh"

namespace zrt4 {

namespace {

thread_local message_receiver* innermost = nullptr;

/// For as long as it lives, messages go to the receiver outside of one.
class passed_over {
 public:
  passed_over(message_receiver* self, message_receiver* outer) : before(self) { innermost = outer; }
  passed_over(const passed_over&) = delete;
  passed_over& operator=(const passed_over&) = delete;
  ~passed_over() { innermost = before; }

 private:
  message_receiver* const before;
};

}  // namespace

message_receiver::message_receiver() : outer(innermost) {
  innermost = this;
}

message_receiver::~message_receiver() {
  for (message_receiver** at = &innermost; *at != nullptr; at = &(*at)->outer) {
    if (*at != this) continue;
    *at = outer;
    return;
  }
}

void message_receiver::deliver(const message& met) {
  message_receiver& to = *innermost;
  const passed_over meanwhile(&to, to.outer);
  to.receive(met);
}

namespace detail {

struct message_delivery {
  static void to_receiver(const message& met) { message_receiver::deliver(met); }
};

namespace {

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

}  // namespace

bool is_received() {
  return innermost != nullptr;
}

void deliver(const notice& about, std::initializer_list<std::string_view> parts,
             const place& where) {
  const std::string text = joined(parts);
  const std::size_t begin = std::min(text.find_first_not_of('\n'), text.size());
  const std::size_t end = std::max(text.find_last_not_of("\n ") + 1, begin);
  const std::string shown = text.substr(begin, end - begin);
  message_delivery::to_receiver({about.severity, about.topic, where.line, where.column,
                                 where.document.c_str(), shown.c_str(), 0});
}

void say(std::FILE* stream, std::initializer_list<std::string_view> parts, bool is_flushed) {
  const std::string text = joined(parts);
  (void)std::fwrite(text.data(), 1, text.size(), stream);
  if (is_flushed) (void)std::fflush(stream);
}

void tell_not_opened(std::string_view function, const char* file_name) {
  const int reason = errno;
  const notice about{message_topic::cannot_open, message_severity::error, stdout};
  if (is_received()) {
    return deliver(about,
                   {function, " failed to open file: '", file_name,
                    "': ", std::generic_category().message(reason)},
                   {file_name});
  }
  say(about.stream, {function, " failed to open file: '", file_name, "'\n"});
  errno = reason;
  std::perror("fopen");
}

}  // namespace detail
}  // namespace zrt4
