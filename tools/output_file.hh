#ifndef OUTPUT_FILE_HH
#define OUTPUT_FILE_HH

#include <string>

/// Writes `content` to the file `name`, or to standard output when it is empty or "-". A file is
/// written beside its place and then renamed, so that a failure leaves the old one whole. Throws
/// `file_error`.
void write_output(const std::string& name, const std::string& content);

#endif
