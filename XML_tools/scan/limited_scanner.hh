#ifndef LIMITED_SCANNER_HH
#define LIMITED_SCANNER_HH

#include <cstddef>
#include <iterator>
#include <type_traits>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLErrorReporter.hpp>
#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/AbstractDOMParser.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "diagnostics.hh"
#include "document_type_limits.hh"
#include "held_exception.hh"
#include "scan_place.hh"

namespace zrt4::detail {

/// A scanner within the limits, which opens nothing that a document names.
template <class Parser>
class limited_scanner : private document_type_limits, public Parser {
 public:
  limited_scanner() : document_type_limits(wanted), Parser(nullptr, this) {
    count_attributes_in(opened::attributes_of(scanner()));
    scanner().setDocTypeHandler(this);
    scanner().setSecurityManager(&references);
    this->setDisableDefaultEntityResolution(true);
  }

  limited_scanner(const limited_scanner&) = delete;
  limited_scanner& operator=(const limited_scanner&) = delete;
  ~limited_scanner() override { prepare_end(); }

  xercesc::MemoryManager* memory() { return this; }

  void startDocument() override {
    begin_document();
    Parser::startDocument();
  }

  void startIntSubset() override {
    begin_declarations();
    Parser::startIntSubset();
  }

  void endIntSubset() override {
    end_declarations();
    Parser::endIntSubset();
  }

  void elementDecl(const xercesc::DTDElementDecl& element, const bool is_ignored) override {
    if (!is_ignored) count(element);
    Parser::elementDecl(element, is_ignored);
  }

  void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute,
              const bool is_ignored) override {
    count(element, attribute);
    Parser::attDef(element, attribute, is_ignored);
  }

  void notationDecl(const xercesc::XMLNotationDecl& notation, const bool is_ignored) override {
    if (!is_ignored) count(notation);
    Parser::notationDecl(notation, is_ignored);
  }

  void entityDecl(const xercesc::DTDEntityDecl& entity, const bool is_parameter,
                  const bool is_ignored) override {
    if (!is_ignored && count(entity, is_parameter)) scanner().setSecurityManager(&references);
    Parser::entityDecl(entity, is_parameter, is_ignored);
  }

  void startEntityReference(const xercesc::XMLEntityDecl& entity) override {
    begin_count_of_requests();  // its reader requests memory of any size
    Parser::startEntityReference(entity);
  }

  void error(const unsigned int code, const XMLCh* const domain,
             const xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* const text,
             const XMLCh* const system_id, const XMLCh* const public_id, const XMLFileLoc line,
             const XMLFileLoc column) override {
    during_report(
        [&] { Parser::error(code, domain, type, text, system_id, public_id, line, column); });
  }

  place where() { return place_in(scanner()); }

  /// Throws what was thrown to end the scan, if anything was. Call it when the scan has ended.
  void release_thrown() { thrown.release(); }
  bool has_thrown() const { return static_cast<bool>(thrown); }

  void startElement(const xercesc::XMLElementDecl& element, const unsigned int uri,
                    const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& list,
                    const XMLSize_t attributes, const bool is_empty, const bool is_root) override {
    count_tag(element, attributes);
    count_values(list, attributes);
    Parser::startElement(element, uri, prefix, list, attributes, is_empty, is_root);
    end_tag(attributes);
  }

 protected:
  /// What a receiver of messages throws must not meet the scanner, which would take some of it for
  /// its own: it ends the scan as a limit does, and is thrown behind it.
  template <class Report>
  void during_report(Report tell) {
    const report uncounted(*this);
    if (!is_received()) return tell();
    thrown.of(tell);
    if (!thrown) return;
    keep_all();
    throw xercesc::XMLErrs::Codes{xercesc::XMLErrs::XMLException_Fatal};
  }

  using document_type_limits::count_tag;
  using document_type_limits::count_values;
  using document_type_limits::end_tag;

 private:
  static constexpr result wanted =
      std::is_base_of_v<xercesc::AbstractDOMParser, Parser> ? result::tree : result::events;

  // The scanner shows its list to derived classes only.
  struct opened : xercesc::XMLScanner {
    static xercesc::RefVectorOf<xercesc::XMLAttr>& attributes_of(xercesc::XMLScanner& scanner) {
      return *(scanner.*&opened::fAttrList);
    }
  };

  static xercesc::XMLScanner& writable(const xercesc::XMLScanner& own) {
    return const_cast<xercesc::XMLScanner&>(own);  // the parser's own, which it shows as constant
  }
  static xercesc::XMLScanner& writable(xercesc::XMLScanner* own) { return *own; }
  xercesc::XMLScanner& scanner() { return writable(this->getScanner()); }

  held_exception thrown;

  void refuse(const char* reason) override {
    end_count();
    XMLCh text[128];
    for (std::size_t i = 0; i < std::size(text); ++i) {
      text[i] = static_cast<XMLCh>(reason[i]);
      if (reason[i] == '\0') break;
    }
    xercesc::ReaderMgr::LastExtEntityInfo at;
    scanner().getReaderMgr()->getLastExtEntityInfo(at);
    this->error(xercesc::XMLErrs::EntityExpansionLimitExceeded, xercesc::XMLUni::fgXMLErrDomain,
                xercesc::XMLErrorReporter::ErrType_Fatal, text, at.systemId, at.publicId,
                at.lineNumber, at.colNumber);
    throw xercesc::XMLErrs::Codes{xercesc::XMLErrs::XMLException_Fatal};
  }
};

/// What `scan` returns, false when an exception that is held ended it.
template <class Scanner, class Scan>
bool scans(const Scanner& scanner, Scan scan) {
  try {
    return scan();
  } catch (const xercesc::XMLErrs::Codes) {
    if (!scanner.has_thrown()) throw;
    return false;
  }
}

}  // namespace zrt4::detail

#endif
