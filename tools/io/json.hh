#ifndef JSON_HH
#define JSON_HH

// JSON on standard output.

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

/// Keeps its keys in the order in which they were given.
using json = nlohmann::ordered_json;

/// A text of the local code page as UTF-8. What is no character there, such as a piece of one at
/// the end of a text that was cut, becomes U+FFFD.
std::string to_utf8(std::string_view local);

void print_json(const json& value);

/// Prints a value piece by piece, as `print_json` prints it whole: an answer about a large document
/// never lies in memory. Throws `file_error` when standard output takes no more.
///
///     json_printer out;
///     out.begin_object();
///     out.member("format_version", 1);
///     out.begin_array("documents");
///     out.element(document);
///     out.end();
///     out.end();
class json_printer {
 public:
  /// The whole value, or an element of an array.
  void begin_object();
  /// A member of an object.
  void begin_array(std::string_view name);
  void member(std::string_view name, const json& value);
  /// All members of the object `value`.
  void members(const json& value);
  /// An element of an array.
  void element(const json& value);
  /// Ends what was begun last; with the first of all, the answer is printed.
  void end();

 private:
  struct level {
    char closing;
    bool has_any;
  };

  void begin_line();
  void append_name(std::string_view name);
  void append(const json& value);
  void begin(char opening, char closing);
  void write_out();

  std::vector<level> open;
  std::string pending;
};

#endif
