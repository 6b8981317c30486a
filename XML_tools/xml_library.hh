#ifndef XML_LIBRARY_HH
#define XML_LIBRARY_HH

/// Uses of the XML library. Every reader begins one and ends it; only the first and the last of
/// them are dear. These two may be called by any thread at any time, as readers may run in any
/// number of threads. The XML library's own `Initialize` and `Terminate` may not, while any thread
/// is in a function of this library.

#include "zrt4_export.hh"

namespace zrt4 {

/// Begins one use, which the caller ends. Throws what `XMLPlatformUtils::Initialize` throws.
ZRT4_EXPORT void begin_xml_library_use();

/// Ends one use. The last one takes all objects of the XML library with it.
ZRT4_EXPORT void end_xml_library_use() noexcept;

}  // namespace zrt4

#endif
