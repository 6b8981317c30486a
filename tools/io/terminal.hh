#ifndef TERMINAL_HH
#define TERMINAL_HH

#include <string>
#include <string_view>

/// Standard output, as a person or a program reads it.
bool output_is_terminal();

enum class colour { red, green, yellow, bold };

/// `text` in a colour; plain when standard output is no terminal, or NO_COLOR is set.
std::string coloured(colour wanted, const std::string& text);

/// A text of a document, so that no control character reaches a terminal, nor a byte that is none:
/// these are shown as \xNN, as is the piece of a character that ends a text that was cut.
std::string printable(std::string_view text);

/// A text that a message names, so that it stays a line; "..." stands for its rest.
std::string shortened(const std::string& text);

#endif
