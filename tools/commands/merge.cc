#include "merge.hh"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "diff.hh"
#include "document_kind.hh"
#include "each_file.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "json_answer.hh"
#include "merging.hh"
#include "progress.hh"
#include "reading.hh"

namespace {

/// What was read of some files, and whether something of it does not arrive.
struct merged {
  explicit merged(bool force)
      : report{0, {}, told_lines(force ? "replace what was known" : "are not taken")} {}

  sources from;
  zrt4::channel_list list;
  merge_report report;
  bool is_lossy = false;
};

sources::document open(const std::string& name) {
  auto file = std::make_unique<input_file>(name);
  const document_kind kind = kind_of(*file);
  if (!is_channels(kind)) throw wrong_kind(*file, kind, "channel descriptions");
  return {std::move(file), kind};
}

void read(merged& into, zrt4::channel_list& list, const sources::document& document,
          document_form to) {
  input_file& file = *document.file;
  const reading how = with_progress(
      file.name(), [&] { return read_into(list, file, dialect_of(document.kind), types_for(to)); });
  report_reading(file.name(), how, "what could be read is merged");
  into.from.read_cleanly = into.from.read_cleanly && how.errors == 0;
  const bool is_lossy = with_progress(
      file.name(), [&] { return report_unread(document, to); }, "checking");
  into.is_lossy = into.is_lossy || is_lossy;
}

/// Opens and reads all files, and merges them into the first, which chooses what `same` means.
/// Returns whether that could be done; those that cannot be used are handed to `give_up`.
template <class GiveUp>
exit_code merge_all(const std::vector<std::string>& files, bool force, document_form& to,
                    merged& all, GiveUp&& give_up) {
  exit_code worst = exit_fine;
  for (const std::string& name : files) {
    const auto open_next = [&] {
      all.from.documents.push_back(with_progress(shown_name(name), [&] { return open(name); }));
      return exit_fine;
    };
    worst = std::max(worst, use_file(name, open_next, give_up));
  }
  if (worst != exit_fine) return worst;
  const std::vector<sources::document>& documents = all.from.documents;
  if (to == document_form::same) to = form_of(dialect_of(documents.front().kind));
  for (const sources::document& document : documents) {
    const auto read_next = [&] {
      if (&document == &documents.front()) {
        read(all, all.list, document, to);
      } else {
        zrt4::channel_list from;
        read(all, from, document, to);
        merge_into(all.list, from, force, &all.report);
      }
      return exit_fine;
    };
    worst = std::max(worst, use_file(document.file->name(), read_next, give_up));
  }
  if (worst == exit_fine) {
    with_progress(
        documents.front().file->name(), [&] { all.report.contradictions.report(all.from); },
        "checking");
  }
  return worst;
}

composition compose_merged(merged& all, document_form to) {
  const std::string& name = all.from.documents.front().file->name();
  composition made = with_progress(
      name, [&] { return compose(all.list, to); }, "merging into");
  const bool is_lossy = with_progress(
      name, [&] { return report_losses(all.from, made, to, &all.report.origins); }, "checking");
  all.is_lossy = all.is_lossy || is_lossy;
  return made;
}

}  // namespace

exit_code merge(const std::vector<std::string>& files, bool force, document_form to,
                const target& where) {
  check_output(where.name, where.if_protected);
  merged all(force);
  const exit_code usable = merge_all(files, force, to, all, [](const unusable_file& /*file*/) {});
  if (usable != exit_fine) return usable;
  const composition made = compose_merged(all, to);
  return fine_if(write(made.content, all.from, all.is_lossy, where));
}

exit_code merge_dry_run(const std::vector<std::string>& files, bool force, document_form to,
                        bool lossy, answer_format format) {
  if (is_table(to)) throw file_error("--dry-run", "no table is compared; xml and variables are");
  const std::string after = "merged";
  json unusable = json::array();
  merged all(force);
  const exit_code usable = merge_all(files, force, to, all, [&](const unusable_file& file) {
    unusable.push_back(json_of_unusable(file));
  });
  if (usable != exit_fine) {
    if (format == answer_format::json) {
      print_no_comparison("merge", shown_name(files.front()), after, unusable);
    }
    return usable;
  }
  const composition made = compose_merged(all, to);
  const sources::document& first = all.from.documents.front();
  all.list.clear();  // what arrives was read anew
  zrt4::channel_list before;
  with_progress(first.file->name(),
                [&] { read_into(before, *first.file, dialect_of(first.kind), types_for(to)); });
  print_differences({"merge", first.file->name(), after, rows_of(before), made.arriving, "channel"},
                    format);
  return fine_if(all.from.read_cleanly && (lossy || !all.is_lossy));
}
