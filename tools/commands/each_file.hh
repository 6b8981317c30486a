#ifndef EACH_FILE_HH
#define EACH_FILE_HH

#include <algorithm>
#include <string>
#include <vector>

#include "bad_document.hh"
#include "exit_code.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "message.hh"

/// A file that could not be used, and why.
struct unusable_file {
  const std::string& name;
  std::string reason;
};

/// Opens one file after the other for `use`, which returns its exit code. One that cannot be used
/// is reported, then handed to `give_up`, and the next one follows. Returns the worst exit code.
template <class Use, class GiveUp>
exit_code for_each_file(const std::vector<std::string>& files, Use&& use, GiveUp&& give_up) {
  exit_code worst = exit_fine;
  for (const std::string& name : files) {
    try {
      input_file file(name);
      worst = std::max(worst, use(file));
    } catch (const bad_document& reason) {
      report(reason.file + reason.place, reason.what());
      give_up(unusable_file{reason.file, reason.what()});
      worst = std::max(worst, exit_not_fine);
    } catch (const file_error& reason) {
      report_always(reason.file, reason.what());
      give_up(unusable_file{reason.file, reason.what()});
      worst = exit_trouble;
    }
  }
  return worst;
}

#endif
