#include <vector>

#include "chan_selector.hh"
#include "fuzz.hh"
#include "parse_chan_descr.hh"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::set_up();
  std::string text = fuzz::text(data, size);
  chan_selector selector;
  selector.change_mode(EXTR_FROM_XML);
  std::vector<char*> sources{text.data()};
  int total = 0;
  selector.set_descriptions(&sources, &total);
  for (int i = -1; i <= selector.size(); ++i) {
    char* name = selector.get_channel(i);
    char* property = selector.get_prop(i);
    if ((name == nullptr) != (i < 0 || i >= selector.size())) {
      fuzz::broken("every channel has a name, no other number has");
    }
    selector.is_channel_slow(i);
    selector.is_channel_ml(i);
    selector.set_counter(i, i);
    for (char* chan : {name, property}) {
      if (chan == nullptr) continue;
      selector.find_channel(i, chan);
      selector.get_event_type(chan);
      selector.get_data_type(chan);
    }
  }
  return 0;
}
