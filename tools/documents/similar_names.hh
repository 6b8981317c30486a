#ifndef SIMILAR_NAMES_HH
#define SIMILAR_NAMES_HH

#include <string_view>

/// How far a written name is from a known one: 0 for the same letters in another case, else the
/// letters that are changed, missing, too many, or swapped with their neighbour; a name that was
/// shortened or made longer counts two. `beyond_all_names` when nobody would take one for the
/// other.
unsigned distance_of_names(std::string_view written, std::string_view known);
constexpr unsigned beyond_all_names = 100;

/// Whether it is that few letters of the known name, which is not only shortened or made longer.
bool is_misspelt(std::string_view written, std::string_view known);

#endif
