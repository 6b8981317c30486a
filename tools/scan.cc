#include "scan.hh"

#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

namespace {

std::string local(const XMLCh* text) {
  char* transcoded = xercesc::XMLString::transcode(text);
  std::string copy = transcoded != nullptr ? transcoded : "";
  xercesc::XMLString::release(&transcoded);
  return copy;
}

class root_handler : public xercesc::HandlerBase {
 public:
  void startElement(const XMLCh* const name, xercesc::AttributeList& /*attributes*/) override {
    if (found.name.empty()) found.name = local(name);
  }
  void error(const xercesc::SAXParseException& exception) override { note(exception); }
  void fatalError(const xercesc::SAXParseException& exception) override { note(exception); }

  root_element found;

 private:
  void note(const xercesc::SAXParseException& exception) {
    if (!found.first.text.empty()) return;
    found.first = {local(exception.getMessage()), ":" + std::to_string(exception.getLineNumber()) +
                                                      ":" +
                                                      std::to_string(exception.getColumnNumber())};
  }
};

// `whole` says whether to go on behind the root's start tag.
root_element scan(const char* path, xercesc::SAXParser::ValSchemes validation, bool whole) {
  root_handler handler;
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
    handler.found.first.text = local(exception.getMessage());
  }
  return handler.found;
}

}  // namespace

root_element find_root_element(const char* path) {
  return scan(path, xercesc::SAXParser::Val_Auto, false);
}

damage first_damage(const char* path) {
  return scan(path, xercesc::SAXParser::Val_Never, true).first;
}
