#include "document_kind.hh"

#include <algorithm>
#include <filesystem>

#include "bad_document.hh"
#include "documents.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "message.hh"
#include "quiet_output.hh"
#include "scan.hh"
#include "terminal.hh"

namespace {

int show_event_list(input_file& file) {
  zrt4::event_list list;
  const int errors = read_into(list, file);
  zrt4_print_ev_list(list.get());
  return errors;
}

template <class List, class... More>
loaded_document load(input_file& file, More... more) {
  const auto list = std::make_shared<List>();
  const int errors = read_into(*list, file, more...);
  return {errors, rows_of(*list), list};
}

template <int dialect>
int show_channels(input_file& file) {
  zrt4::channel_list list;
  const int errors = read_into(list, file, dialect, zrt4::types::masks);
  print_zrt4_chan_descr(list.get());
  return errors;
}

template <int dialect>
loaded_document load_channels(input_file& file) {
  return load<zrt4::channel_list>(file, dialect, zrt4::types::numbers);
}

// The wider record, so that no name is cut.
int show_dictionary(input_file& file) {
  zrt4::env_dictionary_2010 list;
  const int errors = read_into(list, file);
  dump_env_index_dict_2010(list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
  return errors;
}

// The library reads a damaged camera file as far as it goes and reports nothing.
int report_first_error(input_file& file) {
  const xml_error found = first_xml_error(file.path());
  if (found.text.empty()) return 0;
  report(file.name() + found.place, "damaged here: " + found.text);
  return 1;
}

int show_camera(input_file& file) {
  zrt4::camera_features list;
  const int errors = read_into(list, file);
  zrt4_dump_gige_descr(list.get());
  return std::max(errors, report_first_error(file));
}

loaded_document load_camera(input_file& file) {
  loaded_document document = load<zrt4::camera_features>(file);
  document.errors = std::max(document.errors, report_first_error(file));
  return document;
}

constexpr document_kind kinds[] = {
    {"events", "BMR", "event list", "event", "events", show_event_list, load<zrt4::event_list>,
     event_elements},
    {"channels", "CHANDESCRIPTIONS", "channel descriptions, element dialect", "channel", "channels",
     show_channels<ZRT4_FORMAT>, load_channels<ZRT4_FORMAT>, channel_elements},
    {"variables", "DAQvariables", "channel descriptions, variable dialect", "channel", "channels",
     show_channels<MORV_FORMAT>, load_channels<MORV_FORMAT>, variable_elements},
    {"dictionary", "ENVINDEXDICT", "environment index dictionary", "entry", "entries",
     show_dictionary, load<zrt4::env_dictionary_2010>, dictionary_elements},
    {"camera", "", "camera features", "feature", "features", show_camera, load_camera,
     camera_elements},
};
constexpr const document_kind& camera = kinds[4];

bool describes_a_camera(input_file& file) {
  const quiet_output remarks;
  zrt4::camera_features list;
  return read_into(list, file) == 0 && !list.empty();
}

// The reader of one dialect is that of the other.
bool reads(const document_kind& kind, std::string_view root) {
  if (kind.root.empty() || kind.root == root) return true;
  return std::any_of(std::begin(kinds), std::end(kinds), [&](const document_kind& each) {
    return each.root == root && each.is_channels() && kind.is_channels();
  });
}

std::string shown(const std::string& name) {
  return shortened(printable(name));
}

}  // namespace

const document_kind& kind_of(input_file& file, std::string_view name) {
  const root_element root = find_root_element(file.path());
  for (const document_kind& kind : kinds) {
    if (name.empty() || kind.name != name) continue;
    if (!root.name.empty() && !reads(kind, root.name)) {
      throw bad_document(file.name(), "its root element is '" + shown(root.name) + "', not '" +
                                          std::string(kind.root) + "'");
    }
    return kind;
  }
  if (root.name.empty()) {
    if (std::filesystem::is_empty(file.path())) throw bad_document(file.name(), "is empty");
    throw bad_document(file.name(), "not a readable XML document: " + root.first.text,
                       root.first.place);
  }
  for (const document_kind& kind : kinds) {
    if (kind.root == root.name) return kind;
  }
  if (describes_a_camera(file)) return camera;
  throw bad_document(file.name(), "unknown kind of document: its root element is '" +
                                      shown(root.name) + "'; known are " + known_kinds());
}

file_error wrong_kind(const input_file& file, const document_kind& kind,
                      const std::string& wanted) {
  return {file.name(),
          "of another kind (" + std::string(kind.description) + ") than is needed here: " + wanted};
}

std::string records_of(const document_kind& kind, std::size_t number) {
  return std::to_string(number) + " " +
         std::string(number == 1 ? kind.record_name : kind.records_name);
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
