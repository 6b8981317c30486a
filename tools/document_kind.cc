#include "document_kind.hh"

#include <algorithm>

#include "bad_document.hh"
#include "documents.hh"
#include "input_file.hh"
#include "message.hh"
#include "quiet_output.hh"
#include "scan.hh"

namespace {

int show_event_list(input_file& file) {
  event_list list;
  const int errors = list.read(file);
  zrt4_print_ev_list(&list.entries);
  return errors;
}

template <class List>
loaded_document with_rows(const std::shared_ptr<List>& list, int errors) {
  return {errors, rows_of(*list), list};
}

loaded_document load_event_list(input_file& file) {
  const auto list = std::make_shared<event_list>();
  const int errors = list->read(file);
  return with_rows(list, errors);
}

template <int dialect>
int show_channels(input_file& file) {
  channel_list list;
  const int errors = list.read(file, dialect, types::masks);
  print_zrt4_chan_descr(&list.channels);
  return errors;
}

template <int dialect>
loaded_document load_channels(input_file& file) {
  const auto list = std::make_shared<channel_list>();
  const int errors = list->read(file, dialect, types::numbers);
  return with_rows(list, errors);
}

// The wider record, so that no name is cut.
int show_dictionary(input_file& file) {
  dictionary<zrt4_env_index_dictionary_entry_2010> list;
  const int errors = list.read(file);
  dump_env_index_dict_2010(&list.entries, nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
  return errors;
}

loaded_document load_dictionary(input_file& file) {
  const auto list = std::make_shared<dictionary<zrt4_env_index_dictionary_entry_2010>>();
  const int errors = list->read(file);
  return with_rows(list, errors);
}

// The library reads a damaged camera file as far as it goes, without a word.
int damage_of_camera(input_file& file) {
  const damage found = first_damage(file.path());
  if (found.text.empty()) return 0;
  complain(file.name() + found.place, "damaged here: " + found.text);
  return 1;
}

int show_camera(input_file& file) {
  camera_features list;
  const int errors = list.read(file);
  zrt4_dump_gige_descr(&list.features);
  return std::max(errors, damage_of_camera(file));
}

loaded_document load_camera(input_file& file) {
  const auto list = std::make_shared<camera_features>();
  const int errors = list->read(file);
  return with_rows(list, std::max(errors, damage_of_camera(file)));
}

constexpr document_kind kinds[] = {
    {"events", "BMR", "event list", "event", "events", show_event_list, load_event_list,
     event_elements},
    {"channels", "CHANDESCRIPTIONS", "channel descriptions, element dialect", "channel", "channels",
     show_channels<ZRT4_FORMAT>, load_channels<ZRT4_FORMAT>, channel_elements},
    {"variables", "DAQvariables", "channel descriptions, variable dialect", "channel", "channels",
     show_channels<MORV_FORMAT>, load_channels<MORV_FORMAT>, variable_elements},
    {"dictionary", "ENVINDEXDICT", "environment index dictionary", "entry", "entries",
     show_dictionary, load_dictionary, dictionary_elements},
    {"camera", "", "camera features", "feature", "features", show_camera, load_camera,
     camera_elements},
};
constexpr const document_kind& camera = kinds[4];

bool describes_a_camera(input_file& file) {
  const quiet_output remarks;
  camera_features list;
  return list.read(file) == 0 && !list.features.empty();
}

}  // namespace

const document_kind& kind_of(input_file& file, std::string_view name) {
  for (const document_kind& kind : kinds) {
    if (!name.empty() && kind.name == name) return kind;
  }
  const root_element root = find_root_element(file.path());
  if (root.name.empty())
    throw bad_document(file.name(), "not a readable XML document: " + root.first.text,
                       root.first.place);
  for (const document_kind& kind : kinds) {
    if (kind.root == root.name) return kind;
  }
  if (describes_a_camera(file)) return camera;
  throw bad_document(file.name(), "unknown kind of document: its root element is '" + root.name +
                                      "'; known are " + known_kinds());
}

std::string records_of(const document_kind& kind, std::size_t count) {
  return std::to_string(count) + " " +
         std::string(count == 1 ? kind.record_name : kind.records_name);
}

std::vector<std::string> kind_names() {
  std::vector<std::string> names;
  for (const document_kind& kind : kinds) names.emplace_back(kind.name);
  return names;
}

std::string known_kinds() {
  std::string list;
  for (const document_kind& kind : kinds) {
    if (!list.empty()) list += ", ";
    if (kind.root.empty()) {
      list.append(kind.description).append(", under any other root");
    } else {
      list.append(kind.root).append(" (").append(kind.description).append(")");
    }
  }
  return list;
}
