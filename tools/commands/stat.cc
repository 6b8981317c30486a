#include "stat.hh"

#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>

#include "document_kind.hh"
#include "each_file.hh"
#include "json.hh"
#include "terminal.hh"

namespace {

// What records are counted by, as far as they have it.
constexpr std::string_view counted_fields[] = {"event_type", "data_type", "subsystem", "stream",
                                               "type"};

struct tally {
  std::string_view says;
  int count = 0;
};
using tallies = std::map<cell, tally>;

struct counts_of_field {
  std::string_view field;
  tallies values;
};

std::vector<counts_of_field> count(const std::vector<row>& records) {
  std::vector<counts_of_field> result;
  for (const std::string_view wanted : counted_fields) {
    tallies values;
    for (const row& record : records) {
      for (const row::field& field : record.fields) {
        if (field.name != wanted) continue;
        tally& one = values[field.value];
        one.says = field.says;
        ++one.count;
      }
    }
    if (!values.empty()) result.push_back({wanted, std::move(values)});
  }
  return result;
}

std::string label_of(const cell& value, const tally& of) {
  if (const auto* text = std::get_if<std::string_view>(&value)) {
    return text->empty() ? "(none)" : printable(*text);
  }
  std::string label = std::to_string(std::get<std::int64_t>(value));
  if (!of.says.empty()) label.append(" ").append(of.says);
  return label;
}

// The longest bar belongs to the largest count.
std::string bar(int count, int largest) {
  constexpr int longest = 40;
  if (!output_is_terminal()) return {};
  const int length = std::max(1, static_cast<int>(std::int64_t{longest} * count / largest));
  return "  " + coloured(colour::green, std::string(static_cast<std::size_t>(length), '#'));
}

void print(const counts_of_field& counts) {
  std::size_t width = 0;
  int largest = 1;
  for (const auto& [value, of] : counts.values) {
    width = std::max(width, label_of(value, of).size());
    largest = std::max(largest, of.count);
  }
  std::string title(counts.field);
  std::replace(title.begin(), title.end(), '_', ' ');
  std::printf("%s\n", coloured(colour::bold, title).c_str());
  for (const auto& [value, of] : counts.values) {
    std::printf("  %-*s %6d%s\n", static_cast<int>(width), label_of(value, of).c_str(), of.count,
                bar(of.count, largest).c_str());
  }
}

json to_json(const std::vector<counts_of_field>& all) {
  json result = json::object();
  for (const counts_of_field& counts : all) {
    json& list = result[std::string(counts.field)] = json::array();
    for (const auto& [value, of] : counts.values) {
      json one = {{"value", to_json(value)}};
      if (!of.says.empty()) one["name"] = of.says;
      one["count"] = of.count;
      list.push_back(std::move(one));
    }
  }
  return result;
}

}  // namespace

exit_code stat(const std::vector<std::string>& files, look wanted) {
  json result = json_head("stat");
  json& documents = result["documents"] = json::array();
  const exit_code code = for_each_file(
      files,
      [&](input_file& file) {
        const document_kind& kind = kind_of(file);
        const loaded_document document = kind.load(file);
        const std::vector<counts_of_field> counts = count(document.rows);
        if (wanted == look::json) {
          json shown = json_of_file(file.name(), kind.name);
          shown["errors"] = document.errors;
          shown["record_count"] = document.rows.size();
          shown["counts"] = to_json(counts);
          documents.push_back(std::move(shown));
        } else {
          std::printf("%s: %s, %s\n", file.name().c_str(), std::string(kind.description).c_str(),
                      records_of(kind, document.rows.size()).c_str());
          for (const counts_of_field& each : counts) print(each);
        }
        if (document.errors == 0) return exit_fine;
        complain_of_errors(file.name(), document.errors, "what could be read is counted");
        return exit_bad_document;
      },
      [&](const unusable_file& file) { documents.push_back(json_of_unusable(file)); });
  if (wanted == look::json) print_json(result);
  return code;
}
