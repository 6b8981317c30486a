#ifndef VARIABLE_DIALECT_HH
#define VARIABLE_DIALECT_HH

// The variable dialect: one DaqFloat, DaqBits or DaqFloatMatrix element per channel.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "diagnostics.hh"
#include "name_table.hh"
#include "parse_chan_descr.hh"
#include "current_channel.hh"

namespace zrt4::detail {

template <class Rules>
class variable_dialect {
 public:
  using parser = typename Rules::input::parser;

  variable_dialect(std::vector<chan_descr_2010*>* list, bool shift_types)
      : channel(list), shift(Rules::shifts_variable_event_type && shift_types) {}

  void step(std::string_view tag, const char* value, parser& pull) {
    const rule* found = rules().find(tag);
    if (found == nullptr) return;
    switch (found->where) {
      case anywhere:
        break;
      case in_variable:
        if (channel.record() == nullptr || value == nullptr) return;
        break;
      case in_bits:
        if (channel.record() == nullptr || kind != MORV_TYPE_BITS) return;
        break;
      case in_matrix:
        if (channel.record() == nullptr || kind != MORV_TYPE_ARRAY) return;
        break;
    }
    (this->*found->act)(value, pull);
  }

  /// Number of missing attributes.
  int errors() const { return missing_attributes; }

 private:
  using self = variable_dialect;
  // Only variables act everywhere, and only plain properties need a text.
  enum place { anywhere, in_variable, in_bits, in_matrix };
  struct rule {
    place where;
    void (self::*act)(const char* value, parser& pull);
  };

  static const auto& rules() {
    using chan = chan_descr_2010;
    static constexpr named<rule> names[] = {
        {"DaqFloat", {anywhere, &self::begin<MORV_TYPE_FLOAT>}},
        {"DaqBits", {anywhere, &self::begin<MORV_TYPE_BITS>}},
        {"DaqFloatMatrix", {anywhere, &self::begin<MORV_TYPE_ARRAY>}},
        {"evType", {in_variable, &self::event_type}},
        {"vindo", {in_variable, &self::property}},
        {"daqName", {in_variable, &self::text<&chan::daq_name>}},
        {"subSystem", {in_variable, &self::text<&chan::subsystem>}},
        {"setPoint", {in_variable, &self::set_point}},
        {"description", {in_variable, &self::text<&chan::prop_desc, &dim_descr::dim_desc>}},
        {"units", {in_variable, &self::text<&chan::units, &dim_descr::units>}},
        {"lastIndex", {in_variable, &self::last_index}},
        {"bitTitle", {in_bits, &self::bit_title}},
        {"dimension", {in_matrix, &self::begin_dimension}},
        {"name", {in_matrix, &self::dimension_name}},
    };
    static constexpr name_table table(names);
    return table;
  }

  template <int Kind>
  void begin(const char* /*value*/, parser& /*pull*/) {
    channel.begin();
    kind = Kind;
    dim = nullptr;
  }

  void event_type(const char* value, parser& /*pull*/) {
    const std::int32_t number = decimal(value);
    channel.record()->ev_type = shift ? bit_mask(number) : static_cast<std::uint32_t>(number);
  }

  void property(const char* value, parser& /*pull*/) {
    channel.join(value, Rules::merges_variable_types_by_or ? duplicates::accumulate_types
                                                           : duplicates::complete_types);
  }

  template <auto Field>
  void text(const char* value, parser& /*pull*/) {
    set_text(channel.record()->*Field, value);
  }

  template <auto Field, auto DimensionField>
  void text(const char* value, parser& pull) {
    if (dim != nullptr) {
      set_text(dim->*DimensionField, value);
    } else {
      text<Field>(value, pull);
    }
  }

  void set_point(const char* value, parser& /*pull*/) {
    channel.record()->set_point = decimal(value);
  }

  void last_index(const char* value, parser& /*pull*/) {
    const auto last = static_cast<std::uint32_t>(decimal(value));
    channel.record()->max_size = static_cast<std::int32_t>(last + 1);
  }

  // Taken at each step that yields the element: a title makes a nameless bit at its start tag and a
  // named one at its text, both of which callers count on.
  void bit_title(const char* value, parser& pull) {
    char name[] = "bit";
    const char* number = attribute(name, "bitTitle", Rules::bit_title_without_bit, pull);
    if (number == nullptr) return;
    bit_descr* bit = append(channel.record()->bits, channel.record()->nbits);
    bit->bit = decimal(number);
    if (value != nullptr) {
      set_text(bit->bit_name, value);
    } else if constexpr (Rules::reports_untitled_bit) {
      say(stdout, {"bitTitle is not defined for bit  ", std::to_string(bit->bit),
                   " prop:", channel.record()->prop_name, "\n"});
    }
  }

  void begin_dimension(const char* /*value*/, parser& pull) {
    char name[] = "id";
    const char* number = attribute(name, "dimension", "No attribute: ", pull);
    if (number == nullptr) return;
    dim = append(channel.record()->dims, channel.record()->ndims);
    dim->dim = decimal(number);
  }

  void dimension_name(const char* value, parser& /*pull*/) {
    if (dim != nullptr && value != nullptr) set_text(dim->dim_name, value);
  }

  const char* attribute(char* name, const char* element, std::string_view complaint, parser& pull) {
    char* value = nullptr;
    if (pull.get_attr(name, &value) == 0) return value;
    say(stderr,
        {complaint, name, " found for ", element, " prop: ", channel.record()->prop_name, "\n"});
    ++missing_attributes;
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
