#ifndef DOCUMENT_WRITER_HH
#define DOCUMENT_WRITER_HH

// Lists as XML documents that read back to the same records. They look like the library's own,
// which write each text as it is (see document_text.hh).

#include <string>

#include "zrt4xml.hh"

/// In the element dialect (ZRT4_FORMAT) every record stands, in its order. In the variable dialect
/// (MORV_FORMAT) stands the first of each property, because its readers merge all others into that
/// one; the element of a bit holds its name; and a channel is of the kind that keeps most of it.
std::string document_of(zrt4::channel_list& list, int dialect);

std::string document_of(zrt4::env_dictionary& list);
std::string document_of(zrt4::env_dictionary_2010& list);

#endif
