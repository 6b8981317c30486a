#ifndef BAD_DOCUMENT_HH
#define BAD_DOCUMENT_HH

#include <stdexcept>
#include <string>
#include <utility>

/// A document that cannot be used, with the reason for a person (exit code 1).
struct bad_document : std::runtime_error {
  explicit bad_document(const std::string& reason, std::string where = {})
      : std::runtime_error(reason), place(std::move(where)) {}

  std::string place;  ///< ":LINE:COLUMN" where known
};

/// Something asked for that cannot be done (exit code 2).
struct wrong_usage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

#endif
