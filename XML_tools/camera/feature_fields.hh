#ifndef FEATURE_FIELDS_HH
#define FEATURE_FIELDS_HH

// The texts of a camera's feature, each once: what opens them, what fills them, and what the tool
// shows and compares.

#include <string>
#include <string_view>

#include "zrt4_gige_descr.hh"

namespace zrt4::detail {

using feature_text = std::string ZRT4GigEFeature::*;

/// What a text holds while the walk has not found one for it.
constexpr std::string_view never_set = "Unknown";
constexpr std::string_view awaits_text = "Waiting";

struct feature_field {
  feature_text text;
  std::string_view name;  ///< of the member
  std::string_view row;   ///< as a value of a feature, for programs: JSON, diff
};

/// The name comes from an attribute; a text fills the first of the others that awaits one.
constexpr feature_field feature_fields[] = {
    {&ZRT4GigEFeature::name, "name", "name"},
    {&ZRT4GigEFeature::extension, "extension", "control_name"},
    {&ZRT4GigEFeature::tooltip, "tooltip", "tool_tip"},
    {&ZRT4GigEFeature::description, "description", "description"},
};

}  // namespace zrt4::detail

#endif
