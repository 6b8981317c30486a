#ifndef CHANNEL_RECORDS_HH
#define CHANNEL_RECORDS_HH

// What every source of the channel descriptions does with the records: set texts, append
// sub-records, release them.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "event_util.hh"

namespace zrt4::detail {

/// Copies as much of `text` as `field` holds. Whatever the field held before, zeroes follow.
template <std::size_t Size>
void set_text(char (&field)[Size], const char* text) {
  const std::size_t length = strnlen(text, Size - 1);
  std::memmove(field, text, length);
  if (field[length] != '\0') std::memset(field + length, 0, Size - length);
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
