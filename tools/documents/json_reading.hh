#ifndef JSON_READING_HH
#define JSON_READING_HH

// Records out of JSON, as `show --json` prints it and programs hand it on: keys in any order; those
// that are missing, but for a record's first, as a new record has them; the whole answer, one
// document of it, or several of these one behind the other. Nothing is printed, in whatever thread.

#include <string>
#include <vector>

#include "any_list.hh"
#include "document_kind.hh"

class input_file;

/// A document that JSON holds, in the order of the JSON.
struct json_document {
  document_kind kind;
  int errors = 0;                     ///< that were met when the document was read, as it says
  std::vector<std::string> messages;  ///< what of it is not as the document had it
  any_list records;
};

/// The kind of its first document. Throws `bad_document` when that cannot be found out.
document_kind kind_of_json(input_file& file);

/// Its documents, at least one. What is not as it should be is told by a `bad_document`, each with
/// its place in the JSON: then there is none of it.
std::vector<json_document> read_json(input_file& file);
/// The same of a text; `file` is what messages call it.
std::vector<json_document> read_json(const std::string& file, std::string text);

#endif
