#ifndef RECORD_WIDTHS_HH
#define RECORD_WIDTHS_HH

// Everything in which the two record widths of environment index dictionaries differ. Their reader
// and their dump are written once, as templates over one of these.

#include <string_view>

#include "parse_env_index_dictionary.hh"

namespace zrt4::detail {

/// Property names of up to 79 characters.
struct narrow_records {
  using entry = zrt4_env_index_dictionary_entry;
  static constexpr const char* no_memory =
      "Failed to allocate memory for zrt4_env_index_dictionary_entry";
  static constexpr std::string_view dump = "dump_env_index_dict()";
  static constexpr std::string_view write_failed = " failed to write \n";
};

/// Property names of up to 255 characters: the functions of the year 2010.
struct wide_records {
  using entry = zrt4_env_index_dictionary_entry_2010;
  static constexpr const char* no_memory =
      "Failed to allocate memory for zrt4_env_index_dictionary_entry_2010";
  static constexpr std::string_view dump = "dump_env_index_dict_2010()";
  static constexpr std::string_view write_failed = "  failed to write\n";
};

}  // namespace zrt4::detail

#endif
