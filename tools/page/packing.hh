#ifndef PACKING_HH
#define PACKING_HH

#include <string>
#include <string_view>

/// `bytes` compressed as zlib does it, in base64: letters, digits, '+', '/' and '=' only, so that
/// nothing in them can end the element that holds them.
std::string packed(std::string_view bytes);

#endif
