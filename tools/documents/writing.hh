#ifndef WRITING_HH
#define WRITING_HH

// The library's lists, written in the form that the command line names.

#include <string>
#include <vector>

#include "zrt4xml.hh"

/// What `--to` accepts; `same` is the form of the document that was read.
enum class document_form { same, xml, variables, text, short_text, csv };

/// The form of channel descriptions in `dialect`, ZRT4_FORMAT or MORV_FORMAT.
document_form form_of(int dialect);

/// How types have to be read for a list to be written in this form.
zrt4::types types_for(document_form form);

/// A list in some form.
struct written {
  bool at_all = true;               ///< else there is no content: it could not be read back
  std::vector<std::string> losses;  ///< what would not read back, for a person
  std::string content;
};
written written_form(zrt4::channel_list& list, document_form form);
/// `form` is xml or text.
written written_form(zrt4::env_dictionary& list, document_form form);
written written_form(zrt4::env_dictionary_2010& list, document_form form);

/// Each writes the list that was read from `file` to `output` and reports what is lost. A file is
/// replaced only when all went well, standard output takes what there is; an XML document that
/// could not be read back is not written at all. Returns whether all went well, `read_cleanly`
/// included.
bool write_list(zrt4::channel_list& list, bool read_cleanly, const std::string& file,
                document_form form, const std::string& output);
/// `form` is xml or text.
bool write_list(zrt4::env_dictionary& list, bool read_cleanly, const std::string& file,
                document_form form, const std::string& output);
bool write_list(zrt4::env_dictionary_2010& list, bool read_cleanly, const std::string& file,
                document_form form, const std::string& output);

#endif
