#include "difference.hh"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

using rows = std::vector<row>;
using place = rows::const_iterator;

void sort_deeply(rows& list) {
  for (row& record : list) {
    for (row_group& group : record.groups) sort_deeply(group.rows);
  }
  std::sort(list.begin(), list.end());
}

std::vector<difference> of_sorted(const rows& before, const rows& after, std::string_view one_name,
                                  matching among_several);

difference between(const row& before, const row& after, std::string_view one_name,
                   matching among_several) {
  difference result{difference::kind::changed, one_name, &before, {}, {}};
  for (std::size_t i = 0; i < before.fields.size(); ++i) {
    if (before.fields[i] == after.fields[i]) continue;
    result.fields.push_back({&before.fields[i], &after.fields[i]});
  }
  for (std::size_t i = 0; i < before.groups.size(); ++i) {
    const row_group& was = before.groups[i];
    for (difference& each :
         of_sorted(was.rows, after.groups[i].rows, was.one_name, among_several)) {
      result.inside.push_back(std::move(each));
    }
  }
  return result;
}

std::vector<const row*> those_only_in(place here, place here_end, place there, place there_end) {
  std::vector<const row*> only;
  while (here != here_end) {
    if (there == there_end || *here < *there) {
      only.push_back(&*here++);
    } else {
      if (*here == *there) ++here;
      ++there;
    }
  }
  return only;
}

place end_of_key(place first, place end) {
  return std::find_if_not(first, end, [&](const row& each) { return each.key() == first->key(); });
}

bool stands_before(const row* a, const row* b) {
  return a->at < b->at;
}

/// The records of one key, in the order of their list.
class listed_records {
 public:
  listed_records(place first, place end) {
    for (; first != end; ++first) all.push_back(&*first);
    std::sort(all.begin(), all.end(), stands_before);
  }

  std::size_t before(const row& record) const {
    const auto at = std::lower_bound(all.begin(), all.end(), &record, stands_before);
    return static_cast<std::size_t>(at - all.begin());
  }

 private:
  std::vector<const row*> all;
};

std::vector<difference> of_sorted(const rows& before, const rows& after, std::string_view one_name,
                                  matching among_several) {
  std::vector<difference> result;
  place was = before.begin();
  place is = after.begin();
  while (was != before.end() || is != after.end()) {
    const bool no_new = is == after.end() || (was != before.end() && was->key() < is->key());
    const bool no_old = was == before.end() || (is != after.end() && is->key() < was->key());
    const place was_end = no_old ? was : end_of_key(was, before.end());
    const place is_end = no_new ? is : end_of_key(is, after.end());
    auto old_ones = those_only_in(was, was_end, is, is_end);
    auto new_ones = those_only_in(is, is_end, was, was_end);
    const listed_records of_key(was, was_end);
    if (among_several == matching::in_order) {
      std::sort(old_ones.begin(), old_ones.end(), stands_before);
      std::sort(new_ones.begin(), new_ones.end(), stands_before);
    }
    for (std::size_t i = 0; i < std::max(old_ones.size(), new_ones.size()); ++i) {
      if (i >= old_ones.size()) {
        result.push_back({difference::kind::added, one_name, new_ones[i], {}, {}});
      } else if (i >= new_ones.size()) {
        result.push_back({difference::kind::removed, one_name, old_ones[i], {}, {}});
      } else {
        result.push_back(between(*old_ones[i], *new_ones[i], one_name, among_several));
      }
      if (i < old_ones.size()) result.back().before = of_key.before(*old_ones[i]);
    }
    was = was_end;
    is = is_end;
  }
  return result;
}

/// Where the record of a key stands in its list.
struct keyed {
  cell key;
  std::size_t at;

  friend bool operator<(const keyed& a, const keyed& b) { return a.key < b.key; }
};
using keys = std::vector<keyed>;

keys sorted_keys(const row_list& list) {
  keys all;
  all.reserve(list.size());
  for (std::size_t i = 0; i < list.size(); ++i) all.push_back({list[i].key().value, i});
  std::sort(all.begin(), all.end());
  return all;
}

/// The records of one key, which are the next ones from `from` on; none when theirs is another.
rows take_rows(const row_list& list, const keys& all, std::size_t& from, const cell& key) {
  rows taken;
  for (; from < all.size() && all[from].key == key; ++from) taken.push_back(list[all[from].at]);
  return taken;
}

}  // namespace

void for_each_difference(const row_list& before, const row_list& after, std::string_view one_name,
                         const std::function<void(const difference&)>& use,
                         matching among_several) {
  const keys was = sorted_keys(before);
  const keys is = sorted_keys(after);
  std::size_t old_one = 0;
  std::size_t new_one = 0;
  while (old_one < was.size() || new_one < is.size()) {
    const bool old_comes_first =
        new_one == is.size() || (old_one < was.size() && was[old_one].key < is[new_one].key);
    const cell key = old_comes_first ? was[old_one].key : is[new_one].key;
    rows old_ones = take_rows(before, was, old_one, key);
    rows new_ones = take_rows(after, is, new_one, key);
    if (old_ones == new_ones) continue;
    sort_deeply(old_ones);
    sort_deeply(new_ones);
    for (const difference& each : of_sorted(old_ones, new_ones, one_name, among_several)) use(each);
  }
}
