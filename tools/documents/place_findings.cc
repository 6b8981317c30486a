// Where elements stand, and where their reader takes them to.

#include <algorithm>
#include <cstring>
#include <string>

#include "record_check.hh"
#include "shown_text.hh"
#include "similar_names.hh"

namespace {

constexpr std::size_t kept_places = 100;

std::string the(std::string_view name, file_place place) {
  return std::string(name) + in_line(place);
}

// Of the XML itself, and of what checks and shows documents.
bool is_for_others(std::string_view attribute) {
  return attribute.substr(0, 3) == "xml" || attribute.find(':') != attribute.npos;
}

}  // namespace

part record_check::around(part which) const {
  for (const known_element& each : known) {
    if (each.begins == which) return each.of;
  }
  return part::none;
}

std::string record_check::beginners_of(part which) const {
  std::string all;
  for (const known_element& each : known) {
    if (each.begins != which) continue;
    if (!all.empty()) all += " or ";
    all += each.name;
  }
  return all;
}

void record_check::note_unknown(const walked_element& element) {
  auto entry = unknown.find(element.name);
  if (entry == unknown.end()) {
    const std::string similar = similar_name(element);
    const rule what = similar.empty() ? rule::unknown_element : rule::misspelt_element;
    if (unknown.size() == found.most()) return found.leave_out(what, element.place);
    entry = unknown.emplace(element.name, unknown_name{what, similar, {}, 0}).first;
  }
  unknown_name& name = entry->second;
  ++name.times;
  if (name.places.size() < kept_places) name.places.push_back(element.place);
}

// The nearest; of those that are as near, one that may stand there.
std::string record_check::similar_name(const walked_element& element) const {
  const known_element* around = depth() > 1 ? at(element.within).meaning : nullptr;
  const known_element* nearest = nullptr;
  unsigned least = 2 * beyond_all_names;
  for (const known_element& each : known) {
    if (each.role == text_role::ignored || each.begins == part::document) continue;
    const unsigned fits_less = around != nullptr && each.of == around->begins ? 0 : 1;
    const unsigned changes =
        element.name == each.elsewhere ? 0 : distance_of_names(element.name, each.name);
    const unsigned distance = 2 * changes + fits_less;
    if (distance >= least) continue;
    least = distance;
    nearest = &each;
  }
  return nearest != nullptr ? std::string(nearest->name) : std::string();
}

void record_check::find_in_attributes(const walked_element& element,
                                      const xercesc::AttributeList& attributes) {
  const char* const wanted = element.meaning->attribute;
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
    const std::string name = zrt4::detail::to_local(attributes.getName(i));
    if ((wanted != nullptr && name == wanted) || is_for_others(name)) continue;
    found.add(rule::stray_attribute, element.place, [&] {
      const bool lacks = wanted != nullptr && attributes.getValue(wanted) == nullptr;
      return std::string(element.name) + " has the attribute " + quoted(name) +
             ", which is not read" +
             (lacks && is_misspelt(name, wanted) ? "; did you mean " + quoted(wanted) + "?" : "");
    });
  }
}

void record_check::find_in_place(const walked_element& element, const walked_element& around) {
  const known_element& meaning = *element.meaning;
  if (find_nested(element) || meaning.of == part::document) return;
  const bool in_place = around.meaning->begins == meaning.of;
  if (in_place && !meaning.only_in.empty() && around.name != meaning.only_in) {
    return found.add(rule::misplaced_element, element.place, [&] {
      return std::string(element.name) + " counts in " + std::string(meaning.only_in) +
             " only; in " + std::string(around.name) + " it is ignored";
    });
  }
  begun_part& holder = at_hand(meaning.of);
  if (!holder.exists) {
    if (!in_place) find_without_holder(element, around);
    return;  // or what began nothing is told of
  }
  if (!in_place) return find_outside_holder(element, around);
  if (holder.number != around.number) return;
  if (holder.awaits_type) {
    if (meaning.form != number_form::listed_type) {
      if (holder.early.size() < kept_places) holder.early.push_back({element.name, element.place});
      return;
    }
    tell_early_fields(holder);
  }
  begun_part& dimension = at_hand(part::dimension);
  const known_element* of_dimension = same_of_dimension(meaning);
  if (dimension.exists && of_dimension != nullptr) {
    found.add(rule::loose_element, element.place, [&] {
      return std::string(element.name) + " stands behind " + the(dimension.name, dimension.place) +
             ", and is read as a part of it";
    });
    return;
  }
  note_field(element, holder);
}

// Where no type follows, that says it all.
void record_check::tell_early_fields(const begun_part& event) {
  for (const early_field& each : event.early) {
    found.add(rule::too_early, each.place, [&] {
      return std::string(each.name) + " stands before the type of its event, and is ignored";
    });
  }
}

// What a channel and its dimensions have alike goes to the dimension, as soon as there is one.
const known_element* record_check::same_of_dimension(const known_element& element) const {
  for (const known_element& each : known) {
    if (&each != &element && each.name == element.name && each.of == part::dimension) return &each;
  }
  return nullptr;
}

bool record_check::find_nested(const walked_element& element) {
  const part begun = element.meaning->begins;
  if (begun == part::none) return false;
  for (std::size_t i = 0; i + 1 < depth(); ++i) {
    const walked_element& outer = at(i);
    if (outer.meaning == nullptr || outer.meaning->begins != begun) continue;
    found.add(rule::nested_record, element.place, [&] {
      return std::string(element.name) + " stands within " + the(outer.name, outer.place) +
             ", and ends it";
    });
    return true;
  }
  return false;
}

void record_check::find_without_holder(const walked_element& element,
                                       const walked_element& around) {
  const known_element& meaning = *element.meaning;
  const bool is_early =
      around.meaning->begins == this->around(meaning.of) || around.meaning->begins == part::record;
  const bool describes = meaning.describes_record && at_hand(part::record).exists;
  found.add(is_early ? rule::too_early : rule::misplaced_element, element.place, [&] {
    return std::string(element.name) +
           (is_early ? " stands without any " : " stands outside any ") + beginners_of(meaning.of) +
           (is_early ? " before it" : "") +
           (describes ? ", and describes the channel" : ", and is ignored");
  });
}

void record_check::find_outside_holder(const walked_element& element,
                                       const walked_element& around) {
  const known_element& meaning = *element.meaning;
  begun_part& holder = at_hand(meaning.of);
  // Behind it, in what is around both.
  if (holder.number > around.number) {
    if (!meaning.may_follow || holder.around != around.number) {
      found.add(rule::loose_element, element.place, [&] {
        return std::string(element.name) + " stands behind " + the(holder.name, holder.place) +
               ", and is read as a part of it";
      });
    }
    return note_field(element, holder);
  }
  found.add(rule::misplaced_element, element.place, [&] {
    return std::string(element.name) + " stands in " + std::string(around.name) +
           ", but is read as a part of " + the(holder.name, holder.place) +
           meant_in(element, around);
  });
}

// UNITS in a DIM should be DIM_UNITS.
std::string record_check::meant_in(const walked_element& element,
                                   const walked_element& around) const {
  for (const known_element& each : known) {
    const std::size_t at = each.name.find(element.name);
    if (each.of == around.meaning->begins && each.of != part::none && at != each.name.npos) {
      return "; " + std::string(around.name) + " has " + std::string(each.name);
    }
  }
  return {};
}

void record_check::note_field(const walked_element& element, begun_part& holder) {
  const known_element& meaning = *element.meaning;
  const fields bit = bit_of(meaning);
  file_place& where = holder.where[index_of(meaning)];
  const bool again = meaning.is_single && (holder.opened & bit) != 0;
  if (again) {
    const char* const effect = meaning.form == number_form::listed_type ? "it begins another event"
                               : meaning.is_required ? "it lists it again, as the last one says"
                                                     : "only the last one counts";
    const file_place first = where;
    found.add(rule::repeated_element, element.place,
              [&] {
                return std::string(element.name) + " stands again in " +
                       the(holder.name, holder.place) + ", as in line " +
                       std::to_string(first.line) + ": " + effect;
              },
              {first, element.place});
  }
  holder.opened |= bit;
  where = element.place;
}
