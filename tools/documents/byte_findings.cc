#include "byte_findings.hh"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "blanks.hh"
#include "encodings.hh"
#include "terminal.hh"

namespace {

constexpr char32_t replacement = 0xfffd;
constexpr std::size_t longest_word = 40;  // that a message shows, to either side

bool is_beyond_ascii(char c) {
  return static_cast<unsigned char>(c) >= 0x80;
}

bool is_continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xc0U) == 0x80;
}

bool ends_word(char c) {
  return is_blank(static_cast<unsigned char>(c)) || std::strchr("<>&\"'", c) != nullptr;
}

std::string hexadecimal(unsigned char byte) {
  char shown[sizeof "0x00"];
  std::snprintf(shown, sizeof shown, "0x%02X", static_cast<unsigned>(byte));
  return shown;
}

/// The next byte beyond ASCII, most documents having few or none.
std::size_t find_beyond_ascii(std::string_view text, std::size_t from) {
  constexpr std::uint64_t high_bits = 0x8080808080808080;
  std::uint64_t eight = 0;
  for (; from + sizeof eight <= text.size(); from += sizeof eight) {
    std::memcpy(&eight, text.data() + from, sizeof eight);
    if ((eight & high_bits) != 0) break;
  }
  const auto* const found = std::find_if(text.begin() + from, text.end(), is_beyond_ascii);
  return static_cast<std::size_t>(found - text.begin());
}

std::string in_code_page(std::string_view utf8) {
  std::string local;
  while (!utf8.empty()) {
    const utf8_character each = utf8_at(utf8);
    local += each.size == 0 ? "?" : in_locale(each.code);
    utf8.remove_prefix(std::max<std::size_t>(each.size, 1));
  }
  return local;
}

/// Where a byte of a document stands, as the scanner counts: in units of UTF-16. Asked in order.
class place_finder {
 public:
  place_finder(std::string_view of, std::size_t begin, bool is_utf8)
      : text(of), at(begin), counts_characters(is_utf8) {}

  file_place of(std::size_t wanted) {
    for (; at < wanted; ++at) {
      const char c = text[at];
      const bool ends_line = c == '\n' ? at == 0 || text[at - 1] != '\r' : c == '\r';
      if (ends_line) {
        ++place.line;
        place.column = 1;
      } else if (c != '\n') {
        place.column += units(c);
      }
    }
    return place;
  }

 private:
  unsigned units(char c) const {
    if (!counts_characters) return 1;
    if (is_continuation(c)) return 0;
    return static_cast<unsigned char>(c) >= 0xf0 ? 2 : 1;
  }

  std::string_view text;
  std::size_t at;
  bool counts_characters;
  file_place place{1, 1};
};

class byte_pass {
 public:
  byte_pass(std::string_view of, finding_list& into)
      : text(of), found(into), start(start_of(of)), family(read_as()) {}

  void run() {
    if (!start.is_wide && !begins_with_a_tag()) return find_early_text();
    if (!start.is_wide) find_early_text();
    if (find_conflict() || start.is_wide) return;
    if (family == encoding_family::utf8 || family == encoding_family::ascii) {
      check_characters();
    } else if (is_latin()) {
      check_latin();
    }
  }

 private:
  encoding_family read_as() const {
    return start.encoding.empty() ? encoding_family::utf8 : family_of(start.encoding);
  }
  bool is_latin() const {
    return family == encoding_family::latin || family == encoding_family::windows_1252;
  }
  // What does not is no document in any encoding.
  bool begins_with_a_tag() const {
    const std::size_t first = text.find_first_not_of(" \t\r\n", start.mark);
    return first != text.npos && text[first] == '<';
  }
  std::string encoding() const { return start.encoding.empty() ? "UTF-8" : start.encoding; }
  std::size_t next_line(std::size_t from) const {
    return std::min(text.find_first_of("\r\n", from), text.size());
  }

  void find_early_text();
  bool find_conflict();
  void check_characters();
  void check_latin();
  void tell_invalid(std::size_t at, file_place place);
  void tell_control(std::size_t at, file_place place);
  bool was_encoded_twice(std::size_t at) const;
  void tell_twice(std::size_t at, file_place place);
  std::string_view word_around(std::size_t at) const;

  std::string_view text;
  finding_list& found;
  document_start start;
  encoding_family family;
};

// Up to the first element: comments and instructions may stand before it, a declaration only first.
void byte_pass::find_early_text() {
  const auto begins = [&](std::size_t at, std::string_view with) {
    return text.substr(at, with.size()) == with;
  };
  std::size_t at = start.mark;
  std::size_t early_end = at;  // of what may not stand there
  const auto is_early = [&](std::size_t from, std::size_t to) {
    return std::any_of(text.begin() + from, text.begin() + to,
                       [](unsigned char c) { return !is_blank(c); });
  };
  bool is_declaration = false;
  bool has_text = false;
  while (at < text.size()) {
    const std::size_t tag = std::min(text.find('<', at), text.size());
    if (is_early(at, tag)) has_text = true;
    at = early_end = tag;
    if (begins(at, "<?xml") && at + 5 < text.size() &&
        is_blank(static_cast<unsigned char>(text[at + 5]))) {
      is_declaration = true;
      break;
    }
    const std::string_view end = begins(at, "<!--") ? "-->" : begins(at, "<?") ? "?>" : "";
    if (end.empty()) break;
    const std::size_t behind = text.find(end, at);
    if (behind == text.npos) return;
    at = behind + end.size();
  }
  if (at == text.size() || early_end == start.mark || (!is_declaration && !has_text)) return;
  const std::string_view early = text.substr(start.mark, early_end - start.mark);
  const bool is_empty = trimmed(early).empty();
  found.add(
      rule::text_before_document, {1, 1},
      (is_empty ? std::string(early.find('\n') != early.npos ? "a line break" : "a blank")
                : "'" + shortened(printable(early)) + "'") +
          (is_declaration ? " stands before '<?xml', which has to be the very first: remove it"
                          : " stands before the first element: remove it"));
}

/// Whether the document cannot be read for it.
bool byte_pass::find_conflict() {
  if (start.encoding.empty()) return false;
  const std::string declares = "declares the encoding " + printable(start.encoding);
  const bool declares_wide = family == encoding_family::wide;
  if (start.is_wide && !declares_wide) {
    found.add(rule::encoding_conflict, {1, 1},
              "the document is in UTF-16, but " + declares + ": declare UTF-16, or write it in " +
                  printable(start.encoding));
    return true;
  }
  if (!start.is_wide && declares_wide && text.find('\0') == text.npos) {
    found.add(rule::encoding_conflict, {1, 1},
              "the document " + declares +
                  ", but has single bytes: declare the one that it is in, such as UTF-8");
    return true;
  }
  if (start.mark != 0 && !start.is_wide && family != encoding_family::utf8) {
    found.add(rule::encoding_conflict, {1, 1},
              "the document begins with the mark of UTF-8, but " + declares +
                  ", in which it is read: declare UTF-8, or remove the mark");
  }
  return false;
}

void byte_pass::tell_invalid(std::size_t at, file_place place) {
  const auto byte = static_cast<unsigned char>(text[at]);
  const char32_t latin = windows_1252(byte);
  std::string hint;
  if (utf8_at(text.substr(at)).size != 0) {
    hint = "; in UTF-8 it begins '" + in_locale(utf8_at(text.substr(at)).code) +
           "': declare encoding=\"UTF-8\"";
  } else if (latin != 0xfffd) {
    const std::string name = byte < 0xa0 ? "windows-1252" : "ISO-8859-1";
    hint = "; in " + name + " it is '" + in_locale(latin) + "': declare encoding=\"" + name +
           "\", or write the document in " + printable(encoding());
  }
  found.add(rule::invalid_bytes, place,
            "the byte " + hexadecimal(byte) + " is no " + printable(encoding()) +
                (start.encoding.empty() ? " (the document declares no encoding)"
                                        : ", which the document declares") +
                hint);
}

// The bytes that a text had before it was read in windows-1252 and written as UTF-8.
bool byte_pass::was_encoded_twice(std::size_t at) const {
  std::string before;
  while (before.size() < 4 && at < text.size()) {
    const utf8_character each = utf8_at(text.substr(at));
    const unsigned char byte = each.size < 2 ? 0 : windows_1252_byte(each.code);
    if (byte == 0) break;
    before += static_cast<char>(byte);
    at += each.size;
  }
  return !before.empty() &&
         is_certainly_utf8(before, utf8_at(before), encoding_family::windows_1252);
}

void byte_pass::tell_twice(std::size_t at, file_place place) {
  std::string_view word = word_around(at);
  const std::string shown(word);
  std::string before;
  while (!word.empty()) {
    const utf8_character each = utf8_at(word);
    const unsigned char byte = each.size == 0 ? 0 : windows_1252_byte(each.code);
    if (byte == 0) before.append(word.substr(0, std::max<std::size_t>(each.size, 1)));
    if (byte != 0) before += static_cast<char>(byte);
    word.remove_prefix(std::max<std::size_t>(each.size, 1));
  }
  found.add(rule::wrong_encoding, place,
            "'" + printable(in_code_page(shown)) + "' was encoded in UTF-8 twice: write '" +
                printable(in_code_page(before)) + "'");
}

// What the reader does not get to: it stops at the first byte that is no character.
void byte_pass::check_characters() {
  place_finder places(text, start.mark, true);
  std::size_t at = start.mark;
  while ((at = find_beyond_ascii(text, at)) < text.size()) {
    const utf8_character character = utf8_at(text.substr(at));
    if (family == encoding_family::ascii || character.size == 0) {
      tell_invalid(at, places.of(at));
      at = next_line(at);
    } else if (was_encoded_twice(at)) {
      tell_twice(at, places.of(at));
      at = next_line(at);
    } else if (character.code == replacement) {
      found.add(rule::replacement_character, places.of(at), [&] {
        return "U+FFFD in '" + printable(in_code_page(word_around(at))) +
               "' stands for a character that was lost before: write it anew";
      });
      at = next_line(at);
    } else {
      at += character.size;
    }
  }
}

std::string_view byte_pass::word_around(std::size_t at) const {
  std::size_t begin = at;
  std::size_t end = at;
  while (begin > 0 && at - begin < longest_word && !ends_word(text[begin - 1])) --begin;
  while (end < text.size() && end - at < longest_word && !ends_word(text[end])) ++end;
  return text.substr(begin, end - begin);
}

void byte_pass::tell_control(std::size_t at, file_place place) {
  const auto byte = static_cast<unsigned char>(text[at]);
  const char32_t meant = windows_1252(byte);
  found.add(rule::wrong_encoding, place,
            "the byte " + hexadecimal(byte) + " is a control character in " +
                printable(encoding()) +
                (meant == 0xfffd ? std::string()
                                 : "; in windows-1252 it is '" + in_locale(meant) +
                                       "': declare encoding=\"windows-1252\""));
}

void byte_pass::check_latin() {
  place_finder places(text, start.mark, false);
  std::size_t at = start.mark;
  while ((at = find_beyond_ascii(text, at)) < text.size()) {
    const utf8_character character = utf8_at(text.substr(at));
    const bool is_control =
        family == encoding_family::latin && static_cast<unsigned char>(text[at]) < 0xa0;
    if (is_certainly_utf8(text.substr(at), character, family)) {
      std::string_view word = word_around(at);
      std::string read;
      for (const char byte : word)
        read += in_locale(windows_1252(static_cast<unsigned char>(byte)));
      std::string meant;
      while (!word.empty()) {
        const utf8_character each = utf8_at(word);
        meant += each.size != 0 ? in_locale(each.code)
                                : in_locale(windows_1252(static_cast<unsigned char>(word[0])));
        word.remove_prefix(std::max<std::size_t>(each.size, 1));
      }
      found.add(rule::wrong_encoding, places.of(at),
                "'" + printable(read) + "' is '" + printable(meant) +
                    "' in UTF-8, but the document declares " + printable(encoding()) +
                    ": declare encoding=\"UTF-8\"");
      at = next_line(at);
    } else if (is_control) {
      tell_control(at, places.of(at));
      at = next_line(at);
    } else {
      ++at;
    }
  }
}

}  // namespace

void find_in_bytes(std::string_view document, finding_list& found) {
  byte_pass(document, found).run();
}

bool is_about_bytes(std::string_view message) {
  for (const char* const part : {"-byte sequence", " is not representable in '",
                                 "contradicts the auto-sensed encoding", "nothing is read"}) {
    if (message.find(part) != message.npos) return true;
  }
  return false;
}
