#include "camera_walk.hh"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "blanks.hh"
#include "feature_fields.hh"
#include "local_text.hh"
#include "terminal.hh"
#include "text_place.hh"
#include "zrt4_gige_descr.hh"

using zrt4::detail::awaits_text;
using zrt4::detail::never_set;
using zrt4::detail::to_local;

namespace {

/// The elements that open the texts of a feature, in the order in which these are filled.
constexpr more_tags openers[] = {MORE_TAGS_PVRENAME, MORE_TAGS_TOOLTIP, MORE_TAGS_DESCRIPTION};
constexpr std::size_t control_name = 0;
static_assert(std::size(openers) == std::tuple_size_v<decltype(camera_feature::texts)>);

bool is_feature(const std::string& name) {
  return std::find(std::begin(FeatureTags), std::end(FeatureTags), name) != std::end(FeatureTags);
}

std::string called(const std::string& element, const std::string& name) {
  return name.empty() ? element : element + " '" + shortened(printable(name)) + "'";
}

}  // namespace

bool is_mark_of_reader(std::string_view text) {
  return text == never_set || text == awaits_text;
}

std::string camera_feature::shown() const {
  return called(element, is_mark_of_reader(name) ? written_name : name);
}

void camera_walk::startElement(const XMLCh* const name, xercesc::AttributeList& attributes) {
  end_text();
  camera_element begun;
  begun.name = to_local(name);
  begun.place = here();
  const XMLCh* const value = attributes.getValue(Attributes[ATTRIBUTE_NAME]);
  begun.name_attribute = to_local(value);
  begun.shown = called(shortened(printable(begun.name)), begun.name_attribute);
  if (!open.empty()) {
    open.back().holds_elements = true;
    begun.is_in_feature = open.back().is_in_feature || open.back().feature != nullptr;
  }
  if (is_feature(begun.name)) {
    begin_feature(begun);
  } else if (latest != nullptr) {
    open_text(begun);
  }
  if (value != nullptr && latest != nullptr) take_name(begun, begun.name_attribute);
  open.push_back(std::move(begun));
  element_began(open.back(), attributes);
}

void camera_walk::begin_feature(camera_element& element) {
  end_feature();
  latest = std::make_shared<camera_feature>();
  latest->element = element.name;
  latest->place = element.place;
  latest->name = never_set;
  for (auto& text : latest->texts) text.value = never_set;
  element.feature = latest;
}

void camera_walk::open_text(camera_element& element) {
  for (std::size_t i = 0; i < std::size(openers); ++i) {
    if (element.name != MoreTags[openers[i]]) continue;
    element.text = std::make_shared<opened_text>();
    element.text->element = element.name;
    element.text->place = element.place;
    element.text->parent = open.back().shown;
    element.text->is_own = open.back().feature == latest;
    open_texts.push_back(element.text);
    camera_feature::text& opened = latest->texts[i];
    opened.value = awaits_text;
    opened.last = element.text;
    if (!element.text->is_own) continue;
    if (opened.own != nullptr) element.text->replaces = opened.own->place;
    opened.own = element.text;
  }
}

void camera_walk::take_name(const camera_element& element, const std::string& name) {
  const bool is_own = element.feature == latest;
  if (is_own) {
    latest->has_name = true;
    latest->written_name = name;
  }
  if (latest->name == never_set) {
    latest->name = name;
    latest->named_by = is_own ? "" : element.shown;
    latest->named_at = element.place;
    return;
  }
  camera_feature::text& text = latest->texts[control_name];
  if (text.value != awaits_text) return;
  text.value = name;
  const bool is_same = element.text == text.last;
  text.last->filled_by =
      is_same ? opened_text::source::name_attribute : opened_text::source::another_name;
  text.last->filler = element.shown;
  text.last->read = name;
}

void camera_walk::endElement(const XMLCh* const /*name*/) {
  end_text();
  const camera_element ended = std::move(open.back());
  open.pop_back();
  if (ended.text != nullptr) open_texts.pop_back();
  if (!open.empty() && (ended.holds_feature || ended.feature != nullptr)) {
    open.back().holds_feature = true;
  }
  element_ended(ended);
}

void camera_walk::docCharacters(const XMLCh* const text, const XMLSize_t length,
                                const bool is_section) {
  if (open.empty()) return;
  const bool is_blank_text =
      std::all_of(text, text + length, [](XMLCh each) { return is_blank(each); });
  if (!is_section) {
    run.append(text, length);
    if (run_place.line == 0 && !is_blank_text) {
      run_place = place_of_text(text, length, here(), open.back().place);
    }
    return;
  }
  end_text();
  const std::string section = to_local(std::basic_string<XMLCh>(text, length).c_str());
  if (!open_texts.empty()) {
    open_texts.back()->has_section = true;
  } else if (!is_blank_text) {
    constexpr std::size_t end_of_section = sizeof "]]>" - 1;
    const file_place end{here().line, here().column - end_of_section};
    drop_text(section, place_of_text(text, length, end, open.back().place));
  }
  keep(section);
}

void camera_walk::keep(const std::string& text) {
  if (!open_texts.empty()) open_texts.back()->written += text;
  if (open.back().keeps_text) open.back().kept_text += text;
}

void camera_walk::end_text() {
  if (run.empty()) return;
  const std::string text = to_local(run.c_str());
  run.clear();
  const file_place place = run_place;
  run_place = {};
  keep(text);
  if (latest != nullptr) {
    for (camera_feature::text& each : latest->texts) {
      if (each.value != awaits_text) continue;
      const bool is_itself = !open_texts.empty() && open_texts.back() == each.last;
      each.value = text;
      each.last->filled_by =
          is_itself ? opened_text::source::itself : opened_text::source::another_text;
      each.last->filler = open.back().shown;
      each.last->read = text;
      return;
    }
  }
  if (place.line != 0) drop_text(text, place);
}

void camera_walk::drop_text(const std::string& text, file_place place) {
  camera_element& within = open.back();
  if (!within.dropped_text.empty()) return;
  within.dropped_text = text;
  within.dropped_place = place;
}

void camera_walk::end_feature() {
  if (latest != nullptr) feature_ended(*latest);
}

void camera_walk::finish() {
  end_feature();
  latest.reset();
}
