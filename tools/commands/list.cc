#include "list.hh"

#include <functional>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "any_list.hh"
#include "blanks.hh"
#include "csv_writing.hh"
#include "each_file.hh"
#include "json_answer.hh"
#include "output_file.hh"
#include "row_json.hh"
#include "selection.hh"
#include "table.hh"
#include "terminal.hh"

namespace {

struct listed_file {
  std::string file;
  document_kind kind;
  reading how;
  any_list records;
};

listed_file read(input_file& file) {
  const document_kind kind = kind_of(file);
  listed_file result{file.name(), kind, {}, list_for(kind)};
  result.how = read_into(result.records, file, kind);
  return result;
}

exit_code report_result(const listed_file& one) {
  report_reading(one.file, one.how, "what could be read is listed");
  return fine_if(one.how.errors == 0);
}

/// The rows of all files, which are of one kind.
class listing {
 public:
  listing(std::size_t files, std::vector<condition> conditions, std::vector<std::string> columns)
      : several(files > 1), where(std::move(conditions)), wanted(std::move(columns)) {}

  void add(listed_file& one, const std::function<std::string(std::string_view)>& shown) {
    const held_records records = records_of(one.records);
    begin(one, records.type());
    for (std::size_t i = 0; i < records.size(); ++i) {
      const void* const record = records[i];
      if (!fits_all(where, record)) continue;
      std::vector<std::string>& row = rows.emplace_back();
      if (several) row.push_back(shown(one.file));
      for (const field_path& path : paths) row.push_back(shown(path.text(record)));
    }
  }

  std::vector<table_column> titles() const {
    std::vector<table_column> result;
    if (several) result.push_back({"file"});
    for (const field_path& path : paths) {
      const bool has_names = path.field() != nullptr && path.field()->names != nullptr;
      result.push_back({path.name(), path.is_number() && !has_names});
    }
    return result;
  }

  bool empty() const { return paths.empty(); }

  std::vector<std::vector<std::string>> rows;

 private:
  // Which columns there are is known with the first file that has what is named.
  void begin(const listed_file& one, const record_type& type) {
    if (type_of_rows == &type) return;
    if (type_of_rows != nullptr) {
      throw file_error(one.file, "of another kind (" +
                                     std::string(traits_of(one.kind).description) +
                                     ") than the files before: list them apart, or with --json");
    }
    try {
      for (condition& each : where) each.bind(type);
      std::vector<field_path> found;
      for (const std::string& name : wanted.empty() ? own_columns(type) : wanted) {
        found.emplace_back(type, trimmed(name));  // "name, units" is how people write a list
      }
      paths = std::move(found);
    } catch (const wrong_selection& reason) {
      throw file_error(one.file, reason.what());
    }
    type_of_rows = &type;
  }

  // Those of the records themselves, and how many they have inside.
  static std::vector<std::string> own_columns(const record_type& type) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < type.field_count; ++i) names.emplace_back(type.fields[i].name);
    for (std::size_t i = 0; i < type.group_count; ++i) names.emplace_back(type.groups[i].name);
    return names;
  }

  const bool several;
  std::vector<condition> where;
  std::vector<std::string> wanted;
  const record_type* type_of_rows = nullptr;  ///< null before the first file that fits
  std::vector<field_path> paths;
};

void print_table(const listing& all, bool columns_are_chosen) {
  constexpr std::size_t narrowest = 14;  // below it a text tells little
  if (all.empty()) return;
  if (!output_is_terminal()) {
    write_output("-", tabbed_text(all.titles(), all.rows));
    return;
  }
  const std::vector<table_column> titles = all.titles();
  std::size_t shown = 0;
  std::string text =
      table_text(titles, all.rows, terminal_width(), columns_are_chosen ? 1 : narrowest, shown);
  const std::size_t end = text.find('\n');
  text = coloured(colour::bold, text.substr(0, end)) + text.substr(end);
  write_output("-", text);
  std::string rest;
  for (std::size_t i = shown; i < titles.size(); ++i) {
    rest += (rest.empty() ? "" : ",") + titles[i].title;
  }
  if (!rest.empty()) report("list", "no room for --columns " + rest);
}

void print_csv(const listing& all) {
  if (all.empty()) return;
  std::vector<std::string> titles;
  for (const table_column& each : all.titles()) titles.push_back(each.title);
  std::string text = csv_line(titles);
  for (const auto& row : all.rows) text += csv_line(row);
  write_output("-", text);
}

void print_json(json_printer& out, listed_file& one, const std::vector<std::string>& where) {
  const held_records records = records_of(one.records);
  std::vector<condition> conditions = conditions_of(where);
  try {
    for (condition& each : conditions) each.bind(records.type());
  } catch (const wrong_selection& reason) {
    throw file_error(one.file, reason.what());
  }
  out.begin_object();
  out.members(json_of_file(one.file, traits_of(one.kind).name));
  out.member("errors", one.how.errors);
  out.begin_array("records");
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (!fits_all(conditions, records[i])) continue;
    out.element(to_json(row_of(records.type(), records[i])));
  }
  out.end();
  out.end();
}

}  // namespace

exit_code list(const std::vector<std::string>& files, const std::vector<std::string>& where,
               const std::vector<std::string>& columns, std::size_t jobs, list_format format) {
  listing all(files.size(), conditions_of(where), columns);
  const bool as_json = format == list_format::json;
  json_printer out;
  if (as_json) begin_documents(out, "list");
  const auto shown = [format](std::string_view text) {
    return format == list_format::csv ? to_utf8(text) : printable(text);
  };
  const exit_code code = for_each_file(
      files, jobs, read,
      [&](listed_file one) {
        if (as_json) {
          print_json(out, one, where);
        } else {
          all.add(one, shown);
        }
        return report_result(one);
      },
      [&](const unusable_file& file) {
        if (as_json) out.element(json_of_unusable(file));
      });
  if (format == list_format::table) print_table(all, !columns.empty());
  if (format == list_format::csv) print_csv(all);
  if (as_json) end_documents(out);
  return code;
}
