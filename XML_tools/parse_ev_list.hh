#ifndef PARSE_EV_LIST_HH
#define PARSE_EV_LIST_HH

/// Event lists: which events a DAQ consumer wants, and which server blocks and channels of them.

#include <cstdint>
#include <vector>

#include "event.hh"
#include "zrt4_export.hh"

/// One server block of an entry.
struct zrt4_ev_sb_list {
  char sb_list[256];            ///< server block name, zero-terminated, at most 254 characters read
  std::vector<char*>* ch_list;  ///< wanted channels, each a `new char[]`; none: all channels
};

/// One entry of an event list. The records it points to are heap objects owned through the list.
struct zrt4_ev_entry {
  ZRT4_EVTYPE evtype;
  std::vector<zrt4_ev_sb_list*>* sb_list;  ///< wanted server blocks; null: the full event
  time_stamp min_ev_time;  ///< minimum time between two events: seconds, microseconds
  std::uint32_t tmask;     ///< trigger mask
  std::uint32_t priority;
};

/// Reads an event list from `xml`, a zero-terminated text, and appends its entries to `list`, which
/// is never emptied. The entries belong to the caller: release them with `zrt4_clean_ev_list`, also
/// after an error, for what was read before it stays in `list`.
/// Returns 0; 1 when the XML library cannot be set up; 1 plus the number of XML errors when the
/// document cannot be started or its root is not "BMR"; otherwise the number of XML errors and
/// warnings. XML errors and "WRONG root tag: <root> must be 'BMR'" go to standard error. An event
/// whose TYPE is outside 0 to 32 is skipped silently.
ZRT4_EXPORT int zrt4_parse_ev_list_read(char* xml, std::vector<zrt4_ev_entry*>* list);

/// The same for an XML file given by name.
ZRT4_EXPORT int zrt4_parse_ev_list_readf(char* file, std::vector<zrt4_ev_entry*>* list);

/// Lists the entries on standard output. Nothing when `list` is null or empty.
ZRT4_EXPORT void zrt4_print_ev_list(std::vector<zrt4_ev_entry*>* list);

/// Releases the entries and empties `list`. Nothing when `list` is null or empty. Two things are
/// left to whoever made them: an entry without a server-block vector is only dropped from the list,
/// and an empty channel vector is not released.
ZRT4_EXPORT void zrt4_clean_ev_list(std::vector<zrt4_ev_entry*>* list);

static_assert(offsetof(zrt4_ev_sb_list, ch_list) == 256);
static_assert(sizeof(zrt4_ev_sb_list) == 256 + sizeof(void*));
static_assert(offsetof(zrt4_ev_entry, sb_list) == sizeof(void*));
static_assert(offsetof(zrt4_ev_entry, min_ev_time) == 2 * sizeof(void*));
static_assert(sizeof(zrt4_ev_entry) == 2 * sizeof(void*) + 16);

#endif
