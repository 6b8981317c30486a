#include "fuzz.hh"
#include "parse_ev_list.hh"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::set_up();
  std::string text = fuzz::text(data, size);
  std::vector<zrt4_ev_entry*> list;
  if (zrt4_parse_ev_list_read(text.data(), &list) < 0) fuzz::broken("no negative result");
  zrt4_print_ev_list(&list);
  zrt4_clean_ev_list(&list);
  if (!list.empty()) fuzz::broken("a released list is empty");
  return 0;
}
