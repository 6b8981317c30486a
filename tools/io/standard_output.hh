#ifndef STANDARD_OUTPUT_HH
#define STANDARD_OUTPUT_HH

#include <cstdio>
#include <string_view>

/// Prints to `output`, which is standard output under whatever name, and flushes it on request.
/// Throws `file_error` when it takes no more; what waits there is dropped then.
void print_or_throw(std::FILE* output, std::string_view text, bool flush = false);

#endif
