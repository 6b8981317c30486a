#include "show.hh"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "each_file.hh"
#include "json_answer.hh"
#include "odd_numbers.hh"
#include "printable_output.hh"
#include "row_json.hh"
#include "terminal.hh"

namespace {

/// A document on its way to being printed.
template <class Document>
struct shown {
  std::string file;
  document_kind kind;
  Document document;
};

template <auto kind_traits::*how>
auto reader_for(std::optional<document_kind> expected) {
  return [expected](input_file& file) {
    const document_kind kind = kind_of(file, expected);
    std::vector<std::string> odd = odd_numbers_in(file, kind);  // before there are records
    shown<decltype((traits_of(kind).*how)(file))> one{file.name(), kind,
                                                      (traits_of(kind).*how)(file)};
    std::vector<std::string>& messages = one.document.how.messages;
    messages.insert(messages.end(), odd.begin(), odd.end());
    return one;
  };
}

exit_code report_result(const std::string& file, int errors) {
  report_errors(file, errors, "what could be read is shown");
  return fine_if(errors == 0);
}

}  // namespace

exit_code show(const std::vector<std::string>& files, std::optional<document_kind> kind,
               std::size_t jobs) {
  const auto print_heading = [&](const std::string& name) {
    if (files.size() > 1) std::printf("==> %s <==\n", printable(name).c_str());
  };
  return for_each_file(
      files, jobs, reader_for<&kind_traits::list>(kind),
      [&](const shown<listed_document>& one) {
        print_heading(one.file);
        report(one.document.how.messages);
        print_as_printable(one.document.print);
        if (!one.document.not_listed.empty()) report(one.file, one.document.not_listed);
        return report_result(one.file, one.document.how.errors);
      },
      [&](const unusable_file& file) {
        if (file.is_open) print_heading(file.name);
      });
}

exit_code show_json(const std::vector<std::string>& files, std::optional<document_kind> kind,
                    std::size_t jobs) {
  json_printer out;
  begin_documents(out, "show");
  const exit_code code = for_each_file(
      files, jobs, reader_for<&kind_traits::load>(kind),
      [&](const shown<loaded_document>& one) {
        report(one.document.how.messages);
        out.begin_object();
        out.members(json_of_file(one.file, traits_of(one.kind).name));
        out.member("errors", one.document.how.errors);
        out.begin_array("records");
        for (const row& record : one.document.rows) out.element(to_json(record));
        out.end();
        out.end();
        return report_result(one.file, one.document.how.errors);
      },
      [&](const unusable_file& file) { out.element(json_of_unusable(file)); });
  end_documents(out);
  return code;
}
