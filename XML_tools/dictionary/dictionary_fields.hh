#ifndef DICTIONARY_FIELDS_HH
#define DICTIONARY_FIELDS_HH

// The fields of an environment dictionary's entry, each once: its reader, its writers and what the
// tool shows, compares and checks follow this table.

#include <cstdint>
#include <string_view>
#include <variant>

#include "parse_env_index_dictionary.hh"
#include "record_fields.hh"

namespace zrt4::detail {

/// Element names, indexed by ENV_INDX_*.
constexpr const char* env_index_names[] = {"ENVINDEXDICT", "CHANNEL", "INDEX",
                                           "PROP",         "DABS",    "DREL"};

template <class Entry>
auto& property_in(Entry& entry) {
  return entry.data.env_prop;
}

template <class Entry>
struct dictionary_field {
  using property = decltype(Entry::data.env_prop);

  std::string_view element;
  std::string_view name;     ///< of the member
  std::string_view row;      ///< as a value of a record, for programs: JSON, diff
  std::string_view meaning;  ///< for a person who writes a document
  std::variant<std::int32_t& (*)(Entry&), property& (*)(Entry&), float& (*)(Entry&)> member;
};

/// In the order of what is written.
template <class Entry>
constexpr dictionary_field<Entry> dictionary_fields[] = {
    {env_index_names[ENV_INDX_INDX], "index", "index", "index under which the value travels",
     [](Entry& entry) -> std::int32_t& { return entry.index; }},
    {env_index_names[ENV_INDX_PROP], "env_prop", "property", "control-system property",
     property_in<Entry>},
    {env_index_names[ENV_INDX_DABS], "env_ch_abs_delta", "absolute_threshold",
     "absolute change threshold, in the unit of the property",
     [](Entry& entry) -> float& { return entry.data.env_ch_abs_delta; }},
    {env_index_names[ENV_INDX_DREL], "env_ch_rel_delta", "relative_threshold",
     "relative change threshold; 0.01 is one percent",
     [](Entry& entry) -> float& { return entry.data.env_ch_rel_delta; }},
};

}  // namespace zrt4::detail

#endif
