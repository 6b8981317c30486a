#ifndef MESSAGE_HH
#define MESSAGE_HH

// Lines on standard error: "zrt4xml: FILE: text".

#include <string>

/// About a document.
void complain(const std::string& file, const std::string& text);

/// About what makes the exit code 2. Told even when the tool was asked to be quiet.
void insist(const std::string& file, const std::string& text);

/// Tells that `errors` were met while reading `file`, and what becomes of the rest.
void complain_of_errors(const std::string& file, int errors, const std::string& rest);

/// From now on nothing but `insist` writes to standard error, the library's messages included.
void be_quiet();

#endif
