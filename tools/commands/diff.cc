#include "diff.hh"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "document_kind.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "json_answer.hh"
#include "progress.hh"
#include "row_json.hh"
#include "terminal.hh"

namespace {

std::string shown(const row::field& field) {
  struct {
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(threshold value) const { return text_of(value); }
    std::string operator()(std::string_view text) const { return '"' + printable(text) + '"'; }
  } to_text;
  std::string result = std::visit(to_text, field.value);
  if (!field.number_name.empty()) result.append(" ").append(field.number_name);
  return result;
}

std::string headline(const difference& each) {
  std::string line(each.one_name);
  const row::field& key = each.record->key();
  if (const auto* name = std::get_if<std::string_view>(&key.value)) {
    return line + " " + printable(*name);
  }
  return line + " " + shown(key);
}

void print(const difference& each, const std::string& indent) {
  static constexpr struct {
    const char* sign;
    colour hue;
  } styles[] = {{"+ ", colour::green}, {"- ", colour::red}, {"~ ", colour::yellow}};
  const auto& style = styles[static_cast<std::size_t>(each.what)];
  std::printf("%s%s\n", indent.c_str(), coloured(style.hue, style.sign + headline(each)).c_str());
  for (const difference::field& field : each.fields) {
    std::printf("%s    %s: %s -> %s\n", indent.c_str(), std::string(field.before->name).c_str(),
                shown(*field.before).c_str(), shown(*field.after).c_str());
  }
  for (const difference& inner : each.inside) print(inner, indent + "    ");
}

void print(const std::string& before, const std::string& after,
           const std::vector<difference>& found) {
  if (found.empty()) return;
  std::printf("%s\n%s\n", coloured(colour::bold, "--- " + before).c_str(),
              coloured(colour::bold, "+++ " + after).c_str());
  for (const difference& each : found) print(each, "");
}

json to_json(const std::vector<difference>& found);

json to_json(const difference& each) {
  static constexpr const char* names[] = {"added", "removed", "changed"};
  json result{{"change", names[static_cast<std::size_t>(each.what)]},
              {"type", each.one_name},
              {"key", to_json(each.record->key().value)}};
  if (each.what != difference::kind::changed) {
    result["record"] = to_json(*each.record);
    return result;
  }
  json& fields = result["fields"] = json::array();
  for (const difference::field& field : each.fields) {
    fields.push_back({{"name", field.before->name},
                      {"before", to_json(field.before->value)},
                      {"after", to_json(field.after->value)}});
  }
  result["inside"] = to_json(each.inside);
  return result;
}

json to_json(const std::vector<difference>& found) {
  json array = json::array();
  for (const difference& each : found) array.push_back(to_json(each));
  return array;
}

struct side {
  std::string name;
  document_kind kind;
  loaded_document document;
};

side load(const std::string& name) {
  side result = with_progress(shown_name(name), [&] {
    input_file file(name);
    const document_kind kind = kind_of(file);
    return side{file.name(), kind, traits_of(kind).load(file)};
  });
  report_reading(result.name, result.document.how, "what could be read is compared");
  return result;
}

}  // namespace

exit_code diff(const std::string& before, const std::string& after, answer_format format) {
  side old_one = load(before);
  side new_one = load(after);
  const kind_traits& old_kind = traits_of(old_one.kind);
  const kind_traits& new_kind = traits_of(new_one.kind);
  const bool comparable =
      old_one.kind == new_one.kind || (is_channels(old_one.kind) && is_channels(new_one.kind));
  if (!comparable) {
    throw file_error(new_one.name, "of another kind (" + std::string(new_kind.description) +
                                       ") than " + old_one.name + " (" +
                                       std::string(old_kind.description) + ")");
  }
  const auto found =
      differences(old_one.document.rows, new_one.document.rows, old_kind.record_name);
  print_differences("diff", old_one.name, new_one.name, found, format);
  const bool all_well =
      found.empty() && old_one.document.how.errors == 0 && new_one.document.how.errors == 0;
  return fine_if(all_well);
}

void print_differences(std::string_view subcommand, const std::string& before,
                       const std::string& after, const std::vector<difference>& found,
                       answer_format format) {
  if (format == answer_format::text) print(before, after, found);
  if (format == answer_format::json) {
    json result = json_head(subcommand);
    result["before"] = to_utf8(before);
    result["after"] = to_utf8(after);
    result["equal"] = found.empty();
    result["differences"] = to_json(found);
    print_json(result);
  }
}
