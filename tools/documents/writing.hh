#ifndef WRITING_HH
#define WRITING_HH

// The library's lists, written in the form that the command line names.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "merged_origins.hh"
#include "output_file.hh"
#include "rows.hh"
#include "sources.hh"
#include "zrt4xml.hh"

/// What `--to` accepts; `same` is the form of the document that was read.
enum class document_form { same, xml, variables, text, short_text, csv };

constexpr bool is_table(document_form form) {
  return form == document_form::text || form == document_form::short_text;
}

/// The form of channel descriptions in `dialect`, ZRT4_FORMAT or MORV_FORMAT.
document_form form_of(int dialect);

/// How types have to be read for a list to be written in this form.
zrt4::types types_for(document_form form);

/// A list in a form.
struct composition {
  row_list sent;
  row_list arriving;                     ///< as readers find it
  std::shared_ptr<const void> records;   ///< what both refer to, beside the list
  std::function<std::string()> content;  ///< to be asked once
};

composition compose(zrt4::channel_list& list, document_form form);
/// `form` is xml or text.
composition compose(zrt4::env_dictionary& list, document_form form);
composition compose(zrt4::env_dictionary_2010& list, document_form form);

/// A list in some form, for whoever has no document that it was read from.
struct written {
  std::vector<std::string> losses;  ///< what does not arrive, for a person
  std::string content;
};
written written_form(zrt4::channel_list& list, document_form form);
/// `form` is xml or text.
written written_form(zrt4::env_dictionary& list, document_form form);
written written_form(zrt4::env_dictionary_2010& list, document_form form);

/// Reports what of a document is not read, and so is lost; returns whether anything is.
bool report_unread(const sources::document& from, document_form form, bool wide = false);

/// Reports what of the records does not arrive, with its place in the document that it is from;
/// returns whether anything is lost.
bool report_losses(const sources& from, const composition& made, document_form form,
                   merged_origins* origins = nullptr);

struct target {
  std::string name;
  write_protected if_protected = write_protected::is_refused;
  bool lossy = false;  ///< what is lost is meant to be
};

/// Writes what was made of the sources, which is only asked for when it is written. A file is
/// replaced only when all went well, standard output takes what there is. Returns whether all went
/// well.
bool write(const std::function<std::string()>& content, const sources& from, bool is_lossy,
           const target& to);

#endif
