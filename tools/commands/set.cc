#include "set.hh"

#include <deque>
#include <map>
#include <memory>

#include "any_list.hh"
#include "bad_document.hh"
#include "diff.hh"
#include "file_error.hh"
#include "given_value.hh"
#include "input_file.hh"
#include "message.hh"
#include "progress.hh"
#include "selection.hh"
#include "writing.hh"

namespace {

struct document {
  std::string file;
  document_kind kind;
  reading how;
  any_list list;
};

document read(input_file& file) {
  const document_kind kind = kind_of(file);
  if (!is_channels(kind) && kind != document_kind::dictionary) {
    throw wrong_kind(file, kind, "channel descriptions or a dictionary");
  }
  document read{file.name(), kind, {}, list_for(kind)};
  read.how = read_into(read.list, file, kind);
  return read;
}

void report_reading(const document& result) {
  ::report_reading(result.file, result.how, "what could be read is changed");
}

/// FIELD=VALUE for records of one type.
class assignment {
 public:
  assignment(const record_type& type, const std::string& text) : record(&type) {
    const std::size_t equals = text.find('=');
    if (equals == text.npos || equals == 0) {
      throw wrong_selection(in_quotes(text) + " sets nothing: FIELD=VALUE is expected");
    }
    const field_path path(type, text.substr(0, equals));
    if (!path.is_of_record()) {
      throw wrong_selection(in_quotes(path.name()) +
                            " is not a field of the record itself; those inside "
                            "it can only be looked for");
    }
    field = path.position();
    value = text.substr(equals + 1);
    found = fitted_text(type.fields[field], value);
    if (!found.wrong.empty()) throw wrong_selection(path.name() + ": " + found.wrong);
    if (is_key() && value.empty()) {
      throw wrong_selection(path.name() + ": a record without it would not be read");
    }
  }
  // What was found refers to the value.
  assignment(const assignment&) = delete;
  assignment& operator=(const assignment&) = delete;

  bool is_key() const { return field == 0; }
  bool is_of(const assignment& other) const { return field == other.field; }
  void apply(void* to) const { record->set(to, field, found.value); }

 private:
  const record_type* record;
  std::size_t field = 0;
  std::string value;
  fitted_value found;
};

std::string text_of_key(const cell& key) {
  if (const auto* text = std::get_if<std::string_view>(&key)) return in_quotes(*text);
  return std::to_string(std::get<std::int64_t>(key));
}

// Readers use one record of a key only.
void refuse_duplicates(const document& of, const held_records& records,
                       const std::vector<std::size_t>& changed) {
  std::map<cell, std::size_t> number;
  for (std::size_t i = 0; i < records.size(); ++i) ++number[records.type().get(records[i], 0)];
  for (const std::size_t each : changed) {
    const cell key = records.type().get(records[each], 0);
    if (number[key] < 2) continue;
    throw bad_document(of.file,
                       "nothing is changed: " + std::to_string(number[key]) + " " +
                           std::string(traits_of(of.kind).records_name) + " would have the " +
                           std::string(records.type().fields[0].name) + " " + text_of_key(key));
  }
}

void change(document& of, std::vector<condition>& conditions,
            const std::vector<std::string>& assignments) {
  const held_records records = records_of(of.list);
  std::vector<std::size_t> changed;
  bool sets_key = false;
  try {
    for (condition& each : conditions) each.bind(records.type());
    std::deque<assignment> all;
    for (const std::string& text : assignments) {
      const assignment& one = all.emplace_back(records.type(), text);
      sets_key = one.is_key() || sets_key;
      for (const assignment& other : all) {
        if (&other != &one && other.is_of(one)) {
          throw wrong_selection(in_quotes(text) + " sets a field that is set already");
        }
      }
    }
    for (std::size_t i = 0; i < records.size(); ++i) {
      if (fits_all(conditions, records[i])) changed.push_back(i);
    }
    for (const std::size_t each : changed) {
      for (const assignment& set : all) set.apply(const_cast<void*>(records[each]));
    }
  } catch (const wrong_selection& reason) {
    throw file_error(of.file, reason.what());
  }
  if (changed.empty()) {
    throw bad_document(
        of.file, "nothing is changed: no " + std::string(traits_of(of.kind).record_name) + " fits");
  }
  if (sets_key) refuse_duplicates(of, records, changed);
}

row_list rows_in(const any_list& list) {
  return std::visit([](const auto& held) { return rows_of(held); }, list);
}

/// A document that was changed, in the form in which it is written.
struct changed_document {
  sources from;
  document changed;
  composition made;
  bool is_lossy = false;
};

std::unique_ptr<changed_document> changed(const std::string& name,
                                          const std::vector<std::string>& where,
                                          const std::vector<std::string>& assignments) {
  std::vector<condition> conditions = conditions_of(where);
  auto opened = with_progress(shown_name(name), [&] { return std::make_unique<input_file>(name); });
  auto result = std::make_unique<changed_document>();  // to which what is made of it refers
  document& of = result->changed;
  of = with_progress(opened->name(), [&] { return read(*opened); });
  report_reading(of);
  result->from.read_cleanly = of.how.errors == 0;
  result->from.documents.push_back({std::move(opened), of.kind});
  const bool is_dictionary = of.kind == document_kind::dictionary;
  const document_form to = is_dictionary ? document_form::xml : form_of(dialect_of(of.kind));
  change(of, conditions, assignments);
  const bool is_unread = report_unread(result->from.documents.front(), to, true);
  result->made = is_dictionary ? compose(std::get<zrt4::env_dictionary_2010>(of.list), to)
                               : compose(std::get<zrt4::channel_list>(of.list), to);
  result->is_lossy = report_losses(result->from, result->made, to) || is_unread;
  return result;
}

}  // namespace

exit_code set(const std::string& file, const std::vector<std::string>& where,
              const std::vector<std::string>& assignments, const target& where_to) {
  check_output(where_to.name, where_to.if_protected);
  const auto made = changed(file, where, assignments);
  return fine_if(write(made->made.content, made->from, made->is_lossy, where_to));
}

exit_code set_dry_run(const std::string& file, const std::vector<std::string>& where,
                      const std::vector<std::string>& assignments, bool lossy,
                      answer_format format) {
  const auto made = changed(file, where, assignments);
  const document before = read(*made->from.documents.front().file);
  print_differences({"set", before.file, "set", rows_in(before.list), made->made.arriving,
                     traits_of(before.kind).record_name},
                    format);
  return fine_if(made->from.read_cleanly && (lossy || !made->is_lossy));
}
