#include "dictionary_reader.hh"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

#include "diagnostics.hh"
#include "dictionary_fields.hh"
#include "name_table.hh"
#include "number_text.hh"
#include "prefetch.hh"
#include "read_document.hh"
#include "record_fields.hh"
#include "record_widths.hh"

namespace {

using zrt4::detail::dictionary_field;
using zrt4::detail::dictionary_fields;
using zrt4::detail::env_index_names;
using zrt4::detail::fetch_behind;
using zrt4::detail::name_table;
using zrt4::detail::named;
using zrt4::detail::set_text;
using zrt4::detail::with_value;

/// What an element is for: null for the one that starts a channel.
template <class Entry>
constexpr auto make_elements() {
  constexpr std::size_t count = 1 + std::size(dictionary_fields<Entry>);
  named<const dictionary_field<Entry>*> names[count] = {{env_index_names[ENV_INDX_CHAN], nullptr}};
  std::size_t last = 0;
  for (const auto& field : dictionary_fields<Entry>) names[++last] = {field.element, &field};
  return name_table(names);
}

template <class Width>
class dictionary_reader {
  using entry = typename Width::entry;

 public:
  explicit dictionary_reader(std::vector<entry*>& into) : list(into) {}

  template <class Parser>
  static bool root(std::string_view tag, const Parser& parser) {
    const char* expected = env_index_names[ENV_INDX_ROOT];
    if (tag == expected) return true;
    zrt4::detail::tell_wrong_root({"WRONG root tag: '", tag, "' must be '", expected, "'\n"},
                                  parser);
    return false;
  }

  static int errors() { return 0; }

  /// For a reader that an exception ends: what it had begun has no other owner then.
  void release_unfinished() {
    if (!appended) std::free(current);
  }

  template <class Parser>
  void step(std::string_view tag, const char* text, const Parser& parser) {
    static constexpr auto elements = make_elements<entry>();
    // Only CHANNEL acts without a text or outside a channel.
    if (text == nullptr || !channel_open) {
      if (tag == env_index_names[ENV_INDX_CHAN]) open_channel(parser);
    } else if (const auto* found = elements.find(tag)) {
      if (*found == nullptr) return open_channel(parser);
      with_value((*found)->member, *current, [&](auto& field) { take(field, text); });
    }
  }

 private:
  // A channel that lacked its index or its property gives its record to the next one; that of the
  // last channel is deliberately left unreleased, as it always was.
  template <class Parser>
  void open_channel(const Parser& parser) {
    if (current == nullptr || appended) {
      current = static_cast<entry*>(std::malloc(sizeof(entry)));
    }
    index_seen = property_seen = false;
    channel_open = current != nullptr;
    if (!channel_open) {
      zrt4::detail::tell(
          {zrt4::message_topic::out_of_memory, zrt4::message_severity::error, stdout, false},
          {Width::no_memory, "\n"}, [&] { return zrt4::detail::scan_place::of(parser); });
      return;
    }
    fetch_behind(current);
    std::memset(current, 0, sizeof(entry));
    current->index = -1;
    appended = false;
  }

  void take(std::int32_t& index, const char* text) {
    index = static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
    index_seen = true;
    if (property_seen) append(index_seen);
  }

  template <std::size_t Size>
  void take(char (&property)[Size], const char* text) {
    set_text(property, text);
    property_seen = true;
    if (index_seen) append(property_seen);
  }

  // A text that is no number leaves the field as it was.
  static void take(float& threshold, const char* text) {
    zrt4::detail::read_number(text, threshold);
  }

  // Only the element that completed the entry is forgotten: coming again, it appends the entry
  // again.
  void append(bool& completed_by) {
    list.push_back(current);
    completed_by = false;
    appended = true;
  }

  std::vector<entry*>& list;
  entry* current = nullptr;
  bool channel_open = false;
  bool index_seen = false;
  bool property_seen = false;
  bool appended = false;
};

}  // namespace

template <class Width, class Variant>
int zrt4::detail::read_dictionary(char* source, std::vector<typename Width::entry*>* list) {
  dictionary_reader<Width> reader(*list);
  try {
    // The last incomplete channel's record is left behind on purpose.
    // NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
    return read_document<Variant>(source, reader, unusable_parser::kept);
  } catch (...) {
    reader.release_unfinished();
    throw;
  }
}

namespace zrt4::detail {

template int read_dictionary<narrow_records, memory_variant>(
    char*, std::vector<zrt4_env_index_dictionary_entry*>*);
template int read_dictionary<narrow_records, file_variant>(
    char*, std::vector<zrt4_env_index_dictionary_entry*>*);
template int read_dictionary<wide_records, memory_variant>(
    char*, std::vector<zrt4_env_index_dictionary_entry_2010*>*);
template int read_dictionary<wide_records, file_variant>(
    char*, std::vector<zrt4_env_index_dictionary_entry_2010*>*);

}  // namespace zrt4::detail
