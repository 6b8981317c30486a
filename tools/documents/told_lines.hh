#ifndef TOLD_LINES_HH
#define TOLD_LINES_HH

// What is told of documents, line by line. Of what is alike, a few are told, and the others are
// counted.

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "file_place.hh"
#include "merged_origins.hh"

struct sources;

/// Counts what is alike.
class tallies {
 public:
  /// Whether this one is among those that are told.
  bool add(std::string_view kind);

  /// How many others there are of each kind, and what they do.
  std::vector<std::string> others(std::string_view what_they_do) const;

 private:
  std::map<std::string, std::size_t, std::less<>> numbers;
};

/// Lines about records of several documents.
class told_lines {
 public:
  /// `what_they_do` stands behind the number of those that are only counted.
  explicit told_lines(std::string_view what_they_do) : what(what_they_do) {}

  /// About a record of that property; without an origin, the first in any of the documents. `kind`
  /// is the same for all that are alike; `text` makes the line.
  template <class Text>
  void add(std::string_view kind, std::string_view property, std::optional<record_origin> origin,
           Text&& text) {
    const std::size_t document = origin ? origin->document : 0;
    if (!alike[document].add(kind)) return;
    lines.push_back({std::string(property), origin, std::forward<Text>(text)(), document, {}});
  }

  bool empty() const { return alike.empty(); }

  /// Reports all of them, by document and place.
  void report(const sources& from);

 private:
  struct line {
    std::string property;
    std::optional<record_origin> origin;
    std::string text;
    std::size_t document;
    file_place place;
  };

  void find_places(const sources& from);

  std::string_view what;
  std::vector<line> lines;
  std::map<std::size_t, tallies> alike;  // by document
};

#endif
