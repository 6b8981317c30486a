#ifndef SHOW_HH
#define SHOW_HH

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "document_kind.hh"
#include "exit_code.hh"

/// `zrt4xml show`: prints the listing of each document, under a heading when there are several.
/// All of them are of `kind`; without it each is recognised. `jobs` files are read at once.
exit_code show(const std::vector<std::string>& files, std::optional<document_kind> kind,
               std::size_t jobs);

/// The same as JSON, with the numbers of types as they stand in the documents.
exit_code show_json(const std::vector<std::string>& files, std::optional<document_kind> kind,
                    std::size_t jobs);

#endif
