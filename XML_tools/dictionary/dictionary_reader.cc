#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "diagnostics.hh"
#include "record_widths.hh"
#include "number_text.hh"
#include "read_document.hh"
#include "record_memory.hh"

namespace {

using zrt4::detail::env_index_names;
using zrt4::detail::fetch_behind;
using zrt4::detail::from_file;
using zrt4::detail::from_memory;
using zrt4::detail::generation_2010;
using zrt4::detail::older_generation;

// Most elements differ from a name in its first character already.
bool same(const char* tag, const char* name) {
  return tag[0] == name[0] && std::strcmp(tag, name) == 0;
}

// A text that is no number leaves the field as it was, as sscanf does.
void read_delta(const char* text, float& field) {
  if (!zrt4::detail::read_plain_number(text, field)) std::sscanf(text, "%f", &field);
}

// What strncpy would leave, knowing that behind the name held so far all is zero.
template <std::size_t Size>
void copy_name(const char* text, char (&name)[Size]) {
  const std::size_t length = strnlen(text, Size - 1);
  const std::size_t held = std::strlen(name);
  std::memcpy(name, text, length);
  if (held > length) std::memset(name + length, 0, held - length);
}

template <class Generation>
class dictionary_reader {
  using entry = typename Generation::entry;

 public:
  template <class Input>
  static constexpr bool keeps_unusable_parser = true;

  explicit dictionary_reader(std::vector<entry*>& into) : list(into) {}

  static bool root(std::string_view tag) {
    const char* expected = env_index_names[ENV_INDX_ROOT];
    if (tag == expected) return true;
    zrt4::detail::say(stderr, {"WRONG root tag: '", tag, "' must be '", expected, "'\n"});
    return false;
  }

  static int errors() { return 0; }

  /// For a reader that an exception ends: what it had begun has no other owner then.
  void release_unfinished() {
    if (!appended) std::free(current);
  }

  template <class Parser>
  void step(const char* tag, const char* text, Parser& /*parser*/) {
    static constexpr struct {
      int name;
      void (dictionary_reader::*take)(const char* text);
    } fields[] = {
        {ENV_INDX_INDX, &dictionary_reader::take_index},
        {ENV_INDX_PROP, &dictionary_reader::take_property},
        {ENV_INDX_DABS, &dictionary_reader::take_absolute_delta},
        {ENV_INDX_DREL, &dictionary_reader::take_relative_delta},
    };
    if (same(tag, env_index_names[ENV_INDX_CHAN])) return open_channel();
    if (!channel_open || text == nullptr) return;
    for (const auto& field : fields) {
      if (same(tag, env_index_names[field.name])) return (this->*field.take)(text);
    }
  }

 private:
  // A channel that lacked its index or its property gives its record to the next one; that of the
  // last channel is deliberately left unreleased, as it always was.
  void open_channel() {
    if (current == nullptr || appended) {
      current = static_cast<entry*>(std::malloc(sizeof(entry)));
    }
    index_seen = property_seen = false;
    channel_open = current != nullptr;
    if (!channel_open) {
      std::puts(Generation::no_memory);
      return;
    }
    fetch_behind(current);
    std::memset(current, 0, sizeof(entry));
    current->index = -1;
    appended = false;
  }

  void take_index(const char* text) {
    current->index = static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
    index_seen = true;
    if (property_seen) append(index_seen);
  }

  void take_property(const char* text) {
    copy_name(text, current->data.env_prop);
    property_seen = true;
    if (index_seen) append(property_seen);
  }

  void take_absolute_delta(const char* text) { read_delta(text, current->data.env_ch_abs_delta); }
  void take_relative_delta(const char* text) { read_delta(text, current->data.env_ch_rel_delta); }

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

template <class Generation, class Input>
int read_dictionary(char* source, std::vector<typename Generation::entry*>* list) {
  dictionary_reader<Generation> reader(*list);
  try {
    // The last incomplete channel's record is left behind on purpose.
    // NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
    return zrt4::detail::read_document<Input>(source, reader);
  } catch (...) {
    reader.release_unfinished();
    throw;
  }
}

}  // namespace

int parse_env_index_dict_list_read(char* xml, std::vector<zrt4_env_index_dictionary_entry*>* list) {
  return read_dictionary<older_generation, from_memory>(xml, list);
}

int parse_env_index_dict_list_read_2010(char* xml,
                                        std::vector<zrt4_env_index_dictionary_entry_2010*>* list) {
  return read_dictionary<generation_2010, from_memory>(xml, list);
}

int parse_env_index_dict_readf(char* file, std::vector<zrt4_env_index_dictionary_entry*>* list) {
  return read_dictionary<older_generation, from_file>(file, list);
}

int parse_env_index_dict_readf_2010(char* file,
                                    std::vector<zrt4_env_index_dictionary_entry_2010*>* list) {
  return read_dictionary<generation_2010, from_file>(file, list);
}
