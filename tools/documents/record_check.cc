#include "record_check.hh"

#include <cstring>

#include "blanks.hh"
#include "number_findings.hh"
#include "shown_text.hh"
#include "text_findings.hh"
#include "written_channels.hh"

record_check::record_check(const known_elements& all, finding_list& into)
    : element_walk(all, into), keys(static_cast<std::size_t>(all.end() - all.begin())) {
  for (const known_element& each : all) {
    if (!each.key.noun.empty()) keys[index_of(each)].emplace(each.key, into);
  }
}

std::size_t record_check::index_of(const known_element& element) const {
  return static_cast<std::size_t>(&element - known.begin());
}

record_check::fields record_check::bit_of(const known_element& element) const {
  return fields{1} << index_of(element);
}

void record_check::opened(walked_element& element, const xercesc::AttributeList& attributes) {
  if (element.meaning == nullptr) return note_unknown(element);
  if (element.meaning->role == text_role::ignored) return;
  find_in_attributes(element, attributes);
  if (depth() > 1 && at(element.within).meaning != nullptr) {
    find_in_place(element, at(element.within));
  }
}

void record_check::seen(walked_element& element) {
  if (element.meaning == nullptr) return;
  const known_element& meaning = *element.meaning;
  switch (meaning.begins) {
    case part::record:
      if (element.steps == 1) begin(part::record, element);
      break;
    case part::list:
      if (element.steps == 1 && at_hand(part::block).exists) begin(part::list, element);
      break;
    default:
      if (meaning.attribute != nullptr) find_in_numbered_attribute(element);
  }
}

// A dimension begins at each step that yields its element; a bit's title makes a nameless bit at
// its start tag, which programs count on.
void record_check::find_in_numbered_attribute(const walked_element& element) {
  const known_element& meaning = *element.meaning;
  const begun_part& holder = at_hand(meaning.of);
  if (!holder.exists || holder.is_merged || holder.name != meaning.only_in) return;
  const char* const text = getAttr(meaning.attribute);
  if (text == nullptr) {
    if (element.steps != 1) return;
    found.add(rule::missing_attribute, element.place, [&] {
      return std::string(element.name) + " without the attribute " + meaning.attribute;
    });
  } else if (element.steps == 1) {
    const std::string shown = std::string(element.name) + " " + meaning.attribute;
    const auto number = find_in_number(meaning, shown, text, element.place, found);
    begin(meaning.begins, element);
    if (number) add_key(element, *number);
  } else if (meaning.role == text_role::none || element.steps == 3) {
    found.add(rule::read_again, element.place, [&] {
      return std::string(element.name) +
             " is read several times: a comment or its end stands directly behind its start tag";
    });
  }
}

void record_check::taken(walked_element& element, const char* text) {
  if (element.meaning == nullptr || element.meaning->role == text_role::ignored) return;
  const known_element& meaning = *element.meaning;
  begun_part& holder = at_hand(meaning.of);
  holder.taken |= bit_of(meaning);
  if (meaning.begins != part::none && meaning.attribute == nullptr &&
      meaning.role != text_role::none && holder.exists) {
    begin(meaning.begins, element);
  }
  switch (meaning.role) {
    case text_role::number:
      if (meaning.form == number_form::listed_type) {
        holder.awaits_type = false;
        if (makes_an_event(text)) last_event = holder.place;
      }
      if (const auto number = find_in_number(meaning, element.name, text, element.place, found)) {
        add_key(element, *number);
      }
      break;
    case text_role::name:
      if (add_key(element, text) && meaning.merges) holder.is_merged = true;
      if (meaning.is_required) property = text;
      [[fallthrough]];
    case text_role::text:
      find_in_text(element, text, found);
      break;
    default:
      break;
  }
}

void record_check::closed(walked_element& element) {
  if (element.meaning == nullptr || element.meaning->role == text_role::ignored) return;
  const known_element& meaning = *element.meaning;
  find_text_not_read(element, found);
  const bool is_empty = trimmed(element.text).empty() && trimmed(element.late_text).empty();
  if (is_empty && !element.is_taken) find_empty(element);
  begun_part& holder = at_hand(meaning.of);
  if (!is_empty && !element.is_taken) holder.told |= bit_of(meaning);
  if (meaning.form == number_form::listed_type) holder.awaits_type = false;
}

void record_check::find_empty(const walked_element& element) {
  const known_element& meaning = *element.meaning;
  const auto add = [&](rule what, const char* text) {
    found.add(what, element.place, [&] { return std::string(element.name) + text; });
  };
  const bool is_told_of_record =
      meaning.is_required || (meaning.is_expected && meaning.role == text_role::name);
  if (meaning.begins == part::list) {
    const begun_part& list = at_hand(part::list);
    const bool is_empty = list.exists && list.number == element.number && list.opened == 0;
    if (is_empty) add(rule::empty_list, " names no channel, which means all of them");
  } else if (is_told_of_record || meaning.attribute != nullptr) {
    // Told of the record, if nothing makes up for it.
  } else if (meaning.begins != part::none && meaning.role != text_role::none) {
    add(rule::empty_element,
        element.has_elements
            ? " lacks its text directly behind the start tag: what stands in it is not its own"
            : " lacks its text, and is ignored");
  } else if (meaning.role == text_role::text && element.has_elements) {
    add(rule::empty_element, " lacks its text: what stands in it is not its own");
  } else if (meaning.role == text_role::number) {
    add(rule::empty_element, " lacks its number");
  } else if (meaning.role == text_role::name && !meaning.is_single) {
    add(rule::empty_element, " lacks its name, and is ignored");
  }
}

void record_check::begin(part which, const walked_element& element) {
  // What it may hold begins anew; the reader of a file keeps a statistic, for the first of the next
  // dimension to replace.
  for (std::size_t i = number_of_parts; --i > static_cast<std::size_t>(which);) {
    const part held = static_cast<part>(i);
    const bool is_within = which == part::record || (which == part::block && held == part::list) ||
                           (which == part::dimension && held == part::statistic);
    if (is_within) end(held);
  }
  end(which);
  begun_part& begun = at_hand(which);
  begun.exists = true;
  begun.name = element.name;
  begun.place = element.place;
  begun.number = element.number;
  begun.around = depth() > 1 ? at(element.within).number : 0;
  begun.opened = begun.taken = begun.told = 0;
  begun.awaits_type = begun.is_merged = false;
  begun.early.clear();
  for (const known_element& each : known) {
    if (each.of == which && each.form == number_form::listed_type) begun.awaits_type = true;
  }
}

void record_check::end(part which) {
  if (which == part::record && at_hand(which).exists) end_record();
  at_hand(which).exists = false;
  for (const known_element& each : known) {
    if (each.key.within == which && keys_of(each) != nullptr) keys_of(each)->end_part();
  }
}

void record_check::end_record() {
  const begun_part& record = at_hand(part::record);
  bool is_left_out = false;
  for (const known_element& each : known) {
    const fields bit = bit_of(each);
    if (!each.is_required || (record.taken & bit) != 0) continue;
    is_left_out = true;
    if ((record.told & bit) != 0) continue;
    if ((record.opened & bit) == 0) {
      found.add(rule::record_left_out, record.place, [&] {
        return std::string(record.name) + " without " + std::string(each.name) + " is left out";
      });
      continue;
    }
    found.add(rule::empty_element, record.where[index_of(each)], [&] {
      const std::string said = std::string(each.name) + " is empty";
      if (each.form != number_form::listed_type) {
        return said + ", and without it this record is left out" + in_line(record.place);
      }
      const std::string event = said + ": what stands in this event";
      if (last_event.line == 0) return event + in_line(record.place) + " is ignored";
      return event + " goes to the one before" + in_line(last_event);
    });
  }
  if (!is_left_out) find_missing(record);
}

void record_check::find_missing(const begun_part& record) {
  for (const known_element& each : known) {
    const fields bit = bit_of(each);
    if (!each.is_expected || ((record.taken | record.told) & bit) != 0) continue;
    if (each.role == text_role::number) {
      if (record.is_merged || (record.opened & bit) != 0) continue;  // or told already
      found.add(each.if_missing, record.place, [&] {
        return "channel " + quoted(property) + " has no event type: clients never find it";
      });
      continue;
    }
    file_place where = record.place;
    for (const known_element& key : known) {
      if (key.is_required) where = record.where[index_of(key)];
    }
    if ((record.opened & bit) != 0) where = record.where[index_of(each)];
    found.add(each.if_missing, where,
              [&] { return "channel " + quoted(property) + " has no name"; });
  }
}

repeated_keys* record_check::keys_of(const known_element& element) {
  std::optional<repeated_keys>& of = keys[index_of(element)];
  return of ? &*of : nullptr;
}

// Of what its reader ignores there are none.
repeated_keys* record_check::keys_in_use(const known_element& element) {
  const begun_part& holder = at_hand(element.of);
  return holder.exists && !holder.is_merged ? keys_of(element) : nullptr;
}

// What a writer writes in place of nothing is no key.
bool record_check::add_key(const walked_element& element, std::string_view text) {
  repeated_keys* const of = keys_in_use(*element.meaning);
  return of != nullptr && text != zrt4::detail::undefined_daq_name && of->add(text, element.place);
}

void record_check::add_key(const walked_element& element, std::int64_t number) {
  repeated_keys* const of = keys_in_use(*element.meaning);
  if (of != nullptr) of->add(number, element.place);
}

void record_check::finish() {
  const bool is_cut_off = is_damaged() && depth() > 1;
  if (!is_cut_off) {
    for (std::size_t i = number_of_parts; i-- != 0;) end(static_cast<part>(i));
  } else {
    for (auto& of : keys) {
      if (of) of->end_part();
    }
  }
  for (const auto& [name, all] : unknown) {
    const std::string advice =
        all.what == rule::misspelt_element ? "; did you mean " + all.advice + "?" : "";
    const std::string times = all.times == 1 ? "1 time" : times_and_lines(all.places, all.times);
    found.add(all.what, all.places.front(),
              std::string("no reader knows the element ")
                  .append(quoted(name))
                  .append(" (")
                  .append(times)
                  .append(")")
                  .append(advice),
              all.places);
  }
}
