#ifndef SCAN_HH
#define SCAN_HH

// What the tool finds out about a document before the library reads it. Nothing is printed; the XML
// library must be in use.

#include <string>

struct root_element {
  std::string name;     ///< empty when there is none
  std::string problem;  ///< the first error, with line and column where known: "3:14: ..."
};

/// Scans only what stands before the root element.
root_element find_root_element(const char* path);

/// The first thing that keeps the document from being well formed, as above; empty when it is.
std::string first_damage(const char* path);

#endif
