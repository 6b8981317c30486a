#ifndef DOCUMENT_KIND_HH
#define DOCUMENT_KIND_HH

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "known_elements.hh"
#include "reading.hh"
#include "rows.hh"

class input_file;
struct file_error;

/// The kinds of documents that the library reads; channel descriptions have two dialects.
enum class document_kind { events, channels, variables, dictionary, camera };

constexpr bool is_channels(document_kind kind) {
  return kind == document_kind::channels || kind == document_kind::variables;
}

/// ZRT4_FORMAT or MORV_FORMAT, of channel descriptions.
int dialect_of(document_kind kind);

/// The records of one document, with the numbers of types as they stand in it.
struct loaded_document {
  reading how;
  row_list rows;
  std::shared_ptr<const void> records;  ///< what the rows refer to
};

/// A document and the library's listing of it, which goes to standard output.
struct listed_document {
  reading how;
  std::function<void()> print;
  std::string not_listed;  ///< what the listing leaves out; empty as a rule
};

/// All that the subcommands need of one kind. Documents are read in any thread.
struct kind_traits {
  document_kind kind;
  std::string_view name;          ///< as in --kind
  std::string_view root;          ///< its root element; empty when it has none of its own
  std::string_view description;   ///< what a person calls it
  std::string_view record_name;   ///< what a person calls one of its records
  std::string_view records_name;  ///< and several
  listed_document (*list)(input_file&);
  loaded_document (*load)(input_file&);
  const known_elements& elements;
};

const kind_traits& traits_of(document_kind kind);

/// The kind of a document: `expected`, or else the one with its root element; a document with
/// another root that describes camera features is a camera's. Of channel descriptions, the one that
/// the root tells, whichever dialect is expected. Throws `bad_document` when it is of no kind, or
/// not of that expected.
document_kind kind_of(input_file& file, std::optional<document_kind> expected = {});

/// Throws `file_error` when it is JSON, for whoever looks at the XML itself.
void refuse_json(input_file& file);

/// The kind called `name`.
std::optional<document_kind> kind_named(std::string_view name);

/// The reason to refuse a document of this kind where `wanted` are.
file_error wrong_kind(const input_file& file, document_kind kind, const std::string& wanted);

/// "3 channels".
std::string records_of(document_kind kind, std::size_t number);

/// Names for --kind.
std::vector<std::string> kind_names();

/// "BMR (event list), ...".
std::string known_kinds();

#endif
