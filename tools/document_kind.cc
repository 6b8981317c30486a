#include "document_kind.hh"

#include <vector>

#include "parse_ev_list.hh"

namespace {

// The library leaves empty channel vectors to whoever made the list.
void release(std::vector<zrt4_ev_entry*>& list) {
  for (const zrt4_ev_entry* entry : list) {
    for (zrt4_ev_sb_list* block : *entry->sb_list) {
      if (!block->ch_list->empty()) continue;
      delete block->ch_list;
      block->ch_list = nullptr;
    }
  }
  zrt4_clean_ev_list(&list);
}

int show_event_list(char* path) {
  std::vector<zrt4_ev_entry*> list;
  const int errors = zrt4_parse_ev_list_readf(path, &list);
  zrt4_print_ev_list(&list);
  release(list);
  return errors;
}

constexpr document_kind kinds[] = {
    {"BMR", "event list", show_event_list},
};

}  // namespace

const document_kind* kind_of_root(std::string_view root) {
  for (const document_kind& kind : kinds) {
    if (kind.root == root) return &kind;
  }
  return nullptr;
}

std::string known_kinds() {
  std::string list;
  for (const document_kind& kind : kinds) {
    if (!list.empty()) list += ", ";
    list.append(kind.root).append(" (").append(kind.description).append(")");
  }
  return list;
}
