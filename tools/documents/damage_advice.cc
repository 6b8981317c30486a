#include "damage_advice.hh"

#include <algorithm>
#include <string>

#include "blanks.hh"

namespace {

bool is_told(const xml_error& damage, std::string_view part) {
  return damage.text.find(part) != damage.text.npos;
}

std::size_t start_of_line(std::string_view document, std::uint64_t line) {
  std::size_t at = 0;
  while (line > 1 && at < document.size()) {
    at = std::min(document.find('\n', at), document.size() - 1) + 1;
    --line;
  }
  return at;
}

bool stands_in_a_conflict(std::string_view line) {
  line = trimmed(line);
  for (const std::string_view mark : {"<<<<<<<", ">>>>>>>"}) {
    if (line.substr(0, mark.size()) == mark) return true;
  }
  return false;
}

// The last one of those that may be without an end.
file_place begin_of_last(std::string_view document, std::string_view opener) {
  const std::size_t at = document.rfind(opener);
  if (at == document.npos) return {};
  const std::string_view before = document.substr(0, at);
  const auto lines = static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n'));
  std::string_view line = before.substr(before.rfind('\n') + 1);  // all, where there is none
  // Columns are counted in characters.
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80; };
  const auto more = std::count_if(line.begin(), line.end(), continues);
  return {lines + 1, line.size() - static_cast<std::size_t>(more) + 1};
}

std::string_view opener_without_end(const xml_error& damage) {
  if (is_told(damage, "unterminated comment")) return "<!--";
  if (is_told(damage, "unterminated CDATA section")) return "<![CDATA[";
  if (is_told(damage, "unterminated processing instruction")) return "<?";
  return {};
}

std::string_view advice_on_signs(const xml_error& damage) {
  if (is_told(damage, "entity reference '") || is_told(damage, "entity name for reference") ||
      is_told(damage, "unterminated character reference")) {
    return "; the sign & itself is written &amp;";
  }
  if (is_told(damage, "entity '") && is_told(damage, "not found")) {
    return "; there are no others than amp, lt, gt, quot and apos";
  }
  if (is_told(damage, "element name expected")) return "; the sign < itself is written &lt;";
  if (is_told(damage, "'--' sequence")) return "; does the comment end where it should?";
  if (is_told(damage, "attribute value expected")) return "; it stands in quotes";
  return {};
}

}  // namespace

xml_error with_advice(std::string_view document, xml_error damage) {
  if (damage.place.line == 0 || document.find('\0') != document.npos) return damage;
  const std::size_t begin = start_of_line(document, damage.place.line);
  if (stands_in_a_conflict(document.substr(begin, document.find('\n', begin) - begin))) {
    damage.text += "; this marks a conflict of two versions: keep one, and remove the marks";
    return damage;
  }
  const std::string_view opener = opener_without_end(damage);
  const file_place opened = opener.empty() ? file_place{} : begin_of_last(document, opener);
  if (opened.line != 0) {
    damage.place = opened;
    damage.text += ", which begins here";
    return damage;
  }
  damage.text += advice_on_signs(damage);
  return damage;
}

void add_damage_advice(std::string_view document, finding_list& found) {
  found.change(rule::damage, [&](finding& each) {
    xml_error advised = with_advice(document, {std::move(each.text), each.place});
    each.text = std::move(advised.text);
    each.place = advised.place;
  });
}
