#ifndef JSON_HH
#define JSON_HH

// JSON on standard output.

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

/// Keeps its keys in the order in which they were given.
using json = nlohmann::ordered_json;

/// A text of the local code page as UTF-8. What is no character there, such as a piece of one at
/// the end of a text that was cut, becomes U+FFFD.
std::string to_utf8(std::string_view local);

void print_json(const json& value);

#endif
