#ifndef CHANNEL_DOCUMENT_HH
#define CHANNEL_DOCUMENT_HH

// The XML documents of channel descriptions.

#include <string>
#include <vector>

#include "event_util.hh"

namespace zrt4::detail {

/// The whole document in the dialect `format`. In the element dialect a document that goes to a
/// file carries the date, and `dims`, unless null, adds parameters to dimensions. `destination` is
/// the string that the document is for, or null: see `begin_document`.
std::string chan_descr_document(const std::vector<chan_descr_2010*>& list, int format, bool in_file,
                                const std::vector<dim_params*>* dims, std::string* destination);

}  // namespace zrt4::detail

#endif
