#include "record_table.hh"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <stdexcept>

#include "json.hh"

namespace zrt4::python {

namespace {

static_assert(sizeof(wchar_t) == 4);  // a character of NumPy, in the locale at hand

std::size_t to_characters(std::string_view text, wchar_t* to) {
  if (is_ascii(text)) {
    std::copy(text.begin(), text.end(), to);
    return text.size();
  }
  const std::string whole(text);
  const char* from = whole.c_str();
  std::mbstate_t state{};
  const std::size_t count = std::mbsrtowcs(to, &from, whole.size() + 1, &state);
  if (count != static_cast<std::size_t>(-1)) return count;
  return to_characters(to_utf8(text), to);  // cut within a character
}

}  // namespace

// Without a way out of the loop, the compiler takes many characters at a time.
bool is_ascii(std::string_view text) {
  unsigned seen = 0;
  for (const char each : text) seen |= static_cast<unsigned char>(each);
  return seen < 0x80;
}

std::vector<wchar_t> characters_of(std::string_view text) {
  // A piece of a character becomes one of three bytes.
  std::vector<wchar_t> characters(3 * text.size() + 1);
  characters.resize(to_characters(text, characters.data()));
  return characters;
}

std::ptrdiff_t column::offset_in(const void* record) const {
  if (offset == unknown) {
    offset = static_cast<const char*>(field_of.in(record)) - static_cast<const char*>(record);
  }
  return offset;
}

void column::add(const void* record) {
  const char* const from = in(record);
  if (is_text()) {
    add_text(is_string ? *reinterpret_cast<const std::string*>(from) : std::string_view(from));
  } else {
    std::memcpy(&bits.emplace_back(), from, sizeof bits.back());
  }
}

void column::add_text(std::string_view text) {
  texts += text;
  ends.push_back(texts.size());
  widest_in_bytes = std::max(widest_in_bytes, text.size());
  if (text.size() <= widest_in_characters) return;
  const std::size_t characters = is_ascii(text) ? text.size() : characters_of(text).size();
  widest_in_characters = std::max(widest_in_characters, characters);
}

table::table(const record_type& type, const std::vector<std::string>& fields) {
  for (const std::string& name : fields) {
    const field* const found = type.find_field(name);
    if (found == nullptr) {
      throw std::out_of_range(std::string(type.name) + " has no field '" + name + "'");
    }
    all.emplace_back(*found);
  }
}

void table::add_all(const std::vector<void*>& records) {
  constexpr std::size_t ahead = 6;  // records are on their way before their turn comes
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (i + ahead < records.size()) {
      for (const column& each : all) __builtin_prefetch(each.in(records[i + ahead]));
    }
    add(records[i]);
  }
}

}  // namespace zrt4::python
