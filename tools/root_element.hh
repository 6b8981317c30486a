#ifndef ROOT_ELEMENT_HH
#define ROOT_ELEMENT_HH

#include <string>

/// The root element of a document, found by scanning only what stands before it.
struct root_element {
  std::string name;     ///< empty when there is none
  std::string problem;  ///< then why, with line and column where known: "3:14: ..."
};

/// Nothing is printed; the XML library must be in use.
root_element find_root_element(const char* path);

#endif
