#ifndef GRAMMARS_HH
#define GRAMMARS_HH

// The grammars for editors and validators, written from what the readers know.

#include <string>
#include <string_view>
#include <vector>

#include "document_grammar.hh"

/// Where they come from, for whoever opens one.
constexpr std::string_view origin =
    "Made when zrt4xml was built, from the tables that its readers follow.";

/// RELAX NG, in the XML syntax and in the compact one.
std::string relax_ng_xml(const document_grammar& grammar);
std::string relax_ng_compact(const document_grammar& grammar);

/// W3C XML Schema 1.0.
std::string xml_schema(const document_grammar& grammar);

/// How an editor finds a grammar: the OASIS catalog, and the locating rules of Emacs.
std::string catalog(const std::vector<std::string>& files);
std::string locating_rules();

#endif
