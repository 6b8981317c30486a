#ifndef FEATURE_PARSER_HH
#define FEATURE_PARSER_HH

#include <string>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "limited_scanner.hh"

namespace zrt4::detail {

/// Makes the tree of a camera file.
class feature_parser : public limited_scanner<xercesc::XercesDOMParser> {
 public:
  feature_parser();

  /// Only a receiver learns of it: damage has always been silent.
  void error(const unsigned int code, const XMLCh* const domain,
             const xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* const text,
             const XMLCh* const system_id, const XMLCh* const public_id, const XMLFileLoc line,
             const XMLFileLoc column) override;

  const std::string& why_no_document() const { return no_document_reason; }
  message_topic topic_of_no_document() const { return no_document_topic; }

 private:
  std::string no_document_reason;
  message_topic no_document_topic = message_topic::not_started;
};

}  // namespace zrt4::detail

#endif
