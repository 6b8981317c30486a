#ifndef FINDING_SUPPORT_HH
#define FINDING_SUPPORT_HH

// What `check` finds in a document, without running the tool.

#include <string>
#include <vector>

#include "document_kind.hh"
#include "findings.hh"
#include "input_file.hh"
#include "received_messages.hh"
#include "support.hh"

namespace test {

struct check_result {
  int errors = 0;
  std::size_t records = 0;
  std::vector<finding> found;
};

inline check_result check_of(const std::string& document) {
  const temporary_file file(document);
  input_file input(file.path());
  const document_kind kind = kind_of(input);
  const kept_leak of_the_readers;
  const loaded_document loaded = traits_of(kind).load(input);
  return {loaded.how.errors, loaded.rows.size(), findings_of(input, kind, 1000)};
}

/// "LINE:COLUMN rule: text" of each finding.
inline std::vector<std::string> found_in(const std::string& document) {
  std::vector<std::string> lines;
  for (const finding& each : check_of(document).found) {
    lines.push_back(std::to_string(each.place.line) + ":" + std::to_string(each.place.column) +
                    " " + std::string(traits_of(each.what).name) + ": " + each.text);
  }
  return lines;
}

/// Documents of one record, with `more` on a line of its own, the third. Channels have an event
/// type unless `more` tells it.
inline std::string event_with(const std::string& more) {
  return "<BMR>\n<EVENT><TYPE>1</TYPE>\n" + more + "</EVENT></BMR>";
}
inline std::string event_type_unless_in(const std::string& more, const std::string& element) {
  if (more.find(element) != more.npos) return {};
  return "<" + element + ">1</" + element + ">";
}
inline std::string channel_with(const std::string& more) {
  return "<CHANDESCRIPTIONS>\n<CHANNEL>" + event_type_unless_in(more, "EVTYPE") +
         "<PROP>A</PROP><NAME>N</NAME>\n" + more + "</CHANNEL></CHANDESCRIPTIONS>";
}
inline std::string variable_with(const std::string& kind, const std::string& more) {
  return "<DAQvariables>\n<" + kind + ">" + event_type_unless_in(more, "evType") +
         "<vindo>A</vindo><daqName>N</daqName>\n" + more + "</" + kind + "></DAQvariables>";
}
inline std::string entry_with(const std::string& more) {
  return "<ENVINDEXDICT>\n<CHANNEL><INDEX>1</INDEX><PROP>A</PROP>\n" + more +
         "</CHANNEL></ENVINDEXDICT>";
}

using lines = std::vector<std::string>;

}  // namespace test

#endif
