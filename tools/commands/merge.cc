#include "merge.hh"

#include "diff.hh"
#include "document_kind.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "merging.hh"
#include "progress.hh"
#include "reading.hh"

namespace {

// Returns whether it was read cleanly. The first file read chooses what `same` means.
bool read(zrt4::channel_list& list, input_file& file, document_form& to) {
  const document_kind kind = kind_of(file);
  if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions");
  const int dialect = dialect_of(kind);
  if (to == document_form::same) to = form_of(dialect);
  const reading how = read_into(list, file, dialect, types_for(to));
  report_reading(file.name(), how, "what could be read is merged");
  return how.errors == 0;
}

bool read(zrt4::channel_list& list, const std::string& name, document_form& to) {
  return with_progress(shown_name(name), [&] {
    input_file file(name);
    return read(list, file, to);
  });
}

bool add_all_but_first(zrt4::channel_list& base, const std::vector<std::string>& files, bool force,
                       document_form to) {
  bool read_cleanly = true;
  for (std::size_t i = 1; i < files.size(); ++i) {
    zrt4::channel_list from;
    read_cleanly = read(from, files[i], to) && read_cleanly;
    merge_into(base, from, force);
  }
  return read_cleanly;
}

}  // namespace

exit_code merge(const std::vector<std::string>& files, bool force, document_form to,
                const std::string& output) {
  zrt4::channel_list base;
  const bool first = read(base, files.front(), to);
  const bool others = add_all_but_first(base, files, force, to);
  return fine_if(write_list(base, first && others, shown_name(files.front()), to, output));
}

exit_code merge_dry_run(const std::vector<std::string>& files, bool force, answer_format format) {
  document_form to = document_form::same;
  zrt4::channel_list before;
  zrt4::channel_list after;
  const bool first = with_progress(shown_name(files.front()), [&] {
    input_file base(files.front());
    const bool read_cleanly = read(before, base, to);
    read_into(after, base, dialect_of(kind_of(base)), types_for(to));
    return read_cleanly;
  });
  const bool others = add_all_but_first(after, files, force, to);
  print_differences(
      {"merge", shown_name(files.front()), "merged", rows_of(before), rows_of(after), "channel"},
      format);
  return fine_if(first && others);
}
