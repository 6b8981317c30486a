#include "name_pattern.hh"

#include <fnmatch.h>

namespace {

constexpr const char* signs_of_a_pattern = "*?[";

// The characters of `text` without the meaning that a pattern gives them.
std::string literally(const std::string& text) {
  std::string pattern;
  for (const char c : text) {
    if (c == '*' || c == '?' || c == '[' || c == '\\') pattern += '\\';
    pattern += c;
  }
  return pattern;
}

}  // namespace

name_pattern::name_pattern(const std::string& given, letters which, place where)
    : text(given),
      flags(which == letters::any_case ? FNM_CASEFOLD : 0),
      one_name(which == letters::exact && where == place::whole &&
               given.find_first_of(signs_of_a_pattern) == given.npos) {
  const bool is_pattern = given.find_first_of(signs_of_a_pattern) != given.npos;
  pattern = is_pattern ? given : literally(given);
  if (where == place::anywhere) pattern = "*" + pattern + "*";
}

bool name_pattern::matches(const char* name) const {
  return text == name || (!one_name && fnmatch(pattern.c_str(), name, flags) == 0);
}
