#ifndef DOCUMENT_TYPE_LIMITS_HH
#define DOCUMENT_TYPE_LIMITS_HH

// What the names and the document type declaration of a document may cost its reader. A few hundred
// bytes of declarations can otherwise take hours, gigabytes or the whole stack, in the scanner
// itself. The limits are far beyond what documents of the DAQ hold; docs/security.md has the
// figures.

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>
#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/util/RefVectorOf.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "scanner_memory.hh"

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

}  // namespace zrt4::detail

#endif
