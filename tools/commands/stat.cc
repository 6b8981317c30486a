#include "stat.hh"

#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>

#include "document_kind.hh"
#include "each_file.hh"
#include "json_answer.hh"
#include "row_json.hh"
#include "terminal.hh"

namespace {

// What records are counted by, as far as they have it.
constexpr std::string_view counted_fields[] = {"event_type", "data_type", "subsystem", "stream",
                                               "type"};

/// The records of one value.
struct tally {
  std::string_view number_name;
  int records = 0;
};

struct field_tallies {
  std::string_view field;
  std::map<cell, tally> by_value;
};

std::vector<field_tallies> tally_fields(const std::vector<row>& records) {
  std::vector<field_tallies> result;
  for (const std::string_view counted : counted_fields) {
    field_tallies tallies{counted, {}};
    for (const row& record : records) {
      for (const row::field& field : record.fields) {
        if (field.name != counted) continue;
        tally& one = tallies.by_value[field.value];
        one.number_name = field.number_name;
        ++one.records;
      }
    }
    if (!tallies.by_value.empty()) result.push_back(std::move(tallies));
  }
  return result;
}

std::string label_of(const cell& value, const tally& of) {
  if (const auto* text = std::get_if<std::string_view>(&value)) {
    return text->empty() ? "(none)" : printable(*text);
  }
  std::string label = std::to_string(std::get<std::int64_t>(value));
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

void print(const field_tallies& tallies) {
  std::size_t width = 0;
  int largest = 1;
  for (const auto& [value, of] : tallies.by_value) {
    width = std::max(width, label_of(value, of).size());
    largest = std::max(largest, of.records);
  }
  std::string title(tallies.field);
  std::replace(title.begin(), title.end(), '_', ' ');
  std::printf("%s\n", coloured(colour::bold, title).c_str());
  for (const auto& [value, of] : tallies.by_value) {
    std::printf("  %-*s %6d%s\n", static_cast<int>(width), label_of(value, of).c_str(), of.records,
                bar(of.records, largest).c_str());
  }
}

json to_json(const std::vector<field_tallies>& all) {
  json result = json::object();
  for (const field_tallies& tallies : all) {
    json& list = result[std::string(tallies.field)] = json::array();
    for (const auto& [value, of] : tallies.by_value) {
      json one = {{"value", to_json(value)}};
      if (!of.number_name.empty()) one["name"] = of.number_name;
      one["count"] = of.records;
      list.push_back(std::move(one));
    }
  }
  return result;
}

}  // namespace

exit_code stat(const std::vector<std::string>& files, answer_format format) {
  json result = json_head("stat");
  json& documents = result["documents"] = json::array();
  const exit_code code = for_each_file(
      files,
      [&](input_file& file) {
        const document_kind kind = kind_of(file);
        const loaded_document document = traits_of(kind).load(file);
        const std::vector<field_tallies> tallies = tally_fields(document.rows);
        if (format == answer_format::json) {
          json shown = json_of_file(file.name(), traits_of(kind).name);
          shown["errors"] = document.errors;
          shown["record_count"] = document.rows.size();
          shown["counts"] = to_json(tallies);
          documents.push_back(std::move(shown));
        } else {
          std::printf("%s: %s, %s\n", file.name().c_str(),
                      std::string(traits_of(kind).description).c_str(),
                      records_of(kind, document.rows.size()).c_str());
          for (const field_tallies& each : tallies) print(each);
        }
        report_errors(file.name(), document.errors, "what could be read is counted");
        return fine_if(document.errors == 0);
      },
      [&](const unusable_file& file) { documents.push_back(json_of_unusable(file)); });
  if (format == answer_format::json) print_json(result);
  return code;
}
