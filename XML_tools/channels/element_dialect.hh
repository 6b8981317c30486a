#ifndef ELEMENT_DIALECT_HH
#define ELEMENT_DIALECT_HH

// The element dialect: one CHANNEL element per channel, BIT, DIM and STAT elements whose text is
// the number. Nesting is not checked: a value applies to the record that is current.

#include <array>
#include <cstddef>
#include <cstring>
#include <variant>
#include <vector>

#include "channel_fields.hh"
#include "current_channel.hh"
#include "name_table.hh"
#include "reader_rules.hh"
#include "type_masks.hh"

namespace zrt4::detail {

/// What an element of the dialect is for: the start of a channel, or a field of some record.
using channel_element =
    std::variant<std::monostate, const channel_field<chan_descr_2010>*,
                 const channel_field<bit_descr>*, const channel_field<dim_descr>*,
                 const channel_field<stat_descr>*>;

/// All of them, by name.
constexpr auto make_channel_elements() {
  constexpr std::size_t count = 1 + std::size(tables::channel) + std::size(tables::bit) +
                                std::size(tables::dimension) + std::size(tables::statistic);
  named<channel_element> names[count] = {{element_dialect_names::channel, {}}};
  std::size_t last = 0;
  for (const auto& field : tables::channel) names[++last] = {field.element, &field};
  for (const auto& field : tables::bit) names[++last] = {field.element, &field};
  for (const auto& field : tables::dimension) names[++last] = {field.element, &field};
  for (const auto& field : tables::statistic) names[++last] = {field.element, &field};
  return name_table(names);
}
inline constexpr auto channel_elements = make_channel_elements();

template <class Variant>
class element_dialect {
  using rules = reader_rules<Variant>;

 public:
  element_dialect(std::vector<chan_descr_2010*>* list, bool shift_types, bool delete_duplicated)
      : channel(list),
        shift(shift_types),
        for_known(rules::merges_duplicate_prop && delete_duplicated ? known_property::takes_types
                                                                    : known_property::is_listed) {}

  void step(const char* tag, const char* value) {
    // Only CHANNEL acts without a text or outside a channel.
    if (value == nullptr || channel.record() == nullptr) {
      if (std::strcmp(tag, element_dialect_names::channel) == 0) begin();
    } else if (const channel_element* element = channel_elements.find(tag)) {
      std::visit([&](auto what) { take(what, value); }, *element);
    }
  }

 private:
  void begin() {
    channel.begin();
    bit = nullptr;
    dim = nullptr;
    stat = nullptr;
  }

  void take(std::monostate /*starts a channel*/, const char* /*value*/) { begin(); }

  void take(const channel_field<chan_descr_2010>* field, const char* value) {
    chan_descr_2010& record = *channel.record();
    switch (field->role) {
      case field_role::event_type:
        record.ev_type = event_type_of(value, shift);
        break;
      case field_role::data_type:
        record.dtype = data_type_of(value, shift);
        break;
      case field_role::property:
        channel.join(value, for_known);
        break;
      default:
        set_field(*field, record, value);
    }
  }

  void take(const channel_field<bit_descr>* field, const char* value) {
    if (field->role == field_role::number_of_record) {
      bit = append(channel.record()->bits, channel.record()->nbits);
    }
    if (bit != nullptr) set_field(*field, *bit, value);
  }

  void take(const channel_field<dim_descr>* field, const char* value) {
    if (field->role == field_role::number_of_record) {
      if constexpr (rules::dim_ends_statistic) stat = nullptr;
      dim = append(channel.record()->dims, channel.record()->ndims);
    }
    if (dim != nullptr) {
      set_field(*field, *dim, value);
    } else if (field->role == field_role::description) {
      set_text(channel.record()->prop_desc, value);
    }
  }

  void take(const channel_field<stat_descr>* field, const char* value) {
    if (field->role == field_role::number_of_record && dim != nullptr) {
      stat = append(dim->stats, dim->nstats);
    }
    if (stat != nullptr) {
      set_field(*field, *stat, value);
    } else if (rules::stray_stat_descr_is_channels && field->role == field_role::description) {
      set_text(channel.record()->prop_desc, value);
    }
  }

  current_channel channel;
  bit_descr* bit = nullptr;
  dim_descr* dim = nullptr;
  stat_descr* stat = nullptr;
  const bool shift;
  const known_property for_known;
};

}  // namespace zrt4::detail

#endif
