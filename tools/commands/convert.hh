#ifndef CONVERT_HH
#define CONVERT_HH

#include <string>

#include "exit_code.hh"
#include "writing.hh"

/// `zrt4xml convert`: reads channel descriptions or a dictionary and writes them in another form.
/// `wide` selects the 256-character record of a dictionary.
exit_code convert(const std::string& name, document_form to, bool wide, const target& where);

/// The same into lines of comma-separated values, from documents of any kind. `rows` names what has
/// a line each, as `--rows`.
exit_code convert_to_csv(const std::string& file, const std::string& rows, const target& where);

#endif
