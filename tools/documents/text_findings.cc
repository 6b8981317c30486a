#include "text_findings.hh"

#include <cstring>
#include <cwchar>
#include <string>

#include "blanks.hh"
#include "shown_text.hh"
#include "terminal.hh"
#include "unseen_characters.hh"

namespace {

/// Whether the character that `text` has at `limit` begins before.
bool cuts_a_character(std::string_view text, std::size_t limit) {
  std::mbstate_t state{};
  std::size_t at = 0;
  while (at < limit) {
    const std::size_t size = std::mbrlen(text.data() + at, text.size() - at, &state);
    const bool is_character = size != 0 && size <= text.size() - at;
    if (!is_character) state = {};
    at += is_character ? size : 1;
  }
  return at != limit;
}

void find_cut(const walked_element& element, std::string_view text, finding_list& found) {
  const std::size_t limit = element.meaning->limit;
  if (limit == 0 || text.size() <= limit) return;
  const bool within_character = cuts_a_character(text, limit);
  found.add(within_character ? rule::character_cut : rule::text_cut, element.place, [&] {
    const bool has_more = element.length > text.size();
    return std::string(element.name) + " has " +
           std::to_string(has_more ? element.length : text.size()) + " bytes; the record keeps " +
           std::to_string(limit) + (within_character ? ", the last within a character: '" : ": '") +
           printable(text.substr(0, limit)) + "'";
  });
}

bool is_line_end(char c) {
  return c == '\n' || c == '\r';
}

/// How a text begins or ends that does so with a blank.
const char* blank_at(std::string_view text, char c) {
  if (!is_blank(static_cast<unsigned char>(c))) return nullptr;
  return is_line_end(c) || text.find_first_of("\n\r") != text.npos ? "a line end" : "a blank";
}

void find_blanks(const walked_element& element, std::string_view text, finding_list& found) {
  const bool is_name = element.meaning->role == text_role::name;
  const std::string_view inside = trimmed(text);
  const char* blank = nullptr;
  const char* where = nullptr;
  const auto at = static_cast<std::size_t>(inside.data() - text.data());
  if (inside.empty()) return;
  if (at != 0) {
    blank = blank_at(text.substr(0, at), text.front());
    where = " begins with ";
  } else if (inside.size() != text.size()) {
    blank = blank_at(text.substr(inside.size()), text.back());
    where = " ends with ";
  } else if (is_name && inside.find_first_of("\n\r\t") != inside.npos) {
    blank = inside.find_first_of("\n\r") != inside.npos ? "a line end" : "a tab";
    where = " holds ";
  }
  if (blank == nullptr) return;
  found.add(is_name ? rule::blanks_around_name : rule::blanks_around_text, element.place, [&] {
    return std::string(element.name) + where + blank + ", which belongs to the " +
           (is_name ? "name: " : "text: ") + quoted(text);
  });
}

void find_unseen(const walked_element& element, std::string_view text, finding_list& found) {
  const bool is_name = element.meaning->role == text_role::name;
  const char32_t unseen = is_name ? first_unseen(text) : unseen_at_end(text);
  if (unseen == 0) return;
  found.add(is_name ? rule::unseen_character : rule::blanks_around_text, element.place, [&] {
    return std::string(element.name) + (is_name ? " holds " : " begins or ends with ") +
           code_point(unseen) + ", which nobody sees and which belongs to the " +
           (is_name ? "name: " : "text: ") + quoted(text);
  });
}

bool can_be_a_section(std::string_view text) {
  return text.find("]]>") == text.npos;
}

}  // namespace

void find_in_text(const walked_element& element, const char* text, finding_list& found) {
  find_cut(element, text, found);
  find_blanks(element, text, found);
  find_unseen(element, text, found);
}

void find_text_not_read(const walked_element& element, finding_list& found) {
  const known_element& meaning = *element.meaning;
  const std::string_view text = trimmed(element.text);
  const std::string_view late = trimmed(element.late_text);
  const auto about = [&](std::string_view what) {
    return std::string(element.name) + std::string(what);
  };
  if (meaning.role == text_role::none) {
    const std::string_view stray = !text.empty() ? text : late;
    if (stray.empty()) return;
    found.add(rule::stray_text, element.stray_place,
              [&] { return about(" holds the text ") + quoted(stray) + ", which is not read"; });
    return;
  }
  if (!text.empty() && !element.is_taken) {
    found.add(rule::interrupted_text, element.place, [&] {
      return about(": ") + quoted(text) +
             " is not read: it must stand directly behind the start tag, and in one piece";
    });
  } else if (!text.empty() && !element.is_whole) {
    found.add(rule::interrupted_text, element.place, [&] {
      std::string said = about(": only ") + quoted(element.taken_piece) + " is read of " +
                         quoted(text) + ", which a reference, a comment or a section interrupts";
      if (meaning.role != text_role::number && can_be_a_section(text)) {
        said += "; <![CDATA[" + shortened(printable(text)) + "]]> is read whole";
      }
      return said;
    });
  }
  if (!late.empty()) {
    found.add(rule::stray_text, element.stray_place, [&] {
      return about(" holds the text ") + quoted(late) +
             " behind an element in it, where it is not read";
    });
  }
}
