#ifndef BARE_SCAN_HH
#define BARE_SCAN_HH

// The yardstick of the readers: what the XML scanner alone needs for a document.

#include <ctime>
#include <string>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>

namespace bench {

inline double processor_seconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Processor time that `code` takes: other programs on the machine do not count.
template <class Code>
double seconds(Code&& code) {
  const double begin = processor_seconds();
  code();
  return processor_seconds() - begin;
}

inline void bare_scan(const std::string& text) {
  using namespace xercesc;
  SAXParser parser;
  HandlerBase nothing;
  parser.setDocumentHandler(&nothing);
  parser.setErrorHandler(&nothing);
  const MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                 "benchmark");
  XMLPScanToken token;
  bool more = parser.parseFirst(source, token);
  while (more) more = parser.parseNext(token);
}

}  // namespace bench

#endif
