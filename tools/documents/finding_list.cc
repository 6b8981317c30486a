#include "finding_list.hh"

#include <algorithm>
#include <tuple>

bool operator<(file_place a, file_place b) {
  return std::tie(a.line, a.column) < std::tie(b.line, b.column);
}

finding_list::finding_list(std::size_t most) : most_of_a_rule(most), tallies(all_rules().count) {}

bool finding_list::has_room(rule what, file_place place) {
  tally& of_rule = tallies[static_cast<std::size_t>(what)];
  if (of_rule.kept != most_of_a_rule) {
    ++of_rule.kept;
    return true;
  }
  leave_out(what, place);
  return false;
}

void finding_list::leave_out(rule what, file_place place) {
  tally& of_rule = tallies[static_cast<std::size_t>(what)];
  if (of_rule.left_out++ == 0) of_rule.first_left_out = place;
}

std::vector<finding> finding_list::take() {
  for (const rule_traits& each : all_rules()) {
    const tally& of_rule = tallies[static_cast<std::size_t>(each.which)];
    if (of_rule.left_out == 0) continue;
    all.push_back({each.which,
                   of_rule.first_left_out,
                   std::to_string(of_rule.left_out) + " more of this kind from here on (" +
                       std::string(each.meaning) + ")",
                   {},
                   of_rule.left_out});
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const finding& a, const finding& b) { return a.place < b.place; });
  return std::move(all);
}
