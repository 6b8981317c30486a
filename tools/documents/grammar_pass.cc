#include "grammar_pass.hh"

#include <algorithm>
#include <charconv>
#include <set>

#include "blanks.hh"
#include "local_text.hh"
#include "shown_text.hh"
#include "text_place.hh"

using zrt4::detail::to_local;

namespace {

bool is_all_blank(const std::basic_string<XMLCh>& text) {
  return std::all_of(text.begin(), text.end(), [](XMLCh each) { return is_blank(each); });
}

std::size_t characters_in(const std::basic_string<XMLCh>& text) {
  const auto is_second_half = [](XMLCh each) { return each >= 0xdc00 && each < 0xe000; };
  const auto halves = std::count_if(text.begin(), text.end(), is_second_half);
  return text.size() - static_cast<std::size_t>(halves);
}

std::string_view without_plus(std::string_view number) {
  const bool has_plus = number.size() > 1 && number[0] == '+' && number[1] != '-';
  return has_plus ? number.substr(1) : number;
}

/// Whether a text is wholly one number.
template <class Number, class... Base>
bool read_whole(std::string_view text, Number& number, Base... base) {
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number, base...);
  return result.ec == std::errc() && result.ptr == end;
}

bool is_count(std::string_view text) {
  constexpr std::string_view hexadecimal = "0x";
  std::uint32_t number = 0;
  if (text.substr(0, hexadecimal.size()) != hexadecimal) {
    return read_whole(without_plus(text), number);
  }
  text.remove_prefix(hexadecimal.size());
  return text.size() <= 8 && read_whole(text, number, 16);
}

bool is_fraction(std::string_view text) {
  for (const std::string_view word : {"inf", "-inf", "nan", "-nan", "INF", "-INF", "NaN"}) {
    if (text == word) return true;
  }
  if (text.find_first_not_of("+-.0123456789eE") != text.npos) return false;
  double number = 0;
  text = without_plus(text);
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec != std::errc::invalid_argument && result.ptr == end;
}

bool is_of(const text_grammar& grammar, std::string_view text) {
  std::int32_t number = 0;
  switch (grammar.what) {
    case text_grammar::number:
      return read_whole(without_plus(text), number);
    case text_grammar::count:
      return is_count(text);
    case text_grammar::fraction:
      return is_fraction(text);
    case text_grammar::one_of:
      return read_whole(without_plus(text), number) &&
             std::any_of(grammar.numbers.begin(), grammar.numbers.end(),
                         [&](const named_number& each) { return each.number == number; });
    default:
      return true;
  }
}

/// Calls `use` with each element of the grammar and each that may be in it.
template <class Use>
void for_each_child(const element_grammar& parent, Use use) {
  for (const element_group& group : parent.content->groups) {
    for (const element_group::member& child : group.members) {
      use(parent, child.element);
      for_each_child(child.element, use);
    }
  }
}

std::string joined(const std::set<std::string>& names) {
  std::string list;
  std::size_t rest = names.size();
  for (const std::string& name : names) {
    list += name;
    --rest;
    if (rest != 0) list += rest == 1 ? " or " : ", ";
  }
  return list;
}

bool is_for_the_schema(std::string_view attribute, bool in_root) {
  constexpr std::string_view prefix_declaration = "xmlns:";
  return attribute.substr(0, prefix_declaration.size()) == prefix_declaration ||
         (in_root && attribute == "xsi:noNamespaceSchemaLocation");
}

}  // namespace

// What a person is told of an element that does not belong where it stands.
std::string grammar_pass::stranger(const std::string& name) const {
  std::set<std::string> parents;
  for_each_child(grammar.root, [&](const element_grammar& parent, const element_grammar& child) {
    if (child.name == name) parents.insert(parent.name);
  });
  const std::string& here = open.back().grammar->name;
  if (parents.empty()) return quoted(name) + " is no element of the grammar";
  return name + " does not belong in " + here + ", but in " + joined(parents);
}

void grammar_pass::startElement(const XMLCh* const given, xercesc::AttributeList& attributes) {
  const std::string name = to_local(given);
  open_element element;
  element.place = {locator->getLineNumber(), locator->getColumnNumber()};
  std::string wrong;
  if (open.empty()) {
    if (name == grammar.root.name) element.grammar = &grammar.root;
  } else if (open.back().grammar != nullptr) {
    open.back().has_elements = true;
    element.grammar = judge_place(name, wrong);
  }
  open.push_back(std::move(element));
  if (!wrong.empty()) tell_here(std::move(wrong));
  if (open.back().grammar != nullptr) judge_attributes(attributes);
}

const element_grammar* grammar_pass::judge_place(const std::string& name, std::string& wrong) {
  open_element& parent = open.back();
  const auto& groups = parent.grammar->content->groups;
  for (std::size_t group = 0; group < groups.size(); ++group) {
    for (const element_group::member& each : groups[group].members) {
      if (each.element.name != name) continue;
      const bool is_again =
          std::find(parent.seen.begin(), parent.seen.end(), &each) != parent.seen.end();
      if (!is_again) parent.seen.push_back(&each);
      if (is_again && !groups[group].repeated) {
        wrong = name + " stands in this " + parent.grammar->name + " already";
      } else if (group < parent.group) {
        wrong = name + " comes too late in " + parent.grammar->name + ": it belongs before " +
                parent.group_begun_by;
      } else if (group > parent.group) {
        parent.group = group;
        parent.group_begun_by = name;
      }
      return &each.element;
    }
  }
  wrong = stranger(name);
  return nullptr;
}

void grammar_pass::judge_attributes(xercesc::AttributeList& attributes) {
  const element_grammar& element = *open.back().grammar;
  const auto& wanted = element.content->attribute;
  bool is_there = false;
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
    const std::string name = to_local(attributes.getName(i));
    if (wanted && name == wanted->name) {
      is_there = true;
      judge_text("the attribute " + name, *wanted->text, attributes.getValue(i));
    } else if (!is_for_the_schema(name, open.size() == 1)) {
      tell_here(element.name + " has no attribute " + quoted(name) + " in the grammar");
    }
  }
  if (wanted && !is_there) tell_here(element.name + " lacks the attribute " + wanted->name);
}

void grammar_pass::characters(const XMLCh* const chars, const XMLSize_t length) {
  if (open.empty() || open.back().grammar == nullptr) return;
  open_element& here = open.back();
  (here.has_elements ? here.rest : here.text).append(chars, length);
  const bool may_be_there = !here.has_elements && here.grammar->content->text != nullptr;
  if (may_be_there || here.stray.line != 0 || is_all_blank({chars, length})) return;
  here.stray = place_of_text(chars, length, {locator->getLineNumber(), locator->getColumnNumber()},
                             here.place);
}

void grammar_pass::endElement(const XMLCh* const /*name*/) {
  if (open.back().grammar != nullptr) {
    judge_text();
    find_missing();
  }
  open.pop_back();
}

void grammar_pass::judge_text() {
  const open_element& here = open.back();
  const std::string& name = here.grammar->name;
  const auto tell_of = [&](const xml_string& text, const char* where) {
    tell(here.stray, "the text " + quoted(trimmed(to_local(text.c_str()))) + " in " + name + where);
  };
  if (here.grammar->content->text != nullptr) {
    judge_text(name, *here.grammar->content->text, here.text);
  } else if (!is_all_blank(here.text)) {
    tell_of(here.text, ", where only elements belong");
    return;
  }
  if (!is_all_blank(here.rest)) tell_of(here.rest, ", where only elements belong");
}

void grammar_pass::judge_text(const std::string& holder, const text_grammar& text,
                              const xml_string& found) {
  if (text.what != text_grammar::any) {
    const std::string shown = to_local(found.c_str());
    const std::string_view number = trimmed(shown);
    if (is_of(text, number)) return;
    tell_here(holder + (number.empty() ? " is empty" : " holds " + quoted(number)) + ": " +
              description_of(text) + " belongs there");
    return;
  }
  const std::size_t length = characters_in(found);
  if (length < text.shortest) {
    tell_here(holder + " is empty");
  } else if (text.longest != 0 && length > text.longest) {
    tell_here(holder + " has " + std::to_string(length) + " characters, more than " +
              std::to_string(text.longest));
  }
}

void grammar_pass::find_missing() {
  const open_element& here = open.back();
  for (const element_group& group : here.grammar->content->groups) {
    for (const element_group::member& each : group.members) {
      const bool is_there = std::find(here.seen.begin(), here.seen.end(), &each) != here.seen.end();
      if (each.required && !is_there) {
        tell_here(here.grammar->name + " lacks " + each.element.name);
      }
    }
  }
}
