#include "sequences.hh"

#include <pybind11/pybind11.h>

#include <algorithm>

namespace zrt4::python {

record_list::~record_list() {
  constexpr std::size_t many = 1000;
  if (records.size() < many) return;
  const others_run meanwhile;
  records.clear();
}

void record_list::insert(std::size_t position, const std::shared_ptr<record>& given) {
  records.insert(records.begin() + static_cast<std::ptrdiff_t>(position), given);
  index_is_made = false;
}

void record_list::erase(std::size_t position) {
  records.erase(records.begin() + static_cast<std::ptrdiff_t>(position));
  index_is_made = false;
}

void record_list::take_all(std::vector<std::shared_ptr<record>>&& from) {
  records = std::move(from);
  index_is_made = false;
}

std::optional<std::size_t> record_list::find(std::string_view key) {
  if (!index_is_made || index_made_at != changes_of_keys()) make_index();
  for (const keys& each : index) {
    const auto found = std::lower_bound(each.begin(), each.end(), std::pair(key, 0U));
    if (found != each.end() && found->first == key) return found->second;
  }
  return {};
}

void record_list::make_index() {
  index.clear();
  for (const std::size_t key : kind.keys) {
    keys& all = index.emplace_back();
    all.reserve(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
      all.emplace_back(kind.key_of(records[i]->get(), key), static_cast<std::uint32_t>(i));
    }
    std::sort(all.begin(), all.end());
  }
  index_made_at = changes_of_keys();
  index_is_made = true;
}

std::optional<std::size_t> inner_list::find(std::string_view key) const {
  for (const std::size_t field : type().keys) {
    for (std::size_t i = 0; i < size(); ++i) {
      if (type().key_of(owner->inner_place(which, i), field) == key) return i;
    }
  }
  return {};
}

}  // namespace zrt4::python
