#ifndef TEXT_TABLE_HH
#define TEXT_TABLE_HH

// The text tables of channels and dictionaries.

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "rows.hh"
#include "writing.hh"

/// Whether the table of that form has a column for a field of a channel, or of what belongs to one.
bool has_column(document_form form, std::string_view owner, std::string_view field);

/// A list and what of it arrives in a table: the first record of each property, without what has no
/// column, each on its lines. Refers to the list, whose types are masks.
class text_table {
 public:
  text_table(const zrt4::channel_list& list, document_form of);
  text_table(const zrt4::env_dictionary& list, document_form of);
  text_table(const zrt4::env_dictionary_2010& list, document_form of);
  text_table(const text_table&) = delete;
  text_table& operator=(const text_table&) = delete;

  /// With data types as numbers.
  row_list sent() const;
  row_list arriving() const;

 private:
  row arriving_row(std::size_t at) const;
  void put_into_columns(row& record, std::string_view owner, const row* unknown) const;
  void put_into_column(row::field& field) const;

  const row_list records;
  const document_form form;
  std::vector<std::size_t> written;       ///< places of the records
  mutable std::deque<std::string> texts;  ///< what arrives and is no record's
};

/// The table itself, with blanks where a text would end its column or its line.
std::string table_of(zrt4::channel_list& list, document_form form);
std::string table_of(zrt4::env_dictionary& list);
std::string table_of(zrt4::env_dictionary_2010& list);

#endif
