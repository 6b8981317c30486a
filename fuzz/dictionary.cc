#include <algorithm>
#include <cstdlib>
#include <vector>

#include "fuzz.hh"
#include "parse_env_index_dictionary.hh"

namespace {

struct older {
  using entry = zrt4_env_index_dictionary_entry;
  static constexpr auto& read = parse_env_index_dict_list_read;
  static constexpr auto& readf = parse_env_index_dict_readf;
  static int dump(std::vector<entry*>& list, char* file, int mode, std::string* text) {
    return dump_env_index_dict(&list, file, mode, -1, text);
  }
};

struct newer {
  using entry = zrt4_env_index_dictionary_entry_2010;
  static constexpr auto& read = parse_env_index_dict_list_read_2010;
  static constexpr auto& readf = parse_env_index_dict_readf_2010;
  static int dump(std::vector<entry*>& list, char* file, int mode, std::string* text) {
    return dump_env_index_dict_2010(&list, file, mode, -1, text);
  }
};

template <class Width>
void round_trip(std::string text, bool from_file, int mode) {
  std::vector<typename Width::entry*> list;
  const auto read = [&list](std::string& document, bool file) {
    return file ? Width::readf(fuzz::file_of(document), &list)
                : Width::read(document.data(), &list);
  };
  if (read(text, from_file) < 0) fuzz::broken("no negative result");
  if (mode == ENV_INDX_DUMP_XML_STRING) {
    std::string document;
    Width::dump(list, nullptr, mode, &document);
    read(document, !from_file);
  } else {
    char nowhere[] = "/dev/null";
    Width::dump(list, mode == ENV_INDX_DUMP_TO_SCREEN ? nullptr : nowhere, mode, nullptr);
  }
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  for (auto* entry : list) std::free(entry);
}

}  // namespace

// Both widths, both readers, all dumps.
const unsigned fuzz::ways = 16;

void fuzz::read(const std::string& input, unsigned way) {
  const bool from_file = (way & 2) != 0;
  const int mode = static_cast<int>(way / 4);
  if ((way & 1) == 0) {
    round_trip<older>(input, from_file, mode);
  } else {
    round_trip<newer>(input, from_file, mode);
  }
}
