#include <algorithm>
#include <cstdint>
#include <string>

#include "parse_chan_descr.hh"

namespace {

constexpr std::uint32_t known_patterns[] = {0xCDECDEF2U, 0xCDECDEF3U};
constexpr std::int32_t header_size = 8;

}  // namespace

int zrt4_load_chan_descr(zrt4_xml_chan_descr_header* tab, std::vector<chan_descr_2010*>* list) {
  if (tab == nullptr || list == nullptr) return -1;
  if (std::find(std::begin(known_patterns), std::end(known_patterns), tab->pattern) ==
      std::end(known_patterns))
    return -3;
  if (tab->length <= header_size) return -4;
  const char* text = reinterpret_cast<const char*>(tab) + header_size;
  std::string xml(text, static_cast<std::size_t>(tab->length - header_size));
  return parse_descr_list_read(xml.data(), list, false, false);
}

int zrt4_load_master_daq_channel_description_file(std::vector<chan_descr_2010*>* list, char* file) {
  if (list == nullptr || file == nullptr || *file == '\0') return -1;
  return parse_descr_list_readf(file, list, false, false);
}
