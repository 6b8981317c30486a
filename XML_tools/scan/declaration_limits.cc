#include "declaration_limits.hh"

#include <algorithm>
#include <vector>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

using xercesc::ContentSpecNode;
using xercesc::DTDElementDecl;
using xercesc::XMLString;

namespace zrt4::detail {

namespace {

std::size_t blanks_in(const XMLCh* text, std::size_t length) {
  return static_cast<std::size_t>(std::count(text, text + length, XMLCh{' '}));
}

/// What a content model can have at most: a state for each set of the places of each of its names.
std::uint64_t states_of(std::vector<const XMLCh*>& names) {
  std::sort(names.begin(), names.end(), [](const XMLCh* one, const XMLCh* other) {
    return XMLString::compareString(one, other) < 0;
  });
  std::uint64_t states = 1;
  for (auto first = names.begin(); first != names.end() && states <= content_model_states;) {
    const auto next = std::find_if(
        first, names.end(), [&](const XMLCh* name) { return !XMLString::equals(name, *first); });
    states += (std::uint64_t{1} << std::min<std::ptrdiff_t>(next - first, 32)) - 1;
    first = next;
  }
  return states;
}

}  // namespace

void declaration_limits::declare(const DTDElementDecl& element) {
  if (element.getId() > different_elements) refuse(too_many_elements);
  add_name(element.getFullName());
  if (const ContentSpecNode* model = element.getContentSpec()) {
    add_model(*model, element.getModelType() == DTDElementDecl::Children);
  }
}

void declaration_limits::declare(const DTDElementDecl& element,
                                 const xercesc::DTDAttDef& attribute) {
  if (element.getId() > different_elements) refuse(too_many_elements);
  if (element.hasAttDefs() && element.getAttDefList().getAttDefCount() > different_names) {
    refuse(too_many_attributes);
  }
  add_name(element.getFullName());
  add_name(attribute.getFullName());
  if (const XMLCh* words = attribute.getEnumeration()) {
    const std::size_t length = XMLString::stringLen(words);
    if (length > list_length || blanks_in(words, length) >= different_names) {
      refuse("an attribute has too many values to choose from");
    }
    add(length);
  }
  if (const XMLCh* value = attribute.getValue()) add(XMLString::stringLen(value));
}

void declaration_limits::declare(const xercesc::DTDEntityDecl& entity) {
  if (entity.getId() > different_names) refuse("too many entities");
  add_name(entity.getName());
  if (entity.getValue() != nullptr) add(XMLString::stringLen(entity.getValue()));
}

void declaration_limits::declare(const xercesc::XMLNotationDecl& notation) {
  if (notation.getId() > different_names) refuse("too many notations");
  add_name(notation.getName());
}

void declaration_limits::add_name(const XMLCh* name) {
  const std::size_t length = XMLString::stringLen(name);
  if (length > name_length) refuse("a name is too long to be declared");
  add(length);
}

void declaration_limits::add(std::uint64_t units) {
  declared += units;
  if (declared > declared_length) refuse("the declarations are too long");
  tick();
}

void declaration_limits::add_model(const ContentSpecNode& root, bool has_states) {
  std::vector<const ContentSpecNode*> open{&root};
  std::vector<const XMLCh*> names;
  std::size_t particles = 0;
  std::uint64_t length = 0;
  while (!open.empty()) {
    const ContentSpecNode& node = *open.back();
    open.pop_back();
    const bool is_name = node.getType() == ContentSpecNode::Leaf;
    if (is_name) {
      names.push_back(node.getElement()->getRawName());
      length += 8 + XMLString::stringLen(names.back());
    }
    const bool joins = node.getSecond() != nullptr;
    if (!joins && ++particles > content_model_particles) {
      refuse("the content model of an element is too long");
    }
    if (joins) open.push_back(node.getSecond());
    if (node.getFirst() != nullptr) open.push_back(node.getFirst());
  }
  add(length);
  longest_model = std::max(longest_model, length);
  if (!has_states) return;
  states += states_of(names) * names.size();
  if (states > content_model_states) refuse("the content models are too ambiguous");
}

void declaration_limits::look_at_list(const XMLCh* value) {
  tick();
  if (blanks_in(value, XMLString::stringLen(value)) >= different_names) {
    refuse("an attribute has too long a list of names");
  }
}

void declaration_limits::look_at_children(XMLSize_t count) {
  tick();
  if (count * longest_model > allowed(comparison_limit)) {
    refuse("an element has too many children for its content model");
  }
}

}  // namespace zrt4::detail
