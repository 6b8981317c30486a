#ifndef NAME_PATTERN_HH
#define NAME_PATTERN_HH

#include <string>

/// What a person writes for names: one name, or a pattern of the shell ("BPM.*.X": `*` any
/// characters, `?` one, `[XY]` one of these; `\` before a sign takes it as it is).
class name_pattern {
 public:
  enum class letters { exact, any_case };
  enum class place { whole, anywhere };

  explicit name_pattern(const std::string& given, letters which = letters::exact,
                        place where = place::whole);

  /// Whether it stands for one name only.
  bool is_one_name() const { return one_name; }
  bool matches(const char* name) const;

 private:
  std::string text;
  std::string pattern;
  int flags;
  bool one_name;
};

#endif
