#ifndef PAGE_FILE_HH
#define PAGE_FILE_HH

// A page of documents: one HTML file that needs nothing but itself.

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "change_rows.hh"
#include "document_kind.hh"
#include "findings.hh"
#include "places.hh"

/// A document as a page shows it.
struct page_document {
  std::string file;
  std::optional<document_kind> kind;  ///< none when it could not be used
  std::string unusable;               ///< why
  loaded_document loaded;
  std::vector<record_place> places;  ///< of its records
  std::string source;                ///< the XML of its records, packed
  std::vector<finding> findings;
};

/// Reads the file and finds out all that the page tells about it. In any thread.
page_document read_for_page(input_file& file);

/// What changed from one document to another.
struct page_changes {
  std::string before;
  std::string after;
  document_kind kind;
  change_list all;
};

/// The whole file, by so many threads. `made` is the time that it tells.
std::string make_page(const std::string& title, const std::vector<page_document>& documents,
                      const page_changes* changes, std::time_t made, std::size_t jobs);

#endif
