#include "document_type_limits.hh"

#include <algorithm>
#include <bitset>
#include <limits>
#include <new>
#include <unordered_set>
#include <utility>
#include <vector>
#include <xercesc/framework/XMLRefInfo.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

using xercesc::ContentSpecNode;
using xercesc::DTDElementDecl;
using xercesc::XMLPlatformUtils;
using xercesc::XMLString;

namespace zrt4::detail {

namespace {

// As the scanner requests it, with room for the memory manager before the object.
template <class Object>
XMLSize_t request_for() {
  return XMLPlatformUtils::alignPointerForNewBlockAllocation(sizeof(void*)) + sizeof(Object);
}

// Of Xerces-C 3.2. In a version with other sizes names that collide would not be noticed; timing a
// scan of names that lie in one slot of a size tells.
constexpr name_table_growth element_table{29, 3, 2};
constexpr name_table_growth attribute_table{7, 16, 8};  // grows over the tags of a document

bool is_identifier(xercesc::XMLAttDef::AttTypes type) {
  using xercesc::XMLAttDef;
  return type == XMLAttDef::ID || type == XMLAttDef::IDRef || type == XMLAttDef::IDRefs;
}

using positions = std::bitset<content_model_particles>;

bool is_repetition(const ContentSpecNode& node) {
  const auto type = node.getType();
  return type == ContentSpecNode::ZeroOrOne || type == ContentSpecNode::ZeroOrMore ||
         type == ContentSpecNode::OneOrMore;
}

/// Elements and attributes in the text of an entity, or more.
std::size_t nodes_in(const XMLCh* text, std::size_t length) {
  return static_cast<std::size_t>(
      std::count_if(text, text + length, [](XMLCh unit) { return unit == '<' || unit == '='; }));
}

/// Names and repetitions below `root`, counted up to one beyond the limit.
std::size_t particles_of(const ContentSpecNode& root) {
  std::vector<const ContentSpecNode*> open{&root};
  std::size_t count = 0;
  while (!open.empty() && count <= content_model_particles) {
    const ContentSpecNode& node = *open.back();
    open.pop_back();
    if (node.getType() == ContentSpecNode::Leaf || is_repetition(node)) ++count;
    if (node.getSecond() != nullptr) open.push_back(node.getSecond());
    if (node.getFirst() != nullptr) open.push_back(node.getFirst());
  }
  return count;
}

/// The automaton that the scanner will make of a content model, as far as it takes to count its
/// states: the positions of the model are its names, a state is a set of positions.
class automaton {
 public:
  explicit automaton(const ContentSpecNode& root) { start = enter(root).first; }

  /// Counts the states, up to one beyond `most`.
  std::size_t states(std::size_t most) const {
    std::unordered_set<positions> known{start};
    std::vector<positions> open{start};
    while (!open.empty() && known.size() <= most) {
      positions left = open.back();
      open.pop_back();
      while (left.any()) {
        const positions next = take(left);
        if (known.insert(next).second) open.push_back(next);
      }
    }
    return known.size();
  }

 private:
  struct part {
    positions first;
    positions last;
    bool optional = false;
  };

  part enter(const ContentSpecNode& node) {
    if (node.getType() == ContentSpecNode::Leaf) return leaf(node);
    part one = node.getFirst() != nullptr ? enter(*node.getFirst()) : part{};
    if (is_repetition(node)) {
      if (node.getType() != ContentSpecNode::ZeroOrOne) connect(one.last, one.first);
      one.optional = one.optional || node.getType() != ContentSpecNode::OneOrMore;
      return one;
    }
    if (node.getSecond() == nullptr) return one;
    const part two = enter(*node.getSecond());
    if (node.getType() == ContentSpecNode::Choice) {
      return {one.first | two.first, one.last | two.last, one.optional || two.optional};
    }
    connect(one.last, two.first);
    return {one.optional ? one.first | two.first : one.first,
            two.optional ? one.last | two.last : two.last, one.optional && two.optional};
  }

  part leaf(const ContentSpecNode& node) {
    const XMLCh* name = node.getElement()->getRawName();
    const auto same = std::find_if(names.begin(), names.end(), [name](const auto& known) {
      return XMLString::equals(known.first, name);
    });
    const std::size_t position = name_at.size();
    name_at.push_back(static_cast<std::size_t>(same - names.begin()));
    if (same == names.end()) names.emplace_back(name, positions());
    names[name_at.back()].second.set(position);
    follow.emplace_back();
    part one;
    one.first.set(position);
    one.last = one.first;
    return one;
  }

  void connect(const positions& from, const positions& to) {
    for (std::size_t i = 0; i < follow.size(); ++i) {
      if (from[i]) follow[i] |= to;
    }
  }

  /// Where the name of the first of `left` leads; takes all positions of that name out of it.
  positions take(positions& left) const {
    std::size_t i = 0;
    while (!left[i]) ++i;
    const positions named = left & names[name_at[i]].second;
    left &= ~named;
    positions next;
    for (; i < follow.size(); ++i) {
      if (named[i]) next |= follow[i];
    }
    return next;
  }

  positions start;
  std::vector<std::pair<const XMLCh*, positions>> names;
  std::vector<std::size_t> name_at;
  std::vector<positions> follow;
};

}  // namespace

// Only names beyond the first are kept: up to so many cost little even in one slot.
bool name_spread::add(const XMLCh* name) {
  // What the scanner divides by the number of slots.
  const XMLSize_t hash = XMLString::hash(name, std::numeric_limits<XMLSize_t>::max());
  hashes.push_back(hash);
  std::size_t grown = slots;
  while (4 * names() >= growth.quarters * grown) grown = growth.times * grown + 1;
  if (grown == slots && !in_slot.empty()) return add_to_slot(hash);
  slots = grown;
  in_slot.assign(slots, 0);
  return std::all_of(hashes.begin(), hashes.end(), [this](auto each) { return add_to_slot(each); });
}

void name_spread::clear() {
  hashes.clear();
  std::fill(in_slot.begin(), in_slot.end(), 0);
}

document_type_limits::document_type_limits(result wanted)
    : makes_tree(wanted == result::tree),
      element_names(element_table),
      attribute_names(attribute_table) {
  references.setEntityExpansionLimit(entity_references);
}

void* document_type_limits::allocate(XMLSize_t size) {
  try {
    count_request(size);
  } catch (...) {
    keep_all();
    throw;
  }
  return scanner_memory::allocate(size);
}

// A start tag is counted at its end, which is too late: by then the scanner has looked up all its
// attributes. Some other requests have the size of an attribute, or of an identifier, but not
// thousands of them within a tag, other than for errors.
void document_type_limits::count_request(XMLSize_t size) {
  if (declaring) {
    allocated += size;
    if (allocated > declaration_memory) refuse("the declarations take too much memory");
    return;
  }
  if (reporting) return;
  if (size == request_for<xercesc::XMLAttr>() && attribute_list != nullptr)
    count_further_attributes();
  if (size == request_for<xercesc::XMLRefInfo>() && declares_identifiers &&
      ++identifier_requests > identifiers) {
    refuse(too_many_identifiers);
  }
}

void document_type_limits::count_further_name(const xercesc::XMLElementDecl& element) {
  using xercesc::XMLElementDecl;
  const auto reason = element.getCreateReason();
  const bool declared = reason == XMLElementDecl::Declared || reason == XMLElementDecl::AttList ||
                        reason == XMLElementDecl::InContentModel;
  if (!declared && element.getId() <= element_names.names()) return;
  if (makes_tree || declared || !element_names.add(element.getFullName())) {
    refuse("too many different elements");
  }
}

void document_type_limits::count_further_attributes() {
  for (std::size_t n = attribute_names.names(); n < attribute_list->size(); ++n) {
    if (makes_tree || !attribute_names.add(attribute_list->elementAt(n)->getName())) {
      refuse(too_many_attributes);
    }
  }
}

// The scanner makes those of a later tag anew, so that they are counted before it looks them up.
void document_type_limits::forget_further_attributes() {
  while (attribute_list->size() > different_names) attribute_list->removeLastElement();
  attribute_names.clear();
}

void document_type_limits::count(const DTDElementDecl& element) {
  count_name(element);
  const ContentSpecNode* model = element.getContentSpec();
  if (model == nullptr) return;
  const std::size_t particles = particles_of(*model);
  if (particles > content_model_particles) refuse("the content model of an element is too long");
  if (particles == 0 || element.getModelType() != DTDElementDecl::Children) return;
  const std::size_t left = (content_model_states - states) / particles;
  const std::size_t own = automaton(*model).states(left);
  if (own > left) refuse("the content models are too ambiguous");
  states += own * particles;
}

void document_type_limits::count(const DTDElementDecl& element,
                                 const xercesc::DTDAttDef& attribute) {
  count_name(element);
  if (element.hasAttDefs() && element.getAttDefList().getAttDefCount() > attributes_of_element) {
    refuse(too_many_attributes);
  }
  if (const XMLCh* words = attribute.getEnumeration()) {
    const auto blanks = std::count(words, words + XMLString::stringLen(words), XMLCh{' '});
    if (static_cast<std::size_t>(blanks) >= words_of_attribute) {
      refuse("an attribute has too many values to choose from");
    }
  }
  if (is_identifier(attribute.getType())) {
    counts_values = true;
    declares_identifiers = true;
  }
  if (attribute.getValue() != nullptr) {
    counts_values = true;
    add(XMLString::stringLen(attribute.getValue()));
  }
}

bool document_type_limits::count(const xercesc::DTDEntityDecl& entity, bool is_parameter) {
  if (entity.getId() > different_names) refuse("too many entities");
  if (entity.getValue() == nullptr) return false;
  const std::size_t length = XMLString::stringLen(entity.getValue());
  if (is_parameter) {
    if (length > parameter_entity_length) refuse("a parameter entity is too long");
    return false;
  }
  if (XMLString::indexOf(entity.getValue(), '&') != -1 && ++nesting > nesting_entities) {
    refuse("too many entities refer to others");
  }
  const std::size_t units = length + units_of_node * nodes_in(entity.getValue(), length);
  if (units <= largest_entity) return false;
  largest_entity = units;
  const std::size_t most = std::clamp(added_units / units, std::size_t{1}, entity_references);
  references.setEntityExpansionLimit(most);
  return most < entity_references;
}

void document_type_limits::add(std::size_t units) {
  added += units;
  if (added > added_units) refuse("the defaults of attributes add too much to the document");
}

void document_type_limits::add_values(const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes,
                                      XMLSize_t count) {
  for (XMLSize_t i = 0; i < count; ++i) {
    const xercesc::XMLAttr& attribute = *attributes.elementAt(i);
    const XMLCh* value = attribute.getValue();
    const std::size_t length = XMLString::stringLen(value);
    if (!attribute.getSpecified()) add(units_of_node + length);
    if (!is_identifier(attribute.getType())) continue;
    identifiers_met += 1 + static_cast<std::size_t>(std::count(value, value + length, XMLCh{' '}));
    if (identifiers_met > identifiers) refuse(too_many_identifiers);
  }
}

}  // namespace zrt4::detail
