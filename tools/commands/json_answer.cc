#include "json_answer.hh"

#include <nlohmann/json.hpp>

#include "each_file.hh"

namespace {

// Raised when a program that reads the output would have to be changed.
constexpr int format_version = 1;

}  // namespace

json json_head(std::string_view subcommand) {
  return {{"format_version", format_version}, {"subcommand", subcommand}};
}

json json_of_file(const std::string& name, std::string_view kind) {
  return {{"file", to_utf8(name)}, {"kind", kind}};
}

void begin_documents(json_printer& out, std::string_view subcommand) {
  out.begin_object();
  out.members(json_head(subcommand));
  out.begin_array("documents");
}

void end_documents(json_printer& out) {
  out.end();
  out.end();
}

json json_of_unusable(const unusable_file& file) {
  return {{"file", to_utf8(file.name)}, {"kind", nullptr}, {"unusable", to_utf8(file.reason)}};
}
