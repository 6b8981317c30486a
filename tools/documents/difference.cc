#include "difference.hh"

#include <algorithm>
#include <iterator>

namespace {

using rows = std::vector<row>;
using place = rows::const_iterator;

void sort_deeply(rows& list) {
  for (row& record : list) {
    for (row_group& group : record.groups) sort_deeply(group.rows);
  }
  std::sort(list.begin(), list.end());
}

std::vector<difference> of_sorted(const rows& before, const rows& after, std::string_view one_name);

difference between(const row& before, const row& after, std::string_view one_name) {
  difference result{difference::kind::changed, one_name, &before, {}, {}};
  for (std::size_t i = 0; i < before.fields.size(); ++i) {
    if (before.fields[i] == after.fields[i]) continue;
    result.fields.push_back({&before.fields[i], &after.fields[i]});
  }
  for (std::size_t i = 0; i < before.groups.size(); ++i) {
    const row_group& was = before.groups[i];
    for (difference& each : of_sorted(was.rows, after.groups[i].rows, was.one_name)) {
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

std::vector<difference> of_sorted(const rows& before, const rows& after,
                                  std::string_view one_name) {
  std::vector<difference> result;
  place was = before.begin();
  place is = after.begin();
  while (was != before.end() || is != after.end()) {
    const bool no_new = is == after.end() || (was != before.end() && was->key() < is->key());
    const bool no_old = was == before.end() || (is != after.end() && is->key() < was->key());
    const place was_end = no_old ? was : end_of_key(was, before.end());
    const place is_end = no_new ? is : end_of_key(is, after.end());
    const auto old_ones = those_only_in(was, was_end, is, is_end);
    const auto new_ones = those_only_in(is, is_end, was, was_end);
    for (std::size_t i = 0; i < std::max(old_ones.size(), new_ones.size()); ++i) {
      if (i >= old_ones.size()) {
        result.push_back({difference::kind::added, one_name, new_ones[i], {}, {}});
      } else if (i >= new_ones.size()) {
        result.push_back({difference::kind::removed, one_name, old_ones[i], {}, {}});
      } else {
        result.push_back(between(*old_ones[i], *new_ones[i], one_name));
      }
    }
    was = was_end;
    is = is_end;
  }
  return result;
}

}  // namespace

std::vector<difference> differences(std::vector<row>& before, std::vector<row>& after,
                                    std::string_view one_name) {
  sort_deeply(before);
  sort_deeply(after);
  return of_sorted(before, after, one_name);
}
