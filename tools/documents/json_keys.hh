#ifndef JSON_KEYS_HH
#define JSON_KEYS_HH

// The keys of the objects that an answer in JSON has: its own, those of a document, and those of
// each type of record.

#include <cstddef>
#include <string>
#include <vector>

#include "record_types.hh"

enum class key_role { of_document, field, name_of_field, group };

struct known_key {
  std::string name;
  key_role role;
  std::size_t position;  ///< among the fields or groups of a record
};
/// In the order in which they are written.
using known_keys = std::vector<known_key>;

/// The key of a field's name follows that of the field.
known_keys keys_of(const record_type& type);

enum answer_key : std::size_t { format_version_key, subcommand_key, documents_key };
const known_keys& answer_keys();

enum document_key : std::size_t { file_key, kind_key, errors_key, records_key, unusable_key };
const known_keys& document_keys();

#endif
