#ifndef CSV_WRITING_HH
#define CSV_WRITING_HH

// Records as comma-separated values for spreadsheets, as RFC 4180 has them, in UTF-8.

#include <string>
#include <string_view>
#include <vector>

#include "any_list.hh"

/// A line of values, with its end. One with a comma, a quote or a line end stands in quotes.
std::string csv_line(const std::vector<std::string>& values);

/// What has one line each: the records themselves, or those of a group inside them, such as "bits".
/// Then the keys of the records that hold it stand before its own fields.
class csv_table {
 public:
  /// `rows` is the name of a group, or `records_name`, or empty for the records. Throws
  /// `wrong_selection` when there is no such group.
  csv_table(any_list& list, std::string_view rows, std::string_view records_name);

  /// Titles and lines.
  std::string text() const;
  /// How many values it has no place for, as "12 bits", each with its number.
  std::vector<std::string> losses() const;

 private:
  using path = std::vector<const record_group*>;  // from the records inwards

  static bool find(const record_type& type, std::string_view name, path& found);
  void add_lines(std::string& into, std::vector<std::string>& keys, const record_type& type,
                 const void* record, std::size_t depth) const;

  held_records records;
  path inwards;
};

/// The names of groups that `--rows` may name for records of that type.
std::vector<std::string> group_names(const record_type& type);

#endif
