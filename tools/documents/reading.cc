#include "reading.hh"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "input_file.hh"
#include "message.hh"
#include "received_messages.hh"

namespace {

bool is_about_xml(const received_message& one) {
  return one.topic == zrt4::message_topic::xml || one.topic == zrt4::message_topic::limit;
}

// Where the XML is damaged, that says it all. What else a reader tells names no file.
std::vector<std::string> lines_of(const std::string& file,
                                  const std::vector<received_message>& received) {
  std::vector<std::string> about_xml;
  std::vector<std::string> others;
  for (const received_message& one : received) {
    if (is_about_xml(one)) {
      about_xml.push_back(message_line(file + one.place(), one.text));
    } else if (one.severity != zrt4::message_severity::remark) {
      others.push_back(one.text + "\n");
    }
  }
  return about_xml.empty() ? others : about_xml;
}

template <class List>
reading read_file(List& list, input_file& file) {
  return read_with_messages(file, [&] { return list.read_file(file.path()); });
}

}  // namespace

reading read_with_messages(input_file& file, const std::function<int()>& read) {
  reading result;
  received_messages received;
  result.errors = read();
  if (result.errors != 0) result.messages = lines_of(file.name(), received.all);
  return result;
}

reading read_into(zrt4::event_list& list, input_file& file) {
  return read_file(list, file);
}

reading read_into(zrt4::channel_list& list, input_file& file, int dialect, zrt4::types wanted) {
  if (dialect != MORV_FORMAT || wanted != zrt4::types::masks) {
    return read_with_messages(file, [&] { return list.read_file(file.path(), wanted); });
  }
  // Only the memory reader makes masks of this dialect's event types.
  const std::string text = file.content();
  return read_with_messages(file, [&] { return list.read_text(text, wanted); });
}

reading read_into(zrt4::env_dictionary& list, input_file& file) {
  return read_file(list, file);
}

reading read_into(zrt4::env_dictionary_2010& list, input_file& file) {
  return read_file(list, file);
}

reading read_into(zrt4::camera_features& list, input_file& file) {
  reading result;
  received_messages received;
  result.errors = list.read_file(file.path());
  const auto damage = std::find_if(received.all.begin(), received.all.end(), [](const auto& one) {
    return is_about_xml(one) && one.severity >= zrt4::message_severity::error;
  });
  if (damage != received.all.end()) {
    result.errors = std::max(result.errors, 1);
    result.messages = {
        message_line(file.name() + damage->place(), "damaged here: " + damage->text)};
  }
  return result;
}

void report_reading(const std::string& file, const reading& result, const std::string& rest) {
  report(result.messages);
  report_errors(file, result.errors, rest);
}
