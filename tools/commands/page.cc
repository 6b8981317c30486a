#include "page.hh"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>

#include "each_file.hh"
#include "file_error.hh"
#include "output_file.hh"
#include "page_file.hh"

namespace {

std::string title_of(const std::vector<std::string>& files) {
  if (files.size() != 1) return std::to_string(files.size()) + " documents";
  return files.front() == "-" ? shown_name("-")
                              : std::filesystem::path(files.front()).filename().string();
}

// So that the same documents can make the same page.
std::time_t time_to_tell() {
  const char* given = std::getenv("SOURCE_DATE_EPOCH");
  if (given == nullptr || *given == '\0') return std::time(nullptr);
  return std::strtol(given, nullptr, 10);
}

/// The document as it was.
struct earlier_document {
  std::string file;
  document_kind kind;
  loaded_document loaded;
};

earlier_document load(const std::string& name) {
  return with_progress(shown_name(name), [&] {
    input_file file(name);
    const document_kind kind = kind_of(file);
    return earlier_document{file.name(), kind, traits_of(kind).load(file)};
  });
}

void must_be_comparable(const earlier_document& before, const page_document& after) {
  const bool comparable =
      before.kind == *after.kind || (is_channels(before.kind) && is_channels(*after.kind));
  if (comparable) return;
  throw file_error(after.file, "of another kind (" +
                                   std::string(traits_of(*after.kind).description) + ") than " +
                                   before.file + " (" +
                                   std::string(traits_of(before.kind).description) + ")");
}

}  // namespace

exit_code page(const std::vector<std::string>& files, const std::string& before,
               const std::string& title, const std::string& output, std::size_t jobs) {
  std::optional<earlier_document> earlier;
  exit_code worst = exit_fine;
  if (!before.empty()) {
    earlier = load(before);
    report_reading(earlier->file, earlier->loaded.how, "what could be read is compared");
    worst = fine_if(earlier->loaded.how.errors == 0);
  }
  std::vector<page_document> documents;
  const exit_code read = for_each_file(
      files, jobs, read_for_page,
      [&](page_document one) {
        report_reading(one.file, one.loaded.how, "what could be read is on the page");
        const exit_code code = fine_if(one.loaded.how.errors == 0);
        documents.push_back(std::move(one));
        return code;
      },
      [&](const unusable_file& file) {
        page_document unusable;
        unusable.file = file.name;
        unusable.unusable = file.reason;
        documents.push_back(std::move(unusable));
      });
  worst = std::max(worst, read);
  if (worst == exit_trouble) return worst;

  std::optional<page_changes> changes;
  if (earlier && documents.front().kind) {
    const page_document& after = documents.front();
    must_be_comparable(*earlier, after);
    changes = page_changes{earlier->file, after.file, *after.kind, {}};
    for_each_difference(earlier->loaded.rows, after.loaded.rows, traits_of(*after.kind).record_name,
                        [&](const difference& each) { changes->all.add(each); });
  }
  const std::string& shown_title = title.empty() ? title_of(files) : title;
  write_output(output, make_page(shown_title, documents, changes ? &*changes : nullptr,
                                 time_to_tell(), jobs));
  return worst;
}
