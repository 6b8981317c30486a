#ifndef RECORD_WIDTHS_HH
#define RECORD_WIDTHS_HH

// Everything in which the two generations of environment index dictionaries differ. Their reader
// and their dump are written once, as templates over one of these.

#include <string_view>

#include "parse_env_index_dictionary.hh"

namespace zrt4::detail {

/// Element names, indexed by ENV_INDX_*.
constexpr const char* env_index_names[] = {"ENVINDEXDICT", "CHANNEL", "INDEX",
                                           "PROP",         "DABS",    "DREL"};

/// Property names of up to 79 characters.
struct older_generation {
  using entry = zrt4_env_index_dictionary_entry;
  static constexpr auto read_text = parse_env_index_dict_list_read;
  static constexpr const char* no_memory =
      "Failed to allocate memory for zrt4_env_index_dictionary_entry";
  static constexpr std::string_view dump = "dump_env_index_dict()";
  static constexpr std::string_view write_failed = " failed to write \n";
};

/// Property names of up to 255 characters.
struct generation_2010 {
  using entry = zrt4_env_index_dictionary_entry_2010;
  static constexpr auto read_text = parse_env_index_dict_list_read_2010;
  static constexpr const char* no_memory =
      "Failed to allocate memory for zrt4_env_index_dictionary_entry_2010";
  static constexpr std::string_view dump = "dump_env_index_dict_2010()";
  static constexpr std::string_view write_failed = "  failed to write\n";
};

}  // namespace zrt4::detail

#endif
