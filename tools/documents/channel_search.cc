#include "channel_search.hh"

#include <algorithm>
#include <cstdio>

#include "document_kind.hh"
#include "event_util.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "selector_rules.hh"
#include "shown_text.hh"
#include "terminal.hh"
#include "type_masks.hh"
#include "type_names.hh"

using zrt4::detail::found_by_daq_name;
using zrt4::detail::has_bit;

namespace {

std::string hexadecimal(std::uint32_t mask) {
  char text[sizeof "0x80000000"];
  std::snprintf(text, sizeof text, "0x%x", mask);
  return text;
}

/// A type as it was written, where that says something else than its mask.
struct origin_of_type {
  written_type written;
  const std::map<std::size_t, std::string>& odd_texts;
  std::uint32_t mask_of_number;
  const char* name_of_number;
};

std::string shown_type(std::uint32_t mask, const std::string& names, std::size_t position,
                       const origin_of_type& origin) {
  std::string shown = hexadecimal(mask);
  if (!names.empty()) shown += " " + names;
  // A record that was merged from several channels may have its type from another one.
  if (!origin.written.is_there || origin.mask_of_number != mask) return shown;
  const auto odd = origin.odd_texts.find(position);
  if (odd != origin.odd_texts.end()) return shown + " (written: " + quoted(odd->second) + ")";
  if (names == origin.name_of_number) return shown;
  return shown + " (written: " + std::to_string(origin.written.number) + ")";
}

std::optional<std::uint32_t> number_of(const written_type& written) {
  if (!written.is_there) return {};
  return written.number;
}

}  // namespace

std::string place_of_channel::shown() const {
  return printable(file) + ":" + std::to_string(line);
}

std::string names_of_event_types(std::uint32_t mask) {
  std::string names;
  for (int type = 0; type < zrt4::detail::event_type_count; ++type) {
    if (!has_bit(mask, type)) continue;
    if (!names.empty()) names += ':';
    names += event_name_itoa(type);
  }
  return names;
}

reading channel_search::load(input_file& file) {
  refuse_json(file);
  const document_kind kind = kind_of(file);
  if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions");
  const auto number = static_cast<std::uint32_t>(files.size());
  files.push_back(file.name());
  reading how = read_placed(channels, file, dialect_of(kind), zrt4::types::masks, number);
  place_merged();
  if (how.errors == 0) {
    for (const chan_descr_2010& each : channels.list) event_types |= each.ev_type;
  }
  return how;
}

place_of_channel channel_search::place_of(std::size_t position) const {
  return place_of(channels.origins[position]);
}

std::vector<place_of_channel> channel_search::merged_into(std::size_t position) const {
  const auto found = merged.find(position);
  return found != merged.end() ? found->second : std::vector<place_of_channel>();
}

// The record that a channel was merged into is the first of its property.
void channel_search::place_merged() {
  std::map<std::string_view, std::vector<place_of_channel>> by_property;
  for (const merged_channel& each : channels.merged) {
    by_property[each.property].push_back(place_of(each.origin));
  }
  merged.clear();
  for (std::size_t i = 0; i < channels.list.size() && !by_property.empty(); ++i) {
    const auto found = by_property.find(channel(i).prop_name);
    if (found == by_property.end()) continue;
    merged.emplace(i, std::move(found->second));
    by_property.erase(found);
  }
}

std::string channel_search::shown_event_types(std::size_t position) const {
  const std::uint32_t mask = channel(position).ev_type;
  const written_type& written = channels.origins[position].event_type;
  return shown_type(mask, names_of_event_types(mask), position,
                    {written, channels.odd_event_types, zrt4::detail::bit_mask(written.with_sign()),
                     event_name_itoa(written.with_sign())});
}

std::string channel_search::shown_data_type(std::size_t position) const {
  const std::uint32_t mask = channel(position).dtype;
  const written_type& written = channels.origins[position].data_type;
  return shown_type(
      mask, names_of_data_types(mask), position,
      {written, channels.odd_data_types, zrt4::detail::data_type_mask(written.with_sign()),
       block_name_itoa(written.with_sign())});
}

std::optional<std::uint32_t> channel_search::written_event_type(std::size_t position) const {
  return number_of(channels.origins[position].event_type);
}

std::optional<std::uint32_t> channel_search::written_data_type(std::size_t position) const {
  return number_of(channels.origins[position].data_type);
}

std::optional<std::size_t> channel_search::found_by(const std::string& name) const {
  const std::uint32_t by_property = zrt4::detail::types_found_by_property();
  for (std::size_t i = 0; i < channels.list.size(); ++i) {
    const chan_descr_2010& each = channel(i);
    if (each.ev_type == 0) continue;
    if (name == each.daq_name || ((each.ev_type & by_property) != 0 && name == each.prop_name)) {
      return i;
    }
  }
  return {};
}

std::vector<std::size_t> channel_search::matching(const name_pattern& names) const {
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; i < channels.list.size(); ++i) {
    const chan_descr_2010& each = channel(i);
    // A channel with two properties stands in the list twice, one behind the other.
    if (i != 0 && &each == &channel(i - 1)) continue;
    if (names.matches(each.daq_name) || names.matches(each.prop_name)) positions.push_back(i);
  }
  return positions;
}

bool channel_search::selects(const std::string& name, int event) const {
  if (!has_bit(event_types, event)) return false;
  return first_bearing(name, found_by_daq_name(event) ? &chan_descr_2010::daq_name
                                                      : &chan_descr_2010::prop_name)
      .has_value();
}

std::string channel_search::name_for(std::size_t position, int event) const {
  const chan_descr_2010& each = channel(position);
  return found_by_daq_name(event) ? each.daq_name : each.prop_name;
}

std::optional<std::size_t> channel_search::first_bearing(
    const std::string& name, const char (chan_descr_2010::*field)[256]) const {
  for (std::size_t i = 0; i < channels.list.size(); ++i) {
    if (name == channel(i).*field) return i;
  }
  return {};
}

std::string channel_search::channel_called(std::size_t position) const {
  const std::string name = channel(position).daq_name;
  return name.empty() ? "a channel without DAQ name" : quoted(name);
}

// A record keeps the DAQ name of the first of its channels.
std::string channel_search::what_merged_one_has(const name_pattern& names) const {
  for (const merged_channel& each : channels.merged) {
    if (each.name.empty() || !names.matches(each.name.c_str())) continue;
    const auto into = first_bearing(each.property, &chan_descr_2010::prop_name);
    if (!into) continue;
    return (names.is_one_name() ? std::string() : "only " + quoted(each.name) + "; ") +
           "the channel that has it (" + place_of(each.origin).shown() + ") is merged into " +
           channel_called(*into) + " (" + place_of(*into).shown() +
           "), which has the same property";
  }
  return {};
}

std::string channel_search::why_nothing_matches(const name_pattern& names) const {
  const std::string merged_one = what_merged_one_has(names);
  return merged_one.empty() ? "matches no channel's DAQ name or property" : merged_one;
}

std::string channel_search::why_not_found(const std::string& name) const {
  for (std::size_t i = 0; i < channels.list.size(); ++i) {
    const chan_descr_2010& each = channel(i);
    if (name != each.daq_name && name != each.prop_name) continue;
    if (each.ev_type == 0) {
      return "the channel that has it (" + place_of(i).shown() +
             ") has no event type, so that a client that asks for its types finds none";
    }
    return "looked up by DAQ name for " + names_of_event_types(each.ev_type) +
           "; it is the property of " + channel_called(i) + " (" + place_of(i).shown() + ")";
  }
  std::string merged_one = what_merged_one_has(name_pattern(name));
  if (!merged_one.empty()) return merged_one;
  std::string nobody = "no channel has this DAQ name or property";
  const auto others = matching(name_pattern(name, name_pattern::letters::any_case));
  if (!others.empty()) return nobody + "; one has it in other letters, as find -i shows";
  const std::size_t longer =
      matching(name_pattern(name, name_pattern::letters::any_case, name_pattern::place::anywhere))
          .size();
  if (longer == 0 || name.empty()) return nobody;
  return nobody + "; " + std::to_string(longer) +
         (longer == 1 ? " channel has" : " channels have") +
         " it within a longer name, as find -i shows";
}

std::string channel_search::why_not_selected(const std::string& name, int event) const {
  const std::string type = event_name_itoa(event);
  if (!has_bit(event_types, event)) {
    const bool is_in_damage =
        std::any_of(channels.list.begin(), channels.list.end(),
                    [&](const chan_descr_2010& each) { return has_bit(each.ev_type, event); });
    return is_in_damage ? "event type " + type +
                              " stands only in a document that was not read cleanly, and does not "
                              "count"
                        : "no channel has event type " + type;
  }
  if (found_by_daq_name(event)) {
    const std::string by = "looked up by DAQ name for " + type + "; ";
    const auto its = first_bearing(name, &chan_descr_2010::prop_name);
    if (!its) return by + "no channel has this one";
    return by + printable(name) + " is a property, of " + channel_called(*its);
  }
  const std::string by = "looked up by property for " + type + "; ";
  const auto its = first_bearing(name, &chan_descr_2010::daq_name);
  if (!its) return by + "no channel has this one";
  return by + printable(name) + " is a DAQ name, of " + quoted(channel(*its).prop_name);
}

std::string channel_search::odd_about_selection(const std::string& name,
                                                std::optional<std::size_t> position,
                                                int event) const {
  const bool by_daq_name = found_by_daq_name(event);
  const auto field = by_daq_name ? &chan_descr_2010::daq_name : &chan_descr_2010::prop_name;
  const bool is_this_one = position && name == channel(*position).*field;
  const auto selected = is_this_one ? position : first_bearing(name, field);
  const std::string lacks = has_bit(channel(*selected).ev_type, event)
                                ? ""
                                : "does not have event type " +
                                      std::string(event_name_itoa(event)) +
                                      "; a selector asks only whether some channel has it";
  if (is_this_one) return lacks.empty() ? "" : "this channel " + lacks;
  const std::string other = std::string("it is the ") + (by_daq_name ? "DAQ name" : "property") +
                            " of " + channel_called(*selected) + " (" +
                            place_of(*selected).shown() + ")";
  return lacks.empty() ? other : other + ", which " + lacks;
}
