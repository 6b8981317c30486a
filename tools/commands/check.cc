#include "check.hh"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "each_file.hh"
#include "findings.hh"
#include "json_answer.hh"
#include "strict_findings.hh"
#include "terminal.hh"

namespace {

struct checked {
  std::string file;
  document_kind kind;
  std::size_t records;
  int errors;
  std::vector<finding> found;

  bool is_fine() const { return errors == 0 && found.empty(); }
};

// What the readers tell is among the findings, with file, line and column.
checked check_document(input_file& file, bool strict) {
  refuse_json(file);
  const document_kind kind = kind_of(file);
  const loaded_document document = traits_of(kind).load(file);
  std::vector<finding> found = findings_of(file, kind, document);
  if (strict) add_strict_findings(file, kind, found);
  return {file.name(), kind, document.rows.size(), document.how.errors, std::move(found)};
}

void print(const checked& result) {
  const char* const file = result.file.c_str();
  const std::string line = std::string(traits_of(result.kind).description) + ", " +
                           records_of(result.kind, result.records) + ", " +
                           std::to_string(result.errors) +
                           (result.errors == 1 ? " error" : " errors");
  const colour hue = result.is_fine()     ? colour::green
                     : result.errors == 0 ? colour::yellow
                                          : colour::red;
  std::printf("%s: %s\n", file, coloured(hue, line).c_str());
  for (const finding& each : result.found) {
    std::string place;
    if (each.place.line != 0) {
      place = ":" + std::to_string(each.place.line) + ":" + std::to_string(each.place.column);
    }
    std::printf("%s%s: %s\n", file, place.c_str(), each.text.c_str());
  }
}

json to_json(const checked& result) {
  json shown = json_of_file(result.file, traits_of(result.kind).name);
  shown["errors"] = result.errors;
  shown["record_count"] = result.records;
  json& list = shown["findings"] = json::array();
  for (const finding& each : result.found) {
    json place = {{"finding", traits_of(each.what).name}, {"line", nullptr}, {"column", nullptr}};
    if (each.place.line != 0) {
      place["line"] = each.place.line;
      place["column"] = each.place.column;
    }
    place["text"] = to_utf8(each.text);
    list.push_back(std::move(place));
  }
  return shown;
}

}  // namespace

exit_code check(const std::vector<std::string>& files, bool strict, std::size_t jobs,
                answer_format format) {
  json result = json_head("check");
  json& documents = result["documents"] = json::array();
  const exit_code code = for_each_file(
      files, jobs, [strict](input_file& file) { return check_document(file, strict); },
      [&](const checked& one) {
        if (format == answer_format::text) print(one);
        if (format == answer_format::json) documents.push_back(to_json(one));
        return fine_if(one.is_fine());
      },
      [&](const unusable_file& file) { documents.push_back(json_of_unusable(file)); });
  if (format == answer_format::json) print_json(result);
  return code;
}
