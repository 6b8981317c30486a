#ifndef ELEMENT_NAMES_HH
#define ELEMENT_NAMES_HH

#include <array>
#include <cstddef>
#include <cstdint>
#include <xercesc/framework/XMLElementDecl.hpp>

#include "local_text.hh"

namespace zrt4::detail {

/// The converted names of a document's elements. The scanner keeps one declaration for all elements
/// of a name until the document ends, so that its address tells whether the name was met before.
class element_names {
 public:
  /// The name of `element`, which lives until the next call.
  const char* of(const xercesc::XMLElementDecl& element, code_page& page) {
    known_name& known = names[slot_of(element)];
    if (known.element == &element) return known.text.held();
    const char* const name = known.text.assign(element.getFullName(), page);
    known.element = name != nullptr ? &element : nullptr;
    return name;
  }

  /// To be called before another document: its declarations may have the same addresses.
  void forget() {
    for (known_name& known : names) known.element = nullptr;
  }

 private:
  struct known_name {
    const xercesc::XMLElementDecl* element = nullptr;
    local_text text;
  };
  // Names that share a slot are converted each time. More slots would slow small documents down.
  std::size_t slot_of(const xercesc::XMLElementDecl& element) const {
    const auto address = reinterpret_cast<std::uintptr_t>(&element);
    return (address >> 4U ^ address >> 10U) % names.size();
  }

  std::array<known_name, 32> names;
};

}  // namespace zrt4::detail

#endif
