#ifndef HOSTILE_DOCUMENTS_HH
#define HOSTILE_DOCUMENTS_HH

// Documents that try to cost more than their size allows: everything that can make a tag dear, in
// every way in which many tags can arise, and documents that are dear as a whole.

#include <cstddef>
#include <string>
#include <vector>

namespace cost {

struct hostile_document {
  std::string family;
  std::string multiplier;  ///< how its tags arise; empty for a document that is dear as a whole
  std::string text;
};

/// The names of all families, and of the multipliers of those that are dear by the tag.
std::vector<std::string> families();
std::vector<std::string> multipliers_of(const std::string& family);

/// A document of about `size` bytes whose root element is `root`.
hostile_document make(const std::string& family, const std::string& multiplier, std::size_t size,
                      const std::string& root);

/// `count` names or more that all have one and the same hash in the scanner.
std::string colliding_name(std::size_t n);

}  // namespace cost

#endif
