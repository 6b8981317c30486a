#include "feature_parser.hh"

#include "local_text.hh"
#include "scan_place.hh"

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

void feature_parser::error(const unsigned int code, const XMLCh* const domain,
                           const xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* const text,
                           const XMLCh* const system_id, const XMLCh* const /*public_id*/,
                           const XMLFileLoc line, const XMLFileLoc column) {
  if (getDocument() == nullptr) {
    no_document_reason = to_local(text);
    no_document_topic = topic_of_start(code);
  } else if (is_received()) {
    during_report([&] {
      deliver({topic_of(code, domain), severity_of(type), nullptr}, {to_local(text)},
              {to_local(system_id), line, column});
    });
  }
}

}  // namespace zrt4::detail
