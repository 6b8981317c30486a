// Which channels does an event list want? One line each: event type, server block, channel.

#include <cstdio>
#include <vector>

#include "event_util.hh"
#include "parse_ev_list.hh"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: wanted_channels EVENT_LIST\n", stderr);
    return 2;
  }
  std::vector<zrt4_ev_entry*> list;
  const int errors = zrt4_parse_ev_list_readf(argv[1], &list);
  for (const zrt4_ev_entry* entry : list) {
    const char* type = event_name_itoa(static_cast<int>(entry->evtype));
    for (const zrt4_ev_sb_list* block : *entry->sb_list) {
      if (block->ch_list->empty()) std::printf("%s %s (all channels)\n", type, block->sb_list);
      for (const char* channel : *block->ch_list) {
        std::printf("%s %s %s\n", type, block->sb_list, channel);
      }
    }
  }
  zrt4_clean_ev_list(&list);
  return errors == 0 ? 0 : 1;
}
