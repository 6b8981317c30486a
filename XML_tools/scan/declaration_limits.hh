#ifndef DECLARATION_LIMITS_HH
#define DECLARATION_LIMITS_HH

// How much a document may declare, so that nothing the scanner does at once takes long, or a large
// stack. The numbers are far beyond real documents; docs/security.md lists them.

#include <cstddef>
#include <cstdint>
#include <xercesc/framework/XMLNotationDecl.hpp>
#include <xercesc/validators/DTD/DTDAttDef.hpp>
#include <xercesc/validators/DTD/DTDElementDecl.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include "scan_budget.hh"

namespace zrt4::detail {

/// Different names of elements, declared or not.
constexpr std::size_t different_elements = std::size_t{1} << 17;

/// Entities, notations, attributes of a tag or of an element type, and names in one list: the
/// scanner may compare each of them with each.
constexpr std::size_t different_names = 4096;

/// Character units of a name that is declared.
constexpr std::size_t name_length = 4096;

/// Character units of the values that an attribute may be one of.
constexpr std::size_t list_length = std::size_t{64} << 10;

/// Character units of all that is declared: names, values of entities and of attributes, content
/// models.
constexpr std::size_t declared_length = std::size_t{4} << 20;

/// Names and repetitions of one content model: the scanner nests a call for each.
constexpr std::size_t content_model_particles = 1024;

/// States of all content models, each times the names of its model. An ambiguous model can double
/// its states with each name.
constexpr std::uint64_t content_model_states = std::uint64_t{1} << 22;

/// Character units that the check of one element's children may compare.
constexpr cost_limit comparison_limit{std::uint64_t{1} << 30, 4096, 4096};

/// References to general entities for each MiB of a document that has begun; each takes about 10
/// microseconds.
constexpr unsigned entity_references = 50'000;

class declaration_limits : public scan_budget {
 protected:
  using scan_budget::scan_budget;

  void begin_document() {
    declared = 0;
    states = 0;
    longest_model = 0;
    scan_budget::begin_document();
  }

  /// Of a start tag. What is declared can make each of them dear.
  void count(const xercesc::XMLElementDecl& element, XMLSize_t attributes) {
    if (element.getId() > different_elements) refuse(too_many_elements);
    if (attributes > different_names) refuse(too_many_attributes);
    count_element();
    if (declared != 0) {
      look();
    } else {
      tick();
    }
  }
  void declare(const xercesc::DTDElementDecl& element);
  void declare(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute);
  void declare(const xercesc::DTDEntityDecl& entity);
  void declare(const xercesc::XMLNotationDecl& notation);

  /// Of a value that is checked.
  void look_at_list(const XMLCh* value);
  /// Of an element whose children are checked.
  void look_at_children(XMLSize_t count);

  static constexpr const char* too_many_attributes = "an element has too many attributes";

 private:
  static constexpr const char* too_many_elements = "too many different elements";

  void add_name(const XMLCh* name);
  void add(std::uint64_t units);
  void add_model(const xercesc::ContentSpecNode& root, bool has_states);

  std::uint64_t declared = 0;
  std::uint64_t states = 0;
  std::uint64_t longest_model = 0;
};

}  // namespace zrt4::detail

#endif
