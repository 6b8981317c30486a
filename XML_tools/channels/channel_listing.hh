#ifndef CHANNEL_LISTING_HH
#define CHANNEL_LISTING_HH

// The listing of channels, for those who know of their types more than the masks.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "event_util.hh"

namespace zrt4::detail {

/// Prints the lines of a channel that tell its types.
class type_lines {
 public:
  type_lines() = default;
  type_lines(const type_lines&) = delete;
  type_lines& operator=(const type_lines&) = delete;
  virtual ~type_lines() = default;

  virtual void print_event_type(std::size_t position, const chan_descr_2010& channel) const = 0;
  virtual void print_data_type(std::size_t position, const chan_descr_2010& channel) const = 0;
};

/// What such a line says of a mask: "0x2 NORMAL".
void print_event_types(std::uint32_t mask);
void print_data_types(std::uint32_t mask);

void list_channels(const std::vector<chan_descr_2010*>& list, const type_lines& types);

}  // namespace zrt4::detail

#endif
