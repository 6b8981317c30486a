#ifndef UNREAD_HH
#define UNREAD_HH

// What stands in a document and in no record of it, so that it cannot arrive in another document.

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "findings.hh"

struct unread {
  std::string_view kind;  ///< the same for all that are alike
  file_place place;
  std::string text;  ///< for a person
};

/// What of a document is read.
struct read_as {
  bool masks = false;  ///< types become masks, which not all types have
  bool wide = false;   ///< dictionaries: the wider record
};

/// Everything of that kind, by place: what `findings_of` tells of, as far as something is lost with
/// it, and also comments, processing instructions, document type declarations, and texts of
/// elements that are only written. Damage is the reader's to tell.
std::vector<unread> unread_in(input_file& file, document_kind kind, read_as how);

/// Where the records of some properties stand, in their order: just behind the start tag of the
/// property's element.
class record_places {
 public:
  record_places(input_file& file, document_kind kind, const std::vector<std::string>& properties);

  const std::vector<file_place>& of(const std::string& property) const {
    return places.at(property);
  }

 private:
  std::map<std::string, std::vector<file_place>, std::less<>> places;
};

#endif
