#ifndef WRITTEN_CHANNELS_HH
#define WRITTEN_CHANNELS_HH

// Which channels a dump writes, as a text or as a document.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "event_util.hh"
#include "prefetch.hh"
#include "text_slots.hh"

namespace zrt4::detail {

/// Stands for an empty DAQ name: readers would not see the element.
constexpr const char* undefined_daq_name = "!!!UNDEFINED!!!";

/// The DAQ name under which a channel is written.
inline const char* written_daq_name(const chan_descr_2010& channel) {
  return channel.daq_name[0] != '\0' ? channel.daq_name : undefined_daq_name;
}

/// Calls `write(channel, position)` for the first record of each property.
template <class Write>
void for_each_property(const std::vector<chan_descr_2010*>& list, Write write) {
  text_slots written;
  written.reserve(list.size());
  // The records of a long list and the slots of their properties lie all over the memory. They are
  // on their way before their turn comes, or waiting for them would take longer than writing.
  constexpr std::size_t ahead = 16;
  constexpr std::size_t records_ahead = 4;
  std::uint32_t hashes[ahead];
  const auto hash_ahead = [&](std::size_t i) {
    if (i + ahead < list.size()) __builtin_prefetch(list[i + ahead]->prop_name);
    if (i >= list.size()) return;
    hashes[i % ahead] = written.hash_of(list[i]->prop_name);
    written.fetch(hashes[i % ahead]);
  };
  for (std::size_t i = 0; i < ahead; ++i) hash_ahead(i);
  for (std::size_t i = 0; i < list.size(); ++i) {
    const auto position = static_cast<std::uint32_t>(i);
    const std::uint32_t hash = hashes[i % ahead];
    hash_ahead(i + ahead);
    if (i + records_ahead < list.size()) fetch_record(*list[i + records_ahead]);
    const std::uint32_t first = written.find_or_add(
        list[i]->prop_name, hash, position, [&](std::uint32_t at) { return list[at]->prop_name; });
    if (first == position) write(*list[i], i);
  }
}

}  // namespace zrt4::detail

#endif
