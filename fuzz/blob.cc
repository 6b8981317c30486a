#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz.hh"
#include "parse_chan_descr.hh"

const unsigned fuzz::ways = 1;

// The input is the blob itself; its length field says at most what there is, as its callers ensure.
void fuzz::read(const std::string& input, unsigned /*way*/) {
  constexpr std::size_t header = offsetof(zrt4_xml_chan_descr_header, xml);
  const std::size_t room = std::max(input.size(), header);
  const auto memory = std::make_unique<std::uint32_t[]>(room / sizeof(std::uint32_t) + 1);
  std::memcpy(memory.get(), input.data(), input.size());
  auto* blob = reinterpret_cast<zrt4_xml_chan_descr_header*>(memory.get());
  if (blob->length > static_cast<std::int32_t>(room)) {
    blob->length = static_cast<std::int32_t>(room);
  }
  std::vector<chan_descr_2010*> list;
  zrt4_load_chan_descr(blob, &list);
  clean_chan_desr_list(&list);
}
