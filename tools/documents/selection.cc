#include "selection.hh"

#include <regex.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "file_error.hh"
#include "given_value.hh"
#include "nearest.hh"

namespace {

// Longer or more often repeated than any name; a pattern takes memory and time in proportion.
constexpr std::size_t longest_pattern = 1000;
constexpr unsigned long most_repeated = 1000;

// By which a person looks for it.
std::string_view telling_name_in(const record_field& field, std::int64_t number) {
  const std::string_view name = name_in(field, number);
  return name == nameless && number != untold ? std::string_view() : name;
}

std::string number_text(const cell& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return text_of(*number);
  return text_of(std::get<threshold>(value));
}

// What is not told is in no range.
double number_of(const cell& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    return *number == untold ? std::nan("") : static_cast<double>(*number);
  }
  // As the decimal that a person sees and writes.
  return std::strtod(text_of(std::get<threshold>(value)).c_str(), nullptr);
}

bool read_number(const std::string& text, double& number) {
  char* end = nullptr;
  number = std::strtod(text.c_str(), &end);
  const bool has_blanks = text.find_first_of(" \t\n\v\f\r") != text.npos;
  return !text.empty() && !has_blanks && end == text.c_str() + text.size();
}

// Groups within groups that are repeated often would take the matcher more than there is.
void check_pattern(const std::string& text) {
  if (text.size() > longest_pattern) {
    throw wrong_selection("the pattern has more than " + std::to_string(longest_pattern) +
                          " bytes");
  }
  unsigned long repeated = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      ++i;
      if (text[i] >= '1' && text[i] <= '9') {
        throw wrong_selection("the pattern has a back reference, \\" + std::string(1, text[i]) +
                              ", which cannot be looked for");
      }
    } else if (text[i] == '{') {
      const char* const comma = std::strchr(text.c_str() + i, ',');
      const char* const close = std::strchr(text.c_str() + i, '}');
      const bool has_most = comma != nullptr && close != nullptr && comma < close &&
                            comma[1] >= '0' && comma[1] <= '9';
      const unsigned long times =
          std::strtoul(has_most ? comma + 1 : text.c_str() + i + 1, nullptr, 10);
      repeated *= std::clamp(times, 1UL, most_repeated + 1);
      if (repeated > most_repeated) {
        throw wrong_selection("the pattern repeats something more than " +
                              std::to_string(most_repeated) + " times");
      }
    }
  }
}

}  // namespace

field_path::field_path(const record_type& type, std::string_view name)
    : full_name(name), outer(&type), inner(&type) {
  std::string_view rest = name;
  for (;;) {
    const std::string_view first = rest.substr(0, rest.find('.'));
    const auto* const begin = inner->groups;
    const auto* const end = begin + inner->group_count;
    const auto* const group =
        std::find_if(begin, end, [&](const record_group& each) { return each.name == first; });
    if (group == end) {
      find_field(rest);
      return;
    }
    groups.push_back(static_cast<std::size_t>(group - begin));
    inner = group->type;
    if (first.size() == rest.size()) {
      // The names in a list of names, rather than how many there are.
      if (inner->is_one_value()) at = 0;
      return;
    }
    rest.remove_prefix(first.size() + 1);
  }
}

void field_path::find_field(std::string_view rest) {
  const auto* const begin = inner->fields;
  const auto* const end = begin + inner->field_count;
  const auto* const found =
      std::find_if(begin, end, [&](const record_field& each) { return each.name == rest; });
  if (found != end) {
    at = static_cast<std::size_t>(found - begin);
    return;
  }
  const std::vector<std::string> names = field_names(*outer);
  throw wrong_selection(
      "there is no field " + in_quotes(full_name) +
      did_you_mean_or_all(full_name, {names.begin(), names.end()}, "; there are "));
}

const record_field* field_path::field() const {
  return at == number_of_records ? nullptr : &inner->fields[at];
}

void field_path::collect(std::vector<cell>& into, const record_type& type, const void* record,
                         std::size_t depth) const {
  if (depth == groups.size()) {
    into.push_back(type.get(record, at));
    return;
  }
  const record_group& group = type.groups[groups[depth]];
  const std::size_t size = group.size(record);
  if (at == number_of_records && depth + 1 == groups.size()) {
    into.emplace_back(static_cast<std::int64_t>(size));
    return;
  }
  for (std::size_t i = 0; i < size; ++i) {
    collect(into, *group.type, group.at(record, i), depth + 1);
  }
}

std::vector<cell> field_path::values(const void* record) const {
  std::vector<cell> result;
  collect(result, *outer, record, 0);
  return result;
}

std::string field_path::text(const void* record) const {
  std::string result;
  bool is_first = true;
  for (const cell& value : values(record)) {
    if (!is_first) result += ", ";
    is_first = false;
    if (const auto* text = std::get_if<std::string_view>(&value)) {
      result += *text;
      continue;
    }
    const auto* const number = std::get_if<std::int64_t>(&value);
    const std::string_view name = number != nullptr && field() != nullptr
                                      ? telling_name_in(*field(), *number)
                                      : std::string_view();
    result += name.empty() ? number_text(value) : std::string(name);
  }
  return result;
}

std::vector<std::string> field_names(const record_type& type, const std::string& prefix) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < type.field_count; ++i) {
    names.push_back(prefix + std::string(type.fields[i].name));
  }
  for (std::size_t i = 0; i < type.group_count; ++i) {
    const record_group& group = type.groups[i];
    const std::string name = prefix + std::string(group.name);
    names.push_back(name);
    for (std::string& inner : field_names(*group.type, name + ".")) {
      names.push_back(std::move(inner));
    }
  }
  return names;
}

struct condition::pattern {
  regex_t compiled;

  explicit pattern(const std::string& text) {
    check_pattern(text);
    const int result = regcomp(&compiled, text.c_str(), REG_EXTENDED | REG_NOSUB);
    if (result == 0) return;
    char reason[256];
    regerror(result, &compiled, reason, sizeof reason);
    throw wrong_selection("the pattern " + in_quotes(text) + " is none: " + reason);
  }
  pattern(const pattern&) = delete;
  pattern& operator=(const pattern&) = delete;
  ~pattern() { regfree(&compiled); }

  bool is_in(std::string_view text) const {
    const char* const begin = text.empty() ? "" : text.data();
    regmatch_t all{0, static_cast<regoff_t>(text.size())};
    return regexec(&compiled, begin, 0, &all, REG_STARTEND) == 0;
  }
};

condition::condition(const std::string& text) {
  constexpr std::string_view in_names =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.";
  const std::size_t end = text.find_first_not_of(in_names);
  if (end == text.npos || end == 0 || std::string_view("=~:").find(text[end]) == text.npos) {
    throw wrong_selection(in_quotes(text) +
                          " is no condition: FIELD=TEXT, FIELD~REGEX or FIELD:NUMBER is expected");
  }
  field_name = text.substr(0, end);
  how = text[end];
  wanted = text.substr(end + 1);
  if (how == '~') regex = std::make_unique<pattern>(wanted);
  if (how != ':') return;
  constexpr double infinity = std::numeric_limits<double>::infinity();
  numbers = {-infinity, infinity};
  const std::size_t dots = wanted.find("..");
  const std::string first = wanted.substr(0, dots);
  const std::string last = dots == wanted.npos ? first : wanted.substr(dots + 2);
  const bool is_open = dots != wanted.npos && wanted.size() > 2;
  const bool is_range = (first.empty() ? is_open : read_number(first, numbers.least)) &&
                        (last.empty() ? is_open : read_number(last, numbers.most));
  if (!is_range) {
    throw wrong_selection(in_quotes(text) +
                          ": a number or a range such as 2..5, 2.. or ..5 is expected behind the "
                          "colon");
  }
  // What is no number may be looked for, but is in no range.
  if (dots != wanted.npos && !(numbers.least <= numbers.most)) {
    throw wrong_selection(in_quotes(text) + ": no number is in this range");
  }
}

condition::condition(condition&&) noexcept = default;
condition::~condition() = default;

void condition::bind(const record_type& type) {
  path = std::make_unique<field_path>(type, field_name);
  if (how == ':' && !path->is_number()) {
    throw wrong_selection(in_quotes(field_name) + " is a text: look for it with = or ~");
  }
  if (!path->is_number()) return;
  if (how == '=') numbers = number_wanted();
  const record_field* const field = path->field();
  const bool may_be_none =
      field != nullptr && (field->holds == value_kind::threshold || field->may_be_untold);
  if (std::isnan(numbers.least) && !may_be_none) {
    throw wrong_selection(in_quotes(field_name) + " is always a number");
  }
}

condition::range condition::number_wanted() const {
  double number = 0;
  std::int64_t named = 0;
  const bool has_names = path->field() != nullptr && path->field()->names != nullptr;
  if (has_names && number_named(*path->field(), wanted, named)) {
    number = number_of(named);
  } else if (!read_number(wanted, number)) {
    throw wrong_selection(in_quotes(field_name) + " is a number, and " + in_quotes(wanted) +
                          (has_names ? " is neither one nor the name of one" +
                                           did_you_mean(wanted, names_in(*path->field()))
                                     : " is none"));
  }
  return {number, number};
}

bool condition::fits_value(const cell& value) const {
  if (const auto* text = std::get_if<std::string_view>(&value)) {
    return how == '~' ? regex->is_in(*text) : *text == wanted;
  }
  if (how != '~') {
    const double number = number_of(value);
    if (std::isnan(numbers.least)) return std::isnan(number);
    return number >= numbers.least && number <= numbers.most;
  }
  const auto* const number = std::get_if<std::int64_t>(&value);
  const bool is_told = number == nullptr || *number != untold;
  if (is_told && regex->is_in(number_text(value))) return true;
  if (number == nullptr || path->field() == nullptr) return false;
  const std::string_view name = telling_name_in(*path->field(), *number);
  return !name.empty() && regex->is_in(name);
}

bool condition::fits(const void* record) const {
  const std::vector<cell> values = path->values(record);
  return std::any_of(values.begin(), values.end(),
                     [this](const cell& value) { return fits_value(value); });
}

std::vector<condition> conditions_of(const std::vector<std::string>& texts) {
  std::vector<condition> conditions;
  conditions.reserve(texts.size());
  for (const std::string& text : texts) {
    try {
      conditions.emplace_back(text);
    } catch (const wrong_selection& reason) {
      throw file_error("--where", reason.what());
    }
  }
  return conditions;
}

bool fits_all(const std::vector<condition>& conditions, const void* record) {
  return std::all_of(conditions.begin(), conditions.end(),
                     [&](const condition& each) { return each.fits(record); });
}
