#include "parse_ev_list.hh"

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <string_view>

#include "diagnostics.hh"
#include "event_fields.hh"
#include "event_listing.hh"
#include "event_number_text.hh"
#include "event_util.hh"
#include "name_table.hh"
#include "read_document.hh"

namespace {

namespace event_names = zrt4::detail::event_names;
using zrt4::detail::event_number;
using zrt4::detail::event_numbers;
using zrt4::detail::longest_block_name;
using zrt4::detail::name_table;
using zrt4::detail::named;
using zrt4::detail::read_event_number;
using zrt4::detail::unusable_parser;

// Of a block that has any. It saves growing in ones and twos.
constexpr std::size_t usual_channels = 4;

/// What an element is for: an action, or a number of an entry.
struct event_element {
  enum kind { event, type, server_block, channels, number } what = number;
  const event_number* field = nullptr;
};

/// All of them but channels, by name.
constexpr auto make_event_elements() {
  constexpr std::size_t own = 4;
  named<event_element> names[own + std::size(event_numbers)] = {
      {event_names::event, {event_element::event}},
      {event_names::type, {event_element::type}},
      {event_names::server_block, {event_element::server_block}},
      {event_names::channels, {event_element::channels}},
  };
  std::size_t count = own;
  for (const auto& field : event_numbers) {
    names[count++] = {field.element, {event_element::number, &field}};
  }
  return name_table(names);
}
constexpr auto event_elements = make_event_elements();

class ev_list_reader {
 public:
  explicit ev_list_reader(std::vector<zrt4_ev_entry*>& into) : list(into) {}

  template <class Parser>
  static bool root(std::string_view tag, const Parser& parser) {
    if (tag == event_names::root) return true;
    zrt4::detail::tell_wrong_root({"WRONG root tag: ", tag, " must be '", event_names::root, "'\n"},
                                  parser);
    return false;
  }

  static int errors() { return 0; }

  template <class Parser>
  void step(std::string_view tag, const char* text, Parser& /*parser*/) {
    // Most elements are channels.
    if (tag == event_names::channel) {
      if (text != nullptr && in_event && type_seen && in_channels) channel(text);
      return;
    }
    const event_element* element = event_elements.find(tag);
    if (element == nullptr) return;
    if (element->what == event_element::event) {
      in_event = true;
      type_seen = in_block = in_channels = false;
    } else if (element->what == event_element::type) {
      if (in_event) type(text);
    } else if (in_event && type_seen) {
      use(*element, text);
    }
  }

 private:
  void use(const event_element& element, const char* text) {
    switch (element.what) {
      case event_element::server_block:
        if (text != nullptr) server_block(text);
        break;
      case event_element::channels:
        if (in_block) in_channels = true;
        break;
      default:
        if (text != nullptr && entry != nullptr) read_event_number(text, element.field->in(*entry));
    }
  }

  // The first step of a TYPE only says that one is coming; each text then makes an entry.
  void type(const char* text) {
    if (!type_seen) {
      type_seen = true;
    } else if (text != nullptr) {
      // Judged as the number it is: beyond 32 bits it must not become another one.
      const long number = std::strtol(text, nullptr, 10);
      type_seen = number >= 0 && number <= long{ZRT4_EV_EVMAX};
      if (type_seen) new_entry(static_cast<ZRT4_EVTYPE>(number));
    }
  }

  void new_entry(ZRT4_EVTYPE type) {
    auto blocks = std::make_unique<std::vector<zrt4_ev_sb_list*>>();
    auto created = std::make_unique<zrt4_ev_entry>();
    created->evtype = type;
    created->sb_list = blocks.get();
    list.push_back(created.get());
    (void)blocks.release();
    entry = created.release();
  }

  // An event with an empty TYPE continues the entry before it; when there is none, what it brings
  // is ignored.
  void server_block(const char* name) {
    if (entry == nullptr) return;
    auto channels = std::make_unique<std::vector<char*>>();
    auto created = std::make_unique<zrt4_ev_sb_list>();
    std::memcpy(created->sb_list, name, strnlen(name, longest_block_name));
    created->ch_list = channels.get();
    entry->sb_list->push_back(created.get());
    (void)channels.release();
    block = created.release();
    in_channels = false;
    in_block = true;
  }

  void channel(const char* name) {
    if (block->ch_list->empty()) block->ch_list->reserve(usual_channels);
    const std::size_t size = std::strlen(name) + 1;
    std::unique_ptr<char[]> copy(new char[size]);
    std::memcpy(copy.get(), name, size);
    block->ch_list->push_back(copy.get());
    (void)copy.release();
  }

  std::vector<zrt4_ev_entry*>& list;
  zrt4_ev_entry* entry = nullptr;
  zrt4_ev_sb_list* block = nullptr;
  // No end tag clears these: they hold until the next EVENT (or, for channels, the next SBLOCK).
  bool in_event = false;
  bool type_seen = false;
  bool in_block = false;
  bool in_channels = false;
};

template <class Variant>
int read_ev_list(char* source, std::vector<zrt4_ev_entry*>* list, unusable_parser treatment) {
  ev_list_reader reader(*list);
  return zrt4::detail::read_document<Variant>(source, reader, treatment);
}

void print_block(int number, const zrt4_ev_sb_list& block) {
  std::printf("Server block[%d]: '%s'\n", number, block.sb_list);
  if (block.ch_list == nullptr || block.ch_list->empty()) {
    std::puts("No channel list -> ALL channels");
    return;
  }
  std::printf("Channels: %d\n", static_cast<int>(block.ch_list->size()));
  int channel = 0;
  for (const char* name : *block.ch_list) std::printf("Channel[%d]:\t'%s'\n", channel++, name);
}

void release_block(zrt4_ev_sb_list* block) {
  // An empty channel vector is deliberately left alone: it may not be this list's own.
  if (block->ch_list != nullptr && !block->ch_list->empty()) {
    for (char* name : *block->ch_list) delete[] name;
    delete block->ch_list;
  }
  delete block;
}

}  // namespace

int zrt4_parse_ev_list_read(char* xml, std::vector<zrt4_ev_entry*>* list) {
  return read_ev_list<zrt4::memory_variant>(xml, list, unusable_parser::released);
}

int zrt4_parse_ev_list_readf(char* file, std::vector<zrt4_ev_entry*>* list) {
  return read_ev_list<zrt4::file_variant>(file, list, unusable_parser::kept);
}

void zrt4::detail::list_events(const std::vector<zrt4_ev_entry*>& list, shown_times times) {
  const auto shown = [times](std::uint32_t time) {
    return times == shown_times::as_read ? std::int64_t{time} : static_cast<std::int32_t>(time);
  };
  int number = 0;
  for (const zrt4_ev_entry* entry : list) {
    std::printf("Entry[%d]\n", number++);
    std::printf("EVENT TYPE:\t%s\n", event_name_itoa(static_cast<int>(entry->evtype)));
    std::printf("Trigger mask:\t0x%x (%u)\n", entry->tmask, entry->tmask);
    std::printf("Min event time:\t%" PRId64 " sec %" PRId64 " usec\n",
                shown(entry->min_ev_time.timeup), shown(entry->min_ev_time.timelow));
    std::printf("Priority:\t0x%x (%u)\n", entry->priority, entry->priority);
    if (entry->sb_list == nullptr) {
      std::puts("No server block list -> Full event");
      continue;
    }
    std::printf("Server Blocks: %d\n", static_cast<int>(entry->sb_list->size()));
    int block = 0;
    for (const zrt4_ev_sb_list* server_block : *entry->sb_list) print_block(block++, *server_block);
  }
}

void zrt4_print_ev_list(std::vector<zrt4_ev_entry*>* list) {
  if (list == nullptr) return;
  zrt4::detail::list_events(*list, zrt4::detail::shown_times::negative_beyond_31_bits);
}

void zrt4_clean_ev_list(std::vector<zrt4_ev_entry*>* list) {
  if (list == nullptr) return;
  for (zrt4_ev_entry* entry : *list) {
    // Deliberately only dropped: no reader makes such an entry, so it may not be this list's own.
    if (entry->sb_list == nullptr) continue;
    for (zrt4_ev_sb_list* block : *entry->sb_list) release_block(block);
    delete entry->sb_list;
    delete entry;
  }
  list->clear();
}
