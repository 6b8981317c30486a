// One scan, pull or read of a document of many parts, for counting its instructions:
//
//     LD_BIND_NOW=1 valgrind --tool=callgrind --toggle-collect=counted bench/instructions scan 1000
//
// scripts/check speed compares the counts, which are the same at each run on any machine's load.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "SAX_Memory_Parser.hh"
#include "bare_scan.hh"
#include "documents.hh"
#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "zrt4xml.hh"

namespace {

bool scan(std::string& text) {
  bench::bare_scan(text);
  return true;
}

bool pull(std::string& text) {
  SAX_Memory_Parser parser(text.data());
  if (!parser.init_ok() || parser.start()) return false;
  char* tag = nullptr;
  char* value = nullptr;
  while (parser.parse(&tag, &value) == 0) continue;
  return parser.get_error_counter() == 0;
}

template <class Record, int (*Read)(char*, std::vector<Record*>*)>
bool read(std::string& text) {
  std::vector<Record*> records;  // left to the end of the program: releasing is not reading
  return Read(text.data(), &records) == 0 && !records.empty();
}

int read_channels(char* text, std::vector<chan_descr_2010*>* channels) {
  return parse_descr_list_read(text, channels, true, true);
}

bool read_received(std::string& text) {
  const zrt4::message_list messages;
  return read<chan_descr_2010, read_channels>(text) && messages.empty();
}

// What is counted, and the document for it.
constexpr struct {
  std::string_view name;
  bool (*run)(std::string& text);
  std::string (*document)(int parts);
} subjects[] = {
    {"scan", scan, bench::element_channels},
    {"pull", pull, bench::element_channels},
    {"channels", read<chan_descr_2010, read_channels>, bench::element_channels},
    {"received", read_received, bench::element_channels},
    {"variables-scan", scan, bench::variable_channels},
    {"variables", read<chan_descr_2010, read_channels>, bench::variable_channels},
    {"dictionary-scan", scan, bench::dictionary},
    {"dictionary", read<zrt4_env_index_dictionary_entry_2010, parse_env_index_dict_list_read_2010>,
     bench::dictionary},
    {"events-scan", scan, bench::event_list},
    {"events", read<zrt4_ev_entry, zrt4_parse_ev_list_read>, bench::event_list},
};

using action = decltype(&scan);

}  // namespace

/// Its name is what the counting program is told: instructions count while it runs.
extern "C" [[gnu::noinline]] bool counted(action run, std::string& text) {
  return run(text);
}

namespace {

int run(std::string_view name, int parts) {
  for (const auto& subject : subjects) {
    if (subject.name != name) continue;
    std::string text = subject.document(parts);
    return counted(subject.run, text) ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: instructions SUBJECT PARTS\n", stderr);
    return 2;
  }
  xercesc::XMLPlatformUtils::Initialize();
  const int result = run(argv[1], std::atoi(argv[2]));
  xercesc::XMLPlatformUtils::Terminate();
  return result;
}
