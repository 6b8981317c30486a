#include "document_kind.hh"

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

template <int dialect>
int show_channels(input_file& file) {
  channel_list list;
  const int errors = list.read(file, dialect, types::masks);
  print_zrt4_chan_descr(&list.channels);
  return errors;
}

// The wider record, so that no name is cut.
int show_dictionary(input_file& file) {
  dictionary<zrt4_env_index_dictionary_entry_2010> list;
  const int errors = list.read(file);
  dump_env_index_dict_2010(&list.entries, nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
  return errors;
}

int show_camera(input_file& file) {
  camera_features list;
  const int errors = list.read(file);
  zrt4_dump_gige_descr(&list.features);
  const damage found = first_damage(file.path());
  if (!found.text.empty()) complain(file.name() + found.place, "damaged here: " + found.text);
  return errors != 0 || !found.text.empty() ? 1 : 0;
}

constexpr document_kind kinds[] = {
    {"events", "BMR", "event list", show_event_list},
    {"channels", "CHANDESCRIPTIONS", "channel descriptions, element dialect",
     show_channels<ZRT4_FORMAT>},
    {"variables", "DAQvariables", "channel descriptions, variable dialect",
     show_channels<MORV_FORMAT>},
    {"dictionary", "ENVINDEXDICT", "environment index dictionary", show_dictionary},
    {"camera", "", "camera features, under any other root", show_camera},
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
    throw bad_document("not a readable XML document: " + root.first.text, root.first.place);
  for (const document_kind& kind : kinds) {
    if (kind.root == root.name) return kind;
  }
  if (describes_a_camera(file)) return camera;
  throw bad_document("unknown kind of document: its root element is '" + root.name +
                     "'; known are " + known_kinds());
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
      list += kind.description;
    } else {
      list.append(kind.root).append(" (").append(kind.description).append(")");
    }
  }
  return list;
}
