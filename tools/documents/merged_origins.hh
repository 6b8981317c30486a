#ifndef MERGED_ORIGINS_HH
#define MERGED_ORIGINS_HH

#include <cstdint>
#include <optional>
#include <vector>

/// Where a record stands: in which of some documents, and how many of its property stand there
/// before it.
struct record_origin {
  std::uint32_t document = 0;
  std::uint32_t before = 0;
};

/// Fields of a record, a bit for each, from the first of its row on.
using field_set = std::uint64_t;

/// Which of several documents the values of merged records are from. Those that it does not know
/// are from the first.
class merged_origins {
 public:
  /// A record with all its fields, and all inside it.
  static constexpr field_set whole = ~field_set{0};
  /// What only whole records have: no row has so many fields.
  static constexpr field_set itself = field_set{1} << 63U;

  /// The latest counts.
  void add(const void* record, field_set fields, record_origin from) {
    all.push_back({record, fields, from});
    is_sorted = false;
  }

  /// Of one of these fields, as far as another document than the first is known.
  std::optional<record_origin> of(const void* record, field_set field);

 private:
  struct taken {
    const void* record;
    field_set fields;
    record_origin from;
  };

  std::vector<taken> all;
  bool is_sorted = true;
};

#endif
