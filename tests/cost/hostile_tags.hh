#ifndef HOSTILE_TAGS_HH
#define HOSTILE_TAGS_HH

// What the sources of the hostile documents share: texts, and tags that are dear.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "hostile_documents.hh"

namespace cost {

std::string times(std::size_t count, const std::string& text);

using numbered_text = std::function<std::string(std::size_t)>;

/// each(0), each(1) and so on, as many as make up `size`.
std::string up_to(std::size_t size, const numbered_text& each);

std::string numbered(const std::string& before, std::size_t n, const std::string& after = "");

/// name(0) | name(1) and so on.
std::string choice(std::size_t size, const numbered_text& name);
std::string short_word(std::size_t i);

/// How many colliding names, with `more` bytes each beside, fit into `size`.
std::size_t colliding_in(std::size_t size, std::size_t more);

/// What comes before the tags, and the tags, all of an element b where nothing else is said.
struct dear_tag {
  std::string declarations;
  std::string content;
  std::string name = "b";
  numbered_text attributes = [](std::size_t) { return std::string(); };
  numbered_text inside = nullptr;
};

std::vector<std::string> tag_families();
dear_tag make_tag(const std::string& family, std::size_t size);

}  // namespace cost

#endif
