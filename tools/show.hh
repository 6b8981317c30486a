#ifndef SHOW_HH
#define SHOW_HH

#include <string>
#include <vector>

#include "exit_code.hh"

/// `zrt4xml show`: prints the listing of each document, under a heading when there are several.
exit_code show(const std::vector<std::string>& files);

#endif
