#include "placed_channels.hh"

#include <cstdlib>
#include <string_view>

#include "channel_reader.hh"
#include "input_file.hh"
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
bool says(const char* text, std::int32_t number) {
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
    if (starts_channel(tag)) {
      begin(static_cast<std::uint32_t>(library::scan_place::of(pull).line));
    } else if (value != nullptr) {
      for (const type_element& each : type_elements) {
        if (tag == each.name) note_type(each, value);
      }
    }
    if (channels.list.size() != before) {
      list();
    } else if (value != nullptr && is_variables) {
      note_merging(tag, value);
    }
  }

 private:
  void begin(std::uint32_t line) {
    current = {file, line, {}, {}};
    odd_texts.clear();
    listed = none;
    is_merged = false;
    name.clear();
  }

  void note_merging(std::string_view tag, const char* value) {
    if (tag == variable_name_of_property) {
      channels.merged.push_back({value, name, current});
      is_merged = true;
    } else if (tag == variable_name_of_name) {
      name = value;
      if (is_merged) channels.merged.back().name = name;
    }
  }

  void note_type(const type_element& element, const char* text) {
    const written_type written{true, library::read_decimal(text)};
    current.*element.written = written;
    odd_texts[&element] = says(text, written.number) ? "" : text;
    if (listed == none) return;
    channels.origins[listed].*element.written = written;
    place_odd_text(element);
  }

  // A second property lists the same channel once more.
  void list() {
    listed = channels.list.size() - 1;
    channels.origins.push_back(current);
    for (const auto& [element, text] : odd_texts) place_odd_text(*element);
  }

  void place_odd_text(const type_element& element) {
    const std::string& text = odd_texts[&element];
    if (text.empty()) {
      (channels.*element.odd).erase(listed);
    } else {
      (channels.*element.odd)[listed] = text;
    }
  }

  static constexpr auto none = static_cast<std::size_t>(-1);

  placed_channels& channels;
  const std::uint32_t file;
  bool is_variables = false;  // the dialect that merges
  channel_origin current;
  std::map<const type_element*, std::string> odd_texts;
  std::size_t listed = none;
  bool is_merged = false;
  std::string name;  // of the channel, as far as it has been read
};

template <class Variant>
int read_watched(char* source, placed_channels& channels, zrt4::types wanted,
                 std::uint32_t file_number) {
  watched_reader<Variant> reader(channels, wanted == zrt4::types::masks, file_number);
  return library::read_document<Variant>(source, reader,
                                         library::reader_rules<Variant>::if_unusable);
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
