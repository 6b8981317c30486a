#ifndef LISTED_CHANNELS_HH
#define LISTED_CHANNELS_HH

#include "document_kind.hh"

/// The listing of channel descriptions, of which the dialect is ZRT4_FORMAT or MORV_FORMAT. A type
/// without a name, or that is read as another number than it is written, is listed as it stands in
/// the document instead of as the mask that the library would make of it.
listed_document list_channels(input_file& file, int dialect);

/// The records of such a document. An event type of which it says nothing is 0, and has no name.
loaded_document load_channels(input_file& file, int dialect);

#endif
