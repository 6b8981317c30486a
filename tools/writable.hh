#ifndef WRITABLE_HH
#define WRITABLE_HH

#include <string>
#include <vector>

#include "event_util.hh"

/// What an XML document made of the records would lose or break. Each finding is told on standard
/// error, naming channel and field.
struct writable {
  bool at_all = true;  ///< the document would be XML
  bool wholly = true;  ///< it would read back to the same texts
};

writable check_channels(const std::string& file, const std::vector<chan_descr_2010*>& channels);

template <class Entry>
writable check_dictionary(const std::string& file, const std::vector<Entry*>& entries);

#endif
