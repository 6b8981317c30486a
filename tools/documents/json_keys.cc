#include "json_keys.hh"

known_keys keys_of(const record_type& type) {
  known_keys keys;
  for (std::size_t i = 0; i < type.field_count; ++i) {
    const record_field& field = type.fields[i];
    keys.push_back({std::string(field.name), key_role::field, i});
    if (field.names == nullptr && field.holds != value_kind::threshold) continue;
    keys.push_back({std::string(field.name) + "_name", key_role::name_of_field, i});
  }
  for (std::size_t i = 0; i < type.group_count; ++i) {
    keys.push_back({std::string(type.groups[i].name), key_role::group, i});
  }
  return keys;
}

const known_keys& answer_keys() {
  static const known_keys keys = {{"format_version", key_role::of_document, format_version_key},
                                  {"subcommand", key_role::of_document, subcommand_key},
                                  {"documents", key_role::of_document, documents_key}};
  return keys;
}

const known_keys& document_keys() {
  static const known_keys keys = {{"file", key_role::of_document, file_key},
                                  {"kind", key_role::of_document, kind_key},
                                  {"errors", key_role::of_document, errors_key},
                                  {"records", key_role::of_document, records_key},
                                  {"unusable", key_role::of_document, unusable_key}};
  return keys;
}
