#ifndef EVENT_FIELDS_HH
#define EVENT_FIELDS_HH

// The fields of an event list's entry, each once: its reader and what the tool shows, compares and
// checks follow this table.

#include <cstdint>
#include <string_view>

#include "parse_ev_list.hh"

namespace zrt4::detail {

namespace event_names {
constexpr const char* root = "BMR";
constexpr const char* event = "EVENT";
constexpr const char* type = "TYPE";
constexpr const char* server_block = "SBLOCK";
constexpr const char* channels = "CHLIST";
constexpr const char* channel = "CHAN";
}  // namespace event_names

/// One less than the field could hold: consumers compare names that were always cut here.
constexpr std::size_t longest_block_name = 254;

struct event_number {
  std::string_view element;
  std::string_view name;     ///< of the member, for programs in other languages
  std::string_view row;      ///< as a value of an entry, for programs: JSON, diff
  std::string_view meaning;  ///< for a person who writes a document
  std::uint32_t& (*in)(zrt4_ev_entry& entry);
  std::uint32_t most = UINT32_MAX;  ///< without being odd
};

constexpr std::uint32_t most_microseconds = 999'999;  // more are seconds

/// All but the type, which decides whether there is an entry.
constexpr event_number event_numbers[] = {
    {"TMASK", "tmask", "trigger_mask", "trigger mask",
     [](zrt4_ev_entry& e) -> std::uint32_t& { return e.tmask; }},
    {"MINTIMESEC", "min_ev_time_sec", "min_time_seconds",
     "minimum time between two events, in seconds",
     [](zrt4_ev_entry& e) -> std::uint32_t& { return e.min_ev_time.timeup; }},
    {"MINTIMEUSEC", "min_ev_time_usec", "min_time_microseconds",
     "minimum time between two events, microseconds beside the seconds",
     [](zrt4_ev_entry& e) -> std::uint32_t& { return e.min_ev_time.timelow; }, most_microseconds},
    {"PRIORITY", "priority", "priority", "priority",
     [](zrt4_ev_entry& e) -> std::uint32_t& { return e.priority; }},
};

}  // namespace zrt4::detail

#endif
