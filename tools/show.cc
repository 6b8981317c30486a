#include "show.hh"

#include <algorithm>
#include <cstdio>

#include "document_kind.hh"
#include "input_file.hh"
#include "message.hh"
#include "root_element.hh"

namespace {

exit_code show_one(input_file& file) {
  const root_element root = find_root_element(file.path());
  if (root.name.empty()) {
    complain(file.name() + ":" + root.problem, "not a readable XML document");
    return exit_bad_document;
  }
  const document_kind* kind = kind_of_root(root.name);
  if (kind == nullptr) {
    complain(file.name(), "unknown kind of document: its root element is '" + root.name +
                              "'; known are " + known_kinds());
    return exit_bad_document;
  }
  const int errors = kind->show(file.path());
  if (errors == 0) return exit_fine;
  complain(file.name(), "not read cleanly (" + std::to_string(errors) +
                            (errors == 1 ? " error" : " errors") +
                            "); what could be read is shown");
  return exit_bad_document;
}

}  // namespace

exit_code show(const std::vector<std::string>& files) {
  exit_code worst = exit_fine;
  for (const std::string& name : files) {
    try {
      input_file file(name);
      if (files.size() > 1) std::printf("==> %s <==\n", file.name().c_str());
      worst = std::max(worst, show_one(file));
    } catch (const std::runtime_error& reason) {
      complain(name, reason.what());
      worst = exit_no_use;
    }
  }
  return worst;
}
