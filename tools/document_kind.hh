#ifndef DOCUMENT_KIND_HH
#define DOCUMENT_KIND_HH

#include <string>
#include <string_view>

/// One kind of document that the library reads.
struct document_kind {
  std::string_view root;         ///< its root element
  std::string_view description;  ///< what a person calls it
  int (*show)(char* path);       ///< prints the library's listing; returns the number of errors
};

/// The kind with this root element, null when there is none.
const document_kind* kind_of_root(std::string_view root);

/// "BMR (event list), ...".
std::string known_kinds();

#endif
