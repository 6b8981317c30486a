#include "scan.hh"

#include <string_view>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "limited_scanner.hh"
#include "local_text.hh"

using zrt4::detail::to_local;

namespace {

class root_handler : public xercesc::HandlerBase {
 public:
  void startElement(const XMLCh* const given, xercesc::AttributeList& /*attributes*/) override {
    if (!root.name.empty()) return;
    root.name = to_local(given);
    root.place = {locator->getLineNumber(), locator->getColumnNumber()};
  }
  void setDocumentLocator(const xercesc::Locator* const given) override { locator = given; }
  void error(const xercesc::SAXParseException& exception) override { note(exception); }
  void fatalError(const xercesc::SAXParseException& exception) override { note(exception); }

  root_element root;

 private:
  void note(const xercesc::SAXParseException& exception) {
    if (!root.first.text.empty()) return;
    root.first = {to_local(exception.getMessage()),
                  {exception.getLineNumber(), exception.getColumnNumber()}};
  }

  const xercesc::Locator* locator = nullptr;
};

class telling_parser : public xercesc::SAXParser {
 public:
  using SAXParser::SAXParser;

  void docComment(const XMLCh* const text) override {
    if (unhandled) unhandled("comment");
    SAXParser::docComment(text);
  }
  void doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* const public_id,
                   const XMLCh* const system_id, const bool internal,
                   const bool external) override {
    if (unhandled) unhandled("document type declaration");
    SAXParser::doctypeDecl(root, public_id, system_id, internal, external);
  }

  std::function<void(const char*)> unhandled;
};

}  // namespace

std::string scan_document(const char* path, xercesc::HandlerBase& handler,
                          xercesc::SAXParser::ValSchemes validation, bool whole,
                          const std::function<void(const char* what)>& unhandled,
                          xercesc::XMLDocumentHandler* more) {
  try {
    zrt4::detail::limited_scanner<telling_parser> scanner;
    scanner.unhandled = unhandled;
    scanner.setDocumentHandler(&handler);
    scanner.setErrorHandler(&handler);
    if (more != nullptr) scanner.installAdvDocHandler(more);
    scanner.setValidationScheme(validation);
    xercesc::XMLPScanToken token;
    bool goes_on = scanner.parseFirst(path, token) && scanner.parseNext(token);
    while (whole && goes_on) goes_on = scanner.parseNext(token);
  } catch (const xercesc::XMLException& exception) {
    return to_local(exception.getMessage());
  }
  return {};
}

namespace {

root_element scan_for_root(const char* path, bool whole) {
  root_handler handler;
  const std::string thrown = scan_document(path, handler, xercesc::SAXParser::Val_Auto, whole);
  constexpr std::string_view no_declaration = "unable to decode first line";  // and of what
  if (thrown.find(no_declaration) != thrown.npos) {
    handler.root.first = {"the declaration in its first line is none", {1, 1}};
  } else if (!thrown.empty()) {
    handler.root.first = {thrown, {}};
  }
  return handler.root;
}

}  // namespace

xml_error find_damage(const char* path) {
  return scan_for_root(path, true).first;
}

root_element find_root_element(const char* path) {
  return scan_for_root(path, false);
}
