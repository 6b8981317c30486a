#ifndef BAD_DOCUMENT_HH
#define BAD_DOCUMENT_HH

#include <stdexcept>
#include <string>
#include <utility>

#include "file_place.hh"

/// A document that cannot be used, with the reason for a person (exit code 1).
struct bad_document : std::runtime_error {
  bad_document(std::string of, const std::string& reason, file_place where = {})
      : std::runtime_error(reason), file(std::move(of)), place(where) {}

  std::string file;
  file_place place;
};

#endif
