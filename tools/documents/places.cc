#include "places.hh"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <iterator>
#include <unordered_map>
#include <utility>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLException.hpp>

#include "blanks.hh"
#include "input_file.hh"
#include "local_text.hh"
#include "scan.hh"
#include "zrt4_gige_descr.hh"

namespace {

using wide_text = std::basic_string<XMLCh>;
using wide_view = std::basic_string_view<XMLCh>;

wide_text widened(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

/// Finds lines and columns in a text; each one is at or behind the one before.
class text_cursor {
 public:
  explicit text_cursor(std::string_view of)
      : text(of), is_ascii(std::none_of(of.begin(), of.end(), [](char c) { return c < 0; })) {}

  /// The byte there, the text's size when there is none.
  std::size_t byte_at(std::uint64_t wanted_line, std::uint64_t wanted_column) {
    while (line < wanted_line) {
      const std::size_t end_of_line = text.find('\n', byte);
      if (end_of_line == text.npos) return text.size();
      byte = end_of_line + 1;
      column = 1;
      ++line;
    }
    if (wanted_column < column) return text.size();
    if (is_ascii) {
      byte += static_cast<std::size_t>(
          std::min<std::uint64_t>(wanted_column - column, text.size() - byte));
      column = wanted_column;
    }
    while (column < wanted_column && byte < text.size()) pass_character();
    return byte;
  }

 private:
  // Columns are counted in units of UTF-16: what takes four bytes here takes two of them.
  void pass_character() {
    const auto first = static_cast<unsigned char>(text[byte]);
    const std::size_t size = first < 0x80 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    byte = std::min(byte + size, text.size());
    column += size == 4 ? 2 : 1;
  }

  std::string_view text;
  bool is_ascii;
  std::size_t byte = 0;
  std::uint64_t line = 1;
  std::uint64_t column = 1;
};

/// One pass over the elements of a document.
class place_pass : public xercesc::HandlerBase {
 public:
  place_pass(const known_elements& known, std::string_view of) : text(of), cursor(of) {
    for (const known_element& each : known) {
      if (each.begins == part::record) record_names.push_back(widened(each.name));
      const bool is_key_of_record = each.of == part::record && each.is_required;
      if (is_key_of_record && key_name.empty()) key_name = widened(each.name);
    }
    if (!known.empty()) return;
    for (const char* tag : FeatureTags) record_names.push_back(widened(tag));
    key_attribute = widened(Attributes[ATTRIBUTE_NAME]);
  }

  void setDocumentLocator(const xercesc::Locator* const given) override { locator = given; }

  void startElement(const XMLCh* const given, xercesc::AttributeList& attributes) override {
    ++depth;
    const wide_view name(given);
    is_key = !open.empty() && name == key_name;
    if (is_key) key.clear();
    if (std::find(record_names.begin(), record_names.end(), name) == record_names.end()) return;
    record_place place;
    if (!key_attribute.empty()) {
      const XMLCh* value = attributes.getValue(key_attribute.c_str());
      if (value == nullptr) return;
      place.key = zrt4::detail::to_local(value);
    }
    place.line = locator->getLineNumber();
    place.column = locator->getColumnNumber();
    if (open.empty()) place.begin = start_of_tag(here());
    open.push_back({depth, found.size(), open.empty()});
    found.push_back(std::move(place));
  }

  void characters(const XMLCh* const chars, const XMLSize_t length) override {
    if (is_key) key.append(chars, length);
  }

  void endElement(const XMLCh* const /*name*/) override {
    if (is_key) {
      is_key = false;
      found[open.back().number].key = zrt4::detail::to_local(key.c_str());
    }
    if (!open.empty() && open.back().depth == depth) {
      if (open.back().is_outermost) end_record(found[open.back().number]);
      open.pop_back();
    }
    --depth;
  }

  // What is damaged is not told here; the records before it have their places.
  void error(const xercesc::SAXParseException& /*exception*/) override {}
  void fatalError(const xercesc::SAXParseException& /*exception*/) override {}

  std::vector<record_place> found;

 private:
  struct open_record {
    int depth;
    std::size_t number;
    bool is_outermost;
  };

  std::size_t here() {
    return cursor.byte_at(locator->getLineNumber(), locator->getColumnNumber());
  }

  // A tag that an entity stands for is not in the text.
  bool ends_tag(std::size_t byte) const {
    return byte > 0 && byte <= text.size() && text[byte - 1] == '>';
  }
  std::size_t start_of_tag(std::size_t behind) const {
    return ends_tag(behind) ? text.rfind('<', behind - 1) : text.npos;
  }
  void end_record(record_place& place) {
    const std::size_t behind = here();
    if (place.begin < behind && ends_tag(behind)) place.end = behind;
  }

  std::vector<wide_text> record_names;
  wide_text key_name;
  wide_text key_attribute;
  std::string_view text;
  text_cursor cursor;
  const xercesc::Locator* locator = nullptr;
  std::vector<open_record> open;
  int depth = 0;
  bool is_key = false;
  wide_text key;
};

// What a record keeps of a key at most.
constexpr std::size_t longest_key = 255;

std::string key_text(const record_place& place, bool is_number) {
  if (is_number) return std::to_string(std::strtoll(place.key.c_str(), nullptr, 10));
  return std::string(trimmed(place.key).substr(0, longest_key));
}

std::string key_text(const row& record) {
  const cell& key = record.key().value;
  if (const auto* text = std::get_if<std::string_view>(&key)) return std::string(trimmed(*text));
  return std::to_string(std::get<std::int64_t>(key));
}

// What the declaration at the beginning calls it.
std::string declared_encoding(std::string_view bytes) {
  const std::string_view head = bytes.substr(0, bytes.find('>'));
  const std::size_t name = head.find("encoding");
  if (head.substr(0, 5) != "<?xml" || name == head.npos) return "UTF-8";
  const std::size_t begin = head.find_first_of("'\"", name);
  if (begin == head.npos) return "UTF-8";
  return std::string(head.substr(begin + 1, head.find(head[begin], begin + 1) - begin - 1));
}

std::string encoding_of(std::string_view bytes) {
  constexpr std::string_view marks[] = {
      {"\xff\xfe", 2}, {"\xfe\xff", 2}, {"<\0?\0", 4}, {"\0<\0?", 4}};
  constexpr const char* names[] = {"UTF-16LE", "UTF-16BE", "UTF-16LE", "UTF-16BE"};
  for (std::size_t i = 0; i < std::size(marks); ++i) {
    if (bytes.substr(0, marks[i].size()) == marks[i]) return names[i];
  }
  return declared_encoding(bytes);
}

std::string transcoded(const std::string& bytes, const std::string& encoding) {
  using xercesc::TranscodeFromStr;
  using xercesc::TranscodeToStr;
  try {
    const auto* data = reinterpret_cast<const XMLByte*>(bytes.data());
    const TranscodeFromStr wide(data, bytes.size(), encoding.c_str());
    const TranscodeToStr utf8(wide.str(), wide.length(), "UTF-8");
    return {reinterpret_cast<const char*>(utf8.str()), utf8.length()};
  } catch (const xercesc::XMLException&) {
    return {};
  }
}

// As XML has them: one character at the end of each line.
void normalise_line_ends(std::string& text) {
  if (text.find('\r') == text.npos) return;
  std::size_t to = 0;
  for (std::size_t from = 0; from < text.size(); ++from) {
    const bool is_pair = text[from] == '\r' && from + 1 < text.size() && text[from + 1] == '\n';
    if (!is_pair) text[to++] = text[from] == '\r' ? '\n' : text[from];
  }
  text.resize(to);
}

}  // namespace

std::vector<record_place> record_places(input_file& file, document_kind kind,
                                        std::string_view text) {
  place_pass pass(traits_of(kind).elements, text);
  scan_document(file.path(), pass, xercesc::SAXParser::Val_Never, true);
  return std::move(pass.found);
}

std::vector<record_place> places_of(const row_list& rows, std::vector<record_place> all) {
  if (rows.empty()) return {};
  if (rows.size() == all.size()) return all;
  // Some elements made no record of their own: the keys tell which.
  const bool is_number = std::holds_alternative<std::int64_t>(rows[0].key().value);
  std::unordered_map<std::string, std::deque<std::size_t>> by_key;
  for (std::size_t i = 0; i < all.size(); ++i) by_key[key_text(all[i], is_number)].push_back(i);
  std::vector<record_place> places(rows.size());
  std::size_t next = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::deque<std::size_t>& here = by_key[key_text(rows[i])];
    while (!here.empty() && here.front() < next) here.pop_front();
    if (here.empty()) continue;
    next = here.front() + 1;
    places[i] = std::move(all[here.front()]);
  }
  return places;
}

std::string utf8_text(const input_file& file) {
  std::string text = file.content();
  const std::string encoding = encoding_of(text);
  const bool is_ascii = std::none_of(text.begin(), text.end(), [](char c) { return c <= 0; });
  if (!is_ascii) text = transcoded(text, encoding);
  constexpr std::string_view mark = "\xef\xbb\xbf";
  if (text.compare(0, mark.size(), mark) == 0) text.erase(0, mark.size());
  normalise_line_ends(text);
  return text;
}
