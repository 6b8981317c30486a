#include <vector>

#include "chan_selector.hh"
#include "fuzz.hh"
#include "parse_chan_descr.hh"

// Texts and files, event types as masks and as numbers.
const unsigned fuzz::ways = 4;

void fuzz::read(const std::string& input, unsigned way) {
  const bool from_file = (way & 1) != 0;
  std::string text = input;
  chan_selector selector;
  selector.change_mode(from_file ? EXTR_FROM_FILE : EXTR_FROM_XML);
  selector.set_shift((way & 2) != 0);
  std::vector<char*> sources{from_file ? file_of(text) : text.data()};
  int total = 0;
  selector.set_descriptions(&sources, &total);
  for (int i = -1; i <= selector.size(); ++i) {
    char* name = selector.get_channel(i);
    char* property = selector.get_prop(i);
    if ((name == nullptr) != (i < 0 || i >= selector.size())) {
      broken("every channel has a name, no other number has");
    }
    selector.is_channel_slow(i);
    selector.is_channel_ml(i);
    selector.get_subchannels(i);
    selector.set_counter(i, i);
    for (char* chan : {name, property}) {
      if (chan == nullptr) continue;
      selector.find_channel(i, chan);
      selector.get_event_type(chan);
      selector.get_data_type(chan);
    }
  }
}
