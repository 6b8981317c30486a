#include "listed_channels.hh"

#include <cinttypes>
#include <cstdio>
#include <memory>

#include "channel_fields.hh"
#include "channel_listing.hh"
#include "event_util.hh"
#include "json_text.hh"
#include "placed_channels.hh"
#include "selector_rules.hh"
#include "terminal.hh"
#include "type_masks.hh"
#include "type_names.hh"

namespace {

/// Of channels that were read as numbers.
class number_lines : public zrt4::detail::type_lines {
 public:
  explicit number_lines(const placed_channels& all) : channels(all) {}

  void print_event_type(std::size_t position, const chan_descr_2010& channel) const override {
    const written_type& written = channels.origins[position].event_type;
    const std::uint32_t number = channel.ev_type;
    if (number == untold_event_type) return zrt4::detail::print_event_types(0);
    if (print_odd(channels.odd_event_types, position, written, number, event_name_itoa)) return;
    if (number < zrt4::detail::event_type_count) {
      zrt4::detail::print_event_types(zrt4::detail::bit_mask(static_cast<std::int32_t>(number)));
    } else {
      print_number(number, event_name_itoa);
    }
  }

  void print_data_type(std::size_t position, const chan_descr_2010& channel) const override {
    const written_type& written = channels.origins[position].data_type;
    const std::uint32_t number = channel.dtype;
    if (number == 0 && !written.is_there) return zrt4::detail::print_data_types(0);
    if (print_odd(channels.odd_data_types, position, written, number, block_name_itoa)) return;
    const auto type = static_cast<std::int32_t>(number);
    const bool has_mask =
        type > 0 && type < int{ZRT4_BLOCK_MAX_2010} && block_name_itoa(type) != nameless;
    if (has_mask) {
      zrt4::detail::print_data_types(zrt4::detail::data_type_mask(type));
    } else {
      print_number(number, block_name_itoa);
    }
  }

 private:
  using name_of_number = const char* (*)(int);

  static void print_number(std::uint32_t number, name_of_number names) {
    std::printf("%" PRIu32 " %s", number, names(static_cast<int>(number)));
  }

  // A record that was merged from several channels may have its type from another one.
  static bool print_odd(const std::map<std::size_t, std::string>& texts, std::size_t position,
                        const written_type& written, std::uint32_t number, name_of_number names) {
    const auto odd = texts.find(position);
    if (odd == texts.end() || written.number != number) return false;
    std::printf("'%s', read as ", shortened(printable(odd->second)).c_str());
    print_number(number, names);
    return true;
  }

  const placed_channels& channels;
};

// JSON has all numbers as they are.
reading read_without_places(placed_channels& channels, input_file& file, int dialect) {
  reading how = read_into(channels.list, file, dialect, zrt4::types::numbers);
  for (const chan_descr_2010& channel : channels.list) {
    channels.origins.push_back({0, 0, {true, channel.ev_type}, {true, channel.dtype}});
  }
  return how;
}

// In both dialects; of JSON without places.
reading read_all(placed_channels& channels, input_file& file, int dialect) {
  reading how = is_json(file) ? read_without_places(channels, file, dialect)
                              : read_placed(channels, file, dialect, zrt4::types::numbers);
  if (dialect == MORV_FORMAT) drop_twins(channels.list);
  return how;
}

}  // namespace

listed_document list_channels(input_file& file, int dialect) {
  const auto channels = std::make_shared<placed_channels>();
  reading how = read_all(*channels, file, dialect);
  const auto print = [channels] {
    zrt4::detail::list_channels(*channels->list.get(), number_lines(*channels));
  };
  return {std::move(how), print, {}};
}

loaded_document load_channels(input_file& file, int dialect) {
  const auto channels = std::make_shared<placed_channels>();
  reading how = read_all(*channels, file, dialect);
  return {std::move(how), rows_of(channels->list), channels};
}
