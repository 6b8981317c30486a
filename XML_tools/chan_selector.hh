#ifndef CHAN_SELECTOR_HH
#define CHAN_SELECTOR_HH

/// Lookups over a loaded set of channel descriptions, in constant time per lookup. Used by one
/// thread. What holds for the whole library stands in docs/contract.md.
///
/// Names are compared exactly; a null name is never found. An index is the position of a
/// description in loading order; a negative one counts as out of range. Names given out point into
/// the descriptions and live as long as the selector; they must not be written to.
///
/// Event types of descriptions are taken as masks, bit n for event type n. `get_event_type`,
/// `is_channel_slow`, `is_channel_ml` and `get_subchannels` print "CHANNEL <name> NOT FOUND" on
/// standard output when they find no description with an event type; `get_event_type` and
/// `get_data_type` print "get_event_type() No descroption !!!!" there, both the same, when nothing
/// is loaded. Loading prints what the readers print. Nothing else prints, but for `dump`.

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

  /// Whether later loading reads event types and data types as masks (see `parse_descr_list_read`).
  /// The lookups need masks of event types. The default is true. Files in the variable dialect keep
  /// the number of the event type either way: the lookups then take that number for a mask.
  void set_shift(bool new_shift);

  /// As `set_mode`: false, or true for a mode that there is not.
  bool change_mode(int new_mode);

  /// Hands the descriptions to `dump_chan_desr` with this file name, mode and dialect, and no other
  /// destination. Its result is not told; its messages are.
  void dump(char* file_name, int dump_mode, int format);

  /// Loads the descriptions of all sources, after those already loaded. Returns and fills `*total`
  /// as `get_descriptions` does; on true the descriptions read are kept but their event types do
  /// not count for `find_channel` until a later call succeeds.
  bool set_descriptions(std::vector<char*>* source, int* total);

  /// Is `chan` selected for event type `ev_type`, a number? Always true when no descriptions are
  /// loaded. Otherwise some description must have that event type, of which the number modulo 32 is
  /// asked (33 asks for 1, -1 for 31); and some description, the same or another, must bear the
  /// name: its DAQ name when `ev_type` itself is a local or main-linac type, its property for all
  /// others, those outside 0 to 31 included.
  bool find_channel(int ev_type, char* chan);

  /// Event-type mask of the first description with an event type that bears `chan` as DAQ name, or
  /// as property when one of its types is neither local nor main-linac. Otherwise, and when nothing
  /// is loaded, 0 and a message.
  int get_event_type(char* chan);

  /// Data type, a mask unless `set_shift` says otherwise, of the first description with the DAQ
  /// name `chan`; 0 when there is none. Properties are not asked. 0 and a message when nothing is
  /// loaded.
  int get_data_type(char* chan);

  /// DAQ name and property of description `num`; null when out of range.
  char* get_channel(int num);
  char* get_prop(int num);

  /// Sets `count` of description `num`. Returns false; true when out of range.
  bool set_counter(int num, int cnt);

  /// Whether the channel is delivered by slow events (BOR, EOR, ENV, UPD), or belongs to the main
  /// linac (by the class of one of its event types, or by ".ML" in its DAQ name): 1 yes, 0 no, -1
  /// out of range or not found. Both ask `get_event_type` for the DAQ name of description `num`:
  /// its message is printed when there is none, and the answer is that of the first description
  /// that bears the name.
  int is_channel_slow(int num);
  int is_channel_ml(int num);

  /// Number of sub-channels: 1 for a slow channel, 0 for a bad index or a channel that is not found
  /// (by `is_channel_slow`, message included), otherwise the number of its dimensions.
  int get_subchannels(int num);

 private:
  int ev_types = 0;
  std::vector<chan_descr_2010*> descr;
  bool shift = true;
  std::unique_ptr<zrt4::detail::channel_index> index;
};

#endif
