#ifndef FEATURE_WALK_HH
#define FEATURE_WALK_HH

#include <optional>
#include <string>
#include <vector>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include "zrt4_gige_descr.hh"

namespace zrt4::detail {

/// See `dump_nodes`.
bool walk_features(xercesc::DOMNodeList& nodes, std::vector<ZRT4GigEFeature*>& out);

/// What the XML library says about an exception, where it knows it.
std::optional<std::string> known_text(const xercesc::DOMException& exception);

}  // namespace zrt4::detail

#endif
