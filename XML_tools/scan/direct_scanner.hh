#ifndef DIRECT_SCANNER_HH
#define DIRECT_SCANNER_HH

#include <cstddef>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/VecAttrListImpl.hpp>
#include <xercesc/parsers/SAXParser.hpp>

#include "limited_scanner.hh"
#include "scan_place.hh"

namespace zrt4::detail {

/// A scanner that hands the events of a document to `Handlers` itself. The base class does the same
/// through an interface of its own for each event, at several per cent of the time of a scan.
template <class Handlers>
class direct_scanner final : public limited_scanner<xercesc::SAXParser> {
 public:
  explicit direct_scanner(Handlers& handlers) : to(handlers) {
    setDocumentHandler(&handlers);
    setErrorHandler(&handlers);
  }

  void error(const unsigned int code, const XMLCh* const domain,
             const xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* const text,
             const XMLCh* const system_id, const XMLCh* const public_id, const XMLFileLoc line,
             const XMLFileLoc column) override {
    to.set_topic(topic_of(code, domain));
    limited_scanner<xercesc::SAXParser>::error(code, domain, type, text, system_id, public_id, line,
                                               column);
  }

  void startDocument() override {
    depth = 0;  // a document may have been left in its middle
    limited_scanner<xercesc::SAXParser>::startDocument();
  }

  void startElement(const xercesc::XMLElementDecl& element, const unsigned int /*uri*/,
                    const XMLCh* const /*prefix*/,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& list, const XMLSize_t count,
                    const bool is_empty, const bool /*is_root*/) override {
    this->count(element, count);
    attributes.setVector(&list, count);
    to.start_declared(element, attributes);
    if (is_empty) {
      to.Handlers::endElement(nullptr);
    } else {
      ++depth;
    }
  }

  void endElement(const xercesc::XMLElementDecl& /*element*/, const unsigned int /*uri*/,
                  const bool /*is_root*/, const XMLCh* const /*prefix*/) override {
    --depth;
    to.Handlers::endElement(nullptr);
  }

  void docCharacters(const XMLCh* const chars, const XMLSize_t length,
                     const bool /*cdata*/) override {
    if (depth != 0) to.Handlers::characters(chars, length);
  }

  void ignorableWhitespace(const XMLCh* const chars, const XMLSize_t length,
                           const bool /*cdata*/) override {
    if (depth != 0) to.Handlers::ignorableWhitespace(chars, length);
  }

 private:
  Handlers& to;
  xercesc::VecAttrListImpl attributes;
  std::size_t depth = 0;  // text outside the root is no text of the document
};

}  // namespace zrt4::detail

#endif
