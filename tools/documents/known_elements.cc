#include "known_elements.hh"

#include <iterator>
#include <type_traits>
#include <variant>

#include "channel_fields.hh"
#include "dictionary_fields.hh"
#include "dimension_parameters.hh"
#include "event_fields.hh"

namespace {

namespace library = zrt4::detail;
namespace tables = zrt4::detail::tables;
using library::field_role;

/// A table in the making.
template <std::size_t Most>
struct element_table {
  known_element elements[Most] = {};
  std::size_t count = 0;

  constexpr void add(const known_element& element) { elements[count++] = element; }
  constexpr operator known_elements() const { return {elements, count}; }
};

constexpr known_element starts_record(std::string_view name, std::string_view needs,
                                      std::string_view needs_too = {}) {
  return {name, text_role::none, 0, {}, nullptr, {needs, needs_too}};
}

constexpr text_role role_of(field_role role, bool is_text) {
  switch (role) {
    case field_role::event_type:
      return text_role::event_type;
    case field_role::data_type:
      return text_role::data_type;
    case field_role::property:
      return text_role::property;
    default:
      return is_text ? text_role::name : text_role::number;
  }
}

/// The element `name` that the reader takes into `field`.
template <class Record>
constexpr known_element element_of(std::string_view name,
                                   const library::channel_field<Record>& field) {
  return std::visit(
      [&](auto member) -> known_element {
        using held = std::remove_reference_t<decltype(std::declval<Record&>().*member)>;
        constexpr bool is_text = std::is_array_v<held>;
        return {name, role_of(field.role, is_text), is_text ? sizeof(held) - 1 : 0};
      },
      field.member);
}

constexpr auto make_events() {
  namespace names = library::event_names;
  element_table<7 + std::size(library::event_numbers)> table;
  table.add({names::root});
  table.add(starts_record(names::event, names::type));
  table.add({names::type, text_role::event_type});
  for (const auto& number : library::event_numbers) table.add({number.element, text_role::number});
  table.add({names::server_block, text_role::name, library::longest_block_name});
  table.add({names::channels});
  table.add({names::channel, text_role::name});
  return table;
}
constexpr auto events = make_events();

constexpr std::string_view date = "isodate";  // written, and skipped when read

constexpr auto make_channels() {
  namespace names = library::element_dialect_names;
  element_table<3 + std::size(tables::channel) + std::size(tables::bit) +
                std::size(tables::dimension) + std::size(tables::statistic) +
                std::size(tables::spectrum_parameters) + std::size(tables::image_parameters)>
      table;
  table.add({names::root});
  table.add(starts_record(names::channel, library::element_name<&chan_descr_2010::prop_name>()));
  for (const auto& field : tables::channel) table.add(element_of(field.element, field));
  for (const auto& field : tables::bit) table.add(element_of(field.element, field));
  for (const auto& field : tables::dimension) table.add(element_of(field.element, field));
  for (const auto& field : tables::statistic) table.add(element_of(field.element, field));
  // Written, and skipped when read.
  table.add({date});
  for (const auto& parameter : tables::spectrum_parameters) table.add({parameter.element});
  for (const auto& parameter : tables::image_parameters) table.add({parameter.element});
  return table;
}
constexpr auto channels = make_channels();

/// Whether a channel has an element of this name, too.
constexpr bool is_of_channel(std::string_view name) {
  for (const auto& field : tables::channel) {
    if (field.variable.name == name) return true;
  }
  return false;
}

constexpr auto make_variables() {
  namespace names = library::variable_dialect_names;
  constexpr std::string_view property =
      library::field_of<&chan_descr_2010::prop_name>()->variable.name;
  element_table<9 + std::size(tables::channel) + std::size(tables::dimension)> table;
  table.add({names::root});
  for (const char* kind : {names::number, names::bits, names::matrix}) {
    table.add(starts_record(kind, property));
  }
  for (const auto& field : tables::dimension) {
    if (!field.variable) continue;
    known_element element = element_of(field.variable.name, field);
    if (is_of_channel(element.name)) element.parent = names::dimension;
    table.add(element);
  }
  for (const auto& field : tables::channel) {
    if (!field.variable) continue;
    table.add(field.variable_is_read ? element_of(field.variable.name, field)
                                     : known_element{field.variable.name});
  }
  known_element title = element_of(names::bit_title, *library::field_of<&bit_descr::bit_name>());
  title.attribute = names::bit_attribute;
  table.add(title);
  table.add({names::dimension, text_role::none, 0, {}, names::dimension_attribute});
  // Written, and skipped when read.
  table.add({date});
  table.add({names::first_index});
  table.add({names::frequency});
  return table;
}
constexpr auto variables = make_variables();

// The older records hold less; what they cut is worth knowing.
constexpr auto make_dictionary() {
  using entry = zrt4_env_index_dictionary_entry;
  constexpr auto& names = library::env_index_names;
  element_table<3 + std::size(library::dictionary_fields<entry>)> table;
  table.add({names[ENV_INDX_ROOT]});
  table.add(starts_record(names[ENV_INDX_CHAN], names[ENV_INDX_INDX], names[ENV_INDX_PROP]));
  for (const auto& field : library::dictionary_fields<entry>) {
    const bool is_property = field.element == names[ENV_INDX_PROP];
    const std::size_t kept = is_property ? sizeof(entry::data.env_prop) - 1 : 0;
    table.add({field.element, is_property ? text_role::property : text_role::number, kept});
  }
  table.add({date});
  return table;
}
constexpr auto dictionary = make_dictionary();

}  // namespace

constexpr known_elements known_in_events = events;
constexpr known_elements known_in_channels = channels;
constexpr known_elements known_in_variables = variables;
constexpr known_elements known_in_dictionary = dictionary;
constexpr known_elements known_in_camera;
