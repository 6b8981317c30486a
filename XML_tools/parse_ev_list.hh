#ifndef PARSE_EV_LIST_HH
#define PARSE_EV_LIST_HH

/// Event lists: which events a DAQ consumer wants, and which server blocks and channels of them.
/// Texts are in the local code page. What holds for the whole library stands in docs/contract.md.

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

/// Reads an event list from `xml`, a zero-terminated text (null: an empty one), and appends its
/// entries to `list`, which must not be null and is never emptied. docs/event_lists.md describes
/// the elements. The entries belong to the caller: release them with `zrt4_clean_ev_list`, also
/// after an error, for what was read before it stays in `list`.
///
/// Returns
/// - 0 when the document was read without an error;
/// - 1 when the XML library cannot be set up;
/// - 1 plus the number of XML errors when the document cannot be started, when it ends or fails
///   before the start tag of its root is complete, or when its root is not "BMR";
/// - otherwise the number of XML errors and warnings.
/// XML errors and "WRONG root tag: <root> must be 'BMR'" go to standard error.
///
/// A TYPE that is a number outside 0 to 32 makes no entry, and what follows it in the event up to
/// the next TYPE is ignored: silently, and the result does not tell. A TYPE that is no number is 0.
ZRT4_EXPORT int zrt4_parse_ev_list_read(char* xml, std::vector<zrt4_ev_entry*>* list);

/// The same for an XML file given by name (null: an empty name, which cannot be opened). When the
/// XML library cannot be set up, the parser is kept unreleased, and with it its use of that
/// library.
ZRT4_EXPORT int zrt4_parse_ev_list_readf(char* file, std::vector<zrt4_ev_entry*>* list);

/// Lists the entries on standard output, numbered from 0. Nothing when `list` is null or empty. The
/// minimum time is printed as two signed numbers.
ZRT4_EXPORT void zrt4_print_ev_list(std::vector<zrt4_ev_entry*>* list);

/// Releases the entries with their server blocks and channels, and empties `list`. Nothing when
/// `list` is null or empty. Two things are kept, since whoever made them may still use them: an
/// entry whose server-block vector is null is only dropped from the list, and a channel vector that
/// is empty, which every block without CHAN has, is not released. `zrt4::event_list` releases both.
ZRT4_EXPORT void zrt4_clean_ev_list(std::vector<zrt4_ev_entry*>* list);

static_assert(offsetof(zrt4_ev_sb_list, ch_list) == 256);
static_assert(sizeof(zrt4_ev_sb_list) == 256 + sizeof(void*));
static_assert(offsetof(zrt4_ev_entry, sb_list) == sizeof(void*));
static_assert(offsetof(zrt4_ev_entry, min_ev_time) == 2 * sizeof(void*));
static_assert(sizeof(zrt4_ev_entry) == 2 * sizeof(void*) + 16);

#endif
