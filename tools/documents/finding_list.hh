#ifndef FINDING_LIST_HH
#define FINDING_LIST_HH

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "rules.hh"

/// Where something stands in a document; line 0: not known.
struct file_place {
  std::uint64_t line = 0;
  std::uint64_t column = 0;  ///< just behind a start tag, or where an error was met
};
bool operator<(file_place a, file_place b);

/// Something that a person wants to know about a document.
struct finding {
  rule what;
  file_place place;
  std::string text;                ///< for a person
  std::vector<file_place> places;  ///< where a thing stands that stands there several times
};

/// What is found in a document. A document may be wrong at each of its places: of each rule, so
/// many are kept as a person reads, and the others are counted.
class finding_list {
 public:
  static constexpr std::size_t most_of_a_rule = 1000;

  finding_list();

  /// `text` is a text, or what makes one; that is only called for what is kept.
  template <class Text>
  void add(rule what, file_place place, Text&& text, std::vector<file_place> places = {}) {
    if (!has_room(what, place)) return;
    if constexpr (std::is_invocable_v<Text>) {
      all.push_back({what, place, text(), std::move(places)});
    } else {
      all.push_back({what, place, std::forward<Text>(text), std::move(places)});
    }
  }

  /// Counts one that is not worth making.
  void leave_out(rule what, file_place place);

  /// All that was kept, by place, and for each rule how many were not.
  std::vector<finding> take();

 private:
  struct tally {
    std::size_t kept = 0;
    std::size_t left_out = 0;
    file_place first_left_out;
  };

  bool has_room(rule what, file_place place);

  std::vector<finding> all;
  std::vector<tally> tallies;  // by rule
};

#endif
