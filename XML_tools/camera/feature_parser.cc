#include "feature_parser.hh"

#include "local_text.hh"

namespace zrt4::detail {

feature_parser::feature_parser() {
  setValidationScheme(Val_Never);
  setDoNamespaces(false);
  setDoSchema(false);
  setValidationSchemaFullChecking(false);
  setCreateEntityReferenceNodes(false);
  // Unlike an error handler, a reporter only listens.
  getScanner()->setErrorReporter(this);
}

void feature_parser::error(const unsigned int /*code*/, const XMLCh* const /*domain*/,
                           const xercesc::XMLErrorReporter::ErrTypes /*type*/,
                           const XMLCh* const text, const XMLCh* const /*systemId*/,
                           const XMLCh* const /*publicId*/, const XMLFileLoc /*line*/,
                           const XMLFileLoc /*column*/) {
  if (getDocument() == nullptr) no_document_reason = to_local(text);
}

}  // namespace zrt4::detail
