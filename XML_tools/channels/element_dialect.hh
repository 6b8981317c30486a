#ifndef ELEMENT_DIALECT_HH
#define ELEMENT_DIALECT_HH

// The element dialect: one CHANNEL element per channel, BIT, DIM and STAT elements whose text is
// the number. Nesting is not checked: a value applies to the record that is current.

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "name_table.hh"
#include "parse_chan_descr.hh"
#include "current_channel.hh"

namespace zrt4::detail {

template <class Rules>
class element_dialect {
 public:
  element_dialect(std::vector<chan_descr_2010*>* list, bool shift_types, bool delete_duplicated)
      : channel(list),
        shift(shift_types),
        duplicate_prop(Rules::merges_duplicate_prop && delete_duplicated
                           ? duplicates::complete_types
                           : duplicates::listed) {}

  void step(const char* tag, const char* value) {
    // Only CHANNEL acts without a text or outside a channel.
    if (value == nullptr || channel.record() == nullptr) {
      if (*tag == *channel_name && std::strcmp(tag, channel_name) == 0) begin(value);
    } else if (const action* act = actions().find(tag)) {
      (this->**act)(value);
    }
  }

 private:
  static constexpr const char* channel_name = "CHANNEL";
  using self = element_dialect;
  using action = void (self::*)(const char* value);

  static const auto& actions() {
    using chan = chan_descr_2010;
    static constexpr named<action> names[] = {
        {channel_name, &self::begin},
        {"EVTYPE", &self::event_type},
        {"STREAM", &self::number<&chan::stream>},
        {"PROP", &self::property},
        {"SB_NAME", &self::text<&chan::sb_name>},
        {"DTYPE", &self::data_type},
        {"DB_KEY", &self::number<&chan::db_key>},
        {"COUNT", &self::number<&chan::count>},
        {"SETPOINT", &self::number<&chan::set_point>},
        {"NAME", &self::text<&chan::daq_name>},
        {"SUBSYSTEM", &self::text<&chan::subsystem>},
        {"DESC", &self::text<&chan::prop_desc>},
        {"UNITS", &self::text<&chan::units>},
        {"SIZE", &self::number<&chan::max_size>},
        {"BIT", &self::begin_bit},
        {"BIT_NAME", &self::text<&bit_descr::bit_name>},
        {"BIT_DESCR", &self::text<&bit_descr::bit_desc>},
        {"DIM", &self::begin_dimension},
        {"DIM_NAME", &self::text<&dim_descr::dim_name>},
        {"DIM_DESCR", &self::dimension_description},
        {"DIM_UNITS", &self::text<&dim_descr::units>},
        {"STAT", &self::begin_statistic},
        {"STAT_NAME", &self::text<&stat_descr::stat_name>},
        {"STAT_DESCR", &self::statistic_description},
        {"STAT_UNITS", &self::text<&stat_descr::units>},
    };
    static constexpr name_table table(names);
    return table;
  }

  void begin(const char* /*value*/) {
    channel.begin();
    bit = nullptr;
    dim = nullptr;
    stat = nullptr;
  }

  void event_type(const char* value) {
    const std::int32_t number = decimal(value);
    channel.record()->ev_type = shift ? bit_mask(number) : static_cast<std::uint32_t>(number);
  }

  // Shifted, both families of data types share the low bits; bit 31 marks the one above 31, so that
  // 63, whose own bit is bit 31, leaves nothing.
  void data_type(const char* value) {
    const std::int32_t number = decimal(value);
    std::uint32_t& dtype = channel.record()->dtype;
    if (!shift) {
      dtype = static_cast<std::uint32_t>(number);
    } else if (number <= 31) {
      dtype = bit_mask(number);
    } else {
      dtype = 0x80000000U + bit_mask(number - 32);
    }
  }

  void property(const char* value) { channel.join(value, duplicate_prop); }

  void begin_bit(const char* value) {
    bit = append(channel.record()->bits, channel.record()->nbits);
    bit->bit = decimal(value);
  }

  void begin_dimension(const char* value) {
    if constexpr (Rules::dim_ends_statistic) stat = nullptr;
    dim = append(channel.record()->dims, channel.record()->ndims);
    dim->dim = decimal(value);
  }

  void begin_statistic(const char* value) {
    if (dim == nullptr) return;
    stat = append(dim->stats, dim->nstats);
    stat->stat = decimal(value);
  }

  void dimension_description(const char* value) {
    if (dim != nullptr) {
      set_text(dim->dim_desc, value);
    } else {
      set_text(channel.record()->prop_desc, value);
    }
  }

  void statistic_description(const char* value) {
    if (stat != nullptr) {
      set_text(stat->stat_desc, value);
    } else if constexpr (Rules::stray_stat_descr_is_channels) {
      set_text(channel.record()->prop_desc, value);
    }
  }

  template <auto Field>
  void text(const char* value) {
    if (auto* record = current(Field)) set_text(record->*Field, value);
  }

  template <auto Field>
  void number(const char* value) {
    channel.record()->*Field = decimal(value);
  }

  template <class Text>
  chan_descr_2010* current(Text chan_descr_2010::*) const {
    return channel.record();
  }
  template <class Text>
  bit_descr* current(Text bit_descr::*) const {
    return bit;
  }
  template <class Text>
  dim_descr* current(Text dim_descr::*) const {
    return dim;
  }
  template <class Text>
  stat_descr* current(Text stat_descr::*) const {
    return stat;
  }

  current_channel channel;
  bit_descr* bit = nullptr;
  dim_descr* dim = nullptr;
  stat_descr* stat = nullptr;
  const bool shift;
  const duplicates duplicate_prop;
};

}  // namespace zrt4::detail

#endif
