// The date line and the declaration that every document of this library starts with.

#include <ctime>

#include "parse_chan_descr.hh"

namespace {

// What callers provide. The longest date takes 27: its year has eleven characters.
constexpr std::size_t date_size = 40;

}  // namespace

void create_isodate(char* isodate_str, time_t* t) {
  if (isodate_str == nullptr) return;
  std::tm local{};
  // A time whose year does not fit the calendar has no date.
  isodate_str[0] = '\0';
  if (localtime_r(t, &local) == nullptr) return;
  (void)std::strftime(isodate_str, date_size, "%FT%T", &local);
}

void create_isodate(char* isodate_str) {
  std::time_t now = std::time(nullptr);
  create_isodate(isodate_str, &now);
}

void set_xml_header(std::string& str) {
  str = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n";
}

void add_iso_date(std::string& str) {
  char date[date_size];
  create_isodate(date);
  str += "\t<isodate>";
  str += date;
  str += "</isodate>\n";
}
