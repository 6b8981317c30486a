#include "document_writer.hh"

#include "channel_fields.hh"
#include "dictionary_fields.hh"
#include "document_text.hh"
#include "event_util.hh"
#include "untold.hh"
#include "written_channels.hh"

namespace {

namespace names = zrt4::detail::variable_dialect_names;
using zrt4::detail::channel_field;
using zrt4::detail::element_name;
using zrt4::detail::field_role;
using zrt4::detail::with_value;

// An event type that is not told would be another one as 0.
template <class Record>
void append_field(document_text& out, std::string_view element, const channel_field<Record>& field,
                  const Record& record) {
  with_value(field.member, record, [&](const auto& value) {
    if (!is_untold(value, field.role)) out.leaf(element, value);
  });
}

/// The lines of a record in the element dialect, but for the number that its own element holds.
template <class Record>
void append_elements(document_text& out, const Record& record) {
  for (const auto& field : zrt4::detail::fields_of(&record)) {
    if (field.role != field_role::number_of_record) append_field(out, field.element, field, record);
  }
}

template <auto Number, class Record>
void append_numbered(document_text& out, const Record& record) {
  out.begin(element_name<Number>(), record.*Number);
  append_elements(out, record);
  if constexpr (std::is_same_v<Record, dim_descr>) {
    for (const stat_descr* stat : record.stats) append_numbered<&stat_descr::stat>(out, *stat);
  }
  out.end(element_name<Number>());
}

void append_channel(document_text& out, const chan_descr_2010& channel) {
  out.begin(zrt4::detail::element_dialect_names::channel);
  append_elements(out, channel);
  for (const bit_descr* bit : channel.bits) append_numbered<&bit_descr::bit>(out, *bit);
  for (const dim_descr* dim : channel.dims) append_numbered<&dim_descr::dim>(out, *dim);
  out.end(zrt4::detail::element_dialect_names::channel);
}

// Only a matrix has dimensions, only bits have bits, and each may have a size.
const char* kind_of(const chan_descr_2010& channel) {
  if (!channel.dims.empty()) return names::matrix;
  if (!channel.bits.empty()) return names::bits;
  return channel.max_size != 1 ? names::matrix : names::number;
}

std::int32_t frequency(const chan_descr_2010& channel) {
  const int structure = get_event_struct_type(static_cast<int>(channel.ev_type));
  return structure == ZRT4_EV_STRUCT_LOCAL || structure == ZRT4_EV_STRUCT_ML ? -1 : 1;
}

template <class Record>
void append_variable_fields(document_text& out, const Record& record) {
  static constexpr auto written = zrt4::detail::in_order<&channel_field<Record>::variable>(
      zrt4::detail::fields_of(static_cast<const Record*>(nullptr)));
  for (const auto* field : written) {
    if (field->role != field_role::size) {
      append_field(out, field->variable.name, *field, record);
      continue;
    }
    with_value(field->member, record, [&](const auto& size) {
      if constexpr (std::is_same_v<std::decay_t<decltype(size)>, std::int32_t>) {
        if (size == 1) return;
        out.leaf(names::first_index, std::int32_t{0});
        out.leaf(field->variable.name, static_cast<std::uint32_t>(size) - 1);
      }
    });
  }
}

void append_variable(document_text& out, const chan_descr_2010& channel) {
  const char* const kind = kind_of(channel);
  out.begin(kind);
  append_variable_fields(out, channel);
  for (const bit_descr* bit : channel.bits) {
    out.leaf(names::bit_title, names::bit_attribute, bit->bit, bit->bit_name);
  }
  for (const dim_descr* dim : channel.dims) {
    out.begin(names::dimension, names::dimension_attribute, dim->dim);
    append_variable_fields(out, *dim);
    out.end(names::dimension);
  }
  out.leaf(names::frequency, frequency(channel));
  out.end(kind);
}

template <class Entry>
std::string dictionary(const zrt4::basic_env_dictionary<Entry>& list) {
  using zrt4::detail::env_index_names;
  document_text out(env_index_names[ENV_INDX_ROOT]);
  out.date();
  for (const Entry& entry : list) {
    out.begin(env_index_names[ENV_INDX_CHAN]);
    for (const auto& field : zrt4::detail::dictionary_fields<Entry>) {
      with_value(field.member, entry, [&](const auto& value) { out.leaf(field.element, value); });
    }
    out.end(env_index_names[ENV_INDX_CHAN]);
  }
  return out.finish();
}

}  // namespace

std::string document_of(zrt4::channel_list& list, int dialect) {
  if (dialect != MORV_FORMAT) {
    document_text out(zrt4::detail::element_dialect_names::root);
    for (const chan_descr_2010& channel : list) append_channel(out, channel);
    return out.finish();
  }
  document_text out(names::root);
  zrt4::detail::for_each_property(*list.get(), [&](const chan_descr_2010& channel, std::size_t) {
    append_variable(out, channel);
  });
  return out.finish();
}

std::string document_of(zrt4::env_dictionary& list) {
  return dictionary(list);
}
std::string document_of(zrt4::env_dictionary_2010& list) {
  return dictionary(list);
}
