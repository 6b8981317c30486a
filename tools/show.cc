#include "show.hh"

#include <algorithm>
#include <cstdio>

#include "bad_document.hh"
#include "document_kind.hh"
#include "input_file.hh"
#include "message.hh"

exit_code show(const std::vector<std::string>& files, const std::string& kind) {
  exit_code worst = exit_fine;
  for (const std::string& name : files) {
    try {
      input_file file(name);
      if (files.size() > 1) std::printf("==> %s <==\n", file.name().c_str());
      const int errors = kind_of(file, kind).show(file);
      if (errors == 0) continue;
      complain_of_errors(file.name(), errors, "what could be read is shown");
      worst = std::max(worst, exit_bad_document);
    } catch (const bad_document& reason) {
      complain(name + reason.place, reason.what());
      worst = std::max(worst, exit_bad_document);
    } catch (const std::runtime_error& reason) {
      complain(name, reason.what());
      worst = exit_no_use;
    }
  }
  return worst;
}
