#ifndef WRITABLE_HH
#define WRITABLE_HH

#include <string>
#include <vector>

#include "zrt4xml.hh"

/// What an XML document made of the records would lose or break.
struct writable {
  bool at_all = true;               ///< the document would be XML
  bool wholly = true;               ///< it would read back to the same texts
  std::vector<std::string> losses;  ///< for a person, with channel and field
};

writable check_channels(const zrt4::channel_list& channels);

template <class Entry>
writable check_dictionary(const zrt4::basic_env_dictionary<Entry>& entries);

#endif
