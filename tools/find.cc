#include "find.hh"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "bad_document.hh"
#include "chan_selector.hh"
#include "document_kind.hh"
#include "event_util.hh"
#include "input_file.hh"
#include "message.hh"
#include "quiet_output.hh"

namespace {

// Returns the number of sources that could not be read cleanly.
int load(chan_selector& selector, input_file& file) {
  const document_kind& kind = kind_of(file);
  const bool variables = kind.name == "variables";
  if (!variables && kind.name != "channels") {
    throw bad_document("this is no channel description but: " + std::string(kind.description));
  }
  // Only a text makes masks of the variable dialect's event types.
  selector.set_mode(variables ? EXTR_FROM_XML : EXTR_FROM_FILE);
  std::string text = variables ? file.content() : std::string();
  std::vector<char*> source{variables ? text.data() : file.path()};
  const quiet_output remarks;
  return selector.set_descriptions(&source, nullptr) ? 1 : 0;
}

std::string event_type_names(unsigned mask) {
  std::string names;
  for (int type = 0; type < 32; ++type) {
    if ((mask >> type & 1U) != 0) names.append(" ").append(event_name_itoa(type));
  }
  return names;
}

const char* yes_or_no(int answer) {
  return answer == 1 ? "yes" : "no";
}

// The first description that bears the name, as the selector's lookups see it.
int index_of(chan_selector& selector, const std::string& name) {
  for (int i = 0; i < selector.size(); ++i) {
    if (selector.get_channel(i) == name || selector.get_prop(i) == name) return i;
  }
  return -1;
}

}  // namespace

std::optional<int> event_type_of(const std::string& text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  constexpr auto types_end = static_cast<int>(ZRT4_EV_EVMAX);
  if (error == std::errc() && stop == end && number >= 0 && number < types_end) return number;
  for (int type = 0; type < types_end; ++type) {
    if (text == event_name_itoa(type)) return type;
  }
  return {};
}

exit_code find(const std::vector<std::string>& files, const std::string& name,
               std::optional<int> event) {
  exit_code worst = exit_fine;
  chan_selector selector;
  for (const std::string& file_name : files) {
    try {
      input_file file(file_name);
      if (load(selector, file) == 0) continue;
      complain(file.name(), "not read cleanly; what could be read is searched");
      worst = std::max(worst, exit_bad_document);
    } catch (const bad_document& reason) {
      complain(file_name + reason.place, reason.what());
      worst = std::max(worst, exit_bad_document);
    } catch (const std::runtime_error& reason) {
      complain(file_name, reason.what());
      worst = exit_no_use;
    }
  }

  std::string wanted = name;
  const auto mask = static_cast<unsigned>(selector.get_event_type(wanted.data()));
  const bool selected =
      !event || (selector.size() != 0 && selector.find_channel(*event, wanted.data()));
  if (mask != 0) {
    const int index = index_of(selector, wanted);
    std::printf("channel:       %s\n", selector.get_channel(index));
    std::printf("property:      %s\n", selector.get_prop(index));
    std::printf("event types:   0x%x%s\n", mask, event_type_names(mask).c_str());
    std::printf("data type:     0x%x\n",
                static_cast<unsigned>(selector.get_data_type(selector.get_channel(index))));
    std::printf("slow:          %s\n", yes_or_no(selector.is_channel_slow(index)));
    std::printf("main linac:    %s\n", yes_or_no(selector.is_channel_ml(index)));
    std::printf("sub-channels:  %d\n", selector.get_subchannels(index));
  }
  if (event) {
    std::printf("selected for %s: %s\n", event_name_itoa(*event), selected ? "yes" : "no");
  }
  return std::max(worst, mask != 0 && selected ? exit_fine : exit_bad_document);
}
