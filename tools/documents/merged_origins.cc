#include "merged_origins.hh"

#include <algorithm>
#include <functional>

std::optional<record_origin> merged_origins::of(const void* record, field_set field) {
  const auto is_before = [](const taken& a, const taken& b) {
    return std::less<>()(a.record, b.record);
  };
  if (!is_sorted) std::stable_sort(all.begin(), all.end(), is_before);
  is_sorted = true;
  const auto [first, last] =
      std::equal_range(all.begin(), all.end(), taken{record, 0, {}}, is_before);
  std::optional<record_origin> origin;
  for (auto each = first; each != last; ++each) {
    if ((each->fields & field) != 0) origin = each->from;
  }
  return origin;
}
