#ifndef LOST_CHARACTERS_HH
#define LOST_CHARACTERS_HH

#include <cstddef>
#include <string>
#include <string_view>
#include <xercesc/util/XercesDefs.hpp>

/// What is wrong with a text of `element` of which the code page of the locale lacks a character:
/// the first of them gets lost. Empty when there is none.
std::string lost_character(std::string_view element, const XMLCh* text, std::size_t length);

#endif
