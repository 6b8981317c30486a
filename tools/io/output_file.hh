#ifndef OUTPUT_FILE_HH
#define OUTPUT_FILE_HH

#include <string>

/// Whether that is standard output: none, or "-".
bool is_standard_output(const std::string& name);

/// What becomes of a file that nobody may write to.
enum class write_protected { is_refused, is_replaced };

/// Throws `file_error` for what can be told before there is anything to write: the name is a
/// folder's, or that of a file that is refused.
void check_output(const std::string& name, write_protected file);

/// Writes `content` to the file `name`, or to standard output. A file is written beside its place
/// and then renamed, so that a failure leaves the old one whole, and a signal nothing beside it.
/// Behind a link, the file that it names is replaced or made. A device, a pipe and a descriptor of
/// this process ("/dev/stdout") are written as they stand. Throws `file_error`.
void write_output(const std::string& name, const std::string& content,
                  write_protected file = write_protected::is_refused);

#endif
