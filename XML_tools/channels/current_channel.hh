#ifndef CURRENT_CHANNEL_HH
#define CURRENT_CHANNEL_HH

// What both dialects do with the channel they are reading.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string_view>
#include <vector>

#include "event_util.hh"
#include "property_index.hh"
#include "channel_records.hh"
#include "record_memory.hh"

namespace zrt4::detail {

/// A decimal number, wrapped into 32 bits. Nearly all are a few digits, maybe with a line end.
inline std::int32_t decimal(const char* text) {
  constexpr std::ptrdiff_t digits_that_fit = 9;
  std::int32_t number = 0;
  const char* digit = text;
  for (; *digit >= '0' && *digit <= '9' && digit - text < digits_that_fit; ++digit)
    number = 10 * number + (*digit - '0');
  const bool complete = digit != text && !(*digit >= '0' && *digit <= '9');
  return complete ? number : static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
}

/// 1 << n, the count taken modulo 32.
inline std::uint32_t bit_mask(std::int32_t n) {
  return 1U << (static_cast<std::uint32_t>(n) & 31U);
}

enum class duplicates {
  listed,            // the channel is listed again
  complete_types,    // merged; event and data type are taken where there is none
  accumulate_types,  // merged; event and data type are joined by OR, as the stream always is
};

class current_channel {
 public:
  explicit current_channel(std::vector<chan_descr_2010*>* into) : list(into) {}
  current_channel(const current_channel&) = delete;
  current_channel& operator=(const current_channel&) = delete;
  ~current_channel() {
    // Out of memory: what is not the list's is nobody's.
    if (!listed && std::uncaught_exceptions() != 0) release_channel(channel);
  }

  chan_descr_2010* record() const { return channel; }

  // A channel that never got its property is deliberately not released: records stay where they
  // are once a document has brought them.
  void begin() {
    channel = std::make_unique<chan_descr_2010>().release();
    fetch_behind(channel);
    listed = false;
  }

  /// Puts the channel into the list under `property`, once more when it has one already; or merges
  /// it into the record that the list has, which ends it: the rest of its elements is ignored.
  void join(std::string_view property, duplicates treatment) {
    const bool search = treatment != duplicates::listed;
    chan_descr_2010* known = search ? index.find(*list, property) : nullptr;
    if (known != nullptr) {
      merge_into(*known, treatment);
      return;
    }
    set_text(channel->prop_name, property.data());
    list->push_back(channel);
    listed = true;
    if (search && property.size() < sizeof channel->prop_name) index.appended_missing(*list);
  }

 private:
  void merge_into(chan_descr_2010& known, duplicates treatment) {
    const bool accumulate = treatment == duplicates::accumulate_types;
    known.stream |= channel->stream;
    if (accumulate || known.ev_type == 0) known.ev_type |= channel->ev_type;
    if (accumulate || known.dtype == 0) known.dtype |= channel->dtype;
    // A record that an earlier property listed is the list's. Sub-records of the other kind are
    // deliberately not released, as with channels without a property.
    if (!listed) delete channel;
    channel = nullptr;
  }

  std::vector<chan_descr_2010*>* list;
  property_index index;
  chan_descr_2010* channel = nullptr;
  bool listed = false;
};

}  // namespace zrt4::detail

#endif
