#ifndef SCAN_HH
#define SCAN_HH

// What the tool finds out about a document before the library reads it. Nothing is printed; the XML
// library must be in use.

#include <functional>
#include <string>
#include <xercesc/framework/XMLDocumentHandler.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>

#include "file_place.hh"

/// Runs the document past `handler`, within the library's limits on what it may declare; only what
/// stands before the root's start tag when not `whole`. `unhandled` is told what has no place in a
/// handler: "comment", "document type declaration"; `more` is told all that such a handler is told.
/// Returns what the XML library threw, or nothing.
std::string scan_document(const char* path, xercesc::HandlerBase& handler,
                          xercesc::SAXParser::ValSchemes validation, bool whole,
                          const std::function<void(const char* what)>& unhandled = {},
                          xercesc::XMLDocumentHandler* more = nullptr);

/// An XML error.
struct xml_error {
  std::string text;
  file_place place;
};

struct root_element {
  std::string name;  ///< empty when there is none
  file_place place;  ///< just behind its start tag
  xml_error first;   ///< the first error, with an empty text when there is none
};

/// The first error of the whole document.
xml_error find_damage(const char* path);

/// Scans only what stands before the root element.
root_element find_root_element(const char* path);

#endif
