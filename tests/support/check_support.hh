#ifndef CHECK_SUPPORT_HH
#define CHECK_SUPPORT_HH

// What "zrt4xml check" finds in a document that a test holds.

#include "tool_support.hh"

namespace test {

/// What "check" prints about the document, with "F" for the file's name.
inline run_result check(const std::string& document, const std::string& options = "") {
  const temporary_file file(document);
  run_result result = run("check " + options + " " + file.path());
  for (std::size_t at = 0; (at = result.out.find(file.path(), at)) != result.out.npos;) {
    result.out.replace(at, file.path().size(), "F");
  }
  return result;
}

/// Only what it finds, one line for each: "F:LINE:COLUMN: error: text [rule]".
inline std::string findings(const std::string& document) {
  return check(document, "--only-findings").out;
}

}  // namespace test

#endif
