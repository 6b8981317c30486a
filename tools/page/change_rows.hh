#ifndef CHANGE_ROWS_HH
#define CHANGE_ROWS_HH

#include <array>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "difference.hh"

/// Differences as rows, one for each field that changed and for each record that was added or
/// removed, also inside another. They refer to nothing outside the list.
class change_list {
 public:
  void add(const difference& each);

  const std::vector<row>& rows() const { return all; }
  /// How many records were added, removed or changed.
  std::size_t number_of(difference::kind what) const;
  /// What became of a record that is there now.
  std::string_view state_of(const row& record) const;

 private:
  void add_row(std::string_view what, std::string_view inside, std::string_view field,
               std::string before, std::string after);
  void add_changed(const difference& each, std::string_view inside);
  std::string_view keep(std::string text) { return texts.emplace_back(std::move(text)); }

  std::deque<std::string> texts;
  std::vector<row> all;
  std::array<std::size_t, 3> numbers{};
  std::unordered_map<std::string_view, std::string_view> states;  // by key
  std::string_view key;                                           // of the record at hand
};

#endif
