#ifndef RECEIVED_MESSAGES_HH
#define RECEIVED_MESSAGES_HH

#include <cstdint>
#include <string>
#include <vector>

#include "messages.hh"

/// A message of the library.
struct received_message {
  zrt4::message_severity severity;
  zrt4::message_topic topic;
  std::uint64_t line;
  std::uint64_t column;
  std::string text;

  /// ":LINE:COLUMN" where known.
  std::string place() const {
    if (line == 0) return {};
    return ":" + std::to_string(line) + ":" + std::to_string(column);
  }
};

/// While it lives, the library prints nothing in this thread; its messages are here.
class received_messages : public zrt4::message_receiver {
 public:
  std::vector<received_message> all;

 private:
  void receive(const zrt4::message& met) override {
    all.push_back({met.severity, met.topic, met.line, met.column, met.text});
  }
};

#endif
