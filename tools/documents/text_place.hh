#ifndef TEXT_PLACE_HH
#define TEXT_PLACE_HH

#include <algorithm>
#include <cstddef>
#include <xercesc/util/XercesDefs.hpp>

#include "blanks.hh"
#include "file_place.hh"

/// Where a text begins, behind the blanks before it. `end` is where it ends, which is what a
/// scanner knows when it tells of a text, and `tag` where its element's start tag does.
inline file_place place_of_text(const XMLCh* text, std::size_t length, file_place end,
                                file_place tag) {
  const XMLCh* const behind = text + length;
  const XMLCh* const first = std::find_if(text, behind, [](XMLCh c) { return !is_blank(c); });
  const auto lines = static_cast<std::uint64_t>(std::count(first, behind, u'\n'));
  const file_place begin{end.line - std::min(lines, end.line), 1};
  if (lines == 0) {
    const auto columns = static_cast<std::uint64_t>(behind - first);
    return {end.line, end.column - std::min(columns, end.column - 1)};
  }
  const XMLCh* line = first;
  while (line != text && line[-1] != u'\n') --line;
  const auto before = static_cast<std::uint64_t>(first - line);
  if (line != text) return {begin.line, before + 1};
  // Behind the start tag, or behind another, of which nobody knows where it ended.
  return tag.line == begin.line ? file_place{tag.line, tag.column + before} : begin;
}

#endif
