#include "listed_channels.hh"

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

/// A type of which the document says nothing, so that clients have none.
bool is_untold(std::uint32_t number, const written_type& written) {
  return number == 0 && !written.is_there;
}

/// Of channels that were read as numbers.
class number_lines : public zrt4::detail::type_lines {
 public:
  explicit number_lines(const placed_channels& all) : channels(all) {}

  void print_event_type(std::size_t position, const chan_descr_2010& channel) const override {
    const auto number = static_cast<std::int32_t>(channel.ev_type);
    const written_type& written = channels.origins[position].event_type;
    if (is_untold(channel.ev_type, written)) return zrt4::detail::print_event_types(0);
    if (print_odd(channels.odd_event_types, position, written, number, event_name_itoa)) return;
    if (number >= 0 && number < zrt4::detail::event_type_count) {
      zrt4::detail::print_event_types(zrt4::detail::bit_mask(number));
    } else {
      print_number(number, event_name_itoa);
    }
  }

  void print_data_type(std::size_t position, const chan_descr_2010& channel) const override {
    const auto number = static_cast<std::int32_t>(channel.dtype);
    const written_type& written = channels.origins[position].data_type;
    if (is_untold(channel.dtype, written)) return zrt4::detail::print_data_types(0);
    if (print_odd(channels.odd_data_types, position, written, number, block_name_itoa)) return;
    const bool has_mask = number > 0 && number < static_cast<int>(ZRT4_BLOCK_MAX_2010) &&
                          block_name_itoa(number) != nameless;
    if (has_mask) {
      zrt4::detail::print_data_types(zrt4::detail::data_type_mask(number));
    } else {
      print_number(number, block_name_itoa);
    }
  }

 private:
  using name_of_number = const char* (*)(int);

  static void print_number(std::int32_t number, name_of_number names) {
    std::printf("%d %s", number, names(number));
  }

  // A record that was merged from several channels may have its type from another one.
  static bool print_odd(const std::map<std::size_t, std::string>& texts, std::size_t position,
                        const written_type& written, std::int32_t number, name_of_number names) {
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
    channels.origins.push_back({0,
                                0,
                                {true, static_cast<std::int32_t>(channel.ev_type)},
                                {true, static_cast<std::int32_t>(channel.dtype)}});
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

constexpr std::string_view name_of_event_type =
    zrt4::detail::field_of<&chan_descr_2010::ev_type>()->row.name;

// An event type that is not told is no type 0, which has a name.
row row_at(const void* of, std::size_t position) {
  const auto& channels = *static_cast<const placed_channels*>(of);
  const chan_descr_2010& channel = channels.list[position];
  row result = row_of(*records_in(channels.list).type, &channel);
  if (!is_untold(channel.ev_type, channels.origins[position].event_type)) return result;
  for (row::field& field : result.fields) {
    if (field.name == name_of_event_type) field.number_name = nameless;
  }
  return result;
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
  return {std::move(how), {channels.get(), channels->list.size(), row_at}, channels};
}
