#ifndef LIMITED_SCANNER_HH
#define LIMITED_SCANNER_HH

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLErrorReporter.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/AbstractDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDValidator.hpp>

#include "declaration_limits.hh"
#include "diagnostics.hh"
#include "held_exception.hh"
#include "scan_place.hh"

namespace zrt4::detail {

/// A scanner within the limits, which opens nothing that a document names.
template <class Parser>
class limited_scanner : private declaration_limits, public Parser {
 public:
  limited_scanner()
      : declaration_limits(wanted), Parser(new (memory()) limited_validator(*this), this) {
    expect(0);
    scanner().setSecurityManager(&references);
    scanner().getValidator()->setErrorReporter(this);
    scanner().setDocTypeHandler(this);
    this->setDisableDefaultEntityResolution(true);
  }

  limited_scanner(const limited_scanner&) = delete;
  limited_scanner& operator=(const limited_scanner&) = delete;
  ~limited_scanner() override {
    end_document();
    prepare_end();
  }

  xercesc::MemoryManager* memory() { return this; }

  /// What is scanned next has so many bytes.
  void expect(std::uint64_t bytes) {
    scan_budget::expect(bytes);
    const std::uint64_t most = entity_references * (1 + (bytes >> 20));
    references.setEntityExpansionLimit(static_cast<XMLSize_t>(most));
  }

  /// `source` is an input source, of which `expect` has told the size, or the name of a file.
  template <class Source>
  bool parseFirst(const Source& source, xercesc::XMLPScanToken& token) {
    if constexpr (std::is_convertible_v<Source, const char*>) expect_file(source);
    end_document();
    const bool more = Parser::parseFirst(source, token);
    end_step();
    return more;
  }

  /// Scans the whole of a file.
  void parse_file(const char* name) {
    expect_file(name);
    Parser::parse(name);
  }

  bool parseNext(xercesc::XMLPScanToken& token) {
    return times_steps() ? parse_next_timed(token) : Parser::parseNext(token);
  }

  void startDocument() override {
    begin_document();
    Parser::startDocument();
  }

  void endDocument() override {
    end_document();
    Parser::endDocument();
  }

  void elementDecl(const xercesc::DTDElementDecl& element, const bool is_ignored) override {
    declare(element);
    Parser::elementDecl(element, is_ignored);
  }

  void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute,
              const bool is_ignored) override {
    declare(element, attribute);
    Parser::attDef(element, attribute, is_ignored);
  }

  void notationDecl(const xercesc::XMLNotationDecl& notation, const bool is_ignored) override {
    declare(notation);
    Parser::notationDecl(notation, is_ignored);
  }

  void entityDecl(const xercesc::DTDEntityDecl& entity, const bool is_parameter,
                  const bool is_ignored) override {
    declare(entity);
    Parser::entityDecl(entity, is_parameter, is_ignored);
  }

  void error(const unsigned int code, const XMLCh* const domain,
             const xercesc::XMLErrorReporter::ErrTypes type, const XMLCh* const text,
             const XMLCh* const system_id, const XMLCh* const public_id, const XMLFileLoc line,
             const XMLFileLoc column) override {
    if (!ends_scan(domain, type, code)) count_message(xercesc::XMLString::stringLen(text));
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
    count(element, attributes);
    if constexpr (wanted == result::tree) forget_identifiers(list, attributes);
    Parser::startElement(element, uri, prefix, list, attributes, is_empty, is_root);
  }

 protected:
  /// What a receiver of messages throws must not meet the scanner, which would take some of it for
  /// its own: it ends the scan as a limit does, and is thrown behind it.
  template <class Report>
  void during_report(Report tell) {
    const report uncut(*this);
    if (!is_received()) return tell();
    thrown.of(tell);
    if (!thrown) return;
    keep_all();
    throw xercesc::XMLErrs::Codes{xercesc::XMLErrs::XMLException_Fatal};
  }

  using declaration_limits::count;

 private:
  static constexpr result wanted =
      std::is_base_of_v<xercesc::AbstractDOMParser, Parser> ? result::tree : result::events;

  /// Checks as the scanner's own, which it replaces.
  class limited_validator final : public xercesc::DTDValidator {
   public:
    explicit limited_validator(limited_scanner& of) : limits(of) {}

    void validateAttrValue(const xercesc::XMLAttDef* attribute, const XMLCh* const value,
                           bool before_content, const xercesc::XMLElementDecl* element) override {
      if (attribute->getType() != xercesc::XMLAttDef::CData) limits.look_at_list(value);
      DTDValidator::validateAttrValue(attribute, value, before_content, element);
    }

    bool checkContent(xercesc::XMLElementDecl* const element, xercesc::QName** const children,
                      XMLSize_t count, XMLSize_t* failing) override {
      limits.look_at_children(count);
      return DTDValidator::checkContent(element, children, count, failing);
    }

   private:
    limited_scanner& limits;
  };

  // The scanner shows its list to derived classes only.
  struct opened : xercesc::XMLScanner {
    static XMLSize_t attributes_of(xercesc::XMLScanner& scanner) {
      return (scanner.*&opened::fAttrList)->size();
    }
  };

  static xercesc::XMLScanner& writable(const xercesc::XMLScanner& own) {
    return const_cast<xercesc::XMLScanner&>(own);  // the parser's own, which it shows as constant
  }
  static xercesc::XMLScanner& writable(xercesc::XMLScanner* own) { return *own; }
  xercesc::XMLScanner& scanner() { return writable(this->getScanner()); }

  // Apart, so that the step of every document stays short.
  [[gnu::noinline, gnu::cold]] bool parse_next_timed(xercesc::XMLPScanToken& token) {
    begin_step();
    const bool more = Parser::parseNext(token);
    end_step();
    return more;
  }

  // The tree would keep them in a table for which nobody asks, and which takes the square of their
  // number as it grows.
  static void forget_identifiers(const xercesc::RefVectorOf<xercesc::XMLAttr>& list,
                                 XMLSize_t count) {
    for (XMLSize_t i = 0; i < count; ++i) {
      auto& attribute = const_cast<xercesc::XMLAttr&>(*list.elementAt(i));  // the scanner's own
      if (attribute.getType() == xercesc::XMLAttDef::ID)
        attribute.setType(xercesc::XMLAttDef::CData);
    }
  }

  // What has no size, such as a pipe, is counted as it is scanned, which takes a little longer.
  void expect_file(const char* name) {
    struct stat file {};
    const bool has_size = stat(name, &file) == 0 && S_ISREG(file.st_mode);
    expect(has_size ? static_cast<std::uint64_t>(file.st_size) : 0);
    scanner().setCalculateSrcOfs(!has_size);
  }

  // The scan of a document ends with such an error: there is nothing to refuse any more. The
  // validator numbers its errors by itself.
  static bool ends_scan(const XMLCh* domain, xercesc::XMLErrorReporter::ErrTypes type,
                        unsigned code) {
    using xercesc::XMLErrs;
    if (type == xercesc::XMLErrorReporter::ErrType_Fatal) return true;
    return xercesc::XMLString::equals(domain, xercesc::XMLUni::fgXMLErrDomain) &&
           (code == XMLErrs::XMLException_Warning || code == XMLErrs::XMLException_Error);
  }

  void look_at_scanner() override {
    // Those of the tag at hand and more: the list does not shrink.
    if (opened::attributes_of(scanner()) > different_names) this->refuse(this->too_many_attributes);
    if (!scanner().getCalculateSrcOfs()) return;
    try {
      const std::uint64_t scanned = scanner().getSrcOffset();  // of the entity at hand
      if (scanned > expected_bytes()) scan_budget::expect(scanned);
    } catch (const xercesc::XMLException&) {
      scanner().setCalculateSrcOfs(false);  // an encoding in which nobody counts
    }
  }

  void refuse(const char* reason) override {
    end_document();
    XMLCh text[128] = {};
    std::copy_n(reason, std::min(std::strlen(reason), std::size(text) - 1), text);
    xercesc::ReaderMgr::LastExtEntityInfo at;
    scanner().getReaderMgr()->getLastExtEntityInfo(at);
    this->error(xercesc::XMLErrs::EntityExpansionLimitExceeded, xercesc::XMLUni::fgXMLErrDomain,
                xercesc::XMLErrorReporter::ErrType_Fatal, text, at.systemId, at.publicId,
                at.lineNumber, at.colNumber);
    throw xercesc::XMLErrs::Codes{xercesc::XMLErrs::XMLException_Fatal};
  }

  xercesc::SecurityManager references;
  held_exception thrown;
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
