#include "camera_findings.hh"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
#include <xercesc/sax/SAXParseException.hpp>

#include "blanks.hh"
#include "camera_walk.hh"
#include "input_file.hh"
#include "known_elements.hh"
#include "local_text.hh"
#include "scan.hh"
#include "shown_text.hh"
#include "similar_names.hh"
#include "terminal.hh"
#include "unseen_characters.hh"
#include "zrt4_gige_descr.hh"

using zrt4::detail::to_local;

namespace {

constexpr std::string_view category = "Category";

bool is_blank_text(std::string_view text) {
  return trimmed(text).empty();
}

/// A text as it is shown where it became part of a record.
std::string shown_text(std::string_view text) {
  if (!is_blank_text(text)) return quoted(text);
  return text.find('\n') != text.npos ? "a line break" : "a blank";
}

bool is_any_of(const char* const* names, std::size_t count, std::string_view name) {
  return std::find(names, names + count, name) != names + count;
}

/// The name in a table that a person may have meant, or null.
template <std::size_t Count>
const char* similar_in(const char* const (&names)[Count], std::string_view written) {
  const auto* const found = std::find_if(std::begin(names), std::end(names), [&](const char* each) {
    return is_misspelt(written, each);
  });
  return found != std::end(names) ? *found : nullptr;
}

std::string_view behind_prefix(std::string_view name) {
  return name.substr(name.rfind(':') + 1);
}

class camera_pass : public camera_walk {
 public:
  explicit camera_pass(finding_list& into) : found(into) {}

  /// What becomes clear only at the end.
  void finish();

 private:
  /// An element with a name that is no feature.
  struct other_element {
    std::string element;
    file_place place;
    bool stands_as_feature;
  };
  struct offer {
    std::string category;
    file_place place;
  };
  struct occurrences {
    std::size_t number = 0;
    std::vector<file_place> places;
  };

  void warning(const xercesc::SAXParseException& exception) override { error(exception); }
  void error(const xercesc::SAXParseException& exception) override {
    const file_place place{exception.getLineNumber(), exception.getColumnNumber()};
    std::string text = to_local(exception.getMessage());
    if (!open_elements().empty()) {
      const camera_element& last = open_elements().back();
      text += where_begun(text, last.name, last.place, place);
    }
    found.add(rule::damage, place, std::move(text));
  }
  void fatalError(const xercesc::SAXParseException& exception) override { error(exception); }

  void feature_ended(const camera_feature& feature) override;
  void element_began(camera_element& element, xercesc::AttributeList& attributes) override;
  void element_ended(const camera_element& element) override;

  void check_name(const camera_feature& feature);
  void check_key(const std::string& what, const std::string& name, file_place place);
  void check_text(const camera_feature& feature, const camera_feature::text& text);
  void check_own_text(const camera_feature& feature, const opened_text& text);
  void check_attribute(const camera_element& element, const std::string& attribute);
  bool check_spelling(const camera_element& element);
  void check_dropped_text(const camera_element& element);
  bool find_record_of_others(const camera_element& element);
  void find_unlisted();

  finding_list& found;
  std::map<std::string, occurrences> names;
  std::map<std::string, offer> offered;
  std::map<std::string, other_element> others;
  bool has_categories = false;
};

void camera_pass::feature_ended(const camera_feature& feature) {
  check_name(feature);
  for (const camera_feature::text& each : feature.texts) {
    if (each.last != nullptr) check_text(feature, each);
  }
}

void camera_pass::check_name(const camera_feature& feature) {
  if (feature.has_name && is_mark_of_reader(feature.written_name)) {
    found.add(rule::reserved_text, feature.place,
              feature.element + " has the name " + quoted(feature.written_name) +
                  ", with which the reader marks one that is missing: it is not kept");
  } else if (feature.has_name && feature.written_name.empty()) {
    found.add(rule::feature_without_name, feature.place,
              feature.element + " has an empty Name: it is not listed");
  } else if (!feature.has_name && is_mark_of_reader(feature.name)) {
    found.add(rule::feature_without_name, feature.place,
              feature.element + " without Name is not listed");
  }
  if (!feature.named_by.empty()) {
    found.add(rule::name_of_another, feature.place,
              feature.element + " without a name of its own takes that of " + feature.named_by +
                  in_line(feature.named_at));
  }
  if (feature.name.empty() || is_mark_of_reader(feature.name)) return;
  check_key("the Name ", feature.name, feature.place);
  occurrences& of_name = names[feature.name];
  if (of_name.number++ < finding_list::most_places) of_name.places.push_back(feature.place);
}

/// What others look for, character by character.
void camera_pass::check_key(const std::string& what, const std::string& name, file_place place) {
  if (is_blank_text(name)) return;
  if (trimmed(name) != name) {
    found.add(rule::blanks_around_name, place,
              what + quoted(name) + " begins or ends with a blank");
  }
  const char32_t unseen = first_unseen(name);
  if (unseen == 0) return;
  found.add(rule::unseen_character, place,
            what + quoted(name) + " holds " + code_point(unseen) + ", which nobody sees");
}

void camera_pass::check_text(const camera_feature& feature, const camera_feature::text& text) {
  const opened_text& last = *text.last;
  if (last.is_own) return check_own_text(feature, last);
  // A text of something else that says the same does no harm.
  if (text.own != nullptr && trimmed(text.own->read) == trimmed(last.read)) return;
  found.add(rule::text_of_another, last.place,
            last.element + " of " + last.parent + " becomes that of " + feature.shown() +
                in_line(feature.place) + ", the feature that began last" +
                (text.own != nullptr ? ", instead of its own" + in_line(text.own->place) : ""));
}

void camera_pass::check_own_text(const camera_feature& feature, const opened_text& text) {
  using source = opened_text::source;
  const std::string its = text.element + " of " + feature.shown();
  if (text.replaces.line != 0) {
    found.add(rule::repeated_element, text.place,
              its + " stands here again and replaces the one before" + in_line(text.replaces));
  }
  const bool is_read = text.filled_by == source::itself || text.filled_by == source::name_attribute;
  const bool is_control_name = text.element == MoreTags[MORE_TAGS_PVRENAME];
  if (is_read && is_control_name && !is_mark_of_reader(text.read)) {
    check_key(its + ": ", text.read, text.place);
  }
  if (text.filled_by == source::name_attribute) return;
  const bool is_lost = !is_blank_text(text.written) && text.filled_by != source::itself;
  if (is_lost && text.has_section) {
    found.add(rule::section_text, text.place,
              its + " is a CDATA section, which is not read" +
                  (text.filled_by == source::none
                       ? std::string(": it stays empty")
                       : ": it becomes " + shown_text(text.read) + " behind it"));
  } else if (text.filled_by == source::itself) {
    if (is_mark_of_reader(text.read)) {
      found.add(rule::reserved_text, text.place,
                its + " is " + quoted(text.read) +
                    ", with which the reader marks a text that is missing: it is not kept");
    } else if (trimmed(text.read) != trimmed(text.written)) {
      found.add(rule::interrupted_text, text.place,
                its + " is interrupted: of " + quoted(trimmed(text.written)) + " only " +
                    shown_text(text.read) + " is read");
    }
  } else if (text.filled_by == source::another_name) {
    found.add(rule::text_of_another, text.place,
              "the empty " + its + " takes the Name of " + text.filler);
  } else if (text.filled_by == source::another_text && is_blank_text(text.read)) {
    found.add(rule::empty_element, text.place,
              "the empty " + its + " becomes " + shown_text(text.read) + " behind it");
  } else if (text.filled_by == source::another_text) {
    found.add(
        rule::text_of_another, text.place,
        "the empty " + its + " takes the next text, " + quoted(text.read) + " of " + text.filler);
  }
}

void camera_pass::element_began(camera_element& element, xercesc::AttributeList& attributes) {
  if (element.name == category) has_categories = true;
  const auto& all = open_elements();
  if (all.size() > 1) element.keeps_text = all[all.size() - 2].name == category;
  if (element.feature != nullptr && element.is_in_feature) {
    const auto around = std::find_if(all.rbegin() + 1, all.rend(),
                                     [](const auto& each) { return each.feature != nullptr; });
    found.add(rule::nested_record, element.place,
              element.shown + " stands within " + around->shown + in_line(around->place) +
                  ": what follows belongs to the inner one");
  }
  if (element.feature == nullptr && element.name != MoreTags[MORE_TAGS_PVRENAME]) return;
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
    check_attribute(element, to_local(attributes.getName(i)));
  }
}

void camera_pass::check_attribute(const camera_element& element, const std::string& attribute) {
  if (attribute == Attributes[ATTRIBUTE_NAME]) return;
  if (const char* const meant = similar_in(Attributes, attribute)) {
    found.add(rule::stray_attribute, element.place,
              "the attribute " + quoted(attribute) + " of " + element.shown +
                  " is not read; did you mean " + quoted(meant) + "?");
  } else if (element.feature != nullptr &&
             (is_any_of(MoreTags, MORE_TAGS_MAX, attribute) || similar_in(MoreTags, attribute))) {
    found.add(rule::stray_attribute, element.place,
              "the attribute " + quoted(attribute) + " of " + element.shown +
                  " is not read: it would be an element within it");
  }
}

// Elements that only group may have any name. One that holds features groups them.
bool camera_pass::check_spelling(const camera_element& element) {
  if (element.holds_feature || element.feature != nullptr || element.text != nullptr) return false;
  const std::string_view name = behind_prefix(element.name);
  const bool has_prefix = name != element.name;
  const auto meant_in = [&](const auto& table) -> const char* {
    if (has_prefix && is_any_of(table, std::size(table), name)) {
      return *std::find(std::begin(table), std::end(table), name);
    }
    return similar_in(table, element.name);
  };
  if (const char* const meant = meant_in(FeatureTags)) {
    found.add(rule::misspelt_element, element.place,
              element.shown + " is not listed; did you mean " + quoted(meant) + "?");
    return true;
  }
  const char* const meant = meant_in(MoreTags);
  if (meant != nullptr && std::string_view(meant) != MoreTags[MORE_TAGS_EXTENSION]) {
    found.add(rule::misspelt_element, element.place,
              "no reader knows the element " + quoted(element.name) + "; did you mean " +
                  quoted(meant) + "?");
    return true;
  }
  if (element.is_in_feature && is_any_of(Attributes, ATTRIBUTE_MAX, element.name)) {
    found.add(rule::misspelt_element, element.place,
              "no reader knows the element " + quoted(element.name) +
                  "; it is an attribute of the feature");
    return true;
  }
  return false;
}

void camera_pass::element_ended(const camera_element& element) {
  if (element.keeps_text && element.text == nullptr) {
    const std::string name(trimmed(element.kept_text));
    if (!name.empty()) offered.insert({name, {open_elements().back().shown, element.place}});
  }
  check_dropped_text(element);
  if (find_record_of_others(element) || check_spelling(element)) return;
  const bool is_other = element.feature == nullptr && element.text == nullptr &&
                        element.name != category && !element.name_attribute.empty();
  if (!is_other) return;
  others.insert({element.name_attribute,
                 {element.name, element.place, !element.is_in_feature && !element.holds_feature}});
}

// What was pasted from another document. Elements that hold features may have any name.
bool camera_pass::find_record_of_others(const camera_element& element) {
  if (element.feature != nullptr || element.holds_feature || !element.holds_elements) return false;
  for (const known_elements* const table :
       {&known_in_events, &known_in_channels, &known_in_variables, &known_in_dictionary}) {
    for (const known_element& each : *table) {
      if (each.begins != part::record || each.name != element.name) continue;
      found.add(rule::misplaced_element, element.place,
                element.shown + " is a record of another kind of document: nothing of it is read");
      return true;
    }
  }
  return false;
}

// Of an element that the reader does not know, a text alone is for others.
void camera_pass::check_dropped_text(const camera_element& element) {
  const bool is_stray =
      element.feature != nullptr || (element.text == nullptr && element.holds_elements);
  if (element.dropped_text.empty() || !is_stray) return;
  found.add(rule::stray_text, element.dropped_place,
            "the text " + quoted(trimmed(element.dropped_text)) + " directly within " +
                element.shown + " is not read");
}

// Where categories say what a camera offers, all else is the means to it.
void camera_pass::find_unlisted() {
  for (const auto& [name, other] : others) {
    const auto in = offered.find(name);
    if (in != offered.end()) {
      found.add(rule::unlisted_feature, other.place,
                other.element + " " + quoted(name) + " is offered in " + in->second.category +
                    in_line(in->second.place) + " but not listed: the reader knows no " +
                    quoted(other.element));
    } else if (!has_categories && other.stands_as_feature) {
      found.add(rule::unlisted_feature, other.place,
                other.element + " " + quoted(name) + " is not listed: the reader knows no " +
                    quoted(other.element));
    }
  }
}

void camera_pass::finish() {
  camera_walk::finish();
  for (auto& [name, of_name] : names) {
    if (of_name.number == 1) continue;
    const file_place first = of_name.places.front();
    std::string text = "feature " + quoted(name) + " stands here " +
                       times_and_lines(of_name.places, of_name.number);
    found.add(rule::duplicate_feature, first, std::move(text), std::move(of_name.places));
  }
  find_unlisted();
}

}  // namespace

void find_in_camera(input_file& file, finding_list& found) {
  camera_pass pass(found);
  const std::string thrown =
      scan_document(file.path(), pass, xercesc::SAXParser::Val_Never, true, {}, &pass);
  if (!thrown.empty()) found.add(rule::damage, {}, thrown);
  pass.finish();
}
