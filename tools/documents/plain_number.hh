#ifndef PLAIN_NUMBER_HH
#define PLAIN_NUMBER_HH

#include <string>
#include <string_view>

/// The decimal number that a person most likely meant by a text that is none: its digits without
/// what groups them or nobody sees, those of other scripts and letters that look like them as plain
/// ones, a power of ten written out. Empty when it is not clear.
std::string plain_number(std::string_view text);

#endif
