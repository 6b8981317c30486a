#include "show.hh"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "each_file.hh"
#include "json_answer.hh"
#include "row_json.hh"

namespace {

exit_code report_result(const input_file& file, int errors) {
  report_errors(file.name(), errors, "what could be read is shown");
  return fine_if(errors == 0);
}

}  // namespace

exit_code show(const std::vector<std::string>& files, std::optional<document_kind> kind) {
  return for_each_file(
      files,
      [&](input_file& file) {
        if (files.size() > 1) std::printf("==> %s <==\n", file.name().c_str());
        return report_result(file, traits_of(kind_of(file, kind)).show(file));
      },
      [](const unusable_file&) {});
}

exit_code show_json(const std::vector<std::string>& files, std::optional<document_kind> kind) {
  json result = json_head("show");
  json& documents = result["documents"] = json::array();
  const exit_code code = for_each_file(
      files,
      [&](input_file& file) {
        const kind_traits& found = traits_of(kind_of(file, kind));
        const loaded_document document = found.load(file);
        json shown = json_of_file(file.name(), found.name);
        shown["errors"] = document.errors;
        shown["records"] = to_json(document.rows);
        documents.push_back(std::move(shown));
        return report_result(file, document.errors);
      },
      [&](const unusable_file& file) { documents.push_back(json_of_unusable(file)); });
  print_json(result);
  return code;
}
