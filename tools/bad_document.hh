#ifndef BAD_DOCUMENT_HH
#define BAD_DOCUMENT_HH

#include <stdexcept>

/// A document that cannot be used, with the reason for a person (exit code 1).
struct bad_document : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Something asked for that cannot be done (exit code 2).
struct wrong_usage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

#endif
