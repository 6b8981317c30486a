#ifndef TEXT_FINDINGS_HH
#define TEXT_FINDINGS_HH

#include "element_walk.hh"
#include "finding_list.hh"

/// What becomes of the text that a reader took of `element`: cut, or with blanks that belong to it.
void find_in_text(const walked_element& element, const char* text, finding_list& found);

/// Of an element that has ended: what of its text its reader did not get.
void find_text_not_read(const walked_element& element, finding_list& found);

#endif
