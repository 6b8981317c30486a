#include "unread.hh"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "channel_fields.hh"
#include "input_file.hh"
#include "json_text.hh"
#include "local_text.hh"
#include "scan.hh"
#include "terminal.hh"

using zrt4::detail::to_local;

namespace {

using texts_by_element = std::map<std::string, std::vector<std::string>, std::less<>>;

/// Elements that readers skip, each with the texts that say nothing.
texts_by_element skipped_elements(document_kind kind) {
  namespace names = zrt4::detail::variable_dialect_names;
  texts_by_element result;
  for (const known_element& each : traits_of(kind).elements) {
    if (each.role == text_role::ignored) result[std::string(each.name)];
  }
  result.erase("isodate");  // of writing
  if (kind != document_kind::variables) return result;
  const chan_descr_2010 unknown;
  for (const auto& field : zrt4::detail::tables::channel) {
    if (!field.variable || field.variable_is_read) continue;
    zrt4::detail::with_value(field.member, unknown, [&](const auto& value) {
      if constexpr (std::is_array_v<std::remove_reference_t<decltype(value)>>) {
        result[std::string(field.variable.name)] = {value};
      } else {
        result[std::string(field.variable.name)] = {std::to_string(value)};
      }
    });
  }
  result[names::first_index] = {"0"};
  result[names::frequency] = {"1", "-1"};
  return result;
}

std::string without_blanks_around(const std::string& text) {
  constexpr const char* blanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(blanks);
  return begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

// Most are only counted later.
constexpr std::size_t most_of_a_rule = 1000;

constexpr std::size_t wide_limit = sizeof(chan_descr_2010::prop_name) - 1;

bool is_property(const known_elements& elements, std::string_view name) {
  return std::any_of(elements.begin(), elements.end(), [&](const known_element& each) {
    return each.key.noun == "property" && each.name == name;
  });
}

class located_handler : public xercesc::HandlerBase {
 public:
  void setDocumentLocator(const xercesc::Locator* const given) override { locator = given; }
  // The reader has told it.
  void fatalError(const xercesc::SAXParseException& /*exception*/) override {}

 protected:
  file_place here() const { return {locator->getLineNumber(), locator->getColumnNumber()}; }

 private:
  const xercesc::Locator* locator = nullptr;
};

class unread_pass : public located_handler {
 public:
  explicit unread_pass(document_kind kind) : skipped(skipped_elements(kind)) {}

  void startElement(const XMLCh* const given, xercesc::AttributeList& /*attributes*/) override {
    name = to_local(given);
    place = here();
    text.clear();
    in_skipped = skipped.find(name);
  }
  void characters(const XMLCh* const chars, const XMLSize_t length) override {
    if (in_skipped == skipped.end()) return;
    text += to_local(std::basic_string<XMLCh>(chars, length).c_str());
  }
  void endElement(const XMLCh* const /*name*/) override {
    if (in_skipped == skipped.end()) return;
    const std::string said = without_blanks_around(text);
    const std::vector<std::string>& nothing = in_skipped->second;
    if (!said.empty() && std::find(nothing.begin(), nothing.end(), said) == nothing.end()) {
      found.push_back(
          {"skipped_text", place,
           "readers skip " + name + ": '" + shortened(printable(said)) + "' does not arrive"});
    }
    in_skipped = skipped.end();
  }
  void processingInstruction(const XMLCh* const /*target*/, const XMLCh* const /*data*/) override {
    tell("processing instruction");
  }
  void tell(const char* what) {
    found.push_back({what, here(), std::string("a ") + what + " does not arrive"});
  }

  std::vector<unread> found;

 private:
  const texts_by_element skipped;
  texts_by_element::const_iterator in_skipped = skipped.end();
  std::string name;
  file_place place;
  std::string text;
};

// What a record holds as it stands arrives as it stands, however odd it is; and the readers of the
// element dialect and of dictionaries list every record of a key.
bool loses_nothing(rule what, document_kind kind, read_as how) {
  switch (what) {
    case rule::damage:
    case rule::loose_element:
    case rule::channel_without_name:
    case rule::channel_without_event_type:
    case rule::empty_element:
    case rule::empty_list:
    case rule::impossible_number:
    case rule::unknown_data_type:
    case rule::duplicate_index:
    case rule::duplicate_name:
    case rule::duplicate_event_type:
    case rule::duplicate_block:
    case rule::duplicate_channel:
    case rule::duplicate_number:
    case rule::blanks_around_name:
    case rule::blanks_around_text:
    case rule::unseen_character:
    case rule::replacement_character:
      return true;
    case rule::unknown_event_type:
      return !how.masks;
    case rule::duplicate_property:
      return kind != document_kind::variables;
    default:
      return false;
  }
}

class place_pass : public located_handler {
 public:
  using places = std::map<std::string, std::vector<file_place>, std::less<>>;

  place_pass(document_kind kind, places& into) : known(traits_of(kind).elements), found(into) {}

  void startElement(const XMLCh* const given, xercesc::AttributeList& /*attributes*/) override {
    const std::string name = to_local(given);
    in_property = is_property(known, name);
    place = here();
  }
  void characters(const XMLCh* const chars, const XMLSize_t length) override {
    if (!in_property) return;
    const std::string text = to_local(std::basic_string<XMLCh>(chars, length).c_str());
    for (const std::size_t kept : {wide_limit, narrow_limit}) {
      const auto wanted = found.find(std::string_view(text).substr(0, kept));
      if (wanted == found.end()) continue;
      wanted->second.push_back(place);
      return;
    }
  }

 private:
  static constexpr std::size_t narrow_limit =
      sizeof(zrt4_env_index_dictionary_entry::data.env_prop) - 1;

  const known_elements& known;
  places& found;
  bool in_property = false;
  file_place place;
};

bool is_before(file_place a, file_place b) {
  return a < b;
}

}  // namespace

std::vector<unread> unread_in(input_file& file, document_kind kind, read_as how) {
  if (is_json(file)) return {};  // whose reader takes everything, or tells
  unread_pass pass(kind);
  scan_document(file.path(), pass, xercesc::SAXParser::Val_Auto, true,
                [&](const char* what) { pass.tell(what); });
  const std::vector<unread> others = std::move(pass.found);
  std::vector<unread> all;
  std::size_t next = 0;
  for (const finding& each : findings_of(file, kind, most_of_a_rule, how.wide)) {
    if (loses_nothing(each.what, kind, how)) continue;
    while (next < others.size() && is_before(others[next].place, each.place)) {
      all.push_back(others[next++]);
    }
    // Who tells of a place tells all there is.
    while (next < others.size() && !is_before(each.place, others[next].place)) ++next;
    all.push_back({traits_of(each.what).name, each.place, each.text});
  }
  all.insert(all.end(), others.begin() + static_cast<std::ptrdiff_t>(next), others.end());
  return all;
}

record_places::record_places(input_file& file, document_kind kind,
                             const std::vector<std::string>& properties) {
  for (const std::string& property : properties) places[property];
  if (is_json(file)) return;
  place_pass pass(kind, places);
  scan_document(file.path(), pass, xercesc::SAXParser::Val_Auto, true);
}
