#ifndef DOCUMENTS_HH
#define DOCUMENTS_HH

// The library's lists, owned: read from a file, released with the object.

#include <cstdlib>
#include <vector>

#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "zrt4_gige_descr.hh"

class input_file;

/// What the numbers of event and data types become.
enum class types { numbers, masks };

struct event_list {
  event_list() = default;
  event_list(const event_list&) = delete;
  event_list& operator=(const event_list&) = delete;
  ~event_list();
  int read(input_file& file);  ///< the number of errors, as for the others

  std::vector<zrt4_ev_entry*> entries;
};

struct channel_list {
  channel_list() = default;
  channel_list(const channel_list&) = delete;
  channel_list& operator=(const channel_list&) = delete;
  ~channel_list() { clean_chan_desr_list(&channels); }
  /// `dialect` is ZRT4_FORMAT or MORV_FORMAT.
  int read(input_file& file, int dialect, types wanted);

  std::vector<chan_descr_2010*> channels;
};

/// `Entry` is the entry record of one of the two widths.
template <class Entry>
struct dictionary {
  dictionary() = default;
  dictionary(const dictionary&) = delete;
  dictionary& operator=(const dictionary&) = delete;
  ~dictionary() {
    // One entry can stand at two places, one behind the other.
    const Entry* released = nullptr;
    for (Entry* entry : entries) {
      if (entry == released) continue;
      released = entry;
      std::free(entry);
    }
  }
  int read(input_file& file);

  std::vector<Entry*> entries;
};

struct camera_features {
  camera_features() = default;
  camera_features(const camera_features&) = delete;
  camera_features& operator=(const camera_features&) = delete;
  ~camera_features() { zrt4_clean_gige_descr(&features); }
  int read(input_file& file);

  std::vector<ZRT4GigEFeature*> features;
};

#endif
