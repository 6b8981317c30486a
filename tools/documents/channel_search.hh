#ifndef CHANNEL_SEARCH_HH
#define CHANNEL_SEARCH_HH

// What a DAQ client would get for a name. A selector answers by name only, so that its answers
// about one name can come from several records; here each answer is about one record.

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "name_pattern.hh"
#include "placed_channels.hh"

/// The start tag of a channel.
struct place_of_channel {
  std::string file;
  std::uint32_t line;

  std::string shown() const;
};

class channel_search {
 public:
  /// Reads channel descriptions, behind those read before, as a selector loads them. Throws
  /// `file_error` for another kind of document.
  reading load(input_file& file);

  /// Whether there is any document.
  bool has_documents() const { return !files.empty(); }
  const chan_descr_2010& channel(std::size_t position) const { return channels.list[position]; }
  place_of_channel place_of(std::size_t position) const;
  /// Where those stand that were merged into it.
  std::vector<place_of_channel> merged_into(std::size_t position) const;

  /// The types as a client gets them, with their names; where the document has another number or a
  /// text, with that: "0x100 MCP (written: 40)".
  std::string shown_event_types(std::size_t position) const;
  std::string shown_data_type(std::size_t position) const;
  /// The numbers that stand in the document; nothing where there is none.
  std::optional<std::uint32_t> written_event_type(std::size_t position) const;
  std::optional<std::uint32_t> written_data_type(std::size_t position) const;

  /// The channel that a client gets by its name: the first with an event type that bears it as DAQ
  /// name, or as property when one of its event types is looked up by property.
  std::optional<std::size_t> found_by(const std::string& name) const;
  /// Each record of which the DAQ name or the property matches, once.
  std::vector<std::size_t> matching(const name_pattern& names) const;
  /// Whether a selector selects the name for that event type: some channel must have the event
  /// type, and one must bear the name as channels of that type do.
  bool selects(const std::string& name, int event) const;
  /// The name by which a client looks the channel up for that event type.
  std::string name_for(std::size_t position, int event) const;

  std::string why_not_found(const std::string& name) const;
  std::string why_nothing_matches(const name_pattern& names) const;
  std::string why_not_selected(const std::string& name, int event) const;
  /// What a person would not expect of a name that is selected, of whom the channel at `position`
  /// is told; nothing as a rule.
  std::string odd_about_selection(const std::string& name, std::optional<std::size_t> position,
                                  int event) const;

 private:
  std::optional<std::size_t> first_bearing(const std::string& name,
                                           const char (chan_descr_2010::*field)[256]) const;
  place_of_channel place_of(const channel_origin& origin) const {
    return {files[origin.file], origin.line};
  }

  void place_merged();
  std::string what_merged_one_has(const name_pattern& names) const;
  std::string channel_called(std::size_t position) const;

  placed_channels channels;
  std::map<std::size_t, std::vector<place_of_channel>> merged;  ///< by position
  std::vector<std::string> files;
  std::uint32_t event_types = 0;  ///< mask; those of a file that failed do not count until the next
};

/// "NORMAL:ENV"
std::string names_of_event_types(std::uint32_t mask);

#endif
