#ifndef UNSEEN_CHARACTERS_HH
#define UNSEEN_CHARACTERS_HH

#include <string>
#include <string_view>

// Texts are UTF-8.

/// A blank beyond ASCII, or a character without width: nobody sees which, or that it is there.
bool is_unseen(char32_t character);

char32_t first_unseen(std::string_view text);   ///< 0: none
char32_t unseen_at_end(std::string_view text);  ///< at its beginning or its end; 0: none

/// "U+00A0".
std::string code_point(char32_t character);

#endif
