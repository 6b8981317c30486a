#include "channel_listing.hh"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "parse_chan_descr.hh"
#include "type_masks.hh"

namespace {

using zrt4::detail::has_bit;

/// The names of a mask's bits, joined by colons and cut at 255 characters.
class joined_names {
 public:
  void add(const char* name) {
    if (used != 0) append(":");
    append(name);
  }
  const char* c_str() const { return text; }

 private:
  void append(const char* part) {
    const std::size_t length = std::min(std::strlen(part), sizeof text - 1 - used);
    std::memcpy(text + used, part, length);
    used += length;
  }

  char text[256] = {};
  std::size_t used = 0;
};

joined_names event_names(std::uint32_t mask) {
  joined_names names;
  for (int bit = 0; bit < 32; ++bit)
    if (has_bit(mask, bit)) names.add(event_name_itoa(bit));
  return names;
}

// The bit of the upper family has no name of its own.
joined_names block_names(std::uint32_t mask) {
  const int family = (mask & zrt4::detail::upper_data_types) != 0 ? 32 : 0;
  joined_names names;
  for (int bit = 0; bit < 31; ++bit)
    if (has_bit(mask, bit)) names.add(block_name_itoa(family + bit));
  return names;
}

/// Of channels that were read as masks.
class mask_lines : public zrt4::detail::type_lines {
 public:
  void print_event_type(std::size_t /*position*/, const chan_descr_2010& channel) const override {
    zrt4::detail::print_event_types(channel.ev_type);
  }
  void print_data_type(std::size_t /*position*/, const chan_descr_2010& channel) const override {
    zrt4::detail::print_data_types(channel.dtype);
  }
};

void print_fields(const chan_descr_2010& channel, std::size_t position,
                  const zrt4::detail::type_lines& types) {
  std::printf(" stream   : %d \n", channel.stream);
  std::fputs(" ev type  : ", stdout);
  types.print_event_type(position, channel);
  std::fputs("\n data type: ", stdout);
  types.print_data_type(position, channel);
  std::fputs("\n", stdout);
  std::printf("\tcount  :%d\n", channel.count);
  std::printf("\tdb_key :%d\n", channel.db_key);
  std::printf("\tprop   :%s\n", channel.prop_name);
  std::printf("\tname   :%s\n", channel.daq_name);
  std::printf("\tset_pnt:%s\n", channel.set_point != 0 ? "yes" : "no");
  std::printf("\tdesc   :%s\n", channel.prop_desc);
  std::printf("\tsb_name:%s\n", channel.sb_name);
  std::printf("\tsubsys :%s\n", channel.subsystem);
  std::printf("\tunit   :%s\n", channel.units);
  std::printf("\tmax_sz :%d\n", channel.max_size);
}

void print_bits(const chan_descr_2010& channel) {
  if (channel.nbits == 0) {
    if (!channel.bits.empty()) std::puts("ERROR: nbits = 0, but bits.size() > 0");
    return;
  }
  std::printf("\t\t# bits :%d\n", channel.nbits);
  for (const bit_descr* bit : channel.bits) {
    std::printf("\t\tbit    : %d\n", bit->bit);
    std::printf("\t\tname   : %s\n", bit->bit_name);
    std::printf("\t\tdesc   : %s\n", bit->bit_desc);
  }
}

void print_stats(const dim_descr& dim) {
  if (dim.nstats == 0) {
    if (!dim.stats.empty()) std::puts("ERROR: nstats = 0, but stats.size() > 0");
    return;
  }
  std::printf("\t\t\t# stats : %d\n", dim.nstats);
  for (const stat_descr* stat : dim.stats) {
    std::printf("\t\t\tid     : %d\n", stat->stat);
    std::printf("\t\t\tname   : %s\n", stat->stat_name);
    std::printf("\t\t\tdesc   : %s\n", stat->stat_desc);
    std::printf("\t\t\tunits  : %s\n", stat->units);
  }
}

void print_dims(const chan_descr_2010& channel) {
  if (channel.ndims == 0) {
    if (!channel.dims.empty()) std::puts("ERROR: ndims = 0, but dims.size() > 0");
    return;
  }
  std::printf("\t\t# dims : %d\n", channel.ndims);
  for (const dim_descr* dim : channel.dims) {
    std::printf("\t\tid    : %d\n", dim->dim);
    std::printf("\t\tname : %s\n", dim->dim_name);
    std::printf("\t\tdesc : %s\n", dim->dim_desc);
    std::printf("\t\tunits: %s\n", dim->units);
    print_stats(*dim);
  }
}

}  // namespace

void zrt4::detail::print_event_types(std::uint32_t mask) {
  std::printf("0x%x %s", mask, event_names(mask).c_str());
}

void zrt4::detail::print_data_types(std::uint32_t mask) {
  std::printf("0x%x %s", mask, block_names(mask).c_str());
}

void zrt4::detail::list_channels(const std::vector<chan_descr_2010*>& list,
                                 const type_lines& types) {
  std::puts("========================");
  std::puts("ZRT4 XML Channel Description (XCD)");
  for (std::size_t i = 0; i < list.size(); ++i) {
    std::printf("--------------[%d]-----------------\n", static_cast<int>(i));
    print_fields(*list[i], i, types);
    print_bits(*list[i]);
    print_dims(*list[i]);
  }
}

void print_zrt4_chan_descr(std::vector<chan_descr_2010*>* list) {
  if (list != nullptr) zrt4::detail::list_channels(*list, mask_lines());
}
