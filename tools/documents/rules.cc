#include "rules.hh"

#include <iterator>

namespace {

constexpr auto error = severity::error;
constexpr auto warning = severity::warning;

constexpr rule_traits rules[] = {
    {rule::unreadable, "unreadable", error, "nothing of the document can be read"},
    {rule::damage, "damage", error, "the XML is damaged; what stands behind is not read"},
    {rule::text_before_document, "text_before_document", error,
     "something stands before the document begins"},
    {rule::encoding_conflict, "encoding_conflict", error,
     "the document is not in the encoding that it declares"},
    {rule::invalid_bytes, "invalid_bytes", error,
     "bytes are no characters in the document's encoding"},
    {rule::wrong_encoding, "wrong_encoding", error,
     "a text was written in another encoding than it is read in"},

    {rule::unknown_element, "unknown_element", warning, "no reader knows the element"},
    {rule::misspelt_element, "misspelt_element", error,
     "no reader knows the element, but one whose name is nearly the same"},
    {rule::misplaced_element, "misplaced_element", error,
     "an element stands where it is ignored or goes to another record"},
    {rule::too_early, "too_early", error, "an element stands before the one that it belongs to"},
    {rule::loose_element, "loose_element", warning,
     "an element stands behind the one that it belongs to, where it is read all the same"},
    {rule::nested_record, "nested_record", error, "a record stands within one of its kind"},
    {rule::repeated_element, "repeated_element", error,
     "an element stands several times in a record that has it once"},
    {rule::read_again, "read_again", error, "an element is read several times"},
    {rule::stray_text, "stray_text", error, "a text stands where none is read"},
    {rule::stray_attribute, "stray_attribute", error, "an attribute that is not read"},
    {rule::missing_attribute, "missing_attribute", error, "an element lacks its attribute"},

    {rule::record_left_out, "record_left_out", error,
     "a record lacks what its reader leaves it out without"},
    {rule::event_skipped, "event_skipped", error,
     "the type of an event is none, and the whole event is skipped"},
    {rule::channel_without_name, "channel_without_name", warning, "a channel has no DAQ name"},
    {rule::empty_element, "empty_element", error, "an element lacks its value"},
    {rule::empty_list, "empty_list", warning, "a list of channels is empty, which means all"},

    {rule::not_a_number, "not_a_number", error, "a text that is no number stands for one"},
    {rule::rest_ignored, "rest_ignored", error, "only the beginning of a text is read as a number"},
    {rule::out_of_range, "out_of_range", error,
     "a number does not fit into its field, which gets another one"},
    {rule::impossible_number, "impossible_number", error,
     "a number is read as it stands, but makes no sense there"},
    {rule::unknown_event_type, "unknown_event_type", warning, "an event type has no name"},
    {rule::unknown_data_type, "unknown_data_type", warning, "a data type has no name"},

    {rule::duplicate_property, "duplicate_property", error, "a property stands several times"},
    {rule::duplicate_index, "duplicate_index", error, "an index stands several times"},
    {rule::duplicate_name, "duplicate_name", warning, "channels share a DAQ name"},
    {rule::duplicate_event_type, "duplicate_event_type", warning, "events share a type"},
    {rule::duplicate_block, "duplicate_block", warning, "an event names a server block twice"},
    {rule::duplicate_channel, "duplicate_channel", warning, "a server block names a channel twice"},
    {rule::duplicate_number, "duplicate_number", error,
     "bits, dimensions or statistics share a number"},
    {rule::duplicate_feature, "duplicate_feature", error, "features share a name"},

    {rule::interrupted_text, "interrupted_text", error, "only one piece of a text is read"},
    {rule::text_cut, "text_cut", error, "a text is longer than its field"},
    {rule::character_cut, "character_cut", error, "a text is cut within a character"},
    {rule::character_lost, "character_lost", error,
     "the code page of the locale lacks a character"},
    {rule::blanks_around_name, "blanks_around_name", error, "blanks or line ends belong to a name"},
    {rule::blanks_around_text, "blanks_around_text", warning,
     "blanks or line ends belong to a text"},

    {rule::unlisted_feature, "unlisted_feature", error,
     "a camera offers a feature of a kind that the reader does not know"},
    {rule::feature_without_name, "feature_without_name", error,
     "a feature has no name, and is not listed"},
    {rule::name_of_another, "name_of_another", error,
     "a feature takes the name of another element"},
    {rule::text_of_another, "text_of_another", error,
     "a feature takes the text of another element"},
    {rule::section_text, "section_text", error, "a text is a CDATA section, which is not read"},
    {rule::reserved_text, "reserved_text", error,
     "a text is one with which the reader marks a missing one"},

    {rule::beyond_grammar, "beyond_grammar", error,
     "with --strict: what the readers take, but the grammar of such documents does not"},
};

constexpr bool stand_in_order() {
  std::size_t place = 0;
  for (const rule_traits& each : rules) {
    if (static_cast<std::size_t>(each.which) != place++) return false;
  }
  return true;
}
static_assert(stand_in_order());

}  // namespace

const rule_traits& traits_of(rule which) {
  return rules[static_cast<std::size_t>(which)];
}

rule_table all_rules() {
  return {rules, std::size(rules)};
}
