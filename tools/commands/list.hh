#ifndef LIST_HH
#define LIST_HH

#include <cstddef>
#include <string>
#include <vector>

#include "exit_code.hh"

enum class list_format { table, csv, json };

/// `zrt4xml list`: the records of the documents that fit all conditions, as a table of the columns,
/// or of all. `jobs` files are read at once.
exit_code list(const std::vector<std::string>& files, const std::vector<std::string>& where,
               const std::vector<std::string>& columns, std::size_t jobs, list_format format);

#endif
