#include "fuzz.hh"
#include "parse_ev_list.hh"

const unsigned fuzz::ways = 2;

void fuzz::read(const std::string& input, unsigned way) {
  std::string text = input;
  std::vector<zrt4_ev_entry*> list;
  const int errors = way == 0 ? zrt4_parse_ev_list_read(text.data(), &list)
                              : zrt4_parse_ev_list_readf(file_of(text), &list);
  if (errors < 0) broken("no negative result");
  zrt4_print_ev_list(&list);
  zrt4_clean_ev_list(&list);
  if (!list.empty()) broken("a released list is empty");
}
