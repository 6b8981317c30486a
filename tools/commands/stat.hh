#ifndef STAT_HH
#define STAT_HH

#include <cstddef>
#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"

/// `zrt4xml stat`: counts the records of each document by the values of the few fields that group
/// them; with bars on a terminal.
exit_code stat(const std::vector<std::string>& files, std::size_t jobs, answer_format format);

#endif
