#ifndef PRINTABLE_OUTPUT_HH
#define PRINTABLE_OUTPUT_HH

#include <functional>

/// Runs `print`. What it prints to standard output arrives there as `printable` shows it, but for
/// line ends and tabs, which a listing has of its own: no text of a document reaches a terminal as
/// a command. Throws what `print` throws.
void print_as_printable(const std::function<void()>& print);

#endif
