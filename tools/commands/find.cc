#include "find.hh"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "chan_selector.hh"
#include "document_kind.hh"
#include "documents.hh"
#include "each_file.hh"
#include "event_util.hh"
#include "json.hh"
#include "quiet_output.hh"

namespace {

exit_code load(chan_selector& selector, input_file& file) {
  const document_kind& kind = kind_of(file);
  const bool variables = kind.name == "variables";
  if (!kind.is_channels()) throw wrong_kind(file, kind, "channel descriptions");
  // Only a text makes masks of the variable dialect's event types.
  selector.set_mode(variables ? EXTR_FROM_XML : EXTR_FROM_FILE);
  std::string text = variables ? file.content() : std::string();
  std::vector<char*> source{variables ? text.data() : file.path()};
  const quiet_output remarks;
  const int failed =
      read_and_tell(file, [&] { return selector.set_descriptions(&source, nullptr) ? 1 : 0; });
  if (failed == 0) return exit_fine;
  complain(file.name(), "not read cleanly; what could be read is searched");
  return exit_bad_document;
}

struct known_channel {
  std::string name, property;
  unsigned event_types, data_type;  ///< masks
  bool slow, main_linac;
  int sub_channels;
};

struct answer {
  std::optional<known_channel> channel;
  std::optional<int> event;  ///< as asked for
  bool selected;             ///< for it
};

std::vector<const char*> event_type_names(unsigned mask) {
  std::vector<const char*> names;
  for (int type = 0; type < 32; ++type) {
    if ((mask >> type & 1U) != 0) names.push_back(event_name_itoa(type));
  }
  return names;
}

const char* yes_or_no(bool yes) {
  return yes ? "yes" : "no";
}

// The first description that bears the name, as the selector's lookups see it.
int index_of(chan_selector& selector, const std::string& name) {
  for (int i = 0; i < selector.size(); ++i) {
    if (selector.get_channel(i) == name || selector.get_prop(i) == name) return i;
  }
  return -1;
}

answer ask(chan_selector& selector, std::string name, std::optional<int> event) {
  const quiet_output remarks;
  answer result{{}, event, false};
  const auto mask = static_cast<unsigned>(selector.get_event_type(name.data()));
  if (event && selector.size() != 0) result.selected = selector.find_channel(*event, name.data());
  if (mask == 0) return result;
  const int index = index_of(selector, name);
  char* daq_name = selector.get_channel(index);
  result.channel = {daq_name,
                    selector.get_prop(index),
                    mask,
                    static_cast<unsigned>(selector.get_data_type(daq_name)),
                    selector.is_channel_slow(index) == 1,
                    selector.is_channel_ml(index) == 1,
                    selector.get_subchannels(index)};
  return result;
}

void print(const answer& found) {
  if (const auto& channel = found.channel) {
    std::printf("channel:       %s\n", channel->name.c_str());
    std::printf("property:      %s\n", channel->property.c_str());
    std::printf("event types:   0x%x", channel->event_types);
    for (const char* type : event_type_names(channel->event_types)) std::printf(" %s", type);
    std::printf("\ndata type:     0x%x\n", channel->data_type);
    std::printf("slow:          %s\n", yes_or_no(channel->slow));
    std::printf("main linac:    %s\n", yes_or_no(channel->main_linac));
    std::printf("sub-channels:  %d\n", channel->sub_channels);
  }
  if (found.event) {
    std::printf("selected for %s: %s\n", event_name_itoa(*found.event), yes_or_no(found.selected));
  }
}

json to_json(const answer& found, const std::string& name) {
  json result = json_head("find");
  result["name"] = to_utf8(name);
  result["channel"] = nullptr;
  if (const auto& channel = found.channel) {
    result["channel"] = {{"name", to_utf8(channel->name)},
                         {"property", to_utf8(channel->property)},
                         {"event_type_mask", channel->event_types},
                         {"event_type_names", event_type_names(channel->event_types)},
                         {"data_type_mask", channel->data_type},
                         {"slow", channel->slow},
                         {"main_linac", channel->main_linac},
                         {"sub_channels", channel->sub_channels}};
  }
  result["event"] = nullptr;
  if (found.event) {
    result["event"] = {{"type", *found.event},
                       {"name", event_name_itoa(*found.event)},
                       {"selected", found.selected}};
  }
  return result;
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
               std::optional<int> event, look wanted) {
  chan_selector selector;
  const exit_code loaded = for_each_file(
      files, [&](input_file& file) { return load(selector, file); }, [](const unusable_file&) {});
  const answer found = ask(selector, name, event);
  if (!found.channel && wanted == look::text && selector.size() != 0) {
    complain(name, "no channel has this DAQ name or property");
  }
  if (wanted == look::text) print(found);
  if (wanted == look::json) print_json(to_json(found, name));
  const bool is_yes = found.channel && (!event || found.selected);
  return std::max(loaded, is_yes ? exit_fine : exit_bad_document);
}
