#ifndef JSON_ANSWER_HH
#define JSON_ANSWER_HH

// What every answer has with `--json`. The schema is docs/zrt4xml.schema.json.

#include <string>
#include <string_view>

#include "json.hh"

struct unusable_file;

/// The head of everything printed: the version of the format, the subcommand.
json json_head(std::string_view subcommand);

/// The head of what is printed about one file.
json json_of_file(const std::string& name, std::string_view kind);

/// Begins an answer whose documents are the elements that follow.
void begin_documents(json_printer& out, std::string_view subcommand);
/// Ends such an answer, in which nothing follows the documents.
void end_documents(json_printer& out);

/// What is printed about a file that could not be used.
json json_of_unusable(const unusable_file& file);

#endif
