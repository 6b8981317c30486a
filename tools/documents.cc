#include "documents.hh"

#include <string>

#include "input_file.hh"
#include "progress.hh"
#include "quiet_output.hh"

event_list::~event_list() {
  // The library leaves empty channel vectors to whoever made the list.
  for (const zrt4_ev_entry* entry : entries) {
    for (zrt4_ev_sb_list* block : *entry->sb_list) {
      if (!block->ch_list->empty()) continue;
      delete block->ch_list;
      block->ch_list = nullptr;
    }
  }
  zrt4_clean_ev_list(&entries);
}

int event_list::read(input_file& file) {
  const progress shown(file.name());
  return zrt4_parse_ev_list_readf(file.path(), &entries);
}

int channel_list::read(input_file& file, int dialect, types wanted) {
  const progress shown(file.name());
  const bool shift = wanted == types::masks;
  if (dialect != MORV_FORMAT || !shift) {
    return parse_descr_list_readf(file.path(), &channels, shift, false);
  }
  // Only the memory reader makes masks of this dialect's event types. It also remarks on every bit
  // title that has not got its text yet, which is no news to a person.
  std::string text = file.content();
  const quiet_output remarks;
  return parse_descr_list_read(text.data(), &channels, shift, false);
}

template <>
int dictionary<zrt4_env_index_dictionary_entry>::read(input_file& file) {
  const progress shown(file.name());
  return parse_env_index_dict_readf(file.path(), &entries);
}

template <>
int dictionary<zrt4_env_index_dictionary_entry_2010>::read(input_file& file) {
  const progress shown(file.name());
  return parse_env_index_dict_readf_2010(file.path(), &entries);
}

int camera_features::read(input_file& file) {
  const progress shown(file.name());
  return zrt4_fill_gige_descr(file.path(), &features) ? 1 : 0;
}
