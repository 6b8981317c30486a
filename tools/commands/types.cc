#include "types.hh"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "event_util.hh"
#include "json_answer.hh"
#include "message.hh"
#include "name_pattern.hh"
#include "selector_rules.hh"
#include "type_names.hh"

namespace {

/// One of the two tables, or what is wanted of it.
struct table {
  const char* one_name;
  const char* records_name;
  std::vector<named_type> types;
  bool is_of_events;
};

bool is_number(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

// As listings and `find` show them.
std::optional<std::uint32_t> mask_in(const std::string& text) {
  constexpr std::size_t prefix = 2;
  if (text.compare(0, prefix, "0x") != 0 && text.compare(0, prefix, "0X") != 0) return {};
  std::uint32_t mask = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + prefix, end, mask, 16);
  if (error != std::errc() || stop != end) return {};
  return mask;
}

class wanted_type {
 public:
  explicit wanted_type(const std::string& given)
      : text(given), mask(mask_in(given)), names(given, name_pattern::letters::any_case) {}

  bool is(const named_type& type) const {
    if (mask) return type.mask == mask;
    if (is_number(text)) return text == std::to_string(type.number);
    return names.matches(std::string(type.name).c_str());
  }

 private:
  std::string text;
  std::optional<std::uint32_t> mask;
  name_pattern names;
};

const char* way_of_looking_up(const named_type& type) {
  return zrt4::detail::found_by_daq_name(type.number) ? "DAQ name" : "property";
}

bool is_main_linac(const named_type& type) {
  return get_event_struct_type(type.number) == ZRT4_EV_STRUCT_ML;
}

std::string mask_of(const named_type& type) {
  if (!type.mask) return "-";
  char text[sizeof "0x80000000"];
  std::snprintf(text, sizeof text, "0x%x", *type.mask);
  return text;
}

// What a type is beyond its number, name and mask.
std::string remark_on(const table& of, const named_type& type) {
  if (!of.is_of_events) return {};
  if (!type.mask) return "only in event lists";
  return std::string("looked up by ") + way_of_looking_up(type) +
         (is_main_linac(type) ? ", main linac" : "");
}

void print_table(const table& each) {
  std::printf("%s\n", each.records_name);
  for (const named_type& type : each.types) {
    std::printf("  %2d %-18s  ", type.number, std::string(type.name).c_str());
    const std::string remark = remark_on(each, type);
    if (remark.empty()) {
      std::printf("%s\n", mask_of(type).c_str());
    } else {
      std::printf("%-10s  %s\n", mask_of(type).c_str(), remark.c_str());
    }
  }
}

void print_lines(const table& each) {
  for (const named_type& type : each.types) {
    const std::string remark = remark_on(each, type);
    std::printf("%s %d %s, mask %s%s\n", each.one_name, type.number, std::string(type.name).c_str(),
                mask_of(type).c_str(), remark.empty() ? "" : (", " + remark).c_str());
  }
}

json to_json(const table& of) {
  json list = json::array();
  for (const named_type& type : of.types) {
    json one = {{"number", type.number}, {"name", type.name}, {"mask", nullptr}};
    if (type.mask) one["mask"] = *type.mask;
    if (of.is_of_events) {
      one["looked_up_by"] = nullptr;
      if (type.mask) one["looked_up_by"] = way_of_looking_up(type);
      one["main_linac"] = is_main_linac(type);
    }
    list.push_back(std::move(one));
  }
  return list;
}

// Returns whether each of them is some type's.
bool keep_wanted(table (&tables)[2], const std::vector<std::string>& wanted) {
  std::vector<wanted_type> each_wanted(wanted.begin(), wanted.end());
  bool all_known = true;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const auto knows = [&](const table& of) {
      return std::any_of(of.types.begin(), of.types.end(),
                         [&](const named_type& type) { return each_wanted[i].is(type); });
    };
    if (std::any_of(std::begin(tables), std::end(tables), knows)) continue;
    report(wanted[i], "no event type or data type has this name, number or mask");
    all_known = false;
  }
  for (table& of : tables) {
    const auto is_unwanted = [&](const named_type& type) {
      return std::none_of(each_wanted.begin(), each_wanted.end(),
                          [&](const wanted_type& one) { return one.is(type); });
    };
    of.types.erase(std::remove_if(of.types.begin(), of.types.end(), is_unwanted), of.types.end());
  }
  return all_known;
}

}  // namespace

exit_code list_types(const std::vector<std::string>& wanted, answer_format format) {
  table tables[] = {{"event type", "event types", event_types(), true},
                    {"data type", "data types", data_types(), false}};
  const bool all_known = wanted.empty() || keep_wanted(tables, wanted);
  if (format == answer_format::text) {
    for (const table& each : tables) (wanted.empty() ? print_table : print_lines)(each);
  }
  if (format == answer_format::json) {
    json result = json_head("types");
    result["event_types"] = to_json(tables[0]);
    result["data_types"] = to_json(tables[1]);
    print_json(result);
  }
  return fine_if(all_known);
}
