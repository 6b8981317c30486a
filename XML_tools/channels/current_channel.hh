#ifndef CURRENT_CHANNEL_HH
#define CURRENT_CHANNEL_HH

// What both dialects do with the channel they are reading.

#include <exception>
#include <memory>
#include <vector>

#include "channel_records.hh"
#include "event_util.hh"
#include "held_exception.hh"
#include "prefetch.hh"
#include "property_index.hh"

namespace zrt4::detail {

/// What becomes of a channel whose property the list has.
enum class known_property {
  is_listed,    // again
  takes_types,  // it is merged; event and data type are taken where there is none
  joins_types,  // it is merged; event and data type are joined by OR, as the stream always is
};

class current_channel {
 public:
  explicit current_channel(std::vector<chan_descr_2010*>* into) : list(into) {}
  current_channel(const current_channel&) = delete;
  current_channel& operator=(const current_channel&) = delete;
  ~current_channel() {
    // Out of memory, or thrown by a receiver of messages: what is not the list's is nobody's.
    if (listed || std::uncaught_exceptions() == exceptions_before) return;
    held_exception().of([this] { release_channel(channel); });
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
  void join(const char* property, known_property treatment) {
    const bool search = treatment != known_property::is_listed;
    chan_descr_2010* known = search ? index.find(*list, property) : nullptr;
    if (known != nullptr) {
      merge_into(*known, treatment);
      return;
    }
    set_text(channel->prop_name, property);
    list->push_back(channel);
    listed = true;
  }

 private:
  void merge_into(chan_descr_2010& known, known_property treatment) {
    const bool joins = treatment == known_property::joins_types;
    known.stream |= channel->stream;
    if (joins || known.ev_type == 0) known.ev_type |= channel->ev_type;
    if (joins || known.dtype == 0) known.dtype |= channel->dtype;
    // A record that an earlier property listed is the list's. Sub-records of the other kind are
    // deliberately not released, as with channels without a property.
    if (!listed) delete channel;
    channel = nullptr;
  }

  const int exceptions_before = std::uncaught_exceptions();
  std::vector<chan_descr_2010*>* list;
  property_index index;
  chan_descr_2010* channel = nullptr;
  bool listed = false;
};

}  // namespace zrt4::detail

#endif
