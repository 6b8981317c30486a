#include "element_walk.hh"

#include <algorithm>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "blanks.hh"
#include "direct_scanner.hh"
#include "shown_text.hh"
#include "text_place.hh"

using zrt4::detail::to_local;

namespace {

// More than any record keeps of a text, and than a message shows.
constexpr std::size_t kept_of_text = 4096;

bool is_all_blank(const XMLCh* chars, XMLSize_t length) {
  return std::all_of(chars, chars + length, [](XMLCh c) { return c < 0x80 && is_blank(c); });
}

bool may_have_text(const known_element& element) {
  return element.role != text_role::none;
}

void append(std::string& text, std::string_view more) {
  text.append(more.substr(0, kept_of_text - std::min(text.size(), kept_of_text)));
}

}  // namespace

void element_walk::walk(const char* path) {
  try {
    zrt4::detail::direct_scanner<element_walk> scanner(*this);
    scanner.setValidationScheme(xercesc::SAXParser::Val_Auto);
    xercesc::XMLPScanToken token;
    bool more = scanner.parseFirst(path, token);
    while (more && !is_damaged()) {
      reset_end_tag_flag();
      more = scanner.parseNext(token);
      if (!is_damaged()) end_step();
    }
    if (is_damaged() && !is_begun) found.add(rule::damage, first_damage, "nothing is read");
  } catch (const xercesc::XMLException& exception) {
    found.add(rule::damage, {}, to_local(exception.getMessage()));
  }
}

const element_walk::known_name& element_walk::name_of(const xercesc::XMLElementDecl& element) {
  const auto [entry, is_new] = names.try_emplace(&element);
  known_name& name = entry->second;
  if (is_new) {
    name.name = to_local(element.getFullName());
    std::size_t count = 0;
    for (const known_element& each : known) {
      if (each.name == name.name) name.meanings[count++] = &each;
    }
  }
  return name;
}

void element_walk::start_declared(const xercesc::XMLElementDecl& element,
                                  xercesc::AttributeList& attributes) {
  parse_handlers::startElement(element.getFullName(), attributes);
  if (open == elements.size()) elements.emplace_back();
  walked_element& here = elements[open];
  const known_name& name = name_of(element);
  here.name = name.name;
  here.place = {locator->getLineNumber(), locator->getColumnNumber()};
  here.number = ++start_tags;
  here.text.clear();
  here.length = 0;
  here.late_text.clear();
  here.is_taken = here.is_whole = here.has_elements = false;
  here.taken_piece.clear();
  here.steps = 0;
  here.within = 0;
  here.meaning = name.meanings[0];
  if (open != 0) {
    walked_element& around = elements[open - 1];
    around.has_elements = true;
    here.within = around.meaning != nullptr ? open - 1 : around.within;
    const known_element* of = elements[here.within].meaning;
    const known_element* other = name.meanings[1];
    if (other != nullptr && of != nullptr && other->of == of->begins) here.meaning = other;
  }
  ++open;
  opened(here, attributes);
}

void element_walk::endElement(const XMLCh* const name) {
  parse_handlers::endElement(name);
  is_ending = true;
}

void element_walk::characters(const XMLCh* const chars, const XMLSize_t length) {
  parse_handlers::characters(chars, length);
  if (open != 0) add_text(elements[open - 1], chars, length);
}

void element_walk::add_text(walked_element& to, const XMLCh* chars, XMLSize_t length) {
  const bool blank = is_all_blank(chars, length);
  if (blank && (to.text.empty() || to.has_elements)) return;
  const char* text = getValue();  // converted already, if a reader gets it
  if (text == nullptr) text = converted.assign(chars, length, page);
  if (text == nullptr) return;
  const bool is_stray = to.has_elements || (to.meaning != nullptr && !may_have_text(*to.meaning));
  if (is_stray && (to.has_elements ? to.late_text : to.text).empty()) {
    to.stray_place = place_of_text(
        chars, length, {locator->getLineNumber(), locator->getColumnNumber()}, to.place);
  }
  if (to.has_elements) {
    if (to.late_text.empty()) append(to.late_text, text);
  } else {
    if (!blank && to.is_taken) end_taken(to);
    const std::string_view more = text;
    to.length += more.size();
    append(to.text, more);
  }
}

// More comes behind what a reader got.
void element_walk::end_taken(walked_element& element) {
  if (element.is_whole) element.taken_piece = element.text;
  element.is_whole = false;
}

void element_walk::damage(const xercesc::SAXParseException& exception) {
  const file_place place{exception.getLineNumber(), exception.getColumnNumber()};
  if (!is_damaged()) first_damage = place;
  ++error_count;
  std::string text = to_local(exception.getMessage());
  if (open != 0)
    text += where_begun(text, elements[open - 1].name, elements[open - 1].place, place);
  found.add(rule::damage, place, std::move(text));
}

// What a reader gets is of the element that was started last, which may have ended in this step.
void element_walk::end_step() {
  is_begun = true;
  if (getTag() != nullptr && open != 0) {
    walked_element& last = elements[open - 1];
    if (getValue() == nullptr) {
      ++last.steps;
      seen(last);
    } else {
      take(last);
    }
  }
  if (!is_ending) return;
  is_ending = false;
  closed(elements[open - 1]);
  --open;
}

void element_walk::take(walked_element& element) {
  const std::string_view piece = getValue();
  element.is_whole = trimmed(piece) == trimmed(element.text) || element.length > kept_of_text;
  if (!element.is_whole) append(element.taken_piece, piece);
  element.is_taken = true;
  taken(element, getValue());
}
