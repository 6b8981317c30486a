#ifndef WITHOUT_DATE_HH
#define WITHOUT_DATE_HH

// Documents without what the clock put into them.

#include <algorithm>
#include <string>

namespace test {

/// The text without the date lines in it that have the right form.
inline std::string without_date(std::string text) {
  const std::string form = "\t<isodate>9999-99-99T99:99:99</isodate>\n";
  const auto fits = [](char seen, char wanted) {
    return wanted == '9' ? seen >= '0' && seen <= '9' : seen == wanted;
  };
  for (std::size_t at = 0; (at = text.find("\t<isodate>", at)) != std::string::npos;) {
    const std::string line = text.substr(at, form.size());
    if (!std::equal(line.begin(), line.end(), form.begin(), form.end(), fits)) break;
    text.erase(at, form.size());
  }
  return text;
}

}  // namespace test

#endif
