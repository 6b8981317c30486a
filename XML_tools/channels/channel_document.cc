#include "channel_document.hh"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>
#include <variant>

#include "attr_tags_functions.hh"
#include "channel_fields.hh"
#include "dimension_parameters.hh"
#include "document_head.hh"
#include "number_text.hh"
#include "parse_chan_descr.hh"
#include "text_slots.hh"
#include "written_channels.hh"
#include "xml_writer.hh"

namespace zrt4::detail {

namespace {

using chan = chan_descr_2010;

std::string_view as_text(const char* text) {
  return text;
}
number_text as_text(std::int32_t number) {
  return decimal(number);
}
number_text as_text(std::uint32_t number) {
  return decimal(static_cast<std::int32_t>(number));
}
number_text as_text(float number) {
  return scientific(static_cast<double>(number));
}

template <class Record>
void append_field(std::string& out, std::string_view name, const channel_field<Record>& field,
                  const Record& record) {
  with_value(field.member, record, [&](const auto& value) {
    const auto text = as_text(value);
    const std::string_view shown = text;
    const bool has_no_name = field.role == field_role::daq_name && shown.empty();
    append_leaf(out, name, has_no_name ? undefined_daq_name : shown);
  });
}

/// The lines of a record in the element dialect, but for the number that its own element holds.
template <class Record>
void append_elements(std::string& out, const Record& record) {
  for (const auto& field : fields_of(&record)) {
    if (field.role == field_role::number_of_record) continue;
    append_field(out, field.element, field, record);
  }
}

template <class Record, std::size_t Count>
void append_parameters(std::string& out, const dimension_parameter<Record> (&parameters)[Count],
                       const Record& record) {
  for (const auto& each : parameters) {
    if (each.is_written != nullptr && !each.is_written(record)) continue;
    std::visit(
        [&](auto value) { append_leaf(out, each.element, as_text(std::invoke(value, record))); },
        each.value);
  }
}

/// The dimension parameters of each channel: those of the first usable entry with its DAQ name.
class parameter_table {
  auto name_of() const {
    return [this](std::uint32_t at) { return used[at]->name; };
  }

 public:
  explicit parameter_table(const std::vector<dim_params*>* entries) {
    if (entries == nullptr) return;
    for (const dim_params* entry : *entries) {
      if (!usable(entry)) continue;
      const auto next = static_cast<std::uint32_t>(used.size());
      if (slots.find_or_add(entry->name, next, name_of()) == next) used.push_back(entry);
    }
  }

  const dim_params* find(const char* daq_name) const {
    const std::uint32_t at = slots.find(daq_name, name_of());
    return at != text_slots::none ? used[at] : nullptr;
  }

 private:
  static bool usable(const dim_params* entry) {
    return entry != nullptr && entry->name != nullptr && entry->num != 0 &&
           (entry->params != nullptr || entry->iparams != nullptr);
  }

  std::vector<const dim_params*> used;
  text_slots slots;
};

class element_writer {
 public:
  static constexpr const char* root = element_dialect_names::root;

  explicit element_writer(const std::vector<dim_params*>* dims) : parameters(dims) {}

  void append(std::string& out, const chan& channel, std::size_t position) const {
    START_TAGN(out, element_dialect_names::channel);
    append_elements(out, channel);
    for (const bit_descr* bit : channel.bits) {
      begin_numbered(out, bit_element, bit->bit);
      append_elements(out, *bit);
      END_TAGN(out, bit_element);
    }
    const dim_params* entry = parameters.find(written_daq_name(channel));
    if (!channel.dims.empty()) {
      for (const dim_descr* dim : channel.dims) append_dimension(out, *dim, entry);
    } else if (entry != nullptr) {
      append_bare_dimensions(out, *entry, position);
    }
    END_TAGN(out, element_dialect_names::channel);
  }

 private:
  static constexpr const char* bit_element = element_name<&bit_descr::bit>();
  static constexpr const char* dim_element = element_name<&dim_descr::dim>();
  static constexpr const char* stat_element = element_name<&stat_descr::stat>();

  // The line end stays inside the element's text, as readers of these files have always seen it.
  static void begin_numbered(std::string& out, const char* name, std::int32_t number) {
    START_TAG(out, name);
    out += decimal(number);
    out += '\n';
  }

  static void append_dimension(std::string& out, const dim_descr& dim, const dim_params* entry) {
    begin_numbered(out, dim_element, dim.dim);
    append_elements(out, dim);
    for (const stat_descr* stat : dim.stats) {
      begin_numbered(out, stat_element, stat->stat);
      append_elements(out, *stat);
      END_TAGN(out, stat_element);
    }
    if (entry != nullptr && dim.dim >= 0 && entry->num > dim.dim) {
      if (entry->params != nullptr) {
        append_parameters(out, tables::spectrum_parameters, entry->params[dim.dim]);
      } else {
        append_parameters(out, tables::image_parameters, entry->iparams[dim.dim]);
      }
    }
    END_TAGN(out, dim_element);
  }

  // Of the image heads, the one at the channel's position in the list is written for every
  // dimension: that is how callers lay them out for channels without described dimensions.
  static void append_bare_dimensions(std::string& out, const dim_params& entry,
                                     std::size_t position) {
    for (std::int32_t i = 0; i < entry.num; ++i) {
      begin_numbered(out, dim_element, i);
      if (entry.params != nullptr) {
        append_parameters(out, tables::spectrum_parameters, entry.params[i]);
      }
      if (entry.iparams != nullptr) {
        append_parameters(out, tables::image_parameters, entry.iparams[position]);
      }
      END_TAGN(out, dim_element);
    }
  }

  const parameter_table parameters;
};

class variable_writer {
 public:
  static constexpr const char* root = variable_dialect_names::root;

  void append(std::string& out, const chan& channel, std::size_t /*position*/) {
    const char* const kind = kind_of(channel);
    START_TAGN(out, kind);
    append_fields(out, channel);
    for (const bit_descr* bit : channel.bits) {
      const number_text number = decimal(bit->bit);
      value[0] = number.c_str();
      START_TAG_ATTRNS(out, variable_dialect_names::bit_title, &bit_attribute, &value);
      out += bit->bit_desc;
      END_TAGN(out, variable_dialect_names::bit_title);
    }
    for (const dim_descr* dim : channel.dims) {
      const number_text number = decimal(dim->dim);
      value[0] = number.c_str();
      START_TAG_ATTRNNS(out, variable_dialect_names::dimension, &dimension_attribute, &value);
      append_fields(out, *dim);
      END_TAGN(out, variable_dialect_names::dimension);
    }
    append_leaf(out, variable_dialect_names::frequency, decimal(frequency(channel)));
    END_TAGN(out, kind);
  }

 private:
  static const char* kind_of(const chan& channel) {
    if (channel.max_size != 1) return variable_dialect_names::matrix;
    return channel.bits.empty() ? variable_dialect_names::number : variable_dialect_names::bits;
  }

  static std::int32_t frequency(const chan& channel) {
    const int structure = get_event_struct_type(static_cast<int>(channel.ev_type));
    return structure == ZRT4_EV_STRUCT_LOCAL || structure == ZRT4_EV_STRUCT_ML ? -1 : 1;
  }

  template <class Record>
  static void append_fields(std::string& out, const Record& record) {
    static constexpr auto written =
        in_order<&channel_field<Record>::variable>(fields_of(static_cast<const Record*>(nullptr)));
    for (const auto* field : written) append_one(out, *field, record);
  }

  static void append_one(std::string& out, const channel_field<chan>& field, const chan& channel) {
    if (field.role != field_role::size) {
      append_field(out, field.variable.name, field, channel);
    } else if (channel.max_size > 1) {
      append_leaf(out, variable_dialect_names::first_index, decimal(0));
      append_leaf(out, field.variable.name, decimal(channel.max_size - 1));
    }
  }
  static void append_one(std::string& out, const channel_field<dim_descr>& field,
                         const dim_descr& dim) {
    append_field(out, field.variable.name, field, dim);
  }

  const std::vector<const char*> bit_attribute{variable_dialect_names::bit_attribute};
  const std::vector<const char*> dimension_attribute{variable_dialect_names::dimension_attribute};
  std::vector<const char*> value{nullptr};
};

// What the first channels took tells well enough how long a document becomes; when they are the
// only long ones, no more is asked for than the channels themselves take twice.
constexpr std::size_t measured_channels = 64;

std::size_t length_with(std::size_t channels, const std::string& measured) {
  const std::size_t each = measured.size() / measured_channels;
  return channels * std::min(each + each / 8, 2 * sizeof(chan));
}

template <class Writer>
std::string document_of(const std::vector<chan*>& list, bool dated, Writer writer,
                        std::string* destination) {
  std::string out = begin_document(destination);
  START_TAGN(out, Writer::root);
  if (dated) append_date_line(out);
  for_each_property(list, [&](const chan& channel, std::size_t position) {
    if (position == measured_channels) expect_length(out, length_with(list.size(), out));
    writer.append(out, channel, position);
  });
  END_TAGN(out, Writer::root);
  end_document(out);
  return out;
}

}  // namespace

std::string chan_descr_document(const std::vector<chan*>& list, int format, bool in_file,
                                const std::vector<dim_params*>* dims, std::string* destination) {
  if (format == MORV_FORMAT) return document_of(list, false, variable_writer(), destination);
  return document_of(list, in_file, element_writer(dims), destination);
}

}  // namespace zrt4::detail
