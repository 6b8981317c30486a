#ifndef JSON_HH
#define JSON_HH

// What `--json` prints. Its schema is docs/zrt4xml.schema.json.

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "rows.hh"

struct unusable_file;

/// Keeps its keys in the order in which they were given.
using json = nlohmann::ordered_json;

/// A text of the local code page as UTF-8. What is no character there, such as a piece of one at
/// the end of a text that was cut, becomes U+FFFD.
std::string to_utf8(std::string_view local);

/// A row of one value without groups is that value.
json to_json(const row& record);
json to_json(const std::vector<row>& records);
json to_json(const cell& value);

/// The head of everything printed: the version of the format, the subcommand.
json json_head(std::string_view subcommand);

/// The head of what is printed about one file; `kind` is empty when it could not be used.
json json_of_file(const std::string& name, std::string_view kind);
json json_of_unusable(const unusable_file& file);

void print_json(const json& value);

#endif
