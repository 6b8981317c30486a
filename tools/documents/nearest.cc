#include "nearest.hh"

#include "similar_names.hh"

std::string_view nearest(std::string_view given, const std::vector<std::string_view>& known) {
  std::string_view found;
  unsigned best = beyond_all_names;
  for (const std::string_view each : known) {
    const unsigned letters = distance_of_names(given, each);
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

std::string did_you_mean_or_all(std::string_view given, const std::vector<std::string_view>& known,
                                std::string_view introduction) {
  std::string hint = did_you_mean(given, known);
  if (!hint.empty()) return hint;
  for (const std::string_view each : known) {
    hint.append(hint.empty() ? introduction : ", ").append(each);
  }
  return hint;
}
