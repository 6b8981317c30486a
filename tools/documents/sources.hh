#ifndef SOURCES_HH
#define SOURCES_HH

#include <memory>
#include <vector>

#include "document_kind.hh"

class input_file;

/// The documents from which a list was read, and whether all of them were read cleanly.
struct sources {
  struct document {
    std::unique_ptr<input_file> file;
    document_kind kind;
  };
  std::vector<document> documents;
  bool read_cleanly = true;
};

#endif
