#ifndef OUTPUT_FILE_HH
#define OUTPUT_FILE_HH

#include <string>

/// Whether that is standard output: none, or "-".
bool is_standard_output(const std::string& name);

/// Writes `content` to the file `name`, or to standard output. A file is written beside its place
/// and then renamed, so that a failure leaves the old one whole. Throws `file_error`.
void write_output(const std::string& name, const std::string& content);

#endif
