#include "selector_index.hh"

#include <algorithm>
#include <cstring>

#include "selector_rules.hh"

namespace zrt4::detail {

void channel_index::update(const std::vector<chan_descr_2010*>& descr) {
  found_by_property = types_found_by_property();
  for (std::size_t i = 0; i < descr.size(); ++i) {
    const chan_descr_2010& channel = *descr[i];
    const auto position = static_cast<std::uint32_t>(i);
    if (i == types.size()) {
      index_names(channel, position);
      types.push_back({0, 0});  // no event type: never found by one
    }
    if (types[i].event != channel.ev_type) index_event(channel, position);
    types[i] = {channel.ev_type, channel.dtype};
  }
}

void channel_index::index_names(const chan_descr_2010& channel, std::uint32_t position) {
  std::uint32_t& first = names[find_or_add(channel.daq_name) + first_with_daq_name];
  first = std::min(first, position);
  names[find_or_add(channel.prop_name) + is_property] = 1;
}

void channel_index::index_event(const chan_descr_2010& channel, std::uint32_t position) {
  const auto offer = [&](const char* name) {
    std::uint32_t& first = names[find_or_add(name) + first_with_event];
    first = std::min(first, position);
  };
  offer(channel.daq_name);
  if ((channel.ev_type & found_by_property) != 0) offer(channel.prop_name);
}

std::uint32_t channel_index::find(const char* name) const {
  if (name == nullptr) return none;
  return slots.find(name, text_of());
}

std::uint32_t channel_index::find_or_add(const char* name) {
  const std::uint32_t known = find(name);
  if (known != none) return known;
  const auto at = static_cast<std::uint32_t>(names.size());
  const std::size_t size = std::strlen(name) + 1;
  names.insert(names.end(), {none, none, 0});
  names.resize(names.size() + (size + sizeof names[0] - 1) / sizeof names[0]);
  std::memcpy(&names[at + text_begin], name, size);
  return slots.find_or_add(name, at, text_of());
}

bool channel_index::has_daq_name(const char* name) const {
  const std::uint32_t at = find(name);
  return at != none && names[at + first_with_daq_name] != none;
}

bool channel_index::has_property(const char* name) const {
  const std::uint32_t at = find(name);
  return at != none && names[at + is_property] != 0;
}

std::uint32_t channel_index::event_types(const char* name) const {
  const std::uint32_t at = find(name);
  if (at == none || names[at + first_with_event] == none) return 0;
  return types[names[at + first_with_event]].event;
}

std::uint32_t channel_index::data_type(const char* name) const {
  const std::uint32_t at = find(name);
  if (at == none || names[at + first_with_daq_name] == none) return 0;
  return types[names[at + first_with_daq_name]].data;
}

}  // namespace zrt4::detail
