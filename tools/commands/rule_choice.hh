#ifndef RULE_CHOICE_HH
#define RULE_CHOICE_HH

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rules.hh"

/// What `check -W` says about the rules: which of them count, and how much.
class rule_choice {
 public:
  rule_choice();

  /// Takes a value of -W: `error` and `no-error` (warnings are errors, or not), `all` and `none`
  /// (of the rules count), RULE and `no-RULE`, `RULE=error`, `RULE=warning` and `RULE=off`. What is
  /// said about one rule goes before what is said about all warnings; else the last word counts.
  /// Returns what is wrong with the value, nothing when it is right.
  std::string take(std::string_view value);

  /// How much a rule weighs; nothing when it does not count.
  std::optional<severity> weight_of(rule which) const;

 private:
  enum class level : unsigned char { as_it_is, off, warning, error };

  std::vector<level> levels;  // by rule
  bool warnings_are_errors = false;
};

#endif
