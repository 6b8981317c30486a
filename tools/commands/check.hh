#ifndef CHECK_HH
#define CHECK_HH

#include <cstddef>
#include <string>
#include <vector>

#include "answer_format.hh"
#include "exit_code.hh"

/// `zrt4xml check`: reads each document and prints in one line what it is, then what a person wants
/// to know about it, when `strict` also where it deviates from the grammar of its kind; exit code 1
/// when there is anything. `jobs` files are read at once.
exit_code check(const std::vector<std::string>& files, bool strict, std::size_t jobs,
                answer_format format);

#endif
