#ifndef DAMAGE_ADVICE_HH
#define DAMAGE_ADVICE_HH

#include <string_view>

#include "finding_list.hh"
#include "scan.hh"

/// An error of the scanner, with what a person may have done. What has no end is told where it
/// begins.
xml_error with_advice(std::string_view document, xml_error damage);

/// The same for all damage that was found.
void add_damage_advice(std::string_view document, finding_list& found);

#endif
