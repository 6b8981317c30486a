#ifndef SELECTION_HH
#define SELECTION_HH

// Fields of records as a command line names them, and the records that fit what it says of them.

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "record_types.hh"

/// A field that no record of the kind at hand has, or a condition that cannot be met by any; the
/// reason is for a person.
struct wrong_selection : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A field of a record or of the records inside it: "units", "bits.name"; or how many of these
/// there are: "bits".
class field_path {
 public:
  /// Throws `wrong_selection`.
  field_path(const record_type& type, std::string_view name);

  const std::string& name() const { return full_name; }
  /// The field; null when the path stands for a number of records.
  const record_field* field() const;
  bool is_number() const { return field() == nullptr || field()->holds != value_kind::text; }
  /// Whether it is a field of the record itself, and then which.
  bool is_of_record() const { return groups.empty() && field() != nullptr; }
  std::size_t position() const { return at; }

  /// Its values in a record: one for each record inside it that the path leads to.
  std::vector<cell> values(const void* record) const;
  /// The values as a table shows them: types by name.
  std::string text(const void* record) const;

 private:
  static constexpr std::size_t number_of_records = static_cast<std::size_t>(-1);

  void find_field(std::string_view rest);
  void collect(std::vector<cell>& into, const record_type& type, const void* record,
               std::size_t depth) const;

  std::string full_name;
  const record_type* outer;
  const record_type* inner;         ///< the record that has the field
  std::vector<std::size_t> groups;  ///< that lead there
  std::size_t at = number_of_records;
};

/// All names of fields that a record and those inside it have; `prefix` stands before each.
std::vector<std::string> field_names(const record_type& type, const std::string& prefix = "");

/// What `--where` says: FIELD=TEXT, FIELD~REGEX or FIELD:NUMBER, where the number may be a range
/// such as 2..5, 2.. or ..5. A condition on records inside a record fits when one of them does.
class condition {
 public:
  /// Throws `wrong_selection` when it is none, whatever the record.
  explicit condition(const std::string& text);
  condition(condition&&) noexcept;
  condition& operator=(condition&&) = delete;
  ~condition();

  /// From now on it is about such records. Throws `wrong_selection`.
  void bind(const record_type& type);
  bool fits(const void* record) const;

 private:
  struct pattern;
  struct range {
    double least, most;
  };

  range number_wanted() const;
  bool fits_value(const cell& value) const;

  std::string field_name;
  char how = '=';
  std::string wanted;
  range numbers{};
  std::unique_ptr<pattern> regex;
  std::unique_ptr<field_path> path;
};

/// Throws a `file_error` about `--where`: no file is wrong yet.
std::vector<condition> conditions_of(const std::vector<std::string>& texts);

/// Whether the record fits all of them.
bool fits_all(const std::vector<condition>& conditions, const void* record);

#endif
