#ifndef SHOW_HH
#define SHOW_HH

#include <string>
#include <vector>

#include "exit_code.hh"

/// `zrt4xml show`: prints the listing of each document, under a heading when there are several.
/// `kind` names the kind of all of them; empty: each is recognised.
exit_code show(const std::vector<std::string>& files, const std::string& kind);

/// The same as JSON, with the numbers of types as they stand in the documents.
exit_code show_json(const std::vector<std::string>& files, const std::string& kind);

#endif
