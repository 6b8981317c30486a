#include "merging.hh"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "channel_fields.hh"
#include "channel_records.hh"
#include "known_values.hh"
#include "record_types.hh"
#include "rows.hh"
#include "untold.hh"

namespace {

namespace library = zrt4::detail;

const char* key_of(const chan_descr_2010& channel) {
  return channel.prop_name;
}
std::int32_t key_of(const bit_descr& bit) {
  return bit.bit;
}
std::int32_t key_of(const dim_descr& dimension) {
  return dimension.dim;
}
std::int32_t key_of(const stat_descr& statistic) {
  return statistic.stat;
}

const char* name_of(const chan_descr_2010& channel) {
  return channel.daq_name;
}
const char* name_of(const bit_descr& bit) {
  return bit.bit_name;
}
const char* name_of(const dim_descr& dimension) {
  return dimension.dim_name;
}
const char* name_of(const stat_descr& statistic) {
  return statistic.stat_name;
}

bit_descr* copy_of(const bit_descr& bit) {
  return zrt4_clone_bit_descr(const_cast<bit_descr*>(&bit));
}
dim_descr* copy_of(const dim_descr& dimension) {
  return zrt4_clone_dim_descr(const_cast<dim_descr*>(&dimension));
}
stat_descr* copy_of(const stat_descr& statistic) {
  return zrt4_clone_stat_descr(const_cast<stat_descr*>(&statistic));
}

int compared(const char* a, const char* b) {
  return std::strcmp(a, b);
}
int compared(std::int32_t a, std::int32_t b) {
  return static_cast<int>(a > b) - static_cast<int>(a < b);
}

/// Which records of a list complete which of another one.
template <class Record>
class pairing {
 public:
  pairing(const std::vector<Record*>& of_known, const std::vector<Record*>& of_others)
      : known(of_known), others(of_others), all(of_others.size()) {
    places there = in_order_of_names(known);
    places here = in_order_of_names(others);
    auto first = there.begin();
    for (auto from = here.begin(); from != here.end();) {
      const auto from_end = end_of_key(others, from, here.end());
      first = std::find_if(first, there.end(),
                           [&](std::size_t at) { return by_key(*known[at], *others[*from]) >= 0; });
      auto end = first;
      while (end != there.end() && by_key(*known[*end], *others[*from]) == 0) ++end;
      pair({first, end}, {from, from_end});
      first = end;
      from = from_end;
    }
  }

  /// Of the record at `place`; null when it has none.
  Record* partner(std::size_t place) const { return all[place].partner; }
  /// How many records of its key stand before the one at `place`.
  std::uint32_t before(std::size_t place) const { return all[place].before; }

 private:
  using places = std::vector<std::size_t>;
  struct paired {
    Record* partner = nullptr;
    std::uint32_t before = 0;
  };

  static int by_key(const Record& a, const Record& b) { return compared(key_of(a), key_of(b)); }
  static int by_name(const Record& a, const Record& b) { return compared(name_of(a), name_of(b)); }

  // No hash table: senders could choose properties that all have one hash.
  static places in_order_of_names(const std::vector<Record*>& records) {
    places order(records.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      const int keys = by_key(*records[a], *records[b]);
      return keys != 0 ? keys < 0 : by_name(*records[a], *records[b]) < 0;
    });
    return order;
  }

  static auto end_of_key(const std::vector<Record*>& records, places::iterator from,
                         places::iterator end) {
    return std::find_if(from, end, [&, first = *from](std::size_t at) {
      return by_key(*records[at], *records[first]) != 0;
    });
  }

  // All are of one key, in the order of their names.
  void pair(const places& there, places here) {
    places known_left;
    places others_left;
    auto next = there.begin();
    for (const std::size_t at : here) {
      while (next != there.end() && by_name(*known[*next], *others[at]) < 0) {
        known_left.push_back(*next++);
      }
      if (next != there.end() && by_name(*known[*next], *others[at]) == 0) {
        all[at].partner = known[*next++];
      } else {
        others_left.push_back(at);
      }
    }
    known_left.insert(known_left.end(), next, there.end());
    std::sort(known_left.begin(), known_left.end());
    std::sort(others_left.begin(), others_left.end());
    const std::size_t pairs = std::min(known_left.size(), others_left.size());
    for (std::size_t i = 0; i < pairs; ++i) all[others_left[i]].partner = known[known_left[i]];
    std::sort(here.begin(), here.end());
    for (std::size_t i = 0; i < here.size(); ++i)
      all[here[i]].before = static_cast<std::uint32_t>(i);
  }

  const std::vector<Record*>& known;
  const std::vector<Record*>& others;
  std::vector<paired> all;
};

/// Each record once: a channel with several properties is listed several times.
std::vector<chan_descr_2010*> each_once(const std::vector<chan_descr_2010*>& list) {
  std::vector<chan_descr_2010*> sorted(list);
  std::sort(sorted.begin(), sorted.end(), std::less<>());
  if (std::adjacent_find(sorted.begin(), sorted.end()) == sorted.end()) return list;
  std::vector<chan_descr_2010*> unique;
  std::set<const chan_descr_2010*> met;
  for (chan_descr_2010* const channel : list) {
    if (met.insert(channel).second) unique.push_back(channel);
  }
  return unique;
}

/// A record and those around it.
struct place_of_record {
  const place_of_record* around;
  std::string_view one_name;
  const record_type& type;
  const void* record;

  std::string name() const {
    const std::string own = std::string(one_name) + " " + shown_key(row_of(type, record));
    return around == nullptr ? own : around->name() + ", " + own;
  }
  std::string kind() const {
    return around == nullptr ? "" : around->kind() + std::string(one_name) + " ";
  }
};

class merger {
 public:
  merger(bool with_force, merge_report* to) : force(with_force), report(to) {}

  void merge(zrt4::channel_list& base, zrt4::channel_list& from) {
    const std::vector<chan_descr_2010*> known = each_once(*base.get());
    const std::vector<chan_descr_2010*> all = each_once(*from.get());
    const pairing<chan_descr_2010> pairs(known, all);
    const record_group& channels = records_in(base);
    for (std::size_t i = 0; i < all.size(); ++i) {
      origin.before = pairs.before(i);
      property = all[i]->prop_name;
      chan_descr_2010* const partner = pairs.partner(i);
      if (partner == nullptr) {
        note_taken(all[i], merged_origins::whole);
      } else {
        complete(*partner, *all[i], {nullptr, channels.one_name, *channels.type, partner});
      }
    }
    std::vector<chan_descr_2010*> merged;
    merged.reserve(all.size());
    base.get()->reserve(base.size() + all.size());
    // From here on nothing fails, so that each record has one owner.
    for (std::size_t i = 0; i < all.size(); ++i) {
      (pairs.partner(i) == nullptr ? *base.get() : merged).push_back(all[i]);
    }
    from.get()->swap(merged);
  }

 private:
  template <class Record>
  void complete(Record& in, const Record& from, const place_of_record& place) {
    static constexpr auto fields = library::in_order<&library::channel_field<Record>::row>(
        library::fields_of(static_cast<const Record*>(nullptr)));
    field_set taken = 0;
    for (std::size_t i = 0; i < fields.count; ++i) {
      std::visit(
          [&](auto member) {
            if (complete_field(in.*member, from.*member, *fields.all[i], i, place, &from)) {
              taken |= field_set{1} << i;
            }
          },
          fields.all[i]->member);
    }
    if (taken != 0) note_taken(&in, taken);
    complete_inside(in, from, place);
  }

  /// Returns whether the value was taken.
  template <class Value, class Field>
  bool complete_field(Value& to, const Value& value, const Field& field, std::size_t number,
                      const place_of_record& place, const void* from) {
    if (is_untold(to, field.role) && !is_untold(value, field.role)) return take(to, value);
    if (!is_known(value, field) || is_same(to, value)) return false;
    const bool contradicts = is_known(to, field);
    if (contradicts && report != nullptr) note_contradiction(place, from, number);
    if (contradicts && !force) return false;
    return take(to, value);
  }

  template <class Value>
  static bool take(Value& to, const Value& value) {
    library::copy_value(to, value);
    return true;
  }

  template <class Value, class Field>
  static bool is_known(const Value& value, const Field& field) {
    return !is_untold(value, field.role) && library::is_known(value, field.role);
  }

  template <class Value>
  static bool is_same(const Value& a, const Value& b) {
    if constexpr (std::is_array_v<Value>) {
      return std::strcmp(a, b) == 0;
    } else {
      return a == b;
    }
  }

  void complete_inside(chan_descr_2010& in, const chan_descr_2010& from,
                       const place_of_record& place) {
    merge_group(in.bits, in.nbits, from.bits, place.type.groups[0], place);
    merge_group(in.dims, in.ndims, from.dims, place.type.groups[1], place);
  }
  void complete_inside(dim_descr& in, const dim_descr& from, const place_of_record& place) {
    merge_group(in.stats, in.nstats, from.stats, place.type.groups[0], place);
  }
  template <class Record>
  void complete_inside(Record& /*in*/, const Record& /*from*/, const place_of_record& /*place*/) {}

  template <class Record>
  void merge_group(std::vector<Record*>& in, std::int32_t& count, const std::vector<Record*>& from,
                   const record_group& group, const place_of_record& around) {
    if (from.empty()) return;
    const pairing<Record> pairs(in, from);
    for (std::size_t i = 0; i < from.size(); ++i) {
      Record* const partner = pairs.partner(i);
      if (partner != nullptr) {
        complete(*partner, *from[i], {&around, group.one_name, *group.type, partner});
      } else {
        library::append(in, count, std::unique_ptr<Record>(copy_of(*from[i])));
        note_taken(in.back(), merged_origins::whole);
      }
    }
  }

  void note_taken(const void* record, field_set fields) {
    if (report != nullptr) report->origins.add(record, fields, origin);
  }

  void note_contradiction(const place_of_record& place, const void* from, std::size_t number) {
    const std::string kind = place.kind() + std::string(place.type.fields[number].name);
    report->contradictions.add(kind, property, origin, [&] {
      const std::string known = described(row_of(place.type, place.record).fields[number]);
      const std::string other = described(row_of(place.type, from).fields[number]);
      return place.name() + ": " + std::string(place.type.fields[number].name) + " " + other +
             (force ? " replaces " + known : " is not taken: it is " + known + " already");
    });
  }

  const bool force;
  merge_report* const report;
  record_origin origin{report != nullptr ? ++report->document : 0, 0};
  std::string_view property;
};

}  // namespace

void merge_into(zrt4::channel_list& base, zrt4::channel_list& from, bool force,
                merge_report* report) {
  merger(force, report).merge(base, from);
}
