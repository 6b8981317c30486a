#ifndef WRITABLE_HH
#define WRITABLE_HH

#include <string>

#include "zrt4xml.hh"

/// What an XML document made of the records would lose or break. Each finding is told on standard
/// error, naming channel and field.
struct writable {
  bool at_all = true;  ///< the document would be XML
  bool wholly = true;  ///< it would read back to the same texts
};

writable check_channels(const std::string& file, const zrt4::channel_list& channels);

template <class Entry>
writable check_dictionary(const std::string& file,
                          const zrt4::basic_env_dictionary<Entry>& entries);

#endif
