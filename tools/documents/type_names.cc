#include "type_names.hh"

#include <strings.h>

#include <charconv>

#include "event_util.hh"
#include "selector_rules.hh"
#include "type_masks.hh"

namespace {

using name_of_number = const char* (*)(int);

template <class MaskOf>
std::vector<named_type> named_types(int last, name_of_number names, MaskOf mask_of) {
  std::vector<named_type> types;
  for (int number = 0; number <= last; ++number) {
    const std::string_view name = names(number);
    if (name != nameless) types.push_back({number, name, mask_of(number)});
  }
  return types;
}

}  // namespace

std::vector<named_type> event_types() {
  return named_types(ZRT4_EV_EVMAX, event_name_itoa,
                     [](int number) -> std::optional<std::uint32_t> {
                       if (number >= zrt4::detail::event_type_count) return {};
                       return zrt4::detail::bit_mask(number);
                     });
}

std::vector<named_type> data_types() {
  return named_types(ZRT4_BLOCK_MAX_2010, block_name_itoa,
                     [](int number) -> std::optional<std::uint32_t> {
                       const std::uint32_t mask = zrt4::detail::data_type_mask(number);
                       if (mask == 0) return {};
                       return mask;
                     });
}

std::string names_of_data_types(std::uint32_t mask) {
  const bool is_newer = (mask & zrt4::detail::upper_data_types) != 0;
  std::string names;
  for (const named_type& type : data_types()) {
    if ((type.number > 31) != is_newer || !zrt4::detail::has_bit(mask, type.number)) continue;
    if (type.number % 32 == 31) continue;  // the bit that marks the newer family
    if (!names.empty()) names += ':';
    names += type.name;
  }
  return names;
}

std::optional<int> event_type_of(const std::string& text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  constexpr int types_end = zrt4::detail::event_type_count;
  if (error == std::errc() && stop == end && number >= 0 && number < types_end) return number;
  for (int type = 0; type < types_end; ++type) {
    if (strcasecmp(text.c_str(), event_name_itoa(type)) == 0) return type;
  }
  return {};
}
