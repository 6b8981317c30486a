#include "known_elements.hh"

#include <cstdint>
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

constexpr known_element beginning(std::string_view name, part begins, part of) {
  known_element element{name, text_role::none, of, begins};
  element.is_single = false;
  return element;
}

constexpr known_element root(std::string_view name) {
  return beginning(name, part::document, part::none);
}

/// Written, and skipped when read.
constexpr known_element skipped(std::string_view name) {
  return {name, text_role::ignored};
}
constexpr std::string_view date = "isodate";

constexpr key_of property_key = {"property", rule::duplicate_property, part::document};
constexpr key_of name_key = {"DAQ name", rule::duplicate_name, part::document};
constexpr key_of index_key = {"index", rule::duplicate_index, part::document};

constexpr auto make_events() {
  namespace names = library::event_names;
  element_table<6 + std::size(library::event_numbers)> table;
  table.add(root(names::root));
  table.add(beginning(names::event, part::record, part::document));
  known_element type{names::type, text_role::number, part::record};
  type.is_required = true;
  type.form = number_form::listed_type;
  type.range = {0, ZRT4_EV_EVMAX};
  type.names = number_names::event_types;
  type.key = {"event type", rule::duplicate_event_type, part::document};
  table.add(type);
  for (const auto& number : library::event_numbers) {
    known_element element{number.element, text_role::number, part::record};
    element.form = number_form::decimal_or_hexadecimal;
    element.range = {0, number.most};
    table.add(element);
  }
  known_element block = beginning(names::server_block, part::block, part::record);
  block.role = text_role::name;
  block.limit = library::longest_block_name;
  block.key = {"server block", rule::duplicate_block, part::record};
  table.add(block);
  known_element list = beginning(names::channels, part::list, part::block);
  list.is_single = true;
  table.add(list);
  known_element channel{names::channel, text_role::name, part::list};
  channel.is_single = false;
  channel.key = {"channel", rule::duplicate_channel, part::block};
  table.add(channel);
  return table;
}
constexpr auto events = make_events();

// What belongs to channels, by the type of its record.
constexpr part part_of(const chan_descr_2010*) {
  return part::record;
}
constexpr part part_of(const bit_descr*) {
  return part::bit;
}
constexpr part part_of(const dim_descr*) {
  return part::dimension;
}
constexpr part part_of(const stat_descr*) {
  return part::statistic;
}

constexpr part holder_of(part begun) {
  return begun == part::statistic ? part::dimension : part::record;
}

constexpr std::int64_t last_bit = 31;

constexpr key_of key_of_number(part begun) {
  const std::string_view noun = begun == part::bit         ? "bit"
                                : begun == part::dimension ? "dimension"
                                                           : "statistic";
  return {noun, rule::duplicate_number, holder_of(begun)};
}

constexpr void begin_numbered(known_element& element, part begun) {
  element.of = holder_of(begun);
  element.begins = begun;
  element.is_single = false;
  element.key = key_of_number(begun);
  if (begun == part::bit) element.range.most = last_bit;
}

/// What a field is more than its text or number.
constexpr void give_role(known_element& element, field_role role) {
  switch (role) {
    case field_role::number_of_record:
      begin_numbered(element, element.of);
      break;
    case field_role::event_type:
      element.is_expected = true;
      element.if_missing = rule::channel_without_event_type;
      element.form = number_form::type;
      element.names = number_names::event_types;
      break;
    case field_role::data_type:
      element.form = number_form::type;
      element.names = number_names::data_types;
      break;
    case field_role::database_key:
      element.range.least = -1;  // there is none
      break;
    case field_role::property:
      element.role = text_role::name;
      element.is_required = true;
      element.key = property_key;
      break;
    case field_role::daq_name:
      element.role = text_role::name;
      element.is_expected = true;
      element.key = name_key;
      break;
    case field_role::description:
      element.describes_record = true;
      break;
    case field_role::plain:
    case field_role::size:
      break;
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
        known_element element{name, is_text ? text_role::text : text_role::number,
                              part_of(static_cast<const Record*>(nullptr))};
        element.limit = is_text ? sizeof(held) - 1 : 0;
        give_role(element, field.role);
        return element;
      },
      field.member);
}

constexpr auto make_channels() {
  namespace names = library::element_dialect_names;
  element_table<3 + std::size(tables::channel) + std::size(tables::bit) +
                std::size(tables::dimension) + std::size(tables::statistic) +
                std::size(tables::spectrum_parameters) + std::size(tables::image_parameters)>
      table;
  const auto add_all = [&table](const auto& fields) {
    for (const auto& field : fields) {
      known_element element = element_of(field.element, field);
      element.elsewhere = field.variable.name;
      element.may_follow = element.of != part::record;
      table.add(element);
    }
  };
  table.add(root(names::root));
  table.add(beginning(names::channel, part::record, part::document));
  add_all(tables::channel);
  add_all(tables::bit);
  add_all(tables::dimension);
  add_all(tables::statistic);
  table.add(skipped(date));
  for (const auto& parameter : tables::spectrum_parameters) table.add(skipped(parameter.element));
  for (const auto& parameter : tables::image_parameters) table.add(skipped(parameter.element));
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

constexpr std::int64_t last_index = INT32_MAX - 1;  // the size is one more

constexpr auto make_variables() {
  namespace names = library::variable_dialect_names;
  element_table<9 + std::size(tables::channel) + std::size(tables::dimension)> table;
  table.add(root(names::root));
  for (const char* kind : {names::number, names::bits, names::matrix}) {
    table.add(beginning(kind, part::record, part::document));
  }
  for (const auto& field : tables::channel) {
    if (!field.variable) continue;
    if (!field.variable_is_read) {
      table.add(skipped(field.variable.name));
      continue;
    }
    known_element element = element_of(field.variable.name, field);
    element.elsewhere = field.element;
    if (field.role == field_role::size) element.range.most = last_index;
    if (field.role == field_role::property) {
      element.merges = true;
      element.key.effect = "; they are read as one, which keeps the first";
    }
    table.add(element);
  }
  for (const auto& field : tables::dimension) {
    if (!field.variable) continue;
    known_element element = element_of(field.variable.name, field);
    element.elsewhere = field.element;
    // Others of a dimension are a channel's as well: who writes them behind it may mean either.
    element.may_follow = !is_of_channel(element.name);
    table.add(element);
  }
  known_element title = element_of(names::bit_title, *library::field_of<&bit_descr::bit_name>());
  begin_numbered(title, part::bit);
  title.only_in = names::bits;
  title.attribute = names::bit_attribute;
  table.add(title);
  known_element dimension{names::dimension};
  begin_numbered(dimension, part::dimension);
  dimension.only_in = names::matrix;
  dimension.attribute = names::dimension_attribute;
  table.add(dimension);
  table.add(skipped(date));
  table.add(skipped(names::first_index));
  table.add(skipped(names::frequency));
  return table;
}
constexpr auto variables = make_variables();

template <class Entry>
constexpr auto make_dictionary() {
  constexpr auto& names = library::env_index_names;
  element_table<3 + std::size(library::dictionary_fields<Entry>)> table;
  table.add(root(names[ENV_INDX_ROOT]));
  table.add(beginning(names[ENV_INDX_CHAN], part::record, part::document));
  for (const auto& field : library::dictionary_fields<Entry>) {
    known_element element{field.element, text_role::number, part::record};
    if (field.element == names[ENV_INDX_PROP]) {
      element.role = text_role::name;
      element.limit = sizeof(Entry::data.env_prop) - 1;
      element.is_required = true;
      element.key = property_key;
    } else if (field.element == names[ENV_INDX_INDX]) {
      element.is_required = true;
      element.key = index_key;
    } else {
      element.form = number_form::fraction;
    }
    table.add(element);
  }
  table.add(skipped(date));
  return table;
}
constexpr auto dictionary = make_dictionary<zrt4_env_index_dictionary_entry>();
constexpr auto wide_dictionary = make_dictionary<zrt4_env_index_dictionary_entry_2010>();

}  // namespace

constexpr known_elements known_in_events = events;
constexpr known_elements known_in_channels = channels;
constexpr known_elements known_in_variables = variables;
constexpr known_elements known_in_dictionary = dictionary;
constexpr known_elements known_in_wide_dictionary = wide_dictionary;
constexpr known_elements known_in_camera;
