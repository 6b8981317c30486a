#include "convert.hh"

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

template <class List, class... How>
exit_code convert_list(input_file& file, document_form to, const std::string& output, How... how) {
  List list;
  const reading result = with_progress(file.name(), [&] { return read_into(list, file, how...); });
  report_reading(file.name(), result, "what could be read is converted");
  return fine_if(write_list(list, result.errors == 0, file.name(), to, output));
}

}  // namespace

exit_code convert(const std::string& file_name, document_form to, bool wide,
                  const std::string& output) {
  auto file = with_progress(shown_name(file_name), [&] { return input_file(file_name); });
  const document_kind kind = kind_of(file);
  if (kind == document_kind::dictionary) {
    if (to != document_form::xml && to != document_form::text) {
      throw file_error(file.name(), "a dictionary converts to xml or text only");
    }
    return wide ? convert_list<zrt4::env_dictionary_2010>(file, to, output)
                : convert_list<zrt4::env_dictionary>(file, to, output);
  }
  if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions or a dictionary");
  if (wide) throw file_error(file.name(), "--wide is for dictionaries only");
  return convert_list<zrt4::channel_list>(file, to, output, dialect_of(kind), types_for(to));
}

exit_code convert_to_csv(const std::string& file_name, const std::string& rows,
                         const std::string& output) {
  auto file = with_progress(shown_name(file_name), [&] { return input_file(file_name); });
  const document_kind kind = kind_of(file);
  any_list list = list_for(kind);
  const reading how = with_progress(file.name(), [&] { return read_into(list, file, kind); });
  report_reading(file.name(), how, "what could be read is converted");
  try {
    const csv_table table(list, rows, traits_of(kind).records_name);
    const std::vector<std::string> losses = table.losses();
    for (const std::string& each : losses) {
      report(file.name(), "csv with these lines has no place for " + each);
    }
    const bool all_well = how.errors == 0 && losses.empty();
    if (all_well || is_standard_output(output)) {
      write_output(output, table.text());
    } else {
      report(output,
             "not written, because not all went well; without -o, standard output takes what "
             "there is");
    }
    return fine_if(all_well);
  } catch (const wrong_selection& reason) {
    throw file_error(file.name(), reason.what());
  }
}
