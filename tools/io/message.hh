#ifndef MESSAGE_HH
#define MESSAGE_HH

// Lines on standard error: "zrt4xml: FILE: text".

#include <string>
#include <vector>

/// Such a line.
std::string message_line(const std::string& file, const std::string& text);

/// Lines, each with its end, about a document.
void report(const std::vector<std::string>& lines);

/// About a document.
void report(const std::string& file, const std::string& text);

/// About what makes the exit code 2. Printed even when the tool was asked to be quiet.
void report_always(const std::string& file, const std::string& text);

/// Reports the number of errors while reading `file`, if there were any, and what becomes of the
/// rest.
void report_errors(const std::string& file, int errors, const std::string& rest);

/// From now on nothing but `report_always` writes to standard error. Called before there are
/// threads.
void be_quiet();
bool is_quiet();

/// Whether a line that is not ended stands on the terminal; a message wipes it off first.
void mark_open_line(bool is_open);

#endif
