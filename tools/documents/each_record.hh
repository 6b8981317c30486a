#ifndef EACH_RECORD_HH
#define EACH_RECORD_HH

// The records of a document one after the other, for whoever needs them once: a million channels
// take the memory of one.

#include <functional>

#include "document_kind.hh"
#include "reading.hh"

class input_file;

/// Calls `use` with each record that `read_plain` would put into a list, in that order. A record
/// lives as long as the call.
reading read_each(input_file& file, document_kind kind,
                  const std::function<void(const void* record)>& use);

#endif
