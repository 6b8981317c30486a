#ifndef SELECTOR_INDEX_HH
#define SELECTOR_INDEX_HH

#include <cstdint>
#include <vector>

#include "parse_chan_descr.hh"
#include "text_slots.hh"

namespace zrt4::detail {

/// What `chan_selector` answers by name, as a walk of its descriptions from the front would. Names
/// and types are kept here, side by side: the records are far apart, and reaching one costs more
/// than everything else in a lookup. A null name is never found.
class channel_index {
 public:
  /// Catches up with `descr`, which only ever grows. Descriptions indexed before may have gained
  /// types: reading more sources merges duplicates into them.
  void update(const std::vector<chan_descr_2010*>& descr);

  bool has_daq_name(const char* name) const;
  bool has_property(const char* name) const;

  /// `ev_type` of the first description with an event type that bears the name as DAQ name, or as
  /// property when one of its event types is looked up by property; 0 when there is none.
  std::uint32_t event_types(const char* name) const;

  /// `dtype` of the first description with this DAQ name; 0 when there is none.
  std::uint32_t data_type(const char* name) const;

 private:
  struct channel_types {
    std::uint32_t event;
    std::uint32_t data;
  };

  // Each name, once: three words of answers, then the text. The first two are positions.
  enum answer : std::uint32_t { first_with_daq_name, first_with_event, is_property, text_begin };
  static constexpr std::uint32_t none = text_slots::none;

  auto text_of() const {
    return [this](std::uint32_t at) {
      return reinterpret_cast<const char*>(names.data() + at + text_begin);
    };
  }
  std::uint32_t find(const char* name) const;
  std::uint32_t find_or_add(const char* name);
  void index_names(const chan_descr_2010& channel, std::uint32_t position);
  void index_event(const chan_descr_2010& channel, std::uint32_t position);

  std::vector<channel_types> types;  // at each position of the descriptions
  std::vector<std::uint32_t> names;
  text_slots slots;                     // where in `names` a name begins
  std::uint32_t found_by_property = 0;  // event types neither local nor main-linac
};

}  // namespace zrt4::detail

#endif
