#ifndef EVENT_LISTING_HH
#define EVENT_LISTING_HH

#include <vector>

#include "parse_ev_list.hh"

namespace zrt4::detail {

/// How a listing shows a time beyond 31 bits: programs that parse it know it as a negative one.
enum class shown_times { negative_beyond_31_bits, as_read };

void list_events(const std::vector<zrt4_ev_entry*>& list, shown_times times);

}  // namespace zrt4::detail

#endif
