#include "document_head.hh"

namespace zrt4::detail {

void print_iso_date(char* to, const std::time_t* time) {
  if (to == nullptr) return;
  std::tm local{};
  // A time whose year does not fit the calendar has no date.
  to[0] = '\0';
  if (localtime_r(time, &local) == nullptr) return;
  (void)std::strftime(to, date_size, "%FT%T", &local);
}

void set_declaration(std::string& document) {
  document = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n";
}

void append_date_line(std::string& document) {
  const std::time_t now = std::time(nullptr);
  char date[date_size];
  print_iso_date(date, &now);
  document += "\t<isodate>";
  document += date;
  document += "</isodate>\n";
}

}  // namespace zrt4::detail
