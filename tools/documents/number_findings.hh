#ifndef NUMBER_FINDINGS_HH
#define NUMBER_FINDINGS_HH

#include <cstdint>
#include <optional>
#include <string_view>

#include "finding_list.hh"
#include "known_elements.hh"

/// Compares the number that stands in `text` with the one that its reader takes, and with those
/// that make sense there. `shown` is what a person calls it. Returns the number that is read, when
/// it is whole and the text says so.
std::optional<std::int64_t> find_in_number(const known_element& element, std::string_view shown,
                                           const char* text, file_place place, finding_list& found);

/// Whether the type of an event in a list makes one.
bool makes_an_event(const char* text);

#endif
