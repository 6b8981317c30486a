#include "scan.hh"

#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

namespace {

class root_handler : public xercesc::HandlerBase {
 public:
  void startElement(const XMLCh* const name, xercesc::AttributeList& /*attributes*/) override {
    if (found.name.empty()) found.name = to_local(name);
  }
  void error(const xercesc::SAXParseException& exception) override { note(exception); }
  void fatalError(const xercesc::SAXParseException& exception) override { note(exception); }

  root_element found;

 private:
  void note(const xercesc::SAXParseException& exception) {
    if (!found.first.text.empty()) return;
    found.first = {to_local(exception.getMessage()),
                   ":" + std::to_string(exception.getLineNumber()) + ":" +
                       std::to_string(exception.getColumnNumber())};
  }
};

root_element scan(const char* path, xercesc::SAXParser::ValSchemes validation, bool whole) {
  root_handler handler;
  const std::string thrown = scan_document(path, handler, validation, whole);
  if (!thrown.empty()) handler.found.first.text = thrown;
  return handler.found;
}

}  // namespace

std::string scan_document(const char* path, xercesc::HandlerBase& handler,
                          xercesc::SAXParser::ValSchemes validation, bool whole) {
  try {
    xercesc::SAXParser scanner;
    scanner.setDocumentHandler(&handler);
    scanner.setErrorHandler(&handler);
    scanner.setValidationScheme(validation);
    scanner.setDisableDefaultEntityResolution(true);
    xercesc::XMLPScanToken token;
    bool more = scanner.parseFirst(path, token) && scanner.parseNext(token);
    while (whole && more) more = scanner.parseNext(token);
  } catch (const xercesc::XMLException& exception) {
    return to_local(exception.getMessage());
  }
  return {};
}

std::string to_local(const XMLCh* text) {
  char* transcoded = xercesc::XMLString::transcode(text);
  std::string copy = transcoded != nullptr ? transcoded : "";
  xercesc::XMLString::release(&transcoded);
  return copy;
}

root_element find_root_element(const char* path) {
  return scan(path, xercesc::SAXParser::Val_Auto, false);
}

damage first_damage(const char* path) {
  return scan(path, xercesc::SAXParser::Val_Never, true).first;
}
