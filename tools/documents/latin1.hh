#ifndef LATIN1_HH
#define LATIN1_HH

#include <string>
#include <string_view>

/// The document in ISO-8859-1, as the written declaration says: texts are held in the local code
/// page (UTF-8). A character that ISO-8859-1 lacks becomes a numeric reference; a character cut in
/// half by a record's limit is left out.
std::string to_latin1(std::string_view utf8);

/// Why `text` (UTF-8), written as it is between two tags, could not be read back as it is; empty
/// when it can. `fatal` tells whether the whole document then would not be XML any more.
std::string unwritable(std::string_view text, bool& fatal);

#endif
