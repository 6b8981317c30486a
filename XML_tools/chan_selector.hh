#ifndef CHAN_SELECTOR_HH
#define CHAN_SELECTOR_HH

/// Lookups over a loaded set of channel descriptions, in constant time per lookup. Used by one
/// thread.
///
/// Names are compared exactly. An index is the position of a description in loading order; a
/// negative one counts as out of range. Names given out point into the descriptions and live as
/// long as the selector; they must not be written to.

#include <cstdint>
#include <memory>
#include <vector>

#include "descr_extractor.hh"
#include "zrt4_export.hh"

namespace zrt4::detail {
class channel_index;
}

class ZRT4_EXPORT chan_selector : public descr_extractor {
 public:
  chan_selector();
  /// Releases the descriptions.
  ~chan_selector() override;

  /// Number of loaded descriptions.
  int size();

  /// Whether later loading reads event types as masks, which the lookups need. The default is true.
  void set_shift(bool new_shift);

  /// As `set_mode`.
  bool change_mode(int new_mode);

  /// Hands the descriptions to `dump_chan_desr` with this file name, mode and dialect, and no other
  /// destination.
  void dump(char* file_name, int dump_mode, int format);

  /// Loads the descriptions of all sources, after those already loaded. Returns and fills `*total`
  /// as `get_descriptions` does; on true the descriptions read are kept but their event types do
  /// not count for `find_channel` until a later call succeeds.
  bool set_descriptions(std::vector<char*>* source, int* total);

  /// Is `chan` selected for event type `ev_type` (a number, taken modulo 32)? Always true when no
  /// descriptions are loaded; otherwise some description must have that event type, and one must
  /// bear the name: its DAQ name for local and main-linac types, its property for all others.
  bool find_channel(int ev_type, char* chan);

  /// Event-type mask of the first description with an event type that bears `chan` as DAQ name, or
  /// as property when one of its types is neither local nor main-linac. Otherwise 0, with
  /// "CHANNEL <chan> NOT FOUND" on standard output; 0 with "get_event_type() No descroption !!!!"
  /// there when nothing is loaded.
  int get_event_type(char* chan);

  /// Data type of the first description with the DAQ name `chan`, 0 when there is none; 0, with the
  /// message "get_event_type() No descroption !!!!" on standard output, when nothing is loaded.
  int get_data_type(char* chan);

  /// DAQ name and property of description `num`; null when out of range.
  char* get_channel(int num);
  char* get_prop(int num);

  /// Sets the counter of description `num`. Returns false; true when out of range.
  bool set_counter(int num, int cnt);

  /// Whether the channel is delivered by slow events (BOR, EOR, ENV, UPD), or belongs to the main
  /// linac (by event type, or ".ML" in its DAQ name): 1 yes, 0 no, -1 out of range or not found.
  /// Both look the DAQ name of description `num` up with `get_event_type`, messages included.
  int is_channel_slow(int num);
  int is_channel_ml(int num);

  /// Number of sub-channels: 1 for a slow channel, 0 for a bad index or a channel that is not
  /// found, otherwise the number of its dimensions.
  int get_subchannels(int num);

 private:
  int ev_types = 0;
  std::vector<chan_descr_2010*> descr;
  bool shift = true;
  std::unique_ptr<zrt4::detail::channel_index> index;
};

#endif
