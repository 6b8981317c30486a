#ifndef PAGE_SOURCES_HH
#define PAGE_SOURCES_HH

// The parts of every page, from the files of this folder; the source is made by embed.cmake.

#include <cstddef>
#include <iterator>
#include <string_view>

struct page_sources {
  struct pieces {
    const std::string_view* first;
    std::size_t count;

    const std::string_view* begin() const { return first; }
    const std::string_view* end() const { return first + count; }
  };

  std::string_view html;  ///< with "@name@" where something is to be filled in
  std::string_view style;
  pieces script;
  std::string_view script_hash;  ///< as in a Content-Security-Policy
  std::string_view style_hash;
};

extern const page_sources page_parts;

#endif
