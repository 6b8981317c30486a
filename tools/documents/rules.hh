#ifndef RULES_HH
#define RULES_HH

// What `check` looks for. Each rule is told to people by docs/check.md and to programs by its name,
// which never changes.

#include <cstddef>
#include <string_view>

/// error: something is lost, or is read as something else than is written; warning: it is odd.
enum class severity : unsigned char { warning, error };

enum class rule : unsigned char {
  // The document.
  unreadable,
  damage,
  text_before_document,
  encoding_conflict,
  invalid_bytes,
  wrong_encoding,
  replacement_character,
  // Elements and their places.
  unknown_element,
  misspelt_element,
  misplaced_element,
  too_early,
  loose_element,
  nested_record,
  repeated_element,
  read_again,
  stray_text,
  stray_attribute,
  missing_attribute,
  // What is missing.
  record_left_out,
  event_skipped,
  channel_without_name,
  channel_without_event_type,
  empty_element,
  empty_list,
  // Numbers.
  not_a_number,
  rest_ignored,
  out_of_range,
  impossible_number,
  unknown_event_type,
  unknown_data_type,
  // Keys that stand there several times.
  duplicate_property,
  duplicate_index,
  duplicate_name,
  duplicate_event_type,
  duplicate_block,
  duplicate_channel,
  duplicate_number,
  duplicate_feature,
  // Texts.
  interrupted_text,
  text_cut,
  character_cut,
  blanks_around_name,
  blanks_around_text,
  unseen_character,
  // Cameras, where names and texts go to the feature that began last.
  unlisted_feature,
  feature_without_name,
  name_of_another,
  text_of_another,
  section_text,
  reserved_text,
  // What --strict tells besides.
  beyond_grammar,
};

struct rule_traits {
  rule which;
  severity weight;
  std::string_view name;     ///< as in JSON
  std::string_view meaning;  ///< in one line
};

const rule_traits& traits_of(rule which);

/// All of them, in the order of `rule`.
struct rule_table {
  const rule_traits* first;
  std::size_t count;

  const rule_traits* begin() const { return first; }
  const rule_traits* end() const { return first + count; }
};
rule_table all_rules();

#endif
