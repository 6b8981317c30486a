#ifndef CHECK_OUTPUT_HH
#define CHECK_OUTPUT_HH

// What `check` prints, in each of its formats.

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "check.hh"
#include "document_kind.hh"
#include "findings.hh"

struct unusable_file;

/// A document and what was found in it.
struct checked_document {
  std::string file;
  std::optional<document_kind> kind;  ///< none when nothing of it could be read
  std::size_t records = 0;
  int errors = 0;  ///< that its reader met
  std::vector<finding> found;
};

/// How many findings there are, those that were only counted among them.
struct finding_count {
  std::size_t errors = 0;
  std::size_t warnings = 0;

  std::size_t all() const { return errors + warnings; }
};

/// Of all documents.
struct check_summary {
  std::size_t documents = 0;
  std::size_t with_findings = 0;
  std::size_t unusable = 0;
  finding_count count;
};

class check_output {
 public:
  virtual ~check_output() = default;

  /// `document` has only findings that count.
  virtual void tell(const checked_document& document, const finding_count& count) = 0;
  /// A file that could not be opened.
  virtual void tell_unusable(const unusable_file& file) = 0;
  virtual void end(const check_summary& /*summary*/) {}
};

/// Lives no longer than `wishes`.
std::unique_ptr<check_output> output_of(const check_wishes& wishes);

#endif
