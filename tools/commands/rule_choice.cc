#include "rule_choice.hh"

#include <algorithm>

namespace {

constexpr std::string_view refusal = "no-";

const rule_traits* rule_named(std::string_view name) {
  const rule_table rules = all_rules();
  const auto* const found = std::find_if(
      rules.begin(), rules.end(), [&](const rule_traits& each) { return each.name == name; });
  return found != rules.end() ? found : nullptr;
}

}  // namespace

rule_choice::rule_choice() : levels(all_rules().count, level::as_it_is) {}

std::string rule_choice::take(std::string_view value) {
  if (value == "error" || value == "no-error") {
    warnings_are_errors = value == "error";
    return {};
  }
  if (value == "all" || value == "none") {
    std::fill(levels.begin(), levels.end(), value == "all" ? level::as_it_is : level::off);
    return {};
  }
  const std::size_t equals = value.find('=');
  std::string_view name = value.substr(0, equals);
  level wanted = level::as_it_is;
  if (equals != value.npos) {
    const std::string_view weight = value.substr(equals + 1);
    if (weight == "error") {
      wanted = level::error;
    } else if (weight == "warning") {
      wanted = level::warning;
    } else if (weight == "off") {
      wanted = level::off;
    } else {
      return "neither error nor warning nor off: " + std::string(value);
    }
  } else if (name.substr(0, refusal.size()) == refusal) {
    name.remove_prefix(refusal.size());
    wanted = level::off;
  }
  const rule_traits* const named = rule_named(name);
  if (named == nullptr) return "no such rule: " + std::string(name);
  levels[static_cast<std::size_t>(named->which)] = wanted;
  return {};
}

std::optional<severity> rule_choice::weight_of(rule which) const {
  switch (levels[static_cast<std::size_t>(which)]) {
    case level::off:
      return {};
    case level::warning:
      return severity::warning;
    case level::error:
      return severity::error;
    case level::as_it_is:
      break;
  }
  return warnings_are_errors ? severity::error : traits_of(which).weight;
}
