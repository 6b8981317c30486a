#include "similar_names.hh"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>

namespace {

constexpr std::size_t longest = 64;
constexpr unsigned most_changes = 2;
constexpr std::size_t letters_of_a_change = 3;  // a short name has fewer that may be wrong
constexpr std::size_t shortest_stem = 3;

unsigned char upper(char c) {
  return static_cast<unsigned char>(std::toupper(static_cast<unsigned char>(c)));
}

bool begins_with(std::string_view name, std::string_view stem) {
  return stem.size() < name.size() &&
         std::equal(stem.begin(), stem.end(), name.begin(),
                    name.begin() + static_cast<std::ptrdiff_t>(std::min(stem.size(), name.size())),
                    [](char a, char b) { return upper(a) == upper(b); });
}

using distances = std::array<unsigned, longest + 1>;

unsigned changes_between(std::string_view a, std::string_view b) {
  distances before_last{};
  distances last{};
  distances row{};
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = static_cast<unsigned>(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = static_cast<unsigned>(i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const unsigned change = upper(a[i - 1]) == upper(b[j - 1]) ? 0 : 1;
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
      const bool is_swapped = i > 1 && j > 1 && upper(a[i - 1]) == upper(b[j - 2]) &&
                              upper(a[i - 2]) == upper(b[j - 1]);
      if (is_swapped) row[j] = std::min(row[j], before_last[j - 2] + 1);
    }
    before_last = last;
    last = row;
  }
  return last[b.size()];
}

unsigned few_changes_between(std::string_view written, std::string_view known) {
  if (written.size() > longest || known.size() > longest || written.empty()) {
    return beyond_all_names;
  }
  const unsigned changes = changes_between(written, known);
  const std::size_t letters = std::min(written.size(), known.size());
  const bool are_few =
      changes <= most_changes && letters_of_a_change * changes <= std::max<std::size_t>(letters, 4);
  return are_few ? changes : beyond_all_names;
}

}  // namespace

unsigned distance_of_names(std::string_view written, std::string_view known) {
  const unsigned changes = few_changes_between(written, known);
  if (changes != beyond_all_names) return changes;
  const bool is_shortened = written.size() >= shortest_stem && begins_with(known, written);
  const bool is_lengthened = known.size() > shortest_stem && begins_with(written, known);
  if (is_shortened || is_lengthened) return most_changes;
  return beyond_all_names;
}

bool is_misspelt(std::string_view written, std::string_view known) {
  return written != known && few_changes_between(written, known) != beyond_all_names;
}
