#include "SAX_pull_parser.hh"

#include <cstring>
#include <xercesc/util/XMLException.hpp>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "diagnostics.hh"
#include "direct_scanner.hh"
#include "local_text.hh"
#include "scan_place.hh"
#include "xml_library.hh"

namespace zrt4 {

namespace {

// What the two variants do differently. Everything else is written once below.
template <class Variant>
struct variant_rules;

template <>
struct variant_rules<memory_variant> {
  static constexpr const char* name = "my_mem_info";

  static void create_handler(MemParseHandlers*& handler) { handler = new MemParseHandlers; }
  static MemParseHandlers& handler_of(MemParseHandlers* handler) { return *handler; }
  static void delete_handler(MemParseHandlers* handler) { delete handler; }

  template <class Scanner>
  static void create_source(xercesc::MemBufInputSource*& source, const char* text,
                            Scanner& scanner) {
    const char* document = text != nullptr ? text : "";
    const std::size_t length = std::strlen(document);
    scanner.expect(length);
    source = new xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(document), length,
                                            name, false, scanner.memory());
    source->setCopyBufToStream(false);  // the caller keeps the text as long as the parser
  }
  static void delete_source(xercesc::MemBufInputSource* source) { delete source; }
  static const char* name_of(const char* /*file*/) { return name; }

  template <class Scanner>
  static bool scan_prolog(Scanner& scanner, const char* /*file*/,
                          const xercesc::MemBufInputSource* source, xercesc::XMLPScanToken& token) {
    return scanner.parseFirst(*source, token);
  }
};

template <>
struct variant_rules<file_variant> {
  using no_source = file_variant::input_source;

  static void create_handler(FileParseHandlers& /*embedded*/) {}
  static FileParseHandlers& handler_of(FileParseHandlers& handler) { return handler; }
  static const FileParseHandlers& handler_of(const FileParseHandlers& handler) { return handler; }
  // Destroyed with the parser, after the XML library's end: its texts are in memory of our own.
  static void delete_handler(FileParseHandlers& /*embedded*/) {}

  template <class Scanner>
  static void create_source(no_source&, const char* /*text*/, Scanner& /*scanner*/) {}
  static void delete_source(no_source&) {}
  static const char* name_of(const char* file) { return file != nullptr ? file : ""; }

  template <class Scanner>
  static bool scan_prolog(Scanner& scanner, const char* file, no_source&,
                          xercesc::XMLPScanToken& token) {
    return scanner.parseFirst(file != nullptr ? file : "", token);
  }
};

template <class Variant>
using scanner_type = detail::direct_scanner<parse_handlers<Variant>>;

template <class Variant>
scanner_type<Variant>& scanner_of(xercesc::SAXParser& parser) {
  return static_cast<scanner_type<Variant>&>(parser);
}

void tell_no_start(const xercesc::XMLException& exception, const detail::place& where) {
  const detail::notice about{detail::topic_of_start(exception.getCode()),
                             message_severity::fatal_error, stderr};
  const std::string reason = detail::to_local(exception.getMessage());
  if (detail::is_received()) return detail::deliver(about, {reason}, where);
  // Both variants say "memory stream": programs watch for this very line.
  detail::say(stderr, {"\nError during parsing memory stream:\n", "Exception message is:  \n",
                       reason, "\n"});
}

}  // namespace

template <class Variant>
pull_parser<Variant>::pull_parser() = default;

template <class Variant>
void pull_parser<Variant>::set_up(char* text) {
  using xercesc::SAXParser;
  try {
    begin_xml_library_use();
    variant_rules<Variant>::create_handler(handler);
    parse_handlers<Variant>& handlers = variant_rules<Variant>::handler_of(handler);
    auto* scanner = new scanner_type<Variant>(handlers);
    parser = scanner;
    parser->setValidationScheme(SAXParser::Val_Auto);
    parser->setDoNamespaces(false);
    parser->setDoSchema(false);
    parser->setValidationSchemaFullChecking(false);
    variant_rules<Variant>::create_source(memBufIS, text, *scanner);
    init = true;
  } catch (const xercesc::XMLException& exception) {
    detail::tell({message_topic::library, message_severity::fatal_error, stderr},
                 {"Error during initialization! Message:\n",
                  detail::to_local(exception.getMessage()), "\n"});
  }
}

template <class Variant>
pull_parser<Variant>::~pull_parser() {
  variant_rules<Variant>::delete_source(memBufIS);  // which is in the memory of the scanner
  delete parser;
  variant_rules<Variant>::delete_handler(handler);
  end_xml_library_use();
}

template <class Variant>
bool pull_parser<Variant>::begin(char* file) {
  auto& scanner = scanner_of<Variant>(*parser);
  const auto where = [file] { return detail::place{variant_rules<Variant>::name_of(file)}; };
  bool started = false;
  try {
    // The scanner would go on with a document that was left in its middle.
    const bool is_within_document =
        gotMore && variant_rules<Variant>::handler_of(handler).getElementCount() != 0;
    if (is_within_document) parser->parseReset(token);
    started = detail::scans(scanner, [&] {
      return variant_rules<Variant>::scan_prolog(scanner, file, memBufIS, token);
    });
  } catch (const xercesc::XMLException& exception) {
    tell_no_start(exception, where());
    return true;
  }
  scanner.release_thrown();
  if (started) return false;
  detail::tell({message_topic::not_started, message_severity::error, stderr},
               {"scanFirst() failed\n"}, where);
  return true;
}

template <class Variant>
int pull_parser<Variant>::parse(char** tag, char** val) {
  if (tag != nullptr) *tag = nullptr;
  if (val != nullptr) *val = nullptr;
  auto& handlers = variant_rules<Variant>::handler_of(handler);
  handlers.reset_end_tag_flag();
  if (!gotMore) return -1;
  auto& scanner = scanner_of<Variant>(*parser);
  gotMore = detail::scans(scanner, [&] { return scanner.parseNext(token); });
  if (!gotMore) finish();
  if (handlers.getErrorCount() != 0) return handlers.getErrorCount();
  // The texts are handed out as writable because callers declare them so; they stay the handler's.
  if (tag != nullptr) *tag = const_cast<char*>(handlers.getTag());
  if (val != nullptr) *val = const_cast<char*>(handlers.getValue());
  return 0;
}

template <class Variant>
void pull_parser<Variant>::finish() {
  parser->parseReset(token);
  scanner_of<Variant>(*parser).release_thrown();
}

template <class Variant>
int pull_parser<Variant>::get_error_counter() const {
  return variant_rules<Variant>::handler_of(handler).getErrorCount();
}

template <class Variant>
int pull_parser<Variant>::get_attr(char* name, char** res) {
  if (res != nullptr) *res = nullptr;
  if (name == nullptr || get_error_counter() != 0) return -1;
  const char* value = variant_rules<Variant>::handler_of(handler).getAttr(name);
  if (res != nullptr) *res = const_cast<char*>(value);
  return value != nullptr ? 0 : -1;
}

template <class Variant>
void pull_parser<Variant>::find_place(detail::place& found) const {
  found = scanner_of<Variant>(*parser).where();
}

template class pull_parser<memory_variant>;
template class pull_parser<file_variant>;

}  // namespace zrt4
