#ifndef FILE_PLACE_HH
#define FILE_PLACE_HH

#include <cstdint>
#include <string>

/// Where something stands in a document; line 0: not known.
struct file_place {
  std::uint64_t line = 0;
  std::uint64_t column = 0;  ///< just behind a start tag, or where an error was met

  /// ":LINE:COLUMN" where known, as behind the name of a file.
  std::string shown() const {
    if (line == 0) return {};
    return ":" + std::to_string(line) + ":" + std::to_string(column);
  }
};

#endif
