#include "find.hh"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "channel_search.hh"
#include "each_file.hh"
#include "event_util.hh"
#include "json_answer.hh"
#include "selector_rules.hh"
#include "terminal.hh"
#include "type_masks.hh"
#include "type_names.hh"

using zrt4::detail::is_main_linac;
using zrt4::detail::is_slow;

namespace {

/// How a file was loaded.
struct loading {
  std::string file;
  reading how;
};

exit_code report_loading(const loading& one) {
  report(one.how.messages);
  if (one.how.errors == 0) return exit_fine;
  report(one.file, "not read cleanly; what could be read is searched");
  return exit_not_fine;
}

/// What is said of an event type, for one name.
struct selection {
  int event;
  bool is_selected;
  std::string remark;  ///< why it is not, or what is odd about it
};

/// A channel, by its position.
struct found_channel {
  std::size_t position;
  std::optional<selection> selected;
};

struct answer {
  /// By one name: what a client gets. By a pattern, nothing.
  std::optional<std::size_t> channel;
  std::optional<selection> selected;   ///< for the one name
  std::vector<found_channel> matches;  ///< all that have the name, or match the pattern
  std::string reason;                  ///< why there is no channel
  bool is_yes;
};

selection selection_of(const channel_search& channels, const std::string& name, int event,
                       std::optional<std::size_t> position) {
  if (name.empty()) {
    return {event, false,
            "looked up by DAQ name for " + std::string(event_name_itoa(event)) +
                "; the channel has none"};
  }
  if (!channels.selects(name, event)) {
    return {event, false, channels.why_not_selected(name, event)};
  }
  return {event, true, channels.odd_about_selection(name, position, event)};
}

answer answer_for(const channel_search& channels, const wanted_channel& wanted) {
  const name_pattern names = wanted.names();
  answer result{};
  for (const std::size_t position : channels.matching(names)) {
    found_channel match{position, {}};
    if (wanted.event) {
      match.selected = selection_of(channels, channels.name_for(position, *wanted.event),
                                    *wanted.event, position);
    }
    result.matches.push_back(std::move(match));
  }
  if (names.is_one_name()) {
    result.channel = channels.found_by(wanted.name);
    if (wanted.event) {
      result.selected = selection_of(channels, wanted.name, *wanted.event, result.channel);
    }
    if (!result.channel) result.reason = channels.why_not_found(wanted.name);
    result.is_yes = result.channel && (!wanted.event || result.selected->is_selected);
  } else {
    if (result.matches.empty()) result.reason = channels.why_nothing_matches(names);
    result.is_yes = !result.matches.empty() &&
                    std::all_of(result.matches.begin(), result.matches.end(), [](const auto& one) {
                      return !one.selected || one.selected->is_selected;
                    });
  }
  return result;
}

const char* yes_or_no(bool yes) {
  return yes ? "yes" : "no";
}

int sub_channels(const chan_descr_2010& channel) {
  return is_slow(channel.ev_type) ? 1 : static_cast<int>(channel.dims.size());
}

void print_line(const char* title, const std::string& text) {
  if (!text.empty()) std::printf("%-14s %s\n", title, text.c_str());
}

void print_channel(const channel_search& channels, std::size_t position) {
  const chan_descr_2010& channel = channels.channel(position);
  print_line("channel:", printable(channel.daq_name));
  print_line("property:", printable(channel.prop_name));
  print_line("description:", printable(channel.prop_desc));
  print_line("units:", printable(channel.units));
  print_line("event types:", channels.shown_event_types(position));
  print_line("data type:", channels.shown_data_type(position));
  print_line("slow:", yes_or_no(is_slow(channel.ev_type)));
  print_line("main linac:", yes_or_no(is_main_linac(channel.daq_name, channel.ev_type)));
  print_line("sub-channels:", std::to_string(sub_channels(channel)));
  print_line("stands in:", channels.place_of(position).shown());
  for (const place_of_channel& place : channels.merged_into(position)) {
    print_line("merged with:", place.shown());
  }
}

void print_selection(const std::optional<selection>& selected) {
  if (!selected) return;
  std::printf("selected for %s: %s\n", event_name_itoa(selected->event),
              yes_or_no(selected->is_selected));
  print_line(selected->is_selected ? "but:" : "because:", selected->remark);
}

// The others that have the name, of which a client knows nothing.
void print_others(const channel_search& channels, const answer& found) {
  for (const found_channel& other : found.matches) {
    if (&channels.channel(other.position) == &channels.channel(*found.channel)) continue;
    const chan_descr_2010& channel = channels.channel(other.position);
    const std::string name = printable(channel.daq_name);
    print_line("name also of:", (name.empty() ? "a channel without DAQ name" : name) +
                                    ", property " + printable(channel.prop_name) +
                                    ", event types " + channels.shown_event_types(other.position) +
                                    ", " + channels.place_of(other.position).shown());
  }
}

void print(const channel_search& channels, const answer& found, bool by_one_name) {
  if (by_one_name) {
    if (found.channel) print_channel(channels, *found.channel);
    print_selection(found.selected);
    if (found.channel) print_others(channels, found);
    return;
  }
  bool is_first = true;
  for (const found_channel& match : found.matches) {
    if (!is_first) std::putchar('\n');
    is_first = false;
    print_channel(channels, match.position);
    print_selection(match.selected);
  }
}

json names_in(const std::string& joined) {
  json names = json::array();
  for (std::size_t begin = 0; begin < joined.size();) {
    const std::size_t end = std::min(joined.find(':', begin), joined.size());
    names.push_back(joined.substr(begin, end - begin));
    begin = end + 1;
  }
  return names;
}

json text_or_null(const std::string& text) {
  return text.empty() ? json(nullptr) : json(to_utf8(text));
}

json number_or_null(std::optional<std::uint32_t> number) {
  return number ? json(*number) : json(nullptr);
}

json to_json(const channel_search& channels, std::size_t position) {
  const chan_descr_2010& channel = channels.channel(position);
  const place_of_channel place = channels.place_of(position);
  json merged = json::array();
  for (const place_of_channel& other : channels.merged_into(position)) {
    merged.push_back({{"file", to_utf8(other.file)}, {"line", other.line}});
  }
  return {{"name", to_utf8(channel.daq_name)},
          {"property", to_utf8(channel.prop_name)},
          {"event_type_mask", channel.ev_type},
          {"event_type_names", names_in(names_of_event_types(channel.ev_type))},
          {"data_type_mask", channel.dtype},
          {"slow", is_slow(channel.ev_type)},
          {"main_linac", is_main_linac(channel.daq_name, channel.ev_type)},
          {"sub_channels", sub_channels(channel)},
          {"event_type", number_or_null(channels.written_event_type(position))},
          {"data_type", number_or_null(channels.written_data_type(position))},
          {"data_type_names", names_in(names_of_data_types(channel.dtype))},
          {"description", to_utf8(channel.prop_desc)},
          {"units", to_utf8(channel.units)},
          {"file", to_utf8(place.file)},
          {"line", place.line},
          {"merged_with", std::move(merged)}};
}

json to_json(const std::optional<selection>& selected) {
  if (!selected) return nullptr;
  return {{"type", selected->event},
          {"name", event_name_itoa(selected->event)},
          {"selected", selected->is_selected},
          {"remark", text_or_null(selected->remark)}};
}

void print_json(const channel_search& channels, const answer& found, const std::string& name,
                const json& unusable) {
  json_printer out;
  out.begin_object();
  out.members(json_head("find"));
  out.member("name", to_utf8(name));
  out.member("channel", found.channel ? to_json(channels, *found.channel) : json(nullptr));
  out.member("event", to_json(found.selected));
  out.member("reason", text_or_null(found.reason));
  out.begin_array("matches");
  for (const found_channel& match : found.matches) {
    json one = to_json(channels, match.position);
    one["event"] = to_json(match.selected);
    out.element(one);
  }
  out.end();
  out.member("unusable", unusable);
  out.end();
}

}  // namespace

name_pattern wanted_channel::names() const {
  if (!ignore_case) return name_pattern(name);
  return name_pattern(name, name_pattern::letters::any_case, name_pattern::place::anywhere);
}

exit_code find(const std::vector<std::string>& files, const wanted_channel& wanted,
               answer_format format) {
  channel_search channels;
  json unusable = json::array();
  // One after the other: a reader merges what it finds in the list already.
  const exit_code loaded = for_each_file(
      files, 1,
      [&](input_file& file) {
        return loading{file.name(), channels.load(file)};
      },
      report_loading,
      [&](const unusable_file& file) { unusable.push_back(json_of_unusable(file)); });
  const answer found = answer_for(channels, wanted);
  if (format == answer_format::text) {
    if (channels.has_documents() && !found.reason.empty()) report(wanted.name, found.reason);
    print(channels, found, wanted.names().is_one_name());
  }
  if (format == answer_format::json) print_json(channels, found, wanted.name, unusable);
  return std::max(loaded, fine_if(found.is_yes));
}
