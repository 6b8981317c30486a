#ifndef DOCUMENT_KIND_HH
#define DOCUMENT_KIND_HH

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "known_elements.hh"
#include "rows.hh"

class input_file;
struct file_error;

/// The records of one document, with the numbers of types as they stand in it.
struct loaded_document {
  int errors = 0;
  std::vector<row> rows;
  std::shared_ptr<const void> records;  ///< what the rows refer to
};

/// One kind of document that the library reads.
struct document_kind {
  std::string_view name;          ///< as in --kind
  std::string_view root;          ///< its root element; empty when it has none of its own
  std::string_view description;   ///< what a person calls it
  std::string_view record_name;   ///< what a person calls one of its records
  std::string_view records_name;  ///< and several
  int (*show)(input_file&);       ///< prints the library's listing; returns the number of errors
  loaded_document (*load)(input_file&);
  const known_elements& elements;

  bool is_channels() const { return record_name == "channel"; }
};

/// The kind of a document: the one called `name`, or, when that is empty, the one with its root
/// element; a document with another root that describes camera features is a camera's. Throws
/// `bad_document` when there is none.
const document_kind& kind_of(input_file& file, std::string_view name = {});

/// The reason to refuse a document of this kind where `wanted` are.
file_error wrong_kind(const input_file& file, const document_kind& kind, const std::string& wanted);

/// "3 channels".
std::string records_of(const document_kind& kind, std::size_t number);

/// Names for --kind.
std::vector<std::string> kind_names();

/// "BMR (event list), ...".
std::string known_kinds();

#endif
