#include "diff.hh"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <utility>

#include "blanks.hh"
#include "dialect_rows.hh"
#include "difference.hh"
#include "document_kind.hh"
#include "each_file.hh"
#include "json_answer.hh"
#include "row_json.hh"
#include "terminal.hh"

namespace {

std::string headline(std::string_view one_name, const row& record) {
  std::string line(one_name);
  const row::field& key = record.key();
  if (const auto* name = std::get_if<std::string_view>(&key.value)) {
    const bool is_seen_whole = !name->empty() && trimmed(*name) == *name;
    if (is_seen_whole) return line + " " + printable(*name);
  }
  return line + " " + described(key);
}

/// How a kind of difference is shown.
struct style {
  const char* sign;
  colour hue;
};

style style_of(difference::kind what) {
  static constexpr style styles[] = {
      {"+ ", colour::green}, {"- ", colour::red}, {"~ ", colour::yellow}};
  return styles[static_cast<std::size_t>(what)];
}

void print_headline(std::string_view one_name, const row& record, const style& shown_as,
                    const std::string& indent) {
  std::printf("%s%s\n", indent.c_str(),
              coloured(shown_as.hue, shown_as.sign + headline(one_name, record)).c_str());
}

bool is_empty(const cell& value) {
  const auto* text = std::get_if<std::string_view>(&value);
  return text != nullptr && text->empty();
}

// A record that only one side has, with all it holds but empty texts.
void print_whole(std::string_view one_name, const row& record, const style& shown_as,
                 const std::string& indent) {
  print_headline(one_name, record, shown_as, indent);
  const std::string inner = indent + "    ";
  for (std::size_t i = 1; i < record.fields.size(); ++i) {
    const row::field& field = record.fields[i];
    if (is_empty(field.value)) continue;
    std::printf("%s%s: %s\n", inner.c_str(), std::string(field.name).c_str(),
                described(field).c_str());
  }
  for (const row_group& group : record.groups) {
    for (const row& each : group.rows) print_whole(group.one_name, each, shown_as, inner);
  }
}

void print(const difference& each, const std::string& indent) {
  const style shown_as = style_of(each.what);
  if (each.what != difference::kind::changed) {
    return print_whole(each.one_name, *each.record, shown_as, indent);
  }
  print_headline(each.one_name, *each.record, shown_as, indent);
  for (const difference::field& field : each.fields) {
    std::printf("%s    %s: %s -> %s\n", indent.c_str(), std::string(field.before->name).c_str(),
                described(*field.before).c_str(), described(*field.after).c_str());
  }
  for (const difference& inner : each.inside) print(inner, indent + "    ");
}

void add_value(json& object, const std::string& name, const row::field& field) {
  object[name] = to_json(field.value);
  const std::string beside = name_beside(field);
  if (!beside.empty()) object[name + "_name"] = beside;
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
    json one{{"name", field.before->name}};
    add_value(one, "before", *field.before);
    add_value(one, "after", *field.after);
    fields.push_back(std::move(one));
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

/// What is printed behind the last difference.
void print_end(json_printer& out, const std::vector<std::string>& not_compared,
               const json& unusable) {
  out.end();
  json names = json::array();
  for (const std::string& name : not_compared) names.push_back(name);
  out.member("not_compared", names);
  out.member("unusable", unusable);
  out.end();
}

struct side {
  std::string name;
  document_kind kind;
  loaded_document document;
};

side load(input_file& file) {
  const document_kind kind = kind_of(file);
  return {file.name(), kind, traits_of(kind).load(file)};
}

bool are_comparable(document_kind a, document_kind b) {
  return a == b || (is_channels(a) && is_channels(b));
}

std::string joined(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

// Of two dialects, only what both have is compared.
compared comparison_of(const side& one, const side& other) {
  compared both{"diff",
                one.name,
                other.name,
                one.document.rows,
                other.document.rows,
                traits_of(one.kind).record_name};
  if (one.kind == other.kind) return both;
  both.not_compared = keep_what_both_have(both.before, both.after);
  const side& variables = one.kind == document_kind::variables ? one : other;
  report(variables.name,
         "not compared, since this dialect does not have them: " + joined(both.not_compared));
  return both;
}

}  // namespace

exit_code diff(const std::string& before, const std::string& after, answer_format format) {
  std::vector<side> sides;
  json unusable = json::array();
  exit_code worst = for_each_file(
      {before, after}, 1, load,
      [&](side&& one) {
        const reading& how = one.document.how;
        report_reading(one.name, how, "what could be read is compared");
        const exit_code code = fine_if(how.errors == 0);
        sides.push_back(std::move(one));
        return code;
      },
      [&](const unusable_file& file) { unusable.push_back(json_of_unusable(file)); });
  if (sides.size() == 2 && !are_comparable(sides[0].kind, sides[1].kind)) {
    const std::string reason =
        "of another kind (" + std::string(traits_of(sides[1].kind).description) + ") than " +
        sides[0].name + " (" + std::string(traits_of(sides[0].kind).description) + ")";
    unusable.push_back(json_of_unusable({sides[1].name, reason, true}));
    report_always(sides[1].name, reason);
    worst = exit_trouble;
  }
  if (!unusable.empty()) {
    if (format == answer_format::json)
      print_no_comparison("diff", shown_name(before), shown_name(after), unusable);
    return worst;
  }
  const bool different = print_differences(comparison_of(sides[0], sides[1]), format);
  return std::max(worst, fine_if(!different));
}

bool print_differences(const compared& both, answer_format format) {
  bool different = false;
  json_printer out;
  const auto print_next = [&](const difference& each) {
    const bool is_first = !std::exchange(different, true);
    if (format == answer_format::text) {
      if (is_first) {
        std::printf("%s\n%s\n",
                    coloured(colour::bold, "--- " + printable(both.before_name)).c_str(),
                    coloured(colour::bold, "+++ " + printable(both.after_name)).c_str());
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
    print_end(out, both.not_compared, json::array());
  }
  return different;
}

void print_no_comparison(std::string_view subcommand, const std::string& before,
                         const std::string& after, const json& unusable) {
  json_printer out;
  out.begin_object();
  out.members(json_head(subcommand));
  out.member("before", to_utf8(before));
  out.member("after", to_utf8(after));
  out.member("equal", nullptr);
  out.begin_array("differences");
  print_end(out, {}, unusable);
}
