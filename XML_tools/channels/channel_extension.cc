#include <algorithm>
#include <cstdint>
#include <cstring>
#include <variant>

#include "channel_fields.hh"
#include "channel_records.hh"
#include "held_exception.hh"
#include "known_values.hh"
#include "parse_chan_descr.hh"

using zrt4::detail::append_copies;
using zrt4::detail::append_copy;
using zrt4::detail::channel_field;
using zrt4::detail::copy_value;
using zrt4::detail::field_role;
using zrt4::detail::is_known;

namespace {

void extend_field(const channel_field<chan_descr_2010>& field, chan_descr_2010& in,
                  const chan_descr_2010& from, bool force) {
  std::visit(
      [&](auto member) {
        auto& to = in.*member;
        const auto& value = from.*member;
        if (force ? is_known(value, field.role) : !is_known(to, field.role)) copy_value(to, value);
      },
      field.member);
}

void extend_fields(chan_descr_2010& in, const chan_descr_2010& from, bool force) {
  for (const auto& field : zrt4::detail::tables::channel) {
    if (field.role != field_role::property) extend_field(field, in, from, force);
  }
}

template <class Record>
Record* find_number(const std::vector<Record*>& records, std::int32_t Record::*field,
                    std::int32_t number) {
  const auto found = std::find_if(records.begin(), records.end(), [=](const Record* record) {
    return record != nullptr && record->*field == number;
  });
  return found != records.end() ? *found : nullptr;
}

void complete_bits(chan_descr_2010& in, const chan_descr_2010& from) {
  for (bit_descr* bit : from.bits) {
    if (bit != nullptr && find_number(in.bits, &bit_descr::bit, bit->bit) == nullptr)
      append_copy(in.bits, in.nbits, bit, zrt4_clone_bit_descr);
  }
}

void complete_dims(chan_descr_2010& in, const chan_descr_2010& from) {
  for (dim_descr* dim : from.dims) {
    if (dim == nullptr) continue;
    dim_descr* known = find_number(in.dims, &dim_descr::dim, dim->dim);
    if (known == nullptr) {
      append_copy(in.dims, in.ndims, dim, zrt4_clone_dim_descr);
    } else if (known->nstats == 0 && dim->nstats != 0) {
      append_copies(known->stats, known->nstats, dim->stats, zrt4_clone_stat_descr);
    }
  }
}

void drop_bits(chan_descr_2010& in) {
  if (in.nbits == 0) return;
  for (const bit_descr* bit : in.bits) delete bit;
  in.bits.clear();
  in.nbits = 0;
}

void drop_dims(chan_descr_2010& in) {
  if (in.ndims == 0) return;
  zrt4::detail::held_exception thrown;
  thrown.of([&in] { zrt4::detail::release_dimensions(in); });
  in.dims.clear();
  in.ndims = 0;
  thrown.release();
}

void extend_bits(chan_descr_2010& in, const chan_descr_2010& from, bool force) {
  if (from.nbits == 0) return;
  if (force) drop_bits(in);
  if (in.nbits == 0) {
    append_copies(in.bits, in.nbits, from.bits, zrt4_clone_bit_descr);
  } else {
    complete_bits(in, from);
  }
}

void extend_dims(chan_descr_2010& in, const chan_descr_2010& from, bool force) {
  if (from.ndims == 0) return;
  if (force) drop_dims(in);
  if (in.ndims == 0) {
    append_copies(in.dims, in.ndims, from.dims, zrt4_clone_dim_descr);
  } else {
    complete_dims(in, from);
  }
}

}  // namespace

bool extend_channel_description(chan_descr_2010* in, chan_descr_2010* from, bool force) {
  if (in == nullptr || from == nullptr) return true;
  if (std::strcmp(in->prop_name, from->prop_name) != 0) return true;
  extend_fields(*in, *from, force);
  extend_bits(*in, *from, force);
  extend_dims(*in, *from, force);
  return false;
}
