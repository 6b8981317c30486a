#ifndef SHOWN_TEXT_HH
#define SHOWN_TEXT_HH

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "finding_list.hh"

/// A text of a document in a message: in quotes, and as one line.
std::string quoted(std::string_view text);

/// "2 times: lines 3 and 7", of something that stands at `places`, and maybe at more.
std::string times_and_lines(const std::vector<file_place>& places, std::size_t times);

/// " (line 7)", nothing where the line is not known.
std::string in_line(file_place place);

/// " (line 7)", for damage within an element that a message names: where that begins, unless it is
/// the line of the damage.
std::string where_begun(std::string_view message, std::string_view element, file_place begin,
                        file_place damage);

#endif
