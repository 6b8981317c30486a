#include "scan_place.hh"

#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "local_text.hh"

namespace zrt4::detail {

place place_in(const xercesc::XMLScanner& scanner) {
  xercesc::ReaderMgr::LastExtEntityInfo at;
  scanner.getReaderMgr()->getLastExtEntityInfo(at);
  return {to_local(at.systemId), at.lineNumber, at.colNumber};
}

message_topic topic_of(unsigned int code, const XMLCh* domain) {
  const bool is_limit = code == xercesc::XMLErrs::EntityExpansionLimitExceeded &&
                        xercesc::XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain);
  return is_limit ? message_topic::limit : message_topic::xml;
}

message_topic topic_of_start(unsigned int code) {
  switch (code) {
    case xercesc::XMLExcepts::File_CouldNotOpenFile:
    case xercesc::XMLExcepts::File_CouldNotReadFromFile:
    case xercesc::XMLExcepts::Scan_CouldNotOpenSource:
      return message_topic::cannot_open;
    default:
      return message_topic::not_started;
  }
}

message_severity severity_of(xercesc::XMLErrorReporter::ErrTypes type) {
  switch (type) {
    case xercesc::XMLErrorReporter::ErrType_Warning:
      return message_severity::warning;
    case xercesc::XMLErrorReporter::ErrType_Fatal:
      return message_severity::fatal_error;
    default:
      return message_severity::error;
  }
}

}  // namespace zrt4::detail
