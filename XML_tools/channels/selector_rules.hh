#ifndef SELECTOR_RULES_HH
#define SELECTOR_RULES_HH

// What a selector says of one description, from its event types (a mask) and its DAQ name.

#include <cstdint>
#include <cstring>

#include "event.hh"
#include "event_util.hh"
#include "type_masks.hh"

namespace zrt4::detail {

constexpr int event_type_count = ZRT4_EV_EVMAX;

/// Whether channels of an event type are looked up by DAQ name, and not by property.
inline bool found_by_daq_name(int event_type) {
  const int structure = get_event_struct_type(event_type);
  return structure == ZRT4_EV_STRUCT_LOCAL || structure == ZRT4_EV_STRUCT_ML;
}

/// The event types whose channels are looked up by property.
inline std::uint32_t types_found_by_property() {
  std::uint32_t types = 0;
  for (int type = 0; type < event_type_count; ++type) {
    if (!found_by_daq_name(type)) types |= bit_mask(type);
  }
  return types;
}

/// Whether slow events deliver the channel.
constexpr bool is_slow(std::uint32_t event_types) {
  constexpr std::uint32_t slow_events =
      bit_mask(ZRT4_EV_BOR) | bit_mask(ZRT4_EV_EOR) | bit_mask(ZRT4_EV_ENV) | bit_mask(ZRT4_EV_UPD);
  return (event_types & slow_events) != 0;
}

inline bool is_main_linac(const char* daq_name, std::uint32_t event_types) {
  // Classes that a site's event-utility library may give out beyond ZRT4_EV_STRUCT_TYPE.
  constexpr int first_linac_class = 10;
  constexpr int last_linac_class = 15;
  if (std::strstr(daq_name, ".ML") != nullptr) return true;
  for (int type = 0; type < event_type_count; ++type) {
    if (!has_bit(event_types, type)) continue;
    const int structure = get_event_struct_type(type);
    if (structure == ZRT4_EV_STRUCT_ML) return true;
    if (structure >= first_linac_class && structure <= last_linac_class) return true;
  }
  return false;
}

}  // namespace zrt4::detail

#endif
