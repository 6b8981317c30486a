#include "merging.hh"

#include <map>
#include <string_view>
#include <vector>

void merge_into(zrt4::channel_list& base, zrt4::channel_list& from, bool force) {
  // No hash table: senders could choose properties that all have one hash.
  std::map<std::string_view, chan_descr_2010*> by_property;
  for (chan_descr_2010& channel : base) by_property.emplace(channel.prop_name, &channel);
  std::vector<chan_descr_2010*> merged;
  for (chan_descr_2010* channel : *from.get()) {
    const auto [known, is_new] = by_property.emplace(channel->prop_name, channel);
    if (is_new) {
      base.get()->push_back(channel);
    } else if (known->second != channel) {
      extend_channel_description(known->second, channel, force);
      merged.push_back(channel);
    }
  }
  from.get()->swap(merged);
}
