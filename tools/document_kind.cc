#include "document_kind.hh"

#include <vector>

#include "parse_ev_list.hh"

namespace {

int show_event_list(char* path) {
  std::vector<zrt4_ev_entry*> list;
  const int errors = zrt4_parse_ev_list_readf(path, &list);
  zrt4_print_ev_list(&list);
  zrt4_clean_ev_list(&list);
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
