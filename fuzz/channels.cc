#include <vector>

#include "fuzz.hh"
#include "parse_chan_descr.hh"

namespace {

using channels = std::vector<chan_descr_2010*>;

std::string written(channels& list, int format) {
  std::string document;
  dump_chan_desr(&list, nullptr, DUMP_XML_FILE, format, -1, &document, nullptr);
  return document;
}

}  // namespace

// Reads with all settings, and reads what was written of it again.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::set_up();
  std::string text = fuzz::text(data, size);
  fuzz::input_file file(data, size);
  for (int settings = 0; settings < 4; ++settings) {
    const bool shift = (settings & 1) != 0;
    const bool merge = (settings & 2) != 0;
    channels list;
    parse_descr_list_read(text.data(), &list, shift, merge);
    print_zrt4_chan_descr(&list);
    for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
      std::string document = written(list, format);
      channels again;
      parse_descr_list_read(document.data(), &again, false, false);
      clean_chan_desr_list(&again);
    }
    clean_chan_desr_list(&list);
    parse_descr_list_readf(file.name(), &list, shift, merge);
    clean_chan_desr_list(&list);
  }
  return 0;
}
