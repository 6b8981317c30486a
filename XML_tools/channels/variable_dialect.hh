#ifndef VARIABLE_DIALECT_HH
#define VARIABLE_DIALECT_HH

// The variable dialect: one DaqFloat, DaqBits or DaqFloatMatrix element per channel.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "channel_fields.hh"
#include "current_channel.hh"
#include "diagnostics.hh"
#include "name_table.hh"
#include "parse_chan_descr.hh"
#include "reader_rules.hh"
#include "type_masks.hh"

namespace zrt4::detail {

/// What an element of the dialect is for. A description, say, is the dimension's when there is one.
struct variable_element {
  enum kind { field, number, bits, matrix, bit_title, dimension } what = field;
  const channel_field<chan_descr_2010>* of_channel = nullptr;
  const channel_field<dim_descr>* of_dimension = nullptr;
};

/// All of them, by name.
constexpr auto make_variable_elements() {
  namespace names_of = variable_dialect_names;
  constexpr std::size_t own = 5;
  constexpr std::size_t most = own + std::size(tables::channel) + std::size(tables::dimension);
  named<variable_element> names[most] = {
      {names_of::number, {variable_element::number}},
      {names_of::bits, {variable_element::bits}},
      {names_of::matrix, {variable_element::matrix}},
      {names_of::bit_title, {variable_element::bit_title}},
      {names_of::dimension, {variable_element::dimension}},
  };
  std::size_t count = own;
  const auto entry_of = [&](std::string_view name) -> variable_element& {
    for (std::size_t i = own; i < count; ++i) {
      if (names[i].name == name) return names[i].meaning;
    }
    names[count].name = name;
    return names[count++].meaning;
  };
  for (const auto& field : tables::channel) {
    if (field.variable && field.variable_is_read) entry_of(field.variable.name).of_channel = &field;
  }
  for (const auto& field : tables::dimension) {
    if (field.variable) entry_of(field.variable.name).of_dimension = &field;
  }
  return name_table(names);
}
inline constexpr auto variable_elements = make_variable_elements();

template <class Variant>
class variable_dialect {
  using rules = reader_rules<Variant>;

 public:
  using parser = parser_of<Variant>;

  variable_dialect(std::vector<chan_descr_2010*>* list, bool shift_types)
      : channel(list), shift(rules::shifts_variable_event_type && shift_types) {}

  void step(std::string_view tag, const char* value, parser& pull) {
    const variable_element* element = variable_elements.find(tag);
    if (element == nullptr) return;
    switch (element->what) {
      case variable_element::number:
        return begin(MORV_TYPE_FLOAT);
      case variable_element::bits:
        return begin(MORV_TYPE_BITS);
      case variable_element::matrix:
        return begin(MORV_TYPE_ARRAY);
      default:
        break;
    }
    if (channel.record() == nullptr) return;
    if (element->what == variable_element::bit_title) {
      if (kind == MORV_TYPE_BITS) bit_title(value, pull);
    } else if (element->what == variable_element::dimension) {
      if (kind == MORV_TYPE_ARRAY) begin_dimension(pull);
    } else if (value != nullptr) {
      if (dim != nullptr && element->of_dimension != nullptr) {
        set_field(*element->of_dimension, *dim, value);
      } else if (element->of_channel != nullptr) {
        take(*element->of_channel, value);
      }
    }
  }

  /// Number of missing attributes.
  int errors() const { return missing_attributes; }

 private:
  void begin(int kind_of_variable) {
    channel.begin();
    kind = kind_of_variable;
    dim = nullptr;
  }

  void take(const channel_field<chan_descr_2010>& field, const char* value) {
    chan_descr_2010& record = *channel.record();
    switch (field.role) {
      case field_role::event_type:
        record.ev_type = event_type_of(value, shift);
        break;
      case field_role::property:
        channel.join(value, rules::merges_variable_types_by_or ? known_property::joins_types
                                                               : known_property::takes_types);
        break;
      case field_role::size: {
        const auto last = static_cast<std::uint32_t>(read_decimal(value));
        record.max_size = static_cast<std::int32_t>(last + 1);
        break;
      }
      default:
        set_field(field, record, value);
    }
  }

  // Taken at each step that yields the element: a title makes a nameless bit at its start tag and a
  // named one at its text, both of which callers count on.
  void bit_title(const char* value, parser& pull) {
    const char* number =
        attribute(variable_dialect_names::bit_attribute, variable_dialect_names::bit_title,
                  rules::bit_title_without_bit, pull);
    if (number == nullptr) return;
    bit_descr* bit = append(channel.record()->bits, channel.record()->nbits);
    bit->bit = read_decimal(number);
    if (value != nullptr) {
      set_text(bit->bit_name, value);
    } else if constexpr (rules::reports_untitled_bit) {
      tell({message_topic::empty_text, message_severity::remark, stdout},
           {"bitTitle is not defined for bit  ", std::to_string(bit->bit),
            " prop:", channel.record()->prop_name, "\n"},
           [&] { return scan_place::of(pull); });
    }
  }

  void begin_dimension(parser& pull) {
    const char* number = attribute(variable_dialect_names::dimension_attribute,
                                   variable_dialect_names::dimension, "No attribute: ", pull);
    if (number == nullptr) return;
    dim = append(channel.record()->dims, channel.record()->ndims);
    dim->dim = read_decimal(number);
  }

  const char* attribute(const char* name, const char* element, std::string_view complaint,
                        parser& pull) {
    char* value = nullptr;
    // Only read, whatever the signature says.
    if (pull.get_attr(const_cast<char*>(name), &value) == 0) return value;
    ++missing_attributes;
    tell({message_topic::missing_attribute, message_severity::error, stderr},
         {complaint, name, " found for ", element, " prop: ", channel.record()->prop_name, "\n"},
         [&] { return scan_place::of(pull); });
    return nullptr;
  }

  current_channel channel;
  int kind = MORV_TYPE_FLOAT;
  dim_descr* dim = nullptr;  // only in a matrix
  const bool shift;
  int missing_attributes = 0;
};

}  // namespace zrt4::detail

#endif
