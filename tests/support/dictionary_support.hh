#ifndef DICTIONARY_SUPPORT_HH
#define DICTIONARY_SUPPORT_HH

// What the tests of environment index dictionaries share: both generations under the same names.

#include <cstdlib>
#include <cstring>
#include <string>

#include "support.hh"
#include "zrt4xml.hh"

namespace test {

struct older {
  using list = zrt4::env_dictionary;
  using entry = list::value_type;
  static constexpr const char* title = "older";
  static constexpr const char* record = "zrt4_env_index_dictionary_entry";
  static constexpr std::size_t longest = 79;
  static constexpr const char* dump_name = "dump_env_index_dict()";
  static constexpr const char* write_failed = "dump_env_index_dict() failed to write \n";
  static constexpr auto read = parse_env_index_dict_list_read;
  static constexpr auto readf = parse_env_index_dict_readf;
  template <class... Argument>
  static int dump(Argument... argument) {
    return dump_env_index_dict(argument...);
  }
};

struct y2010 {
  using list = zrt4::env_dictionary_2010;
  using entry = list::value_type;
  static constexpr const char* title = "y2010";
  static constexpr const char* record = "zrt4_env_index_dictionary_entry_2010";
  static constexpr std::size_t longest = 255;
  static constexpr const char* dump_name = "dump_env_index_dict_2010()";
  static constexpr const char* write_failed = "dump_env_index_dict_2010()  failed to write\n";
  static constexpr auto read = parse_env_index_dict_list_read_2010;
  static constexpr auto readf = parse_env_index_dict_readf_2010;
  template <class... Argument>
  static int dump(Argument... argument) {
    return dump_env_index_dict_2010(argument...);
  }
};

using generations = testing::Types<older, y2010>;

struct titles {
  template <class Variant>
  static std::string GetName(int) {
    return Variant::title;
  }
};

template <class Entry>
Entry* new_entry(int index, const std::string& property, float absolute, float relative) {
  auto* entry = static_cast<Entry*>(std::calloc(1, sizeof(Entry)));
  entry->index = index;
  property.copy(entry->data.env_prop, sizeof entry->data.env_prop - 1);
  entry->data.env_ch_abs_delta = absolute;
  entry->data.env_ch_rel_delta = relative;
  return entry;
}

}  // namespace test

#endif
