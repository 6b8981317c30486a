#ifndef DOCUMENT_KIND_HH
#define DOCUMENT_KIND_HH

#include <string>
#include <string_view>
#include <vector>

class input_file;

/// One kind of document that the library reads.
struct document_kind {
  std::string_view name;         ///< as in --kind
  std::string_view root;         ///< its root element; empty when it has none of its own
  std::string_view description;  ///< what a person calls it
  int (*show)(input_file&);      ///< prints the library's listing; returns the number of errors
};

/// The kind of a document: the one called `name`, or, when that is empty, the one with its root
/// element; a document with another root that describes camera features is a camera's. Throws
/// `bad_document` when there is none.
const document_kind& kind_of(input_file& file, std::string_view name = {});

/// Names for --kind.
std::vector<std::string> kind_names();

/// "BMR (event list), ...".
std::string known_kinds();

#endif
