#include <algorithm>
#include <vector>

#include "fuzz.hh"
#include "parse_env_index_dictionary.hh"

namespace {

template <class Entry, class Read, class Dump>
void round_trip(std::string text, Read read, Dump dump) {
  std::vector<Entry*> list;
  read(text.data(), &list);
  dump(&list);
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  for (Entry* entry : list) std::free(entry);
}

char nowhere[] = "/dev/null";

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::set_up();
  const std::string text = fuzz::text(data, size);
  using older = zrt4_env_index_dictionary_entry;
  using newer = zrt4_env_index_dictionary_entry_2010;
  for (int mode = 0; mode < 4; ++mode) {
    round_trip<older>(text, parse_env_index_dict_list_read, [mode](std::vector<older*>* list) {
      dump_env_index_dict(list, nowhere, mode, -1, nullptr);
    });
    round_trip<newer>(text, parse_env_index_dict_list_read_2010, [mode](std::vector<newer*>* list) {
      dump_env_index_dict_2010(list, nowhere, mode, -1, nullptr);
    });
  }
  return 0;
}
