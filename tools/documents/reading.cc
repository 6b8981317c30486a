#include "reading.hh"

#include <unistd.h>

#include <cstdio>

#include "descriptor.hh"
#include "input_file.hh"
#include "message.hh"
#include "progress.hh"
#include "quiet_output.hh"
#include "scan.hh"

namespace {

template <class List>
int read_file(List& list, input_file& file) {
  return read_and_report(file, [&] { return list.read_file(file.path()); });
}

}  // namespace

// What the library prints of XML errors names the copy that was made of standard input, in a form
// of its own.
int read_and_report(input_file& file, const std::function<int()>& read) {
  const progress shown(file.name());
  descriptor messages(memory_file());
  int errors = 0;
  {
    const quiet_output held(STDERR_FILENO, messages.get());
    errors = read();
  }
  if (errors == 0) return 0;
  const std::vector<xml_error> found = xml_errors(file.path(), static_cast<std::size_t>(errors));
  if (found.empty()) {
    std::fputs(messages.read_from_start().c_str(), stderr);
    return errors;
  }
  for (const xml_error& each : found) report(file.name() + each.place, each.text);
  return errors;
}

int read_into(zrt4::event_list& list, input_file& file) {
  return read_file(list, file);
}

int read_into(zrt4::channel_list& list, input_file& file, int dialect, zrt4::types wanted) {
  if (dialect != MORV_FORMAT || wanted != zrt4::types::masks) {
    return read_and_report(file, [&] { return list.read_file(file.path(), wanted); });
  }
  // Only the memory reader makes masks of this dialect's event types. It also remarks on every bit
  // title that has not got its text yet, which is no news to a person.
  const std::string text = file.content();
  const quiet_output remarks;
  return read_and_report(file, [&] { return list.read_text(text, wanted); });
}

int read_into(zrt4::env_dictionary& list, input_file& file) {
  return read_file(list, file);
}

int read_into(zrt4::env_dictionary_2010& list, input_file& file) {
  return read_file(list, file);
}

int read_into(zrt4::camera_features& list, input_file& file) {
  const progress shown(file.name());
  return list.read_file(file.path());
}
