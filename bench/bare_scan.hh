#ifndef BARE_SCAN_HH
#define BARE_SCAN_HH

// The yardstick of the readers: what the XML scanner alone needs for a document.

#include <string>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>

namespace bench {

/// `source` is whatever the scanner takes: an input source or a file name.
template <class Source>
void scan_source(const Source& source) {
  using namespace xercesc;
  SAXParser parser;
  HandlerBase nothing;
  parser.setDocumentHandler(&nothing);
  parser.setErrorHandler(&nothing);
  XMLPScanToken token;
  bool more = parser.parseFirst(source, token);
  while (more) more = parser.parseNext(token);
}

inline void bare_scan(const std::string& text) {
  scan_source(xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                         "benchmark"));
}

inline void bare_scan_of_file(const char* name) {
  scan_source(name);
}

}  // namespace bench

#endif
