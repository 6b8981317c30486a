#include "stat.hh"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <tuple>

#include "document_kind.hh"
#include "each_file.hh"
#include "json_answer.hh"
#include "row_json.hh"
#include "table.hh"
#include "terminal.hh"

namespace {

// What records are counted by, as far as they have it.
constexpr std::string_view counted_fields[] = {
    "event_type", "data_type",          "subsystem",         "stream",
    "type",       "absolute_threshold", "relative_threshold"};

/// A value, and its name when it is a number that has one.
struct labelled {
  cell value;
  std::string_view number_name;

  friend bool operator<(const labelled& a, const labelled& b) {
    return std::tie(a.value, a.number_name) < std::tie(b.value, b.number_name);
  }
};

struct field_tallies {
  std::string_view field;
  std::map<labelled, int> by_value;
};

/// Numbers from one to another, both included.
struct range {
  std::int64_t from;
  std::int64_t to;
};

/// The indices of a dictionary.
struct index_use {
  std::int64_t lowest = 0;
  std::int64_t highest = 0;
  std::int64_t missing = 0;  ///< between these two
  std::vector<range> gaps;
  std::map<std::int64_t, int> repeated;  ///< how often each stands that stands several times
};

/// A document, counted.
struct counted {
  std::string file;
  document_kind kind;
  reading how;
  std::size_t records;
  std::vector<field_tallies> tallies;
  std::deque<std::string> texts;                          ///< what the tallies refer to
  std::optional<index_use> indices;                       ///< of a dictionary with entries
  std::vector<std::pair<std::string_view, int>> without;  ///< of a camera: features without a text
};

std::vector<field_tallies> tally_fields(const row_list& records) {
  std::vector<field_tallies> all;
  for (const std::string_view counted : counted_fields) all.push_back({counted, {}});
  for (const row& record : records) {
    for (field_tallies& tallies : all) {
      for (const row::field& field : record.fields) {
        if (field.name != tallies.field) continue;
        ++tallies.by_value[{field.value, field.number_name}];
      }
    }
  }
  all.erase(std::remove_if(all.begin(), all.end(),
                           [](const field_tallies& one) { return one.by_value.empty(); }),
            all.end());
  return all;
}

// So that the records need not wait to be printed.
void detach(std::vector<field_tallies>& all, std::deque<std::string>& texts) {
  for (field_tallies& tallies : all) {
    std::map<labelled, int> detached;
    for (const auto& [of, records] : tallies.by_value) {
      const auto* text = std::get_if<std::string_view>(&of.value);
      const cell value = text != nullptr ? cell(texts.emplace_back(*text)) : of.value;
      detached.emplace(labelled{value, of.number_name}, records);
    }
    tallies.by_value.swap(detached);
  }
}

// The index of an entry is its key.
std::optional<index_use> indices_of(const row_list& entries) {
  std::map<std::int64_t, int> times;
  for (const row& entry : entries) ++times[std::get<std::int64_t>(entry.key().value)];
  if (times.empty()) return {};
  index_use use;
  use.lowest = times.begin()->first;
  use.highest = times.rbegin()->first;
  std::int64_t expected = use.lowest;
  for (const auto& [index, number] : times) {
    if (index != expected) {
      use.gaps.push_back({expected, index - 1});
      use.missing += index - expected;
    }
    if (number > 1) use.repeated.emplace(index, number);
    expected = index + 1;
  }
  return use;
}

std::vector<std::pair<std::string_view, int>> count_empty_texts(const row_list& records) {
  std::vector<std::pair<std::string_view, int>> counts;
  for (const row& record : records) {
    std::size_t at = 0;
    for (const row::field& field : record.fields) {
      const auto* text = std::get_if<std::string_view>(&field.value);
      if (text == nullptr) continue;
      if (at == counts.size()) counts.emplace_back(field.name, 0);
      if (text->empty()) ++counts[at].second;
      ++at;
    }
  }
  return counts;
}

counted count_document(input_file& file) {
  const document_kind kind = kind_of(file);
  loaded_document document = traits_of(kind).load(file);
  counted result{};
  result.file = file.name();
  result.kind = kind;
  result.how = std::move(document.how);
  result.records = document.rows.size();
  result.tallies = tally_fields(document.rows);
  detach(result.tallies, result.texts);
  if (kind == document_kind::dictionary) result.indices = indices_of(document.rows);
  if (kind == document_kind::camera) result.without = count_empty_texts(document.rows);
  return result;
}

std::string label_of(const labelled& of) {
  if (const auto* text = std::get_if<std::string_view>(&of.value)) {
    return text->empty() ? "(none)" : printable(*text);
  }
  if (const auto* value = std::get_if<threshold>(&of.value)) return text_of(*value);
  std::string label = text_of(std::get<std::int64_t>(of.value));
  if (!of.number_name.empty()) label.append(" ").append(of.number_name);
  return label;
}

// The longest bar belongs to the largest tally.
std::string bar(int records, int largest) {
  constexpr int longest = 40;
  if (!output_is_terminal()) return {};
  const int length = std::max(1, static_cast<int>(std::int64_t{longest} * records / largest));
  return "  " + coloured(colour::green, std::string(static_cast<std::size_t>(length), '#'));
}

std::string title_of(std::string_view field) {
  std::string title(field);
  std::replace(title.begin(), title.end(), '_', ' ');
  return coloured(colour::bold, title);
}

void print(const field_tallies& tallies) {
  std::size_t width = 0;
  int largest = 1;
  for (const auto& [of, records] : tallies.by_value) {
    width = std::max(width, display_width(label_of(of)));
    largest = std::max(largest, records);
  }
  std::printf("%s\n", title_of(tallies.field).c_str());
  for (const auto& [of, records] : tallies.by_value) {
    std::string label = label_of(of);
    label.append(width - display_width(label), ' ');
    std::printf("  %s %6d%s\n", label.c_str(), records, bar(records, largest).c_str());
  }
}

json to_json(const std::vector<field_tallies>& all) {
  json result = json::object();
  for (const field_tallies& tallies : all) {
    json& list = result[std::string(tallies.field)] = json::array();
    for (const auto& [of, records] : tallies.by_value) {
      json one = {{"value", to_json(of.value)}};
      const std::string name = name_beside({{}, of.value, of.number_name});
      if (!name.empty()) one["name"] = name;
      one["count"] = records;
      list.push_back(std::move(one));
    }
  }
  return result;
}

// As many of `all` as fit into a line, and what stands for the rest.
template <class List, class Show>
std::string first_few(const List& all, Show show) {
  constexpr int few = 8;
  std::string list;
  int shown_ones = 0;
  for (const auto& each : all) {
    if (!list.empty()) list += ", ";
    if (shown_ones++ == few) return list + "...";
    list += show(each);
  }
  return list.empty() ? "none" : list;
}

void print(const index_use& use) {
  std::printf("%s\n", title_of("index").c_str());
  std::printf("  lowest         %lld\n", static_cast<long long>(use.lowest));
  std::printf("  highest        %lld\n", static_cast<long long>(use.highest));
  const std::string gaps = first_few(use.gaps, [](const range& gap) {
    const std::string from = std::to_string(gap.from);
    return gap.from == gap.to ? from : from + " to " + std::to_string(gap.to);
  });
  std::printf("  missing        %s\n", gaps.c_str());
  const std::string repeated = first_few(use.repeated, [](const auto& each) {
    return std::to_string(each.first) + " (" + std::to_string(each.second) + " times)";
  });
  std::printf("  several times  %s\n", repeated.c_str());
}

void print(const std::vector<std::pair<std::string_view, int>>& without) {
  std::printf("%s\n", title_of("without").c_str());
  for (const auto& [field, features] : without) {
    std::string name(field);
    std::replace(name.begin(), name.end(), '_', ' ');
    std::printf("  %-12s %6d\n", name.c_str(), features);
  }
}

json to_json(const index_use& use) {
  json gaps = json::array();
  for (const range& gap : use.gaps) gaps.push_back({{"from", gap.from}, {"to", gap.to}});
  json repeated = json::array();
  for (const auto& [index, number] : use.repeated) {
    repeated.push_back({{"value", index}, {"count", number}});
  }
  return {{"lowest", use.lowest},
          {"highest", use.highest},
          {"missing", use.missing},
          {"gaps", std::move(gaps)},
          {"repeated", std::move(repeated)}};
}

void print(const counted& one) {
  std::printf("%s: %s, %s\n", printable(one.file).c_str(),
              std::string(traits_of(one.kind).description).c_str(),
              records_of(one.kind, one.records).c_str());
  if (one.indices) print(*one.indices);
  for (const field_tallies& each : one.tallies) print(each);
  if (!one.without.empty()) print(one.without);
}

json to_json(const counted& one) {
  json shown = json_of_file(one.file, traits_of(one.kind).name);
  shown["errors"] = one.how.errors;
  shown["record_count"] = one.records;
  shown["counts"] = to_json(one.tallies);
  if (one.kind == document_kind::dictionary) {
    shown["index"] = one.indices ? to_json(*one.indices) : json(nullptr);
  }
  if (one.kind == document_kind::camera) {
    json& without = shown["without"] = json::object();
    for (const auto& [field, features] : one.without) without[std::string(field)] = features;
  }
  return shown;
}

}  // namespace

exit_code stat(const std::vector<std::string>& files, std::size_t jobs, answer_format format) {
  const bool as_json = format == answer_format::json;
  json_printer out;
  if (as_json) begin_documents(out, "stat");
  const exit_code code = for_each_file(
      files, jobs, count_document,
      [&](const counted& one) {
        report(one.how.messages);
        if (as_json) {
          out.element(to_json(one));
        } else {
          print(one);
        }
        report_errors(one.file, one.how.errors, "what could be read is counted");
        return fine_if(one.how.errors == 0);
      },
      [&](const unusable_file& file) {
        if (as_json) out.element(json_of_unusable(file));
      });
  if (as_json) end_documents(out);
  return code;
}
