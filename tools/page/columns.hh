#ifndef COLUMNS_HH
#define COLUMNS_HH

// Records as a page holds them: JSON, column by column, because the values of one field are alike
// and the page looks at one field of all records far more often than at one record.
//
// A table is {"rows": N, "columns": [...], "groups": [...]}. A column has a "name", a "kind"
// ("text", "number" or "threshold"), "names" of numbers that have any, and its values in one of
// these forms:
//   "all": V               every record has this one
//   "values", "at"         the different ones, and for each record which
//   "each"                 one for each record
//   "steps"                the first number, then what each adds to the one before
// A group holds rows inside rows: "one" names one of them, "counts" are those of each outer row,
// and the rest is a table of all of them.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rows.hh"

/// Appends `text`, of the local code page, as a JSON string.
void append_text(std::string& to, std::string_view text);

/// Appends a column of numbers.
void append_numbers(std::string& to, std::string_view name, const std::vector<std::int64_t>& all);

/// Appends a table, whose columns so many threads make. The rows are of one kind.
void append_table(std::string& to, const std::vector<const row*>& rows, std::size_t threads);

#endif
