#include "nearest.hh"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace {

char lower(char c) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// Letters added, dropped, replaced, or swapped with their neighbour.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> above(b.size() + 1);
  std::vector<std::size_t> here(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) here[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    before.swap(above);
    above.swap(here);
    here[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = lower(a[i - 1]) == lower(b[j - 1]);
      here[j] = std::min({above[j] + 1, here[j - 1] + 1, above[j - 1] + (same ? 0U : 1U)});
      const bool swapped = i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) &&
                           lower(a[i - 2]) == lower(b[j - 1]);
      if (swapped) here[j] = std::min(here[j], before[j - 2] + 1);
    }
  }
  return here[b.size()];
}

}  // namespace

std::string_view nearest(std::string_view given, const std::vector<std::string_view>& known) {
  constexpr std::size_t longest = 64;  // what is longer is no slip of a key
  if (given.empty() || given.size() > longest) return {};
  std::string_view found;
  std::size_t best = std::min<std::size_t>(2, (given.size() - 1) / 2) + 1;
  for (const std::string_view each : known) {
    const std::size_t letters = distance(given, each);
    if (letters >= best) continue;
    best = letters;
    found = each;
  }
  return found;
}

std::string did_you_mean(std::string_view given, const std::vector<std::string_view>& known) {
  const std::string_view near = nearest(given, known);
  return near.empty() ? "" : "; did you mean '" + std::string(near) + "'?";
}
