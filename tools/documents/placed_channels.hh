#ifndef PLACED_CHANNELS_HH
#define PLACED_CHANNELS_HH

// Channel descriptions with what their records do not keep: where each stands, and how its types
// are written there.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "reading.hh"
#include "zrt4xml.hh"

/// What a document says of a type, without a record's limits.
struct written_type {
  bool is_there = false;
  std::uint32_t number = 0;  ///< as a record has it that holds no mask

  std::int32_t with_sign() const { return static_cast<std::int32_t>(number); }
};

/// Where a record comes from.
struct channel_origin {
  std::uint32_t file = 0;  ///< the caller's number of it
  std::uint32_t line = 0;  ///< of the start tag of the channel
  written_type event_type;
  written_type data_type;
};

/// A channel that was merged into the record that had its property.
struct merged_channel {
  std::string property;
  std::string name;  ///< its DAQ name, which the record does not have
  channel_origin origin;
};

struct placed_channels {
  zrt4::channel_list list;
  std::vector<channel_origin> origins;  ///< of each record of the list
  std::vector<merged_channel> merged;
  /// The texts of types that are not simply the decimal number that is read, by record.
  std::map<std::size_t, std::string> odd_event_types;
  std::map<std::size_t, std::string> odd_data_types;
};

/// Appends the channels of a document in `dialect` (ZRT4_FORMAT or MORV_FORMAT), which the
/// library's reader reads: of texts for the variable dialect, because only that one knows masks of
/// its event types, otherwise that of files. `file_number` becomes the origins'. As a number, an
/// event type that is not told is `untold_event_type`.
reading read_placed(placed_channels& channels, input_file& file, int dialect, zrt4::types wanted,
                    std::uint32_t file_number = 0);

/// The same of a document in memory, with numbers of types; returns the number of errors.
int read_placed(placed_channels& channels, std::string document);

#endif
