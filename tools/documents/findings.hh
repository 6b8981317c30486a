#ifndef FINDINGS_HH
#define FINDINGS_HH

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "document_kind.hh"

/// Something that a person wants to know about a document.
struct finding {
  std::string_view what;     ///< as in JSON
  std::string text;          ///< for a person
  std::uint64_t line = 0;    ///< 0: not known
  std::uint64_t column = 0;  ///< just behind the start tag, or where an error was met
};

/// Everything found in the file and in its records, by line.
std::vector<finding> findings_of(input_file& file, document_kind kind,
                                 const loaded_document& document);

#endif
