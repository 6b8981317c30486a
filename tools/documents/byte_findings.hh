#ifndef BYTE_FINDINGS_HH
#define BYTE_FINDINGS_HH

#include <string_view>

#include "finding_list.hh"

/// What is wrong with the bytes of a document before anybody scans it: what stands before its
/// beginning, and how it is encoded. The scanner meets bytes that are no characters when it fills
/// its buffer, long before their place; here they are found where they stand.
void find_in_bytes(std::string_view document, finding_list& found);

/// Whether a message of the scanner is about what `find_in_bytes` finds at its own place.
bool is_about_bytes(std::string_view message);

#endif
