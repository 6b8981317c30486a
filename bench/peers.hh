#ifndef PEERS_HH
#define PEERS_HH

// What a user would write instead of `parse_descr_list_read`: the channels of the element dialect
// read through other XML libraries, into the same records and just as fully. None of them merges
// duplicates, shifts types or knows bits, dimensions and statistics: that would only add to them.

#include <string>
#include <vector>

#include "event_util.hh"

namespace bench {

using channel_list = std::vector<chan_descr_2010*>;

/// Each appends the channels of `text` and returns whether the document was well formed.
bool read_by_libxml2_reader(std::string& text, channel_list& channels);
bool read_by_pugixml(std::string& text, channel_list& channels);
bool read_by_tinyxml2(std::string& text, channel_list& channels);
bool read_by_expat(std::string& text, channel_list& channels);

}  // namespace bench

#endif
