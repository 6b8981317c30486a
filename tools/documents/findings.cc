#include "findings.hh"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "camera_findings.hh"
#include "event_util.hh"
#include "input_file.hh"
#include "local_text.hh"
#include "lost_characters.hh"
#include "scan.hh"
#include "terminal.hh"

using zrt4::detail::to_local;

namespace {

/// Where something stands first, and how often it stands in the document.
struct occurrences {
  file_place first;
  int number = 0;
};

std::string times(int number) {
  return std::to_string(number) + (number == 1 ? " time" : " times");
}

std::string quoted(std::string_view text) {
  return "'" + printable(text) + "'";
}

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\n") == text.npos;
}

// A number beyond 32 bits must not become another one, which may have a name.
bool fits(long long number) {
  return number >= INT_MIN && number <= INT_MAX;
}

bool names_an_event_type(long long number) {
  if (!fits(number)) return false;
  const int type = get_event_struct_type(static_cast<int>(number));
  return type != ZRT4_EV_STRUCT_UNKNOWN && type != ZRT4_EV_STRUCT_UNDEF;
}

bool names_a_data_type(long long number) {
  return fits(number) && std::string_view(block_name_itoa(static_cast<int>(number))) != "UNKNOWN";
}

/// One pass over the elements of a document.
class element_pass : public xercesc::HandlerBase {
 public:
  element_pass(const known_elements& all, finding_list& into) : found(into), known(all) {}

  void setDocumentLocator(const xercesc::Locator* const given) override { locator = given; }
  void startElement(const XMLCh* const name, xercesc::AttributeList& attributes) override;
  void endElement(const XMLCh* const name) override;
  void characters(const XMLCh* const chars, const XMLSize_t length) override;
  void warning(const xercesc::SAXParseException& exception) override { error(exception); }
  void error(const xercesc::SAXParseException& exception) override;
  void fatalError(const xercesc::SAXParseException& exception) override { error(exception); }

  /// What becomes clear only at the end.
  void finish();

  finding_list& found;
  std::map<std::string, occurrences> properties;

 private:
  struct element {
    std::string name;
    const known_element* meaning;
    file_place place;
  };

  const known_element* meaning_of(const std::string& name) const;
  void note_occurrence(occurrences& of) const;
  void add(rule what, std::string text) { found.add(what, open.back().place, std::move(text)); }
  void end_text();
  void end_record();
  void check_text(const known_element& meaning);

  const known_elements& known;
  const xercesc::Locator* locator = nullptr;
  std::vector<element> open;
  std::optional<element> record;  // what was started last, also behind its end tag
  std::set<std::string, std::less<>> texts_of_record;
  std::vector<std::string> pieces;  // of the text at hand
  std::map<std::string, occurrences> unknown;
};

const known_element* element_pass::meaning_of(const std::string& name) const {
  for (const known_element& each : known) {
    if (each.name != name) continue;
    if (each.parent.empty() || (!open.empty() && open.back().name == each.parent)) return &each;
  }
  return nullptr;
}

void element_pass::note_occurrence(occurrences& of) const {
  if (of.number++ != 0) return;
  of.first = open.back().place;
}

void element_pass::startElement(const XMLCh* const name, xercesc::AttributeList& attributes) {
  end_text();
  std::string local_name = to_local(name);
  const known_element* meaning = meaning_of(local_name);
  open.push_back(
      {std::move(local_name), meaning, {locator->getLineNumber(), locator->getColumnNumber()}});
  const element& here = open.back();
  if (meaning != nullptr && !meaning->needs.front().empty()) {
    end_record();
    record = here;
  }
  if (meaning == nullptr && !known.empty()) note_occurrence(unknown[here.name]);
  if (meaning != nullptr && meaning->attribute != nullptr &&
      attributes.getValue(meaning->attribute) == nullptr) {
    add(rule::missing_attribute, here.name + " without the attribute " + meaning->attribute);
  }
}

void element_pass::endElement(const XMLCh* const /*name*/) {
  end_text();
  open.pop_back();
}

void element_pass::characters(const XMLCh* const chars, const XMLSize_t length) {
  pieces.push_back(to_local(std::basic_string<XMLCh>(chars, length).c_str()));
  std::string lost = lost_character(open.back().name, chars, length);
  if (!lost.empty()) add(rule::character_lost, std::move(lost));
}

void element_pass::error(const xercesc::SAXParseException& exception) {
  found.add(rule::damage, {exception.getLineNumber(), exception.getColumnNumber()},
            to_local(exception.getMessage()));
}

void element_pass::end_text() {
  if (!open.empty() && open.back().meaning != nullptr) check_text(*open.back().meaning);
  pieces.clear();
}

void element_pass::end_record() {
  if (record) {
    for (const std::string_view needed : record->meaning->needs) {
      if (needed.empty() || texts_of_record.count(needed) != 0) continue;
      found.add(rule::record_left_out, record->place,
                record->name + " without " + std::string(needed) + " is left out");
    }
  }
  record.reset();
  texts_of_record.clear();
}

void element_pass::check_text(const known_element& meaning) {
  if (meaning.role == text_role::none) return;
  pieces.erase(std::remove_if(pieces.begin(), pieces.end(), is_blank), pieces.end());
  if (pieces.empty()) return;
  texts_of_record.insert(open.back().name);
  const std::string& text = pieces.front();
  const bool is_cut = meaning.limit != 0 && text.size() > meaning.limit;
  // The scanner delivers a very long text in pieces, too; of that the cut is what counts.
  if (pieces.size() > 1 && !is_cut) {
    add(rule::interrupted_text, open.back().name +
                                    " is interrupted by a reference or a comment: only "
                                    "one piece of its text counts");
    return;
  }
  const long long number = std::strtoll(text.c_str(), nullptr, 10);
  if (meaning.role == text_role::event_type && !names_an_event_type(number)) {
    add(rule::unknown_event_type, "event type " + std::to_string(number) + " has no name");
  }
  if (meaning.role == text_role::data_type && !names_a_data_type(number)) {
    add(rule::unknown_data_type, "data type " + std::to_string(number) + " has no name");
  }
  if (meaning.role == text_role::property) note_occurrence(properties[text]);
  if (is_cut) {
    add(rule::text_cut, open.back().name + " has " + (pieces.size() > 1 ? "more than " : "") +
                            std::to_string(text.size()) + " bytes; the record keeps " +
                            std::to_string(meaning.limit) + ": " +
                            quoted(std::string_view(text).substr(0, meaning.limit)));
  }
}

void element_pass::finish() {
  end_record();
  for (const auto& [name, place] : unknown) {
    found.add(rule::unknown_element, place.first,
              "no reader knows the element " + quoted(name) + " (" + times(place.number) + ")");
  }
  for (const auto& [property, place] : properties) {
    if (place.number == 1) continue;
    found.add(rule::duplicate_property, place.first,
              "property " + quoted(property) + " stands here " + times(place.number));
  }
}

std::string_view text_in(const row& record, std::string_view name) {
  for (const row::field& field : record.fields) {
    if (field.name == name) return std::get<std::string_view>(field.value);
  }
  return {};
}

void find_nameless_channels(const std::vector<row>& records, element_pass& pass) {
  for (const row& channel : records) {
    if (!text_in(channel, "name").empty()) continue;
    const std::string property(text_in(channel, "property"));
    const auto place = pass.properties.find(property);
    const occurrences where = place != pass.properties.end() ? place->second : occurrences{};
    pass.found.add(rule::channel_without_name, where.first,
                   "channel " + quoted(property) + " has no name");
  }
}

void find_in_records(input_file& file, document_kind kind, const loaded_document& document,
                     finding_list& found) {
  element_pass pass(traits_of(kind).elements, found);
  const std::string thrown = scan_document(file.path(), pass, xercesc::SAXParser::Val_Auto, true);
  if (!thrown.empty()) found.add(rule::damage, {}, thrown);
  pass.finish();
  if (is_channels(kind)) find_nameless_channels(document.rows, pass);
}

}  // namespace

std::vector<finding> findings_of(input_file& file, document_kind kind,
                                 const loaded_document& document) {
  finding_list found;
  if (kind == document_kind::camera) {
    find_in_camera(file, document, found);
  } else {
    find_in_records(file, kind, document, found);
  }
  return found.take();
}
