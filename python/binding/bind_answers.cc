// What the tool answers about documents: written in a form, merged, compared, checked.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <system_error>

#include "bindings.hh"
#include "dialect_rows.hh"
#include "difference.hh"
#include "document_kind.hh"
#include "file_error.hh"
#include "findings.hh"
#include "input_file.hh"
#include "merging.hh"
#include "output_file.hh"
#include "sequences.hh"
#include "values.hh"
#include "writing.hh"

namespace zrt4::python {

namespace {

using raw_channels = zrt4::channel_list;
using raw_entries = zrt4::env_dictionary_2010;

/// The records of a list of Python as a list of the library, which does not own them.
template <class List>
class lent {
 public:
  using raw = typename List::value_type;

  explicit lent(const record_list& from) : kept(from.all()) {
    std::vector<raw*> records;
    records.reserve(kept.size());
    for (const auto& each : kept) records.push_back(static_cast<raw*>(each->get()));
    list = List(std::move(records));
  }
  lent(const lent&) = delete;
  lent& operator=(const lent&) = delete;
  ~lent() { (void)list.release(); }
  List& get() { return list; }

 private:
  std::vector<std::shared_ptr<record>> kept;  // whatever becomes of the list of Python
  List list;
};

bool holds(const record_list& list, const record_type& type) {
  return &list.type() == &type;
}

template <class List>
py::tuple written_as(const record_list& records, document_form form) {
  lent<List> list(records);
  written made;
  {
    const library_work work;
    const auto unchanged = records_stay();
    made = written_form(list.get(), form);
  }
  py::list losses;
  for (const std::string& each : made.losses) losses.append(to_python(each));
  return py::make_tuple(losses, py::bytes(made.content));
}

py::tuple written_list(const record_list& records, const std::string& form) {
  const document_form wanted = form == "variables"    ? document_form::variables
                               : form == "text"       ? document_form::text
                               : form == "short-text" ? document_form::short_text
                                                      : document_form::xml;
  if (holds(records, type_of<chan_descr_2010>())) return written_as<raw_channels>(records, wanted);
  return written_as<raw_entries>(records, wanted);
}

/// The error number of a reason that the system gave; 0 when it is another one.
int number_of(const std::string& reason) {
  constexpr int most = 133;
  for (int number = 1; number <= most; ++number) {
    if (std::generic_category().message(number) == reason) return number;
  }
  return 0;
}

void replace_file(const py::bytes& name, const py::bytes& content) {
  const std::string path = name;
  const std::string bytes = content;
  const library_work work;
  try {
    write_output(path, bytes, write_protected::is_replaced);
  } catch (const file_error& error) {
    const int number = number_of(error.what());
    if (number == 0) throw;
    throw std::system_error(number, std::generic_category());
  }
}

void merge_lists(const record_list& base, const record_list& from, bool force, record_list& into) {
  const record_type& type = base.type();
  std::vector<std::shared_ptr<record>> made;
  raw_channels whole;
  raw_channels others;
  const auto copy_all = [&](const record_list& list, raw_channels& to) {
    for (const auto& each : list.all()) {
      to.get()->reserve(to.size() + 1);
      to.get()->push_back(static_cast<chan_descr_2010*>(copy_of(type, each->get())));
    }
  };
  copy_all(base, whole);
  copy_all(from, others);
  {
    const library_work work;
    merge_into(whole, others, force);
  }
  made.reserve(whole.size());
  auto& raw = *whole.get();
  std::size_t done = 0;
  try {
    for (; done < raw.size(); ++done) made.push_back(type.wrap(raw[done]));
  } catch (...) {
    raw.erase(raw.begin(), raw.begin() + static_cast<std::ptrdiff_t>(done));
    throw;
  }
  raw.clear();
  into.take_all(std::move(made));
}

struct to_python_value {
  py::object operator()(std::int64_t number) const { return py::int_(number); }
  py::object operator()(threshold value) const { return py::float_(std::stod(text_of(value))); }
  py::object operator()(std::string_view text) const { return to_python(text); }
};

py::object value_of(const cell& of) {
  return std::visit(to_python_value{}, of);
}

py::dict dict_of(const row& of) {
  py::dict result;
  for (const row::field& each : of.fields) result[py::str(each.name)] = value_of(each.value);
  for (const row_group& each : of.groups) {
    py::list inside;
    for (const row& inner : each.rows) inside.append(dict_of(inner));
    result[py::str(each.name)] = inside;
  }
  return result;
}

py::tuple tuple_of(const difference& of) {
  static constexpr const char* names[] = {"added", "removed", "changed"};
  py::list fields;
  for (const difference::field& each : of.fields) {
    fields.append(py::make_tuple(py::str(each.before->name), value_of(each.before->value),
                                 value_of(each.after->value)));
  }
  py::list inside;
  for (const difference& each : of.inside) inside.append(tuple_of(each));
  py::object whole = py::none();
  if (of.what != difference::kind::changed) whole = dict_of(*of.record);
  return py::make_tuple(names[static_cast<std::size_t>(of.what)], py::str(of.one_name),
                        value_of(of.record->key().value), whole, fields, inside);
}

/// The differences, and the names of what is not compared.
template <class List>
py::tuple differences_of(const record_list& before, const record_list& after, document_kind kind,
                         bool of_two_dialects) {
  lent<List> old_ones(before);
  lent<List> new_ones(after);
  row_list old_rows = rows_of(old_ones.get());
  row_list new_rows = rows_of(new_ones.get());
  py::list not_compared;
  if (of_two_dialects) {
    for (const std::string& each : keep_what_both_have(old_rows, new_rows)) {
      not_compared.append(each);
    }
  }
  // The locale is for the thresholds; what differs refers to the records, so they stay meanwhile.
  const plain_locale locale;
  py::list result;
  for_each_difference(old_rows, new_rows, traits_of(kind).record_name,
                      [&](const difference& each) { result.append(tuple_of(each)); });
  return py::make_tuple(result, not_compared);
}

py::tuple differences_between(const record_list& before, const record_list& after,
                              bool of_two_dialects) {
  const auto both = [&](const record_type& type) {
    return holds(before, type) && holds(after, type);
  };
  if (both(type_of<chan_descr_2010>())) {
    return differences_of<raw_channels>(before, after, document_kind::channels, of_two_dialects);
  }
  if (both(type_of<zrt4_ev_entry>())) {
    return differences_of<zrt4::event_list>(before, after, document_kind::events, false);
  }
  if (both(type_of<zrt4_env_index_dictionary_entry_2010>())) {
    return differences_of<raw_entries>(before, after, document_kind::dictionary, false);
  }
  if (both(type_of<ZRT4GigEFeature>())) {
    return differences_of<zrt4::camera_features>(before, after, document_kind::camera, false);
  }
  throw py::type_error("lists of one kind are needed, not of " + std::string(before.type().name) +
                       " and " + std::string(after.type().name));
}

constexpr std::size_t most_findings = 100;  // of one rule, as the tool; the rest is summed up

/// Kind, number of records, number of errors, and what was found.
py::tuple check_document(input_file& file) {
  document_kind kind{};
  std::size_t count = 0;
  int errors = 0;
  std::vector<finding> found;
  {
    const library_work work;
    refuse_json(file);
    kind = kind_of(file);
    const loaded_document document = traits_of(kind).load(file);
    count = document.rows.size();
    errors = document.how.errors;
    found = findings_of(file, kind, most_findings);
  }
  py::list findings;
  for (const finding& each : found) {
    const rule_traits& rule = traits_of(each.what);
    findings.append(py::make_tuple(each.place.line, each.place.column, to_python(each.text),
                                   py::str(rule.name), rule.weight == severity::error));
  }
  return py::make_tuple(py::str(traits_of(kind).name), count, errors, findings);
}

}  // namespace

void bind_answers(py::module_& module) {
  module.def("written", &written_list);
  module.def("replace_file", &replace_file);
  module.def("merge", &merge_lists);
  module.def("differences", &differences_between);
  module.def("check", &check_document);
}

}  // namespace zrt4::python
