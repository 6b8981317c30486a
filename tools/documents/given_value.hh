#ifndef GIVEN_VALUE_HH
#define GIVEN_VALUE_HH

// Values that a person or a program gives for the fields of records, and what the fields make of
// them: nothing is cut, wrapped or guessed.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "record_types.hh"

/// A value, as JSON has them. Texts are in the code page of the records.
struct given_value {
  enum class kind { null, boolean, integer, fraction, text };

  static given_value of_integer(std::int64_t number);
  static given_value of_text(std::string_view text);

  /// As a message names it.
  std::string shown() const;
  /// The number, when it is whole and of 64 bits.
  std::optional<std::int64_t> whole_number() const;

  kind is = kind::null;
  bool truth = false;
  bool is_negative = false;
  std::uint64_t magnitude = 0;  ///< of an integer, in two's complement when it is negative
  double fraction = 0;
  std::string_view text = {};  ///< or the digits of a fraction
};

/// What a field makes of a value.
struct fitted_value {
  cell value;
  std::string wrong;  ///< why the field cannot hold it, for a person; empty when it can
};

/// The value as the field holds it. A threshold may be null, which is no number. A text that ends
/// in U+FFFD for each byte of a character that a record's limit had cut is held without them:
/// `was_cut` tells.
fitted_value fitted(const record_field& field, const given_value& value, bool& was_cut);

/// The same for what a person writes: numbers as decimal or, with 0x, hexadecimal digits, or by
/// name; thresholds also "inf" and "nan".
fitted_value fitted_text(const record_field& field, std::string_view text);

/// What a number and the name beside it say together: where that is `nameless`, 0 is not told.
/// Nothing when they contradict each other.
std::optional<std::int64_t> number_called(const record_field& field, std::int64_t number,
                                          std::string_view name);

/// The same of a value and what its name became before.
std::optional<cell> agreed(const record_field& field, const cell& value, const cell& named);

/// What a message quotes.
std::string in_quotes(std::string_view text);

#endif
