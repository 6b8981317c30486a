#ifndef DOCUMENT_HEAD_HH
#define DOCUMENT_HEAD_HH

// What documents of this library start with: the declaration of all, the date line of those that
// carry one.

#include <cstddef>
#include <ctime>
#include <string>

namespace zrt4::detail {

/// What callers provide for a date. The longest takes 27: its year has eleven characters.
constexpr std::size_t date_size = 40;

/// See `create_isodate`, `set_xml_header` and `add_iso_date`.
void print_iso_date(char* to, const std::time_t* time);
void set_declaration(std::string& document);
void append_date_line(std::string& document);

}  // namespace zrt4::detail

#endif
