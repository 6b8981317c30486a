#ifndef PLAIN_PARSER_HH
#define PLAIN_PARSER_HH

// A pull parser in its plainest form, to compare the library's with: every name and text is
// transcoded and released anew, no buffer is kept, the scanner's own dispatch is used.

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

namespace test {

class plain_parser : private xercesc::HandlerBase {
 public:
  /// The document is `source`, or the file of that name. Messages are collected in `errors`.
  plain_parser(const std::string& source, bool is_file, std::string& errors)
      : text(source), file(is_file), err(errors) {
    scanner.setDocumentHandler(this);
    scanner.setErrorHandler(this);
    scanner.setValidationScheme(xercesc::SAXParser::Val_Auto);
    scanner.setDisableDefaultEntityResolution(true);
  }

  bool start() {
    try {
      if (file ? scanner.parseFirst(text.c_str(), token) : scanner.parseFirst(memory, token)) {
        return false;
      }
      err += "scanFirst() failed\n";
    } catch (const xercesc::XMLException& exception) {
      err += "\nError during parsing memory stream:\nException message is:  \n" +
             local(exception.getMessage()) + "\n";
    }
    return true;
  }

  /// True when a step was taken; `tag` and `val` are then what it yielded.
  bool parse() {
    if (ended || value) {
      name.reset();
      value.reset();
      attributes.clear();
      ended = false;
    }
    if (!more) return false;
    more = scanner.parseNext(token);
    if (!more) scanner.parseReset(token);
    return error_count == 0;
  }

  bool has_more() const { return more; }
  const std::optional<std::string>& tag() const { return name; }
  const std::optional<std::string>& val() const { return value; }
  int errors() const { return error_count; }
  std::optional<std::string> attribute(const std::string& wanted) const {
    for (const auto& [attribute_name, attribute_value] : attributes) {
      if (attribute_name == wanted) return attribute_value;
    }
    return {};
  }

 private:
  static std::string local(const XMLCh* units) {
    char* transcoded = xercesc::XMLString::transcode(units);
    std::string copy(transcoded);
    xercesc::XMLString::release(&transcoded);
    return copy;
  }

  void startElement(const XMLCh* const element, xercesc::AttributeList& list) override {
    name = local(element);
    attributes.clear();
    for (XMLSize_t i = 0; i < list.getLength(); ++i) {
      attributes.emplace_back(local(list.getName(i)), local(list.getValue(i)));
    }
  }
  void endElement(const XMLCh* const) override { ended = true; }
  void characters(const XMLCh* const chars, const XMLSize_t length) override {
    if (!name) return;
    std::vector<XMLCh> terminated(chars, chars + length);
    terminated.push_back(0);
    value = local(terminated.data());
    if (std::strspn(value->c_str(), " \n\t") == length) {
      value.reset();
      name.reset();
    }
  }
  void report(const char* kind, const xercesc::SAXParseException& exception) {
    err += std::string("\n") + kind + " at (file " + local(exception.getSystemId()) + ", line " +
           std::to_string(exception.getLineNumber()) + ", char " +
           std::to_string(exception.getColumnNumber()) + "): " + local(exception.getMessage()) +
           "\n";
    ++error_count;
  }
  void warning(const xercesc::SAXParseException& e) override { report("Warning", e); }
  void error(const xercesc::SAXParseException& e) override { report("Error", e); }
  void fatalError(const xercesc::SAXParseException& e) override { report("Fatal Error", e); }

  std::string text;
  bool file;
  std::string& err;
  xercesc::MemBufInputSource memory{reinterpret_cast<const XMLByte*>(text.c_str()),
                                    std::strlen(text.c_str()), "my_mem_info"};
  xercesc::SAXParser scanner;
  xercesc::XMLPScanToken token;
  bool more = true;
  bool ended = false;
  int error_count = 0;
  std::optional<std::string> name;
  std::optional<std::string> value;
  std::vector<std::pair<std::string, std::string>> attributes;
};

}  // namespace test

#endif
