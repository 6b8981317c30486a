#include "convert.hh"

#include <memory>
#include <utility>

#include "any_list.hh"
#include "csv_writing.hh"
#include "document_kind.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "message.hh"
#include "output_file.hh"
#include "progress.hh"
#include "reading.hh"
#include "selection.hh"

namespace {

sources::document opened(const std::string& name) {
  auto file = std::make_unique<input_file>(name);
  const document_kind kind = kind_of(*file);
  return {std::move(file), kind};
}

template <class List, class... How>
exit_code convert_list(sources from, document_form to, bool wide, const target& where, How... how) {
  List list;
  input_file& file = *from.documents.front().file;
  const reading result = with_progress(file.name(), [&] { return read_into(list, file, how...); });
  report_reading(file.name(), result, "what could be read is converted");
  from.read_cleanly = result.errors == 0;
  const bool is_read = !with_progress(
      file.name(), [&] { return report_unread(from.documents.front(), to, wide); }, "checking");
  const composition made = with_progress(
      file.name(), [&] { return compose(list, to); }, "converting");
  const bool arrives = !with_progress(
      file.name(), [&] { return report_losses(from, made, to); }, "checking");
  return fine_if(write(made.content, from, !is_read || !arrives, where));
}

}  // namespace

exit_code convert(const std::string& name, document_form to, bool wide, const target& where) {
  check_output(where.name, where.if_protected);
  sources from;
  from.documents.push_back(with_progress(shown_name(name), [&] { return opened(name); }));
  const auto& [file, kind] = from.documents.front();
  if (kind == document_kind::dictionary) {
    if (to != document_form::xml && to != document_form::text) {
      throw file_error(file->name(), "a dictionary converts to xml or text only");
    }
    return wide ? convert_list<zrt4::env_dictionary_2010>(std::move(from), to, wide, where)
                : convert_list<zrt4::env_dictionary>(std::move(from), to, wide, where);
  }
  if (!is_channels(kind)) throw wrong_kind(*file, kind, "channel descriptions or a dictionary");
  if (wide) throw file_error(file->name(), "--wide is for dictionaries only");
  const int dialect = dialect_of(kind);
  return convert_list<zrt4::channel_list>(std::move(from), to, wide, where, dialect, types_for(to));
}

exit_code convert_to_csv(const std::string& file_name, const std::string& rows,
                         const target& where) {
  check_output(where.name, where.if_protected);
  sources from;
  from.documents.push_back(with_progress(shown_name(file_name), [&] { return opened(file_name); }));
  input_file& file = *from.documents.front().file;
  const document_kind kind = from.documents.front().kind;
  any_list list = list_for(kind);
  const reading how = with_progress(file.name(), [&] { return read_into(list, file, kind); });
  report_reading(file.name(), how, "what could be read is converted");
  from.read_cleanly = how.errors == 0;
  bool is_lossy = with_progress(
      file.name(), [&] { return report_unread(from.documents.front(), document_form::csv, true); },
      "checking");
  try {
    const csv_table table(list, rows, traits_of(kind).records_name);
    const std::vector<std::string> losses = table.losses();
    for (const std::string& each : losses) {
      report(file.name(), "csv with these lines has no place for " + each);
    }
    is_lossy = is_lossy || !losses.empty();
    return fine_if(write([&] { return table.text(); }, from, is_lossy, where));
  } catch (const wrong_selection& reason) {
    throw file_error(file.name(), reason.what());
  }
}
