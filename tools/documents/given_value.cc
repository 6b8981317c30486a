#include "given_value.hh"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>

#include "nearest.hh"
#include "terminal.hh"

namespace {

constexpr std::string_view replacement = "\xef\xbf\xbd";  // U+FFFD, for a byte without meaning

fitted_value not_fitting(const std::string& expected, const std::string& found) {
  return {{}, expected + " is expected here, not " + found};
}

constexpr const char* largest_threshold = "a number of at most 3.4028235e+38";

fitted_value too_long(const record_field& field, std::string_view text) {
  return not_fitting("a text of at most " + std::to_string(field.room) + " bytes",
                     "one of " + std::to_string(text.size()) + ", " + in_quotes(text));
}

std::string whole_number_of(const record_field& field) {
  return "a whole number from " + std::to_string(field.least) + " to " + std::to_string(field.most);
}

fitted_value fitted_number(const record_field& field, const given_value& value) {
  const auto number = value.whole_number();
  if (number && *number >= field.least && *number <= field.most) return {*number, {}};
  return not_fitting(whole_number_of(field), value.shown());
}

fitted_value fitted_threshold(const given_value& value) {
  if (value.is == given_value::kind::null) {
    return {threshold{std::numeric_limits<float>::quiet_NaN()}, {}};
  }
  float number = std::numeric_limits<float>::infinity();
  if (value.is == given_value::kind::integer) {
    number = value.is_negative ? static_cast<float>(static_cast<std::int64_t>(value.magnitude))
                               : static_cast<float>(value.magnitude);
  } else if (value.is == given_value::kind::fraction) {
    // Straight from the digits: by way of a double it would be rounded twice.
    const char* const begin = value.text.data();
    const auto read = std::from_chars(begin, begin + value.text.size(), number);
    if (read.ec != std::errc()) number = static_cast<float>(value.fraction);
  }
  if (std::isfinite(number)) return {threshold{number}, {}};
  return not_fitting(std::string(largest_threshold) + ", or null,", value.shown());
}

fitted_value fitted_characters(const record_field& field, std::string_view text, bool& was_cut) {
  if (text.find('\0') != text.npos) {
    return not_fitting("a text without U+0000, where a text ends,", in_quotes(text));
  }
  std::string_view kept = text;
  std::size_t pieces = 0;
  while (kept.size() >= replacement.size() &&
         kept.substr(kept.size() - replacement.size()) == replacement) {
    kept.remove_suffix(replacement.size());
    ++pieces;
  }
  was_cut = text.size() > field.room && kept.size() + pieces == field.room;
  if (was_cut) return {kept, {}};
  if (text.size() <= field.room) return {text, {}};
  return too_long(field, text);
}

// A number in digits that a person writes.
std::optional<std::int64_t> number_in(std::string_view text) {
  const bool is_negative = !text.empty() && text[0] == '-';
  if (is_negative) text.remove_prefix(1);
  const bool is_hexadecimal = text.size() > 2 && text[0] == '0' && (text[1] | 0x20) == 'x';
  if (is_hexadecimal) text.remove_prefix(2);
  if (text.empty() || text[0] == '-') return {};
  std::int64_t number = 0;
  const auto read =
      std::from_chars(text.data(), text.data() + text.size(), number, is_hexadecimal ? 16 : 10);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return {};
  return is_negative ? -number : number;
}

}  // namespace

std::string in_quotes(std::string_view text) {
  return '"' + shortened(printable(text)) + '"';
}

given_value given_value::of_integer(std::int64_t number) {
  return {kind::integer, false, number < 0, static_cast<std::uint64_t>(number)};
}

given_value given_value::of_text(std::string_view text) {
  return {kind::text, false, false, 0, 0, text};
}

std::string given_value::shown() const {
  switch (is) {
    case kind::null:
      return "null";
    case kind::boolean:
      return truth ? "true" : "false";
    case kind::integer:
      return is_negative ? std::to_string(static_cast<std::int64_t>(magnitude))
                         : std::to_string(magnitude);
    case kind::fraction:
      return shortened(std::string(text));
    case kind::text:
      break;
  }
  return "the text " + in_quotes(text);
}

std::optional<std::int64_t> given_value::whole_number() const {
  if (is == kind::integer) {
    if (!is_negative && magnitude > std::numeric_limits<std::int64_t>::max()) return {};
    return static_cast<std::int64_t>(magnitude);
  }
  constexpr double exactly = 9007199254740992.0;  // up to here every whole number is a double
  if (is != kind::fraction || std::fabs(fraction) > exactly) return {};
  if (std::trunc(fraction) != fraction) return {};
  return static_cast<std::int64_t>(fraction);
}

fitted_value fitted(const record_field& field, const given_value& value, bool& was_cut) {
  was_cut = false;
  if (field.holds == value_kind::number) return fitted_number(field, value);
  if (field.holds == value_kind::threshold) return fitted_threshold(value);
  if (value.is != given_value::kind::text) return not_fitting("a text", value.shown());
  return fitted_characters(field, value.text, was_cut);
}

fitted_value fitted_text(const record_field& field, std::string_view text) {
  bool was_cut = false;
  if (field.holds == value_kind::text) {
    fitted_value whole = fitted_characters(field, text, was_cut);
    return was_cut ? too_long(field, text) : whole;
  }
  if (field.holds == value_kind::threshold) {
    const std::string digits(text);
    char* end = nullptr;
    const float number = std::strtof(digits.c_str(), &end);
    const bool is_number = !digits.empty() && end == digits.c_str() + digits.size() &&
                           digits.find_first_of(" \t\n\v\f\r") == digits.npos;
    if (!is_number) return not_fitting("a number such as 0.05", in_quotes(text));
    // "inf" is spelled so, and not what more digits than there is room for become.
    const bool is_too_large = std::isinf(number) && text.find_first_of("0123456789") != text.npos;
    return is_too_large ? not_fitting(largest_threshold, in_quotes(text))
                        : fitted_value{threshold{number}, {}};
  }
  std::int64_t named = 0;
  if (number_named(field, text, named)) return {named, {}};
  const auto number = number_in(text);
  if (number) return fitted(field, given_value::of_integer(*number), was_cut);
  return not_fitting(field.names != nullptr ? "a number or a name" : whole_number_of(field),
                     in_quotes(text) + did_you_mean(text, names_in(field)));
}

std::optional<std::int64_t> number_called(const record_field& field, std::int64_t number,
                                          std::string_view name) {
  if (name == nameless && number == 0) return field.may_be_untold ? untold : number;
  if (name == name_in(field, number)) return number;
  return {};
}

std::optional<cell> agreed(const record_field& field, const cell& value, const cell& named) {
  if (field.holds != value_kind::number) return value == named ? value : std::optional<cell>();
  const std::string_view name = name_in(field, std::get<std::int64_t>(named));
  return number_called(field, std::get<std::int64_t>(value), name);
}
