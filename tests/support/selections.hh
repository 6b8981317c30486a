#ifndef SELECTIONS_HH
#define SELECTIONS_HH

// Channel selectors from literal channels.

#include <string>
#include <vector>

#include "chan_selector.hh"
#include "support.hh"

namespace test {

struct selector_channel {
  int event = 1;
  std::string prop;
  std::string name;
  std::string rest;
};

inline std::string document(const std::vector<selector_channel>& channels) {
  std::string text = "<CHANDESCRIPTIONS>";
  for (const selector_channel& one : channels) {
    text += "<CHANNEL><EVTYPE>" + std::to_string(one.event) + "</EVTYPE><PROP>" + one.prop +
            "</PROP><NAME>" + one.name + "</NAME>" + one.rest + "</CHANNEL>";
  }
  return text + "</CHANDESCRIPTIONS>";
}

inline bool load(chan_selector& selector, std::vector<std::string> texts, int* total = nullptr) {
  selector.change_mode(EXTR_FROM_XML);
  std::vector<char*> source;
  for (std::string& text : texts) source.push_back(text.data());
  bool failed = false;
  captured([&] { failed = selector.set_descriptions(&source, total); });
  return failed;
}

/// A selector of these channels; `with_masks` takes each event number as a whole mask.
struct selection : chan_selector {
  explicit selection(const std::vector<selector_channel>& channels, bool with_masks = false) {
    set_shift(!with_masks);
    EXPECT_FALSE(load(*this, {document(channels)}));
  }
  bool find(int event, std::string name) { return find_channel(event, name.data()); }
  int event_type(std::string name) { return get_event_type(name.data()); }
  int data_type(std::string name) { return get_data_type(name.data()); }
};

}  // namespace test

#endif
