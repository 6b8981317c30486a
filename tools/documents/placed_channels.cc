#include "placed_channels.hh"

#include <array>
#include <cstdlib>
#include <iterator>
#include <set>
#include <string_view>
#include <vector>

#include "channel_reader.hh"
#include "input_file.hh"
#include "record_types.hh"
#include "scan_place.hh"

namespace {

namespace library = zrt4::detail;

/// An element whose text is a type.
struct type_element {
  std::string_view name;
  written_type channel_origin::*written;
  std::map<std::size_t, std::string> placed_channels::*odd;
};

constexpr std::string_view variable_name_of_property =
    library::field_of<&chan_descr_2010::prop_name>()->variable.name;
constexpr std::string_view variable_name_of_name =
    library::field_of<&chan_descr_2010::daq_name>()->variable.name;
constexpr std::string_view variable_name_of_event_type =
    library::field_of<&chan_descr_2010::ev_type>()->variable.name;

constexpr type_element type_elements[] = {
    {library::element_name<&chan_descr_2010::ev_type>(), &channel_origin::event_type,
     &placed_channels::odd_event_types},
    {variable_name_of_event_type, &channel_origin::event_type, &placed_channels::odd_event_types},
    {library::element_name<&chan_descr_2010::dtype>(), &channel_origin::data_type,
     &placed_channels::odd_data_types},
};

bool starts_channel(std::string_view tag) {
  namespace variables = library::variable_dialect_names;
  return tag == library::element_dialect_names::channel || tag == variables::number ||
         tag == variables::bits || tag == variables::matrix;
}

// Whether `text` is that number and nothing else, but for blanks around it.
bool says(const char* text, std::uint32_t number) {
  char* end = nullptr;
  const bool is_it = std::strtoll(text, &end, 10) == number && end != text;
  return is_it && std::string_view(end).find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// The library's reader, watched.
template <class Variant>
class watched_reader : public library::channel_reader<Variant> {
  using base = library::channel_reader<Variant>;

 public:
  watched_reader(placed_channels& into, bool shift, std::uint32_t number)
      : base(into.list.get(), shift, false), channels(into), file(number) {}

  bool root(std::string_view tag, const library::parser_of<Variant>& pull) {
    is_variables = tag == library::variable_dialect_names::root;
    return base::root(tag, pull);
  }

  void step(const char* tag, const char* value, library::parser_of<Variant>& pull) {
    const std::size_t before = channels.list.size();
    base::step(tag, value, pull);
    const std::string_view element = tag;
    if (starts_channel(element)) {
      begin(static_cast<std::uint32_t>(library::scan_place::of(pull).line));
    } else if (value != nullptr && !is_merged) {  // then the rest of it is ignored
      note_type(element, value);
    }
    if (channels.list.size() != before) {
      channels.origins.push_back(current);
    } else if (value != nullptr && is_variables) {
      note_merging(element, value);
    }
  }

  /// What types the current channel has: they may stand behind its property, and a second property
  /// lists it once more.
  void settle_types() {
    for (std::size_t i = first_listed; i < channels.origins.size(); ++i) {
      channels.origins[i].event_type = current.event_type;
      channels.origins[i].data_type = current.data_type;
      for (std::size_t type = 0; type < std::size(type_elements); ++type) {
        if (!odd_texts[type].empty()) (channels.*type_elements[type].odd)[i] = odd_texts[type];
      }
    }
  }

 private:
  void begin(std::uint32_t line) {
    settle_types();
    first_listed = channels.origins.size();
    current = {file, line, {}, {}};
    for (std::string& text : odd_texts) text.clear();
    is_merged = false;
    name.clear();
  }

  void note_merging(std::string_view element, const char* value) {
    if (element == variable_name_of_property) {
      channels.merged.push_back({value, name, current});
      is_merged = true;
    } else if (element == variable_name_of_name) {
      name = value;
      if (is_merged) channels.merged.back().name = name;
    }
  }

  void note_type(std::string_view element, const char* text) {
    for (std::size_t type = 0; type < std::size(type_elements); ++type) {
      if (element != type_elements[type].name) continue;
      const written_type written{true, static_cast<std::uint32_t>(library::read_decimal(text))};
      current.*type_elements[type].written = written;
      odd_texts[type] = says(text, written.number) ? "" : text;
    }
  }

  placed_channels& channels;
  const std::uint32_t file;
  bool is_variables = false;  // the dialect that merges
  channel_origin current;
  std::array<std::string, std::size(type_elements)> odd_texts;
  std::size_t first_listed = channels.origins.size();
  bool is_merged = false;
  std::string name;  // of the channel, as far as it has been read
};

// Clients have type 0 also of a channel that was merged with one that tells it.
std::set<std::string_view> properties_told_0(const std::vector<merged_channel>& merged) {
  std::set<std::string_view> properties;
  for (const merged_channel& each : merged) {
    const written_type& written = each.origin.event_type;
    if (written.is_there && written.number == 0) properties.insert(each.property);
  }
  return properties;
}

void mark_untold(placed_channels& channels, std::size_t first) {
  const std::set<std::string_view> told_0 = properties_told_0(channels.merged);
  for (std::size_t i = first; i < channels.list.size(); ++i) {
    chan_descr_2010& channel = channels.list[i];
    const bool is_told = channel.ev_type != 0 || channels.origins[i].event_type.is_there ||
                         told_0.count(channel.prop_name) != 0;
    if (!is_told) channel.ev_type = untold_event_type;
  }
}

template <class Variant>
int read_watched(char* source, placed_channels& channels, zrt4::types wanted,
                 std::uint32_t file_number) {
  const std::size_t first = channels.list.size();
  watched_reader<Variant> reader(channels, wanted == zrt4::types::masks, file_number);
  const int errors =
      library::read_document<Variant>(source, reader, library::reader_rules<Variant>::if_unusable);
  reader.settle_types();
  if (wanted == zrt4::types::numbers) mark_untold(channels, first);
  return errors;
}

}  // namespace

reading read_placed(placed_channels& channels, input_file& file, int dialect, zrt4::types wanted,
                    std::uint32_t file_number) {
  if (dialect == MORV_FORMAT) {
    std::string text = file.content();
    return read_with_messages(file, [&] {
      return read_watched<zrt4::memory_variant>(text.data(), channels, wanted, file_number);
    });
  }
  return read_with_messages(file, [&] {
    return read_watched<zrt4::file_variant>(file.path(), channels, wanted, file_number);
  });
}

int read_placed(placed_channels& channels, std::string document) {
  return read_watched<zrt4::memory_variant>(document.data(), channels, zrt4::types::numbers, 0);
}
