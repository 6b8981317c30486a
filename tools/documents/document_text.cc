#include "document_text.hh"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <utility>

#include "document_head.hh"
#include "number_text.hh"
#include "rows.hh"
#include "utf8.hh"
#include "xml_writer.hh"

namespace {

namespace library = zrt4::detail;
using namespace std::string_view_literals;

constexpr char32_t last_of_latin1 = 0xff;

bool is_white(char32_t c) {
  return c == U' ' || c == U'\n' || c == U'\t';
}

// What XML 1.0 has no form for.
bool is_no_character(char32_t c) {
  return (c < 0x20 && !is_white(c) && c != U'\r') || c == 0xfffe || c == 0xffff;
}

std::u32string characters_of(std::string_view local, bool& is_whole) {
  std::u32string codes;
  codes.reserve(local.size());
  std::mbstate_t state{};
  is_whole = true;
  while (!local.empty()) {
    wchar_t code = 0;
    const std::size_t size = std::mbrtowc(&code, local.data(), local.size(), &state);
    const bool is_character = size != 0 && size <= local.size();
    if (is_character) {
      codes += static_cast<char32_t>(code);
    } else {
      state = {};
    }
    is_whole = is_whole && is_character;
    local.remove_prefix(is_character ? size : 1);
  }
  return codes;
}

bool has_cdata_end(std::u32string_view text) {
  return text.find(U"]]>") != text.npos;
}
// A carriage return between tags, in CDATA, too, becomes a line end.
bool stands_as_it_is(std::u32string_view text) {
  return text.find_first_of(U"&<\r") == text.npos && !has_cdata_end(text);
}
bool stands_in_cdata(std::u32string_view text) {
  return text.find(U'\r') == text.npos && !has_cdata_end(text);
}
// Readers keep what follows a reference, not what precedes it.
bool stands_behind_reference(std::u32string_view text) {
  return !text.empty() && stands_as_it_is(text.substr(1));
}

bool is_plain(std::string_view local) {
  return std::all_of(local.begin(), local.end(), [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && static_cast<unsigned char>(c) < 0x7f &&
           c != '&' && c != '<' && c != ']';
  });
}

}  // namespace

std::string why_unwritable(std::string_view text) {
  if (is_plain(text) && text.find_first_not_of(' ') != text.npos) return {};
  bool is_whole = true;
  const std::u32string codes = characters_of(text, is_whole);
  if (!is_whole) return "it ends within a character: shorten it";
  if (std::any_of(codes.begin(), codes.end(), is_no_character)) {
    return "XML has no form for its control character: leave that out";
  }
  if (!codes.empty() && std::all_of(codes.begin(), codes.end(), is_white)) {
    return "readers drop a text of white space only: leave it empty";
  }
  if (stands_as_it_is(codes) || stands_in_cdata(codes) || stands_behind_reference(codes)) return {};
  return codes.find(U'\r') != codes.npos
             ? "readers drop a carriage return that is not the first character: leave it out"
             : "no form holds ']]>' that is not the beginning: put a blank in between";
}

document_text::document_text(const char* of) : root(of) {
  begin(root);
}

void document_text::begin(std::string_view element) {
  library::append_tag(body, "<", element, ">\n");
}

void document_text::begin(std::string_view element, std::int32_t number) {
  library::append_tag(body, "<", element, ">");
  body += library::decimal(number);
  body += '\n';
}

void document_text::begin(std::string_view element, std::string_view attribute,
                          std::int32_t number) {
  start_tag(element, attribute, number);
  body += '\n';
}

void document_text::end(std::string_view element) {
  library::append_tag(body, "</", element, ">\n");
}

void document_text::leaf(std::string_view element, std::int32_t number) {
  library::append_leaf(body, element, library::decimal(number));
}

void document_text::leaf(std::string_view element, std::uint32_t number) {
  leaf(element, static_cast<std::int32_t>(number));
}

void document_text::leaf(std::string_view element, float number) {
  const library::number_text usual = library::fixed(static_cast<double>(number));
  const threshold read{std::strtof(usual.c_str(), nullptr)};
  if (read == threshold{number}) return library::append_leaf(body, element, usual);
  library::append_leaf(body, element, text_of(threshold{number}));
}

void document_text::leaf(std::string_view element, const char* held) {
  library::append_tag(body, "<", element, ">");
  text(held);
  end(element);
}

void document_text::leaf(std::string_view element, std::string_view attribute, std::int32_t number,
                         const char* held) {
  start_tag(element, attribute, number);
  text(held);
  end(element);
}

void document_text::date() {
  library::append_date_line(body);
}

std::string document_text::finish() {
  end(root);
  std::string document;
  library::set_declaration(document);
  if (is_utf8) {
    constexpr auto usual = "ISO-8859-1"sv;
    document.replace(document.find(usual), usual.size(), "UTF-8");
  }
  body.insert(0, document);
  library::end_document(body);
  return std::move(body);
}

void document_text::start_tag(std::string_view element, std::string_view attribute,
                              std::int32_t number) {
  library::append_tag(body, "<", element, " ");
  body.append(attribute).append("=\"");
  body += library::decimal(number);
  body += "\">";
}

// What no form holds is written as nearly as it can be.
void document_text::text(std::string_view local) {
  if (is_plain(local)) {
    body += local;
    return;
  }
  bool is_whole = true;
  std::u32string codes = characters_of(local, is_whole);
  codes.erase(std::remove_if(codes.begin(), codes.end(), is_no_character), codes.end());
  if (stands_as_it_is(codes)) {
    characters(codes);
  } else if (!stands_in_cdata(codes) && stands_behind_reference(codes)) {
    body.append("&#").append(std::to_string(static_cast<std::uint32_t>(codes[0]))).append(";");
    characters(std::u32string_view(codes).substr(1));
  } else {
    constexpr std::u32string_view split = U"]]><![CDATA[";
    for (std::size_t at = 0; (at = codes.find(U"]]>", at)) != codes.npos; at += 2 + split.size()) {
      codes.insert(at + 2, split);
    }
    body += "<![CDATA[";
    characters(codes);
    body += "]]>";
  }
}

void document_text::character(char32_t code) {
  if (code > last_of_latin1 && !is_utf8) become_utf8();
  if (is_utf8) {
    append_utf8(body, code);
  } else {
    body += static_cast<char>(code);
  }
}

void document_text::characters(std::u32string_view codes) {
  for (const char32_t code : codes) character(code);
}

void document_text::become_utf8() {
  std::string utf8;
  utf8.reserve(body.size() + body.size() / 8);
  for (const char c : body) append_utf8(utf8, static_cast<unsigned char>(c));
  body.swap(utf8);
  is_utf8 = true;
}
