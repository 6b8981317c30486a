#include "change_rows.hh"

#include <cstdint>
#include <utility>

namespace {

constexpr std::string_view names[] = {"added", "removed", "changed"};

std::string shown(const row::field& field) {
  struct {
    std::string operator()(std::int64_t number) const { return text_of(number); }
    std::string operator()(threshold value) const { return text_of(value); }
    std::string operator()(std::string_view text) const { return std::string(text); }
  } to_text;
  std::string text = std::visit(to_text, field.value);
  if (!field.number_name.empty()) text.append(" ").append(field.number_name);
  return text;
}

// What a record inside another is, but for its key.
std::string rest_of(const row& record) {
  std::string text;
  for (const row::field& field : record.fields) {
    const std::string value = &field == &record.key() ? "" : shown(field);
    if (!value.empty()) text.append(text.empty() ? "" : ", ").append(value);
  }
  return text;
}

}  // namespace

void change_list::add(const difference& each) {
  const auto what = static_cast<std::size_t>(each.what);
  ++numbers[what];
  key = keep(shown(each.record->key()));
  if (each.what != difference::kind::removed) states[key] = names[what];
  if (each.what != difference::kind::changed) add_row(names[what], "", "", "", "");
  add_changed(each, "");
}

std::size_t change_list::number_of(difference::kind what) const {
  return numbers[static_cast<std::size_t>(what)];
}

std::string_view change_list::state_of(const row& record) const {
  const auto found = states.find(shown(record.key()));
  return found == states.end() ? "as before" : found->second;
}

void change_list::add_row(std::string_view what, std::string_view inside, std::string_view field,
                          std::string before, std::string after) {
  all.push_back({{{"change", what, ""},
                  {"key", key, ""},
                  {"inside", inside, ""},
                  {"field", field, ""},
                  {"before", keep(std::move(before)), ""},
                  {"after", keep(std::move(after)), ""}},
                 {}});
}

// `inside` is the way from the outermost record to this one.
void change_list::add_changed(const difference& each, std::string_view inside) {
  for (const difference::field& field : each.fields) {
    add_row("changed", inside, field.before->name, shown(*field.before), shown(*field.after));
  }
  for (const difference& inner : each.inside) {
    std::string way(inside);
    way.append(way.empty() ? "" : ", ").append(inner.one_name).append(" ");
    const std::string_view here = keep(way + shown(inner.record->key()));
    if (inner.what == difference::kind::added) {
      add_row("added", here, "", "", rest_of(*inner.record));
    } else if (inner.what == difference::kind::removed) {
      add_row("removed", here, "", rest_of(*inner.record), "");
    } else {
      add_changed(inner, here);
    }
  }
}
