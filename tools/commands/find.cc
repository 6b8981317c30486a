#include "find.hh"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "descr_extractor.hh"
#include "document_kind.hh"
#include "each_file.hh"
#include "event_util.hh"
#include "json_answer.hh"
#include "reading.hh"
#include "selector_rules.hh"
#include "type_masks.hh"

using zrt4::detail::has_bit;
using zrt4::detail::is_main_linac;
using zrt4::detail::is_slow;

namespace {

/// The descriptions of all files, read and looked up as a selector does. A selector answers by name
/// only, so that its answers about one name can come from several descriptions.
struct loaded_channels {
  zrt4::channel_list list;
  std::uint32_t event_types = 0;  ///< mask; those of a file that failed do not count until the next
};

/// How a file was loaded.
struct loading {
  std::string file;
  reading how;
};

loading load(loaded_channels& channels, input_file& file) {
  refuse_json(file);
  const document_kind kind = kind_of(file);
  const bool variables = kind == document_kind::variables;
  if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions");
  descr_extractor reader;
  // Only a text makes masks of the variable dialect's event types.
  reader.set_mode(variables ? EXTR_FROM_XML : EXTR_FROM_FILE);
  std::string text = variables ? file.content() : std::string();
  std::vector<char*> source{variables ? text.data() : file.path()};
  reading how = read_with_messages(file, [&] {
    return reader.get_descriptions(&source, nullptr, channels.list.get(), true) ? 1 : 0;
  });
  if (how.errors == 0) {
    for (const chan_descr_2010& channel : channels.list) channels.event_types |= channel.ev_type;
  }
  return {file.name(), std::move(how)};
}

exit_code report_loading(const loading& one) {
  report(one.how.messages);
  if (one.how.errors == 0) return exit_fine;
  report(one.file, "not read cleanly; what could be read is searched");
  return exit_not_fine;
}

struct answer {
  const chan_descr_2010* channel;  ///< null when there is none
  std::optional<int> event;        ///< as asked for
  bool selected;                   ///< for it
};

std::vector<const char*> event_type_names(unsigned mask) {
  std::vector<const char*> names;
  for (int type = 0; type < zrt4::detail::event_type_count; ++type) {
    if (has_bit(mask, type)) names.push_back(event_name_itoa(type));
  }
  return names;
}

const char* yes_or_no(bool yes) {
  return yes ? "yes" : "no";
}

// The first with an event type that bears the name as DAQ name, or as property when one of its
// event types is looked up by property.
const chan_descr_2010* find_channel(const zrt4::channel_list& list, const std::string& name) {
  const std::uint32_t by_property = zrt4::detail::types_found_by_property();
  const auto found = std::find_if(list.begin(), list.end(), [&](const chan_descr_2010& each) {
    if (each.ev_type == 0) return false;
    return each.daq_name == name || ((each.ev_type & by_property) != 0 && each.prop_name == name);
  });
  return found != list.end() ? &*found : nullptr;
}

// Some description must have the event type, and one must bear the name as channels of that type
// do.
bool is_selected(const loaded_channels& channels, const std::string& name, int event) {
  if (!has_bit(channels.event_types, event)) return false;
  const bool by_daq_name = zrt4::detail::found_by_daq_name(event);
  return std::any_of(channels.list.begin(), channels.list.end(), [&](const chan_descr_2010& each) {
    return name == (by_daq_name ? each.daq_name : each.prop_name);
  });
}

int sub_channels(const chan_descr_2010& channel) {
  return is_slow(channel.ev_type) ? 1 : static_cast<int>(channel.dims.size());
}

void print(const answer& found) {
  if (const chan_descr_2010* channel = found.channel) {
    std::printf("channel:       %s\n", channel->daq_name);
    std::printf("property:      %s\n", channel->prop_name);
    std::printf("event types:   0x%x", channel->ev_type);
    for (const char* type : event_type_names(channel->ev_type)) std::printf(" %s", type);
    std::printf("\ndata type:     0x%x\n", channel->dtype);
    std::printf("slow:          %s\n", yes_or_no(is_slow(channel->ev_type)));
    std::printf("main linac:    %s\n",
                yes_or_no(is_main_linac(channel->daq_name, channel->ev_type)));
    std::printf("sub-channels:  %d\n", sub_channels(*channel));
  }
  if (found.event) {
    std::printf("selected for %s: %s\n", event_name_itoa(*found.event), yes_or_no(found.selected));
  }
}

json to_json(const answer& found, const std::string& name) {
  json result = json_head("find");
  result["name"] = to_utf8(name);
  result["channel"] = nullptr;
  if (const chan_descr_2010* channel = found.channel) {
    result["channel"] = {{"name", to_utf8(channel->daq_name)},
                         {"property", to_utf8(channel->prop_name)},
                         {"event_type_mask", channel->ev_type},
                         {"event_type_names", event_type_names(channel->ev_type)},
                         {"data_type_mask", channel->dtype},
                         {"slow", is_slow(channel->ev_type)},
                         {"main_linac", is_main_linac(channel->daq_name, channel->ev_type)},
                         {"sub_channels", sub_channels(*channel)}};
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
               std::optional<int> event, answer_format format) {
  loaded_channels channels;
  // One after the other: a reader merges what it finds in the list already.
  const exit_code loaded = for_each_file(
      files, 1, [&](input_file& file) { return load(channels, file); }, report_loading,
      [](const unusable_file&) {});
  const answer found{find_channel(channels.list, name), event,
                     event && is_selected(channels, name, *event)};
  if (found.channel == nullptr && format == answer_format::text && !channels.list.empty()) {
    report(name, "no channel has this DAQ name or property");
  }
  if (format == answer_format::text) print(found);
  if (format == answer_format::json) print_json(to_json(found, name));
  const bool is_yes = found.channel != nullptr && (!event || found.selected);
  return std::max(loaded, fine_if(is_yes));
}
