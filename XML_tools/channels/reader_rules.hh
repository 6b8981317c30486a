#ifndef READER_RULES_HH
#define READER_RULES_HH

// What the two channel description readers do differently. Programs rely on either behaviour, so
// every difference stays; everything else is one algorithm.

#include <string_view>

#include "read_document.hh"

namespace zrt4::detail {

template <class Variant>
struct reader_rules;

template <>
struct reader_rules<memory_variant> {
  static constexpr bool refuses_null_list = true;
  static constexpr auto if_unusable = unusable_parser::released;
  // Element dialect.
  static constexpr bool merges_duplicate_prop = true;  // when asked to delete duplicates
  static constexpr bool stray_stat_descr_is_channels = true;
  static constexpr bool dim_ends_statistic = true;
  // Variable dialect.
  static constexpr bool shifts_variable_event_type = true;
  static constexpr bool merges_variable_types_by_or = false;  // else only where there is none
  static constexpr bool reports_untitled_bit = true;
  static constexpr std::string_view bit_title_without_bit = "No attribute";
};

template <>
struct reader_rules<file_variant> {
  static constexpr bool refuses_null_list = false;
  static constexpr auto if_unusable = unusable_parser::kept;
  // Element dialect.
  static constexpr bool merges_duplicate_prop = false;
  static constexpr bool stray_stat_descr_is_channels = false;
  static constexpr bool dim_ends_statistic = false;
  // Variable dialect.
  static constexpr bool shifts_variable_event_type = false;
  static constexpr bool merges_variable_types_by_or = true;
  static constexpr bool reports_untitled_bit = false;
  static constexpr std::string_view bit_title_without_bit = "No attribute: ";
};

}  // namespace zrt4::detail

#endif
