#include "odd_numbers.hh"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

#include "blanks.hh"
#include "findings.hh"
#include "input_file.hh"
#include "json_text.hh"
#include "mapped_file.hh"
#include "message.hh"
#include "told_lines.hh"

namespace {

// As many of a rule as are looked at; most are only counted later.
constexpr std::size_t most_of_a_rule = 1000;

bool is_number_read_as_another(rule what) {
  return what == rule::not_a_number || what == rule::rest_ignored || what == rule::out_of_range;
}

bool is_plain_fraction(std::string_view text) {
  constexpr std::size_t enough = 12;  // signs, so that it neither overflows nor becomes 0
  if (!text.empty() && text[0] == '-') text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  constexpr std::string_view digits = "0123456789";
  return point != 0 && text.size() <= enough &&
         text.substr(0, point).find_first_not_of(digits) == text.npos &&
         text.substr(std::min(point + 1, text.size())).find_first_not_of(digits) == text.npos;
}

bool is_read_as_it_stands(std::string_view text, number_form form) {
  text = trimmed(text);
  if (form == number_form::fraction) return is_plain_fraction(text);
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return false;
  if (form == number_form::decimal_or_hexadecimal) {
    return number >= 0 && number <= std::numeric_limits<std::uint32_t>::max();
  }
  return number >= std::numeric_limits<std::int32_t>::min() &&
         number <= std::numeric_limits<std::int32_t>::max();
}

/// Walks the tags of a document as bytes.
class tag_walk {
 public:
  tag_walk(std::string_view of, const known_elements& elements) : text(of) {
    for (const known_element& each : elements) {
      if (each.role == text_role::number || each.attribute != nullptr) numbers.push_back(&each);
    }
  }

  bool finds_an_odd_one() {
    for (std::size_t at = 0; (at = text.find('<', at)) != text.npos; ++at) {
      const std::string_view rest = text.substr(at + 1);
      for (const known_element* const each : numbers) {
        if (starts(rest, each->name) && may_be_odd(*each, rest.substr(each->name.size()))) {
          return true;
        }
      }
    }
    return false;
  }

 private:
  static bool starts(std::string_view rest, std::string_view name) {
    constexpr std::string_view ends = "> \t\r\n/";
    return rest.size() > name.size() && rest.compare(0, name.size(), name) == 0 &&
           ends.find(rest[name.size()]) != ends.npos;
  }

  // What stands behind the name of a start tag.
  static bool may_be_odd(const known_element& element, std::string_view rest) {
    const std::size_t tag_end = rest.find('>');
    if (tag_end == rest.npos) return true;
    const std::string_view attributes = rest.substr(0, tag_end);
    if (element.attribute != nullptr && !is_plain_attribute(element, attributes)) return true;
    if (element.role != text_role::number) return false;
    if (!attributes.empty()) return true;
    const std::string_view text = rest.substr(1, rest.find('<') - 1);
    return !is_read_as_it_stands(text, element.form);
  }

  // NAME="NUMBER" and nothing else.
  static bool is_plain_attribute(const known_element& element, std::string_view attributes) {
    attributes = trimmed(attributes);
    const std::string_view name = element.attribute;
    if (attributes.substr(0, name.size()) != name) return false;
    attributes.remove_prefix(name.size());
    if (attributes.size() < 3 || attributes[0] != '=') return false;
    const char quote = attributes[1];
    if ((quote != '"' && quote != '\'') || attributes.back() != quote) return false;
    return is_read_as_it_stands(attributes.substr(2, attributes.size() - 3), element.form);
  }

  std::string_view text;
  std::vector<const known_element*> numbers;
};

// So that the names of elements are the bytes that stand here.
bool is_like_ascii(std::string_view document) {
  constexpr std::string_view first = "<\xef \t\r\n";
  return !document.empty() && first.find(document[0]) != first.npos &&
         document.find('\0') == document.npos;
}

}  // namespace

bool may_have_odd_numbers(std::string_view document, const known_elements& elements) {
  return !is_like_ascii(document) || tag_walk(document, elements).finds_an_odd_one();
}

std::vector<std::string> odd_numbers_in(input_file& file, document_kind kind) {
  if (is_json(file)) return {};
  const known_elements& elements = traits_of(kind).elements;
  if (!may_have_odd_numbers(mapped_file(file.path()).content(), elements)) return {};
  std::vector<std::string> lines;
  tallies alike;
  for (const finding& each : findings_of(file, kind, most_of_a_rule, true)) {
    if (!is_number_read_as_another(each.what)) continue;
    if (!alike.add(traits_of(each.what).name)) continue;
    lines.push_back(message_line(file.name() + each.place.shown(), each.text));
  }
  for (const std::string& each : alike.others("are read as others than are written")) {
    lines.push_back(message_line(file.name(), each));
  }
  return lines;
}
