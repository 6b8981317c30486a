#ifndef READ_DOCUMENT_HH
#define READ_DOCUMENT_HH

// The road that every record reader follows, for a text in memory and for a file.

#include <memory>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "diagnostics.hh"
#include "scan_place.hh"

namespace zrt4::detail {

/// How a document is opened and started, by the variant of the parser.
template <class Variant>
struct document_source;

template <>
struct document_source<memory_variant> {
  using parser = SAX_Memory_Parser;
  static std::unique_ptr<parser> open(char* text) { return std::make_unique<parser>(text); }
  static bool start(parser& pull, char* /*text*/) { return pull.start(); }
};

template <>
struct document_source<file_variant> {
  using parser = SAX_File_Parser;
  static std::unique_ptr<parser> open(char* /*name*/) { return std::make_unique<parser>(); }
  static bool start(parser& pull, char* name) { return pull.start(name); }
};

template <class Variant>
using parser_of = typename document_source<Variant>::parser;

/// Whether a parser that could not be set up is released. Kept, it keeps its use of the XML
/// library: callers rely on either way.
enum class unusable_parser { released, kept };

/// Tells that a document has another root element than its reader's.
template <class Parser>
void tell_wrong_root(std::initializer_list<std::string_view> parts, const Parser& parser) {
  tell({message_topic::wrong_root, message_severity::error, stderr}, parts,
       [&] { return scan_place::of(parser); });
}

/// Reads `source` (a text or a file name, as `Variant` says) through `reader`, which has
///   bool root(tag, parser)       whether the root element is its own; tells when it is not
///   void step(tag, val, parser)  one step with a tag; `val` may be null
///   int errors()                 errors of its own, met in steps
/// Returns 0, or 1 plus the parser's error count when there was no start or no right root, or the
/// reader's errors plus the parser's error count.
template <class Variant, class Reader>
int read_document(char* source, Reader& reader, unusable_parser treatment) {
  auto parser = document_source<Variant>::open(source);
  if (!parser->init_ok()) {
    if (treatment == unusable_parser::kept) (void)parser.release();
    return 1;
  }
  char* tag = nullptr;
  char* val = nullptr;
  const bool failed = document_source<Variant>::start(*parser, source) ||
                      parser->parse(&tag, &val) != 0 ||
                      !reader.root(tag != nullptr ? tag : "", *parser);
  if (failed) return 1 + parser->get_error_counter();
  while (parser->parse(&tag, &val) == 0) {
    if (tag != nullptr) reader.step(tag, val, *parser);
  }
  return reader.errors() + parser->get_error_counter();
}

}  // namespace zrt4::detail

#endif
