#include "stat.hh"

#include <algorithm>
#include <cstdio>
#include <deque>
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

/// A document, counted.
struct counted {
  std::string file;
  document_kind kind;
  reading how;
  std::size_t records;
  std::vector<field_tallies> tallies;
  std::deque<std::string> texts;  ///< what the tallies refer to
};

std::vector<field_tallies> tally_fields(const row_list& records) {
  std::vector<field_tallies> all;
  for (const std::string_view counted : counted_fields) all.push_back({counted, {}});
  for (const row& record : records) {
    for (field_tallies& tallies : all) {
      for (const row::field& field : record.fields) {
        if (field.name != tallies.field) continue;
        tally& one = tallies.by_value[field.value];
        one.number_name = field.number_name;
        ++one.records;
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
    std::map<cell, tally> detached;
    for (const auto& [value, of] : tallies.by_value) {
      const auto* text = std::get_if<std::string_view>(&value);
      detached.emplace(text != nullptr ? cell(texts.emplace_back(*text)) : value, of);
    }
    tallies.by_value.swap(detached);
  }
}

counted count_document(input_file& file) {
  const document_kind kind = kind_of(file);
  loaded_document document = traits_of(kind).load(file);
  counted result{
      file.name(), kind, std::move(document.how), document.rows.size(), tally_fields(document.rows),
      {}};
  detach(result.tallies, result.texts);
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

void print(const counted& one) {
  std::printf("%s: %s, %s\n", one.file.c_str(),
              std::string(traits_of(one.kind).description).c_str(),
              records_of(one.kind, one.records).c_str());
  for (const field_tallies& each : one.tallies) print(each);
}

json to_json(const counted& one) {
  json shown = json_of_file(one.file, traits_of(one.kind).name);
  shown["errors"] = one.how.errors;
  shown["record_count"] = one.records;
  shown["counts"] = to_json(one.tallies);
  return shown;
}

}  // namespace

exit_code stat(const std::vector<std::string>& files, std::size_t jobs, answer_format format) {
  json result = json_head("stat");
  json& documents = result["documents"] = json::array();
  const exit_code code = for_each_file(
      files, jobs, count_document,
      [&](const counted& one) {
        report(one.how.messages);
        if (format == answer_format::json) {
          documents.push_back(to_json(one));
        } else {
          print(one);
        }
        report_errors(one.file, one.how.errors, "what could be read is counted");
        return fine_if(one.how.errors == 0);
      },
      [&](const unusable_file& file) { documents.push_back(json_of_unusable(file)); });
  if (format == answer_format::json) print_json(result);
  return code;
}
