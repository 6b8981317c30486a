#ifndef TABLE_HH
#define TABLE_HH

// Tables for a person at a terminal, and for the programs behind a pipe.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Columns that `text`, in the local code page, takes on a terminal.
std::size_t display_width(std::string_view text);

/// `text` in at most `width` columns; where it is longer, an ellipsis stands for its rest.
std::string cut_to_width(std::string_view text, std::size_t width);

/// The columns of the terminal that standard output is; otherwise what COLUMNS says, or 80.
std::size_t terminal_width();

struct table_column {
  std::string title;
  bool is_number = false;  ///< set to the right
};

/// Rows under titles, each within `width` columns: the widest columns give way first, but not below
/// `narrowest`; those at the end for which there is no room then are left out. `shown` tells how
/// many are there.
std::string table_text(const std::vector<table_column>& columns,
                       const std::vector<std::vector<std::string>>& rows, std::size_t width,
                       std::size_t narrowest, std::size_t& shown);

/// Rows under titles, each in full, with a tab between its values.
std::string tabbed_text(const std::vector<table_column>& columns,
                        const std::vector<std::vector<std::string>>& rows);

#endif
