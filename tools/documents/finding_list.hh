#ifndef FINDING_LIST_HH
#define FINDING_LIST_HH

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "file_place.hh"
#include "rules.hh"

bool operator<(file_place a, file_place b);

/// Something that a person wants to know about a document.
struct finding {
  rule what;
  file_place place;
  std::string text;                ///< for a person
  std::vector<file_place> places;  ///< where a thing stands that stands there several times
  std::size_t count = 1;           ///< findings that this one sums up
};

/// What is found in a document. A document may be wrong at each of its places: of each rule, so
/// many are kept as a person reads, and the others are counted.
class finding_list {
 public:
  /// Of a thing that stands there several times, so many places are told.
  static constexpr std::size_t most_places = 100;

  /// Keeps so many of a rule.
  explicit finding_list(std::size_t most = 1000);

  /// `text` is a text, or what makes one; that is only called for what is kept.
  template <class Text>
  void add(rule what, file_place place, Text&& text, std::vector<file_place> places = {}) {
    if (!has_room(what, place)) return;
    if constexpr (std::is_invocable_v<Text>) {
      all.push_back({what, place, text(), std::move(places), 1});
    } else {
      all.push_back({what, place, std::forward<Text>(text), std::move(places), 1});
    }
  }

  /// Counts one that is not worth making.
  void leave_out(rule what, file_place place);

  /// Takes out what was found of a rule with a text that `unwanted` is told about.
  template <class Unwanted>
  void remove(rule what, Unwanted unwanted) {
    const auto end = std::remove_if(all.begin(), all.end(), [&](const finding& each) {
      return each.what == what && unwanted(each.text);
    });
    all.erase(end, all.end());
  }

  /// Lets `use` change what was found of a rule.
  template <class Use>
  void change(rule what, Use use) {
    for (finding& each : all) {
      if (each.what == what) use(each);
    }
  }

  std::size_t most() const { return most_of_a_rule; }
  bool is_empty() const { return all.empty(); }
  bool has(rule what) const { return tallies[static_cast<std::size_t>(what)].kept != 0; }

  /// All that was kept, by place, and for each rule how many were not.
  std::vector<finding> take();

 private:
  struct tally {
    std::size_t kept = 0;
    std::size_t left_out = 0;
    file_place first_left_out;
  };

  bool has_room(rule what, file_place place);

  const std::size_t most_of_a_rule;
  std::vector<finding> all;
  std::vector<tally> tallies;  // by rule
};

#endif
