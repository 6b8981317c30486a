#ifndef CHANNEL_DOCUMENT_HH
#define CHANNEL_DOCUMENT_HH

// The XML documents of channel descriptions, and what they share with the text dumps.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "event_util.hh"
#include "text_slots.hh"

namespace zrt4::detail {

/// The DAQ name under which a channel is written.
inline const char* written_daq_name(const chan_descr_2010& channel) {
  return channel.daq_name[0] != '\0' ? channel.daq_name : "!!!UNDEFINED!!!";
}

/// Has the processor fetch what is written of a usual channel: a third of its record, in pieces
/// that are too far apart for it to foresee. (Always inline: see `fetch_behind`.)
[[gnu::always_inline]] inline void fetch(const chan_descr_2010& channel) {
  constexpr std::size_t usual_text = 40;
  for (const void* piece :
       std::initializer_list<const void*>{&channel.stream, channel.prop_name + usual_text,    //
                                          channel.daq_name, channel.daq_name + usual_text,    //
                                          channel.prop_desc, channel.prop_desc + usual_text,  //
                                          channel.units, &channel.nbits, &channel.ndims,      //
                                          channel.sb_name, channel.sb_name + usual_text,      //
                                          &channel.set_point, channel.subsystem + usual_text / 2}) {
    __builtin_prefetch(piece);
  }
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
    if (i + records_ahead < list.size()) fetch(*list[i + records_ahead]);
    const std::uint32_t first = written.find_or_add(
        list[i]->prop_name, hash, position, [&](std::uint32_t at) { return list[at]->prop_name; });
    if (first == position) write(*list[i], i);
  }
}

/// The whole document in the dialect `format`. In the element dialect a document that goes to a
/// file carries the date, and `dims`, unless null, adds parameters to dimensions. `destination` is
/// the string that the document is for, or null: see `begin_document`.
std::string chan_descr_document(const std::vector<chan_descr_2010*>& list, int format, bool in_file,
                                const std::vector<dim_params*>* dims, std::string* destination);

}  // namespace zrt4::detail

#endif
