#ifndef DOCUMENT_TYPE_LIMITS_HH
#define DOCUMENT_TYPE_LIMITS_HH

// What the names and the document type declaration of a document may cost its reader. A few hundred
// bytes of declarations can otherwise take hours, gigabytes or the whole stack, in the scanner
// itself. The limits are far beyond what documents of the DAQ hold; docs/security.md has the
// figures.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLErrorReporter.hpp>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/AbstractDOMParser.hpp>
#include <xercesc/util/RefVectorOf.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

namespace zrt4::detail {

/// Different names of elements, of entities, of notations, and of the attributes of one start tag.
/// The scanner walks all names that lie in one slot of its table, which their sender can make all
/// of them, at each. More names of elements without a declaration, and of attributes, may be in a
/// document that no tree is made of, when no slot has many of them.
constexpr std::size_t different_names = 1024;
constexpr std::size_t names_of_slot = 128;

/// Values of attributes that are declared as identifiers or refer to them. The scanner keeps all of
/// them, in a table as that of the names.
constexpr std::size_t identifiers = 8192;

/// Names and repetitions in one content model. The scanner nests a call for each of them when it
/// prepares to validate, and compares each child with each name. Large vocabularies have 150.
constexpr std::size_t content_model_particles = 256;

/// States of the automata of all content models, each times the particles of its model: what the
/// scanner spends on them. An ambiguous model doubles its states with every name.
constexpr std::size_t content_model_states = 1 << 20;

/// Attributes of one element type, and words that an attribute may be one of: the scanner walks all
/// of them at every start tag.
constexpr std::size_t attributes_of_element = 256;
constexpr std::size_t words_of_attribute = 256;

/// Character units of a parameter entity, and bytes allocated while declarations are scanned. Every
/// reference to a parameter entity takes 164 kB of them, and nothing else there takes much.
constexpr std::size_t parameter_entity_length = 4096;
constexpr std::size_t declaration_memory = std::size_t{128} << 20;

/// General entities that refer to others: each level of nesting holds 164 kB.
constexpr std::size_t nesting_entities = 512;

/// References to general entities, each about 10 microseconds, and character units that references
/// and defaults may add to a document. An element or attribute counts as so many units more: it
/// takes about as long, and 200 bytes, in a DOM tree.
constexpr std::size_t entity_references = 50'000;
constexpr std::size_t added_units = std::size_t{16} << 20;
constexpr std::size_t units_of_node = 128;

/// The memory of one scanner. What the scanner has not released by itself is released with it: a
/// scan that ends in the middle of a declaration forgets what it has built of it. After a request
/// that failed nothing is released before: the scanner then releases some of its objects twice.
///
/// A scanner makes some 200 small objects before it looks at the first character, half the time of
/// a small document. They are cut from chunks, and serve again for requests of the same size.
class scanner_memory : public xercesc::MemoryManager {
 public:
  scanner_memory() = default;
  scanner_memory(const scanner_memory&) = delete;
  scanner_memory& operator=(const scanner_memory&) = delete;
  ~scanner_memory() override;

  xercesc::MemoryManager* getExceptionMemoryManager() override;
  void* allocate(XMLSize_t size) override;
  void deallocate(void* memory) override;

 protected:
  void keep_all() { keeps_all = true; }
  /// From here on requests are met from a reserve when there is no memory: the scanner asks for
  /// some when it is destroyed, where it must not fail.
  void prepare_end() { ends = true; }

 private:
  // Stands before what is handed out. A block from the system is in the ring through `held`; a cell
  // has no previous one, and its next is the list of its size, or in that list the next free cell.
  struct block {
    block* previous = this;
    block* next = this;
  };

  static constexpr std::size_t step = alignof(std::max_align_t);
  static constexpr std::size_t steps_at_most = 32;

  void* from_cells(std::size_t steps);
  void* from_system(XMLSize_t size);
  void* from_reserve(XMLSize_t size);

  block held;
  block free_cells[steps_at_most + 1];  // by size in steps
  char* uncut = nullptr;
  std::size_t uncut_size = 0;
  bool keeps_all = false;
  bool ends = false;
  std::size_t reserve_used = 0;
  alignas(void*) char reserve[2048];  // as the XML library aligns objects that hold it
};

/// How a hash table of the scanner grows: from so many slots, when its names are so many quarters
/// of them, to so many times the slots and one.
struct name_table_growth {
  std::size_t slots;
  std::size_t quarters;
  std::size_t times;
};

/// How the names beyond `different_names` lie in a table of the scanner, which counts all of them.
class name_spread {
 public:
  explicit name_spread(const name_table_growth& of_table)
      : growth(of_table), slots(of_table.slots) {}

  /// False when its slot, or any after the table has grown, has too many names.
  bool add(const XMLCh* name);
  /// Forgets the names. The scanner's table stays as large as it was.
  void clear();
  std::size_t names() const { return different_names + hashes.size(); }

 private:
  bool add_to_slot(XMLSize_t hash) { return ++in_slot[hash % slots] <= names_of_slot; }

  const name_table_growth growth;
  std::size_t slots;
  std::vector<XMLSize_t> hashes;
  std::vector<std::uint32_t> in_slot;
};

/// What has been counted of one document.
struct document_counts {
  bool declaring = false;
  bool reporting = false;
  bool counts_values = false;  // defaults or identifiers are declared
  bool declares_identifiers = false;
  std::size_t identifier_requests = 0;  // of their size, since the last tag or entity
  std::size_t identifiers_met = 0;
  std::size_t allocated = 0;
  std::size_t states = 0;
  std::size_t nesting = 0;
  std::size_t added = 0;
  std::size_t largest_entity = 0;
};

/// Counts what a document declares against the limits. It is the memory manager of its scanner.
class document_type_limits : public scanner_memory, private document_counts {
 public:
  /// A tree finds its names in tables that do not grow.
  enum class result { events, tree };

  explicit document_type_limits(result wanted);

  void* allocate(XMLSize_t size) override;

 protected:
  /// Reports the document as not well-formed, for `reason`, and ends its scan.
  [[noreturn]] virtual void refuse(const char* reason) = 0;

  /// The list of the attributes of a tag, to which the scanner adds those that it makes.
  void count_attributes_in(xercesc::RefVectorOf<xercesc::XMLAttr>& list) { attribute_list = &list; }
  void count_name(const xercesc::XMLElementDecl& element) {
    if (element.getId() > different_names) count_further_name(element);
  }
  void begin_count_of_requests() { identifier_requests = 0; }
  /// A start tag has been scanned.
  void count_tag(const xercesc::XMLElementDecl& element, XMLSize_t attribute_count) {
    begin_count_of_requests();
    count_name(element);
    if (attribute_count > different_names) count_further_attributes();
  }
  /// A start tag has been used.
  void end_tag(XMLSize_t attribute_count) {
    if (attribute_count > different_names) forget_further_attributes();
  }
  void count(const xercesc::XMLNotationDecl& notation) {
    if (notation.getId() > different_names) refuse("too many notations");
  }
  /// For as long as it lives, requests are those of an error's report.
  class report {
   public:
    explicit report(document_type_limits& of) : reporting(of.reporting) {}
    report(const report&) = delete;
    report& operator=(const report&) = delete;
    ~report() { reporting = before; }

   private:
    bool& reporting;
    const bool before = std::exchange(reporting, true);
  };
  void begin_document() {
    static_cast<document_counts&>(*this) = {};
    element_names.clear();
    attribute_names.clear();
  }
  /// The scan ends: what it still requests is not counted.
  void end_count() {
    declaring = false;
    reporting = true;
  }
  void begin_declarations() { declaring = true; }
  void end_declarations() { declaring = false; }
  void count(const xercesc::DTDElementDecl& element);
  void count(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute);
  /// True when the number of references that is left to the document has changed.
  bool count(const xercesc::DTDEntityDecl& entity, bool is_parameter);
  void count_values(const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t count) {
    if (counts_values) add_values(attributes, count);
  }

  xercesc::SecurityManager references;

 private:
  static constexpr const char* too_many_attributes = "an element has too many attributes";
  static constexpr const char* too_many_identifiers = "too many identifiers";

  void count_request(XMLSize_t size);
  void count_further_name(const xercesc::XMLElementDecl& element);
  void count_further_attributes();
  void forget_further_attributes();
  void add(std::size_t units);
  void add_values(const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t count);

  const bool makes_tree;
  name_spread element_names;
  name_spread attribute_names;
  xercesc::RefVectorOf<xercesc::XMLAttr>* attribute_list = nullptr;
};

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
    const report uncounted(*this);
    Parser::error(code, domain, type, text, system_id, public_id, line, column);
  }

  void startElement(const xercesc::XMLElementDecl& element, const unsigned int uri,
                    const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& list,
                    const XMLSize_t attributes, const bool is_empty, const bool is_root) override {
    count_tag(element, attributes);
    count_values(list, attributes);
    Parser::startElement(element, uri, prefix, list, attributes, is_empty, is_root);
    end_tag(attributes);
  }

 protected:
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

  void refuse(const char* reason) override {
    end_count();
    XMLCh text[128];
    for (std::size_t i = 0; i < std::size(text); ++i) {
      text[i] = static_cast<XMLCh>(reason[i]);
      if (reason[i] == '\0') break;
    }
    xercesc::ReaderMgr::LastExtEntityInfo at;
    scanner().getReaderMgr()->getLastExtEntityInfo(at);
    constexpr auto code = xercesc::XMLErrs::XMLException_Fatal;
    this->error(code, xercesc::XMLUni::fgXMLErrDomain, xercesc::XMLErrorReporter::ErrType_Fatal,
                text, at.systemId, at.publicId, at.lineNumber, at.colNumber);
    throw xercesc::XMLErrs::Codes{code};
  }
};

}  // namespace zrt4::detail

#endif
