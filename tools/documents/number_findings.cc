#include "number_findings.hh"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "blanks.hh"
#include "event_number_text.hh"
#include "event_util.hh"
#include "number_text.hh"
#include "plain_number.hh"
#include "shown_text.hh"
#include "terminal.hh"
#include "type_masks.hh"
#include "unseen_characters.hh"

namespace {

using std::int64_t;

constexpr int64_t beyond_all = std::numeric_limits<int64_t>::max();

/// What a text says, whoever reads it.
struct written_number {
  bool is_whole = false;    ///< the text is a number and nothing else
  int64_t value = 0;        ///< of its digits; `beyond_all`, or less it, when there are too many
  std::string_view digits;  ///< with the sign; empty when it begins with none
  std::string_view rest;
};

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

int64_t value_of(std::string_view digits, int base, bool is_negative) {
  int64_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (result.ec != std::errc()) value = beyond_all;
  return is_negative ? -value : value;
}

written_number written(std::string_view text, bool may_be_hexadecimal) {
  text = trimmed(text);
  written_number number;
  std::size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  const bool is_negative = at != 0 && text[0] == '-';
  int base = 10;
  if (may_be_hexadecimal && text.substr(at, 2) == "0x" && at + 2 < text.size() &&
      zrt4::detail::digit_of(text[at + 2]) < zrt4::detail::no_digit) {
    base = 16;
    at += 2;
  }
  const std::size_t first = at;
  while (at < text.size() && zrt4::detail::digit_of(text[at]) < static_cast<unsigned>(base)) ++at;
  if (at == first) {
    number.rest = text;
    return number;
  }
  number.value = value_of(text.substr(first, at - first), base, is_negative);
  number.digits = text.substr(0, at);
  number.rest = text.substr(at);
  number.is_whole = number.rest.empty();
  return number;
}

/// What the library makes of it.
int64_t read(number_form form, const char* text) {
  switch (form) {
    case number_form::listed_type:
      return std::strtol(text, nullptr, 10);
    case number_form::decimal_or_hexadecimal: {
      std::uint32_t number = 0;
      zrt4::detail::read_event_number(text, number);
      return number;
    }
    default:
      return zrt4::detail::read_decimal(text);
  }
}

bool says(int64_t number, number_form form, const written_number& text) {
  if (number == text.value) return true;
  // A type is kept without a sign, and masks of types are written with one.
  return form == number_form::type && static_cast<std::uint32_t>(number) == text.value;
}

constexpr int last_event_type = ZRT4_EV_EVMAX;
constexpr int last_data_type = ZRT4_BLOCK_MAX_2010;

std::string_view name_of(number_names names, int64_t number) {
  if (number < 0 || number > last_data_type) return {};
  const int type = static_cast<int>(number);
  const char* name = names == number_names::event_types  ? event_name_itoa(type)
                     : names == number_names::data_types ? block_name_itoa(type)
                                                         : "UNKNOWN";
  return std::strcmp(name, "UNKNOWN") != 0 ? name : std::string_view();
}

bool is_used(number_names names, int64_t number) {
  if (names == number_names::none) return true;
  if (names == number_names::data_types) return number == 0 || !name_of(names, number).empty();
  if (number < 0 || number > last_event_type) return false;
  const int structure = get_event_struct_type(static_cast<int>(number));
  return structure != ZRT4_EV_STRUCT_UNKNOWN && structure != ZRT4_EV_STRUCT_UNDEF;
}

bool same_but_for_case(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::toupper(static_cast<unsigned char>(a[i])) !=
        std::toupper(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

std::string with_name(number_names names, int64_t number) {
  const std::string_view name = name_of(names, number);
  const std::string text = std::to_string(number);
  return name.empty() || name == text ? text : text + " (" + std::string(name) + ")";
}

/// A type by its name: "NORMAL is 1".
std::string number_of_name(number_names names, std::string_view text) {
  if (names == number_names::none) return {};
  const int last = names == number_names::event_types ? last_event_type : last_data_type;
  for (int type = 0; type <= last; ++type) {
    const std::string_view name = name_of(names, type);
    if (!name.empty() && same_but_for_case(name, text)) {
      return "; " + std::string(name) + " is " + std::to_string(type);
    }
  }
  return {};
}

/// How to write what begins as a hexadecimal number that is not read as one.
std::string instead_of_hexadecimal(number_form form, std::string_view text) {
  if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) return {};
  const std::string_view digits = text.substr(2);
  for (const char c : digits) {
    if (zrt4::detail::digit_of(c) == zrt4::detail::no_digit) return {};
  }
  if (form == number_form::decimal_or_hexadecimal) return "; write 0x" + std::string(digits);
  const int64_t value = value_of(digits, 16, false);
  if (value == beyond_all) return {};
  return "; hexadecimal numbers are not read here: write " + std::to_string(value);
}

/// "; write 1000 (it holds U+00A0)"
std::string in_plain_digits(std::string_view text) {
  const std::string plain = plain_number(text);
  const char32_t unseen = first_unseen(text);
  std::string said = plain.empty() || plain == text ? std::string() : "; write " + plain;
  if (unseen != 0) said += " (it holds " + code_point(unseen) + ")";
  return said;
}

std::string advice(const known_element& element, std::string_view text) {
  std::string found = number_of_name(element.names, text);
  if (found.empty()) found = instead_of_hexadecimal(element.form, text);
  return found.empty() ? in_plain_digits(text) : found;
}

std::string range_of(const known_element& element) {
  const auto [least, most] = element.range;
  if (most == number_range{}.most) {
    return least == 0 ? "it is never negative" : "the least is " + std::to_string(least);
  }
  return "it is " + std::to_string(least) + " to " + std::to_string(most);
}

/// Programs that read masks write masks: "; as a mask it is BPM_2010".
std::string as_mask(number_names names, int64_t number) {
  const auto mask = static_cast<std::uint32_t>(number);
  const bool is_event = names == number_names::event_types;
  for (int type = 0; type <= (is_event ? last_event_type : last_data_type); ++type) {
    const std::string text = std::to_string(type);
    const std::uint32_t its_mask = is_event ? zrt4::detail::event_type_of(text.c_str(), true)
                                            : zrt4::detail::data_type_of(text.c_str(), true);
    const std::string_view name = name_of(names, type);
    if (its_mask == mask && !name.empty()) return "; as a mask it is " + std::string(name);
  }
  return {};
}

void find_type_without_name(const known_element& element, int64_t number, file_place place,
                            finding_list& found) {
  if (is_used(element.names, number)) return;
  const bool is_event = element.names == number_names::event_types;
  found.add(is_event ? rule::unknown_event_type : rule::unknown_data_type, place, [&] {
    return (is_event ? "event type " : "data type ") + std::to_string(number) + " has no name" +
           (element.form == number_form::type ? as_mask(element.names, number) : "");
  });
}

std::string shown_fraction(float number) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  return {text.data(), end};
}

/// A text that is a decimal number and nothing else, maybe with a fraction and a power of ten.
struct decimal_fraction {
  bool is_whole = false;
  bool is_zero = true;  ///< all of its digits are
};

decimal_fraction fraction_in(std::string_view text) {
  decimal_fraction result;
  std::size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  std::size_t digits = 0;
  const auto skip_digits = [&] {
    for (; at < text.size() && is_digit(text[at]); ++at, ++digits) {
      if (text[at] != '0') result.is_zero = false;
    }
  };
  skip_digits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    skip_digits();
  }
  if (digits == 0) return result;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    if (at == text.size()) return result;
    while (at < text.size() && is_digit(text[at])) ++at;
  }
  result.is_whole = at == text.size();
  return result;
}

std::string instead_of_fraction(std::string_view text) {
  std::string plain(text);
  const std::size_t comma = plain.find(',');
  if (comma != plain.npos) plain[comma] = '.';
  const bool is_percent = plain.size() > 1 && plain.back() == '%';
  if (is_percent) plain.pop_back();
  plain = trimmed(plain);
  if ((comma == text.npos && !is_percent) || !fraction_in(plain).is_whole) {
    return in_plain_digits(text);
  }
  if (!is_percent) return "; write " + plain;
  return "; as a part of one it is " +
         shown_fraction(static_cast<float>(std::strtod(plain.c_str(), nullptr) / 100));
}

void find_in_fraction(std::string_view shown, const char* text, file_place place,
                      finding_list& found) {
  const std::string_view trimmed_text = trimmed(text);
  float number = 0;
  const bool is_read = zrt4::detail::read_number(text, number);
  const decimal_fraction said = fraction_in(trimmed_text);
  const auto says = [&](std::string_view what) {
    return std::string(shown) + ": " + quoted(trimmed_text) + std::string(what);
  };
  const auto as_read = [&] { return "read as " + shown_fraction(number); };
  if (!is_read) {
    found.add(rule::not_a_number, place, [&] {
      return says(" is no number, and leaves what was there, at first 0") +
             instead_of_fraction(trimmed_text);
    });
  } else if (!said.is_whole) {
    char* end = nullptr;
    const float whole = std::strtof(text, &end);
    const bool is_all = trimmed(end).empty();
    if (!is_all) {
      found.add(rule::rest_ignored, place, [&] {
        return says(" is ") + as_read() + ", the rest is ignored" +
               instead_of_fraction(trimmed_text);
      });
    } else if (!std::isfinite(whole)) {
      found.add(rule::impossible_number, place, [&] { return says(" is no threshold"); });
    }
  } else if (!std::isfinite(number) || (number == 0 && !said.is_zero)) {
    found.add(rule::out_of_range, place, [&] { return says(" does not fit, ") + as_read(); });
  }
  if (number < 0 && std::isfinite(number)) {
    found.add(rule::impossible_number, place,
              [&] { return says(" makes no sense: it is never negative"); });
  }
}

}  // namespace

bool makes_an_event(const char* text) {
  const int64_t type = read(number_form::listed_type, text);
  return type >= 0 && type <= last_event_type;
}

std::optional<int64_t> find_in_number(const known_element& element, std::string_view shown,
                                      const char* text, file_place place, finding_list& found) {
  if (element.form == number_form::fraction) {
    find_in_fraction(shown, text, place, found);
    return {};
  }
  const written_number said = written(text, element.form == number_form::decimal_or_hexadecimal);
  const int64_t number = read(element.form, text);
  const auto about = [&](std::string_view what) {
    return std::string(shown) + ": " + quoted(trimmed(text)) + std::string(what);
  };
  const auto as_read = [&] { return "read as " + with_name(element.names, number); };
  if (!said.is_whole) {
    const bool is_part = !said.digits.empty() && says(number, element.form, said);
    found.add(is_part ? rule::rest_ignored : rule::not_a_number, place, [&] {
      return about(is_part ? " is " : " is no number, ") + as_read() +
             (is_part ? ", the rest is ignored" : "") + advice(element, trimmed(text));
    });
    return {};
  }
  if (element.form == number_form::listed_type && !makes_an_event(text)) {
    found.add(rule::event_skipped, place, [&] {
      return "event type " + shortened(std::string(said.digits)) + " is none of 0 to " +
             std::to_string(last_event_type) + ": the whole event is skipped";
    });
    return {};
  }
  if (!says(number, element.form, said)) {
    found.add(rule::out_of_range, place, [&] { return about(" does not fit, ") + as_read(); });
    return {};
  }
  if (element.names == number_names::none &&
      (number < element.range.least || number > element.range.most)) {
    found.add(rule::impossible_number, place,
              [&] { return about(" makes no sense: ") + range_of(element); });
  }
  find_type_without_name(element, said.value, place, found);
  return number;
}
