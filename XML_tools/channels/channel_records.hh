#ifndef CHANNEL_RECORDS_HH
#define CHANNEL_RECORDS_HH

// What every source of the channel descriptions does with the records: set fields, append
// sub-records, release them.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

#include "channel_fields.hh"
#include "event_util.hh"
#include "number_text.hh"
#include "record_fields.hh"

namespace zrt4::detail {

/// Sets a field to what an element's text says: a text, or a decimal number.
template <class Record>
void set_field(const channel_field<Record>& field, Record& record, const char* value) {
  with_value(field.member, record, [value](auto& held) {
    using held_type = std::remove_reference_t<decltype(held)>;
    if constexpr (std::is_array_v<held_type>) {
      set_text(held, value);
    } else {
      held = static_cast<held_type>(read_decimal(value));
    }
  });
}

/// Releases a channel and all it holds; nothing when it is null.
void release_channel(const chan_descr_2010* channel);

/// Appends a record, a new one or `record`, and counts it. When memory runs out, `records` is as it
/// was.
template <class Record>
Record* append(std::vector<Record*>& records, std::int32_t& count,
               std::unique_ptr<Record> record = std::make_unique<Record>()) {
  records.push_back(record.get());
  ++count;
  return record.release();
}

/// Appends a copy of `record`; nothing when it is null.
template <class Record>
void append_copy(std::vector<Record*>& records, std::int32_t& count, Record* record,
                 Record* (*clone)(Record*)) {
  if (record != nullptr) append(records, count, std::unique_ptr<Record>(clone(record)));
}

/// Appends a copy of each record of `from` that is not null.
template <class Record>
void append_copies(std::vector<Record*>& records, std::int32_t& count,
                   const std::vector<Record*>& from, Record* (*clone)(Record*)) {
  for (Record* record : from) append_copy(records, count, record, clone);
}

/// Releases the dimensions of a channel with the statistics their counters own; reports statistics
/// that no counter owns and leaves them alone.
void release_dimensions(const chan_descr_2010& channel);

}  // namespace zrt4::detail

#endif
