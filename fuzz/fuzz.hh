#ifndef FUZZ_HH
#define FUZZ_HH

// What the fuzz targets share. A target defines how many ways it has of reading an input, and
// `read`. A fuzzer takes one way an input, by the input's hash; a replay takes all of them.

#include <string>
#include <string_view>

namespace fuzz {

// Defined by each target.
extern const unsigned ways;
void read(const std::string& input, unsigned way);

/// Sets up on the first call, reads the input in this way, and states what must hold for any input:
/// it opened no file but its own, and gave back all memory of the XML library.
void run(std::string_view input, unsigned way);

/// Ends the program: what a target states about the library does not hold.
[[noreturn]] void broken(const char* promise);

/// The name of a file, for the readers of files, that holds `text` until the next call.
char* file_of(const std::string& text);

}  // namespace fuzz

#endif
