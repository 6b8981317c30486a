#include "diff.hh"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <utility>

#include "difference.hh"
#include "document_kind.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "json_answer.hh"
#include "progress.hh"
#include "row_json.hh"
#include "terminal.hh"

namespace {

std::string headline(const difference& each) {
  std::string line(each.one_name);
  const row::field& key = each.record->key();
  if (const auto* name = std::get_if<std::string_view>(&key.value)) {
    return line + " " + printable(*name);
  }
  return line + " " + described(key);
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
                described(*field.before).c_str(), described(*field.after).c_str());
  }
  for (const difference& inner : each.inside) print(inner, indent + "    ");
}

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
  json& inside = result["inside"] = json::array();
  for (const difference& inner : each.inside) inside.push_back(to_json(inner));
  return result;
}

/// What is printed before the first difference, or where there is none.
void print_head(json_printer& out, const compared& both, bool equal) {
  out.begin_object();
  out.members(json_head(both.subcommand));
  out.member("before", to_utf8(both.before_name));
  out.member("after", to_utf8(both.after_name));
  out.member("equal", equal);
  out.begin_array("differences");
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
  const bool different =
      print_differences({"diff", old_one.name, new_one.name, old_one.document.rows,
                         new_one.document.rows, old_kind.record_name},
                        format);
  const bool all_well =
      !different && old_one.document.how.errors == 0 && new_one.document.how.errors == 0;
  return fine_if(all_well);
}

bool print_differences(const compared& both, answer_format format) {
  bool different = false;
  json_printer out;
  const auto print_next = [&](const difference& each) {
    const bool is_first = !std::exchange(different, true);
    if (format == answer_format::text) {
      if (is_first) {
        std::printf("%s\n%s\n", coloured(colour::bold, "--- " + both.before_name).c_str(),
                    coloured(colour::bold, "+++ " + both.after_name).c_str());
      }
      print(each, "");
    } else if (format == answer_format::json) {
      if (is_first) print_head(out, both, false);
      out.element(to_json(each));
    }
  };
  for_each_difference(both.before, both.after, both.record_name, print_next);
  if (format == answer_format::json) {
    if (!different) print_head(out, both, true);
    out.end();
    out.end();
  }
  return different;
}
