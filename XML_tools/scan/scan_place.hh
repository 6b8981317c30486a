#ifndef SCAN_PLACE_HH
#define SCAN_PLACE_HH

#include <xercesc/framework/XMLErrorReporter.hpp>
#include <xercesc/internal/XMLScanner.hpp>

#include "SAX_pull_parser.hh"
#include "diagnostics.hh"

namespace zrt4::detail {

/// Where a scan is: behind what it has scanned last.
struct scan_place {
  template <class Variant>
  static place of(const pull_parser<Variant>& parser) {
    place found;
    parser.find_place(found);
    return found;
  }
};

place place_in(const xercesc::XMLScanner& scanner);

/// What an error of the scanner is about; `code` and `domain` are as it reports them.
message_topic topic_of(unsigned int code, const XMLCh* domain);

/// What an exception of the scanner is about that it throws before it has begun.
message_topic topic_of_start(unsigned int code);

message_severity severity_of(xercesc::XMLErrorReporter::ErrTypes type);

}  // namespace zrt4::detail

#endif
