#include <vector>

#include "fuzz.hh"
#include "parse_chan_descr.hh"

namespace {

using channels = std::vector<chan_descr_2010*>;

void read_again(const channels& list, int format, bool from_file, bool shift, bool merge) {
  channels written = list;
  std::string document;
  dump_chan_desr(&written, nullptr, DUMP_XML_FILE, format, -1, &document, nullptr);
  channels again;
  if (from_file) {
    parse_descr_list_readf(fuzz::file_of(document), &again, shift, merge);
  } else {
    parse_descr_list_read(document.data(), &again, shift, merge);
  }
  clean_chan_desr_list(&again);
}

void show(channels& list) {
  char nowhere[] = "/dev/null";
  print_zrt4_chan_descr(&list);
  dump_chan_desr(&list, nowhere, DUMP_TXT_FILE, ZRT4_FORMAT, -1, nullptr, nullptr);
  dump_chan_desr(&list, nowhere, DUMP_TXT_FILE_SHORT, ZRT4_FORMAT, -1, nullptr, nullptr);
}

}  // namespace

// Both readers with all settings; then a listing, or both dialects, written and read again by the
// other reader, or the same document once more into the same list.
const unsigned fuzz::ways = 32;

void fuzz::read(const std::string& input, unsigned way) {
  const bool shift = (way & 1) != 0;
  const bool merge = (way & 2) != 0;
  const bool from_file = (way & 4) != 0;
  std::string text = input;
  channels list;
  const auto read_once = [&] {
    return from_file ? parse_descr_list_readf(file_of(text), &list, shift, merge)
                     : parse_descr_list_read(text.data(), &list, shift, merge);
  };
  const int errors = read_once();
  if (errors < 0) broken("no negative result");
  switch (way / 8) {
    case 0:
      show(list);
      break;
    case 1:
      read_again(list, ZRT4_FORMAT, !from_file, shift, merge);
      break;
    case 2:
      read_again(list, MORV_FORMAT, !from_file, shift, merge);
      break;
    default:
      // What is merged into a record is not looked at to its end.
      if (read_once() > errors) broken("a second time brings no more errors");
  }
  clean_chan_desr_list(&list);
  if (!list.empty()) broken("a released list is empty");
}
