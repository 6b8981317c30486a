#include "rules.hh"

#include <iterator>

namespace {

constexpr auto error = severity::error;
constexpr auto warning = severity::warning;

constexpr rule_traits rules[] = {
    {rule::unreadable, error, "unreadable", "nothing of the document can be read"},
    {rule::damage, error, "damage", "the XML is damaged; what stands behind is not read"},
    {rule::text_before_document, error, "text_before_document",
     "something stands before the document begins"},
    {rule::encoding_conflict, error, "encoding_conflict",
     "the document is not in the encoding that it declares"},
    {rule::invalid_bytes, error, "invalid_bytes",
     "bytes are no characters in the document's encoding"},
    {rule::wrong_encoding, error, "wrong_encoding",
     "a text was written in another encoding than it is read in"},
    {rule::replacement_character, warning, "replacement_character",
     "a character was lost when the document was made"},

    {rule::unknown_element, warning, "unknown_element", "no reader knows the element"},
    {rule::misspelt_element, error, "misspelt_element",
     "no reader knows the element, but one whose name is nearly the same"},
    {rule::misplaced_element, error, "misplaced_element",
     "an element stands where it is ignored or goes to another record"},
    {rule::too_early, error, "too_early", "an element stands before the one that it belongs to"},
    {rule::loose_element, warning, "loose_element",
     "an element stands behind the one that it belongs to, where it is read all the same"},
    {rule::nested_record, error, "nested_record", "a record stands within one of its kind"},
    {rule::repeated_element, error, "repeated_element",
     "an element stands several times in a record that has it once"},
    {rule::read_again, error, "read_again", "an element is read several times"},
    {rule::stray_text, error, "stray_text", "a text stands where none is read"},
    {rule::stray_attribute, error, "stray_attribute", "an attribute that is not read"},
    {rule::missing_attribute, error, "missing_attribute", "an element lacks its attribute"},

    {rule::record_left_out, error, "record_left_out",
     "a record lacks what its reader leaves it out without"},
    {rule::event_skipped, error, "event_skipped",
     "the type of an event is none, and the whole event is skipped"},
    {rule::channel_without_name, warning, "channel_without_name", "a channel has no DAQ name"},
    {rule::channel_without_event_type, warning, "channel_without_event_type",
     "a channel has no event type, and no client finds it"},
    {rule::empty_element, error, "empty_element", "an element lacks its value"},
    {rule::empty_list, warning, "empty_list", "a list of channels is empty, which means all"},

    {rule::not_a_number, error, "not_a_number", "a text that is no number stands for one"},
    {rule::rest_ignored, error, "rest_ignored", "only the beginning of a text is read as a number"},
    {rule::out_of_range, error, "out_of_range",
     "a number does not fit into its field, which gets another one"},
    {rule::impossible_number, error, "impossible_number",
     "a number is read as it stands, but makes no sense there"},
    {rule::unknown_event_type, warning, "unknown_event_type", "an event type has no name"},
    {rule::unknown_data_type, warning, "unknown_data_type", "a data type has no name"},

    {rule::duplicate_property, error, "duplicate_property", "a property stands several times"},
    {rule::duplicate_index, error, "duplicate_index", "an index stands several times"},
    {rule::duplicate_name, warning, "duplicate_name", "channels share a DAQ name"},
    {rule::duplicate_event_type, warning, "duplicate_event_type", "events share a type"},
    {rule::duplicate_block, warning, "duplicate_block", "an event names a server block twice"},
    {rule::duplicate_channel, warning, "duplicate_channel", "a server block names a channel twice"},
    {rule::duplicate_number, error, "duplicate_number",
     "bits, dimensions or statistics share a number"},
    {rule::duplicate_feature, error, "duplicate_feature", "features share a name"},

    {rule::interrupted_text, error, "interrupted_text", "only one piece of a text is read"},
    {rule::text_cut, error, "text_cut", "a text is longer than its field"},
    {rule::character_cut, error, "character_cut", "a text is cut within a character"},
    {rule::blanks_around_name, error, "blanks_around_name", "blanks or line ends belong to a name"},
    {rule::blanks_around_text, warning, "blanks_around_text",
     "blanks or line ends belong to a text"},
    {rule::unseen_character, error, "unseen_character",
     "a character that nobody sees belongs to a name"},

    {rule::unlisted_feature, error, "unlisted_feature",
     "a camera offers a feature of a kind that the reader does not know"},
    {rule::feature_without_name, error, "feature_without_name",
     "a feature has no name, and is not listed"},
    {rule::name_of_another, error, "name_of_another",
     "a feature takes the name of another element"},
    {rule::text_of_another, error, "text_of_another",
     "a feature takes the text of another element"},
    {rule::section_text, error, "section_text", "a text is a CDATA section, which is not read"},
    {rule::reserved_text, error, "reserved_text",
     "a text is one with which the reader marks a missing one"},

    {rule::beyond_grammar, error, "beyond_grammar",
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
