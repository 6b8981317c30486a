#include "scan.hh"

#include <utility>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "limited_scanner.hh"
#include "local_text.hh"

using zrt4::detail::to_local;

namespace {

class root_handler : public xercesc::HandlerBase {
 public:
  explicit root_handler(std::size_t errors_to_keep) : most(errors_to_keep) {}

  void startElement(const XMLCh* const given, xercesc::AttributeList& /*attributes*/) override {
    if (name.empty()) name = to_local(given);
  }
  void error(const xercesc::SAXParseException& exception) override { note(exception); }
  void fatalError(const xercesc::SAXParseException& exception) override { note(exception); }

  std::string name;
  std::vector<xml_error> found;

 private:
  void note(const xercesc::SAXParseException& exception) {
    if (found.size() == most) return;
    found.push_back(
        {to_local(exception.getMessage()), ":" + std::to_string(exception.getLineNumber()) + ":" +
                                               std::to_string(exception.getColumnNumber())});
  }

  const std::size_t most;
};

void scan(const char* path, root_handler& handler, xercesc::SAXParser::ValSchemes validation,
          bool whole) {
  const std::string thrown = scan_document(path, handler, validation, whole);
  if (!thrown.empty()) handler.found = {{thrown, {}}};
}

xml_error first_of(const std::vector<xml_error>& found) {
  return found.empty() ? xml_error{} : found.front();
}

}  // namespace

std::string scan_document(const char* path, xercesc::HandlerBase& handler,
                          xercesc::SAXParser::ValSchemes validation, bool whole) {
  try {
    zrt4::detail::limited_scanner<xercesc::SAXParser> scanner;
    scanner.setDocumentHandler(&handler);
    scanner.setErrorHandler(&handler);
    scanner.setValidationScheme(validation);
    xercesc::XMLPScanToken token;
    bool more = scanner.parseFirst(path, token) && scanner.parseNext(token);
    while (whole && more) more = scanner.parseNext(token);
  } catch (const xercesc::XMLException& exception) {
    return to_local(exception.getMessage());
  }
  return {};
}

root_element find_root_element(const char* path) {
  root_handler handler(1);
  scan(path, handler, xercesc::SAXParser::Val_Auto, false);
  return {handler.name, first_of(handler.found)};
}

std::vector<xml_error> xml_errors(const char* path, std::size_t most) {
  root_handler handler(most);
  scan(path, handler, xercesc::SAXParser::Val_Auto, true);
  return std::move(handler.found);
}

xml_error first_xml_error(const char* path) {
  root_handler handler(1);
  scan(path, handler, xercesc::SAXParser::Val_Never, true);
  return first_of(handler.found);
}
