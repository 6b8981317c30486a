#ifndef COST_OF_READING_HH
#define COST_OF_READING_HH

// What a reader takes for a document, in a process and on a small stack of its own.

#include <cstddef>
#include <string>
#include <vector>

namespace cost {

struct reader {
  const char* name;
  const char* root;  ///< the root element of its documents
  bool makes_tree;
  void (*read)(std::string& text, std::string& path);
};

/// Every way in: both pull parsers, which go on after errors, and the readers.
const std::vector<reader>& readers();

struct taken {
  double seconds;            ///< of processor time
  double bytes;              ///< of memory
  double bytes_of_messages;  ///< on standard output and standard error
  bool ended;                ///< false when it crashed, or was stopped after 20 seconds
};

taken measure(const reader& with, const std::string& text);

}  // namespace cost

#endif
