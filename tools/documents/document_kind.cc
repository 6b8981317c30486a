#include "document_kind.hh"

#include <algorithm>
#include <filesystem>

#include "bad_document.hh"
#include "byte_findings.hh"
#include "event_listing.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "json_reading.hh"
#include "json_text.hh"
#include "listed_channels.hh"
#include "mapped_file.hh"
#include "nearest.hh"
#include "received_messages.hh"
#include "scan.hh"
#include "shown_text.hh"

namespace {

template <class List, class Print>
listed_document listed(input_file& file, Print print) {
  const auto list = std::make_shared<List>();
  reading how = read_into(*list, file);
  return {std::move(how), [list, print] { print(*list); }, {}};
}

template <class List>
loaded_document load(input_file& file) {
  const auto list = std::make_shared<List>();
  reading how = read_into(*list, file);
  return {std::move(how), rows_of(*list), list};
}

listed_document list_events(input_file& file) {
  return listed<zrt4::event_list>(file, [](auto& list) {
    zrt4::detail::list_events(*list.get(), zrt4::detail::shown_times::as_read);
  });
}

template <document_kind kind>
listed_document list_dialect(input_file& file) {
  return list_channels(file, dialect_of(kind));
}

template <document_kind kind>
loaded_document load_dialect(input_file& file) {
  return load_channels(file, dialect_of(kind));
}

// The wider record, so that no name is cut.
listed_document list_dictionary(input_file& file) {
  return listed<zrt4::env_dictionary_2010>(file, [](auto& list) {
    dump_env_index_dict_2010(list.get(), nullptr, ENV_INDX_DUMP_TO_SCREEN, -1, nullptr);
  });
}

listed_document list_camera(input_file& file) {
  const auto list = std::make_shared<zrt4::camera_features>();
  reading how = read_into(*list, file);
  const auto nameless = std::count_if(list->begin(), list->end(),
                                      [](const auto& feature) { return feature.name.empty(); });
  std::string not_listed;
  if (nameless != 0) {
    not_listed = records_of(document_kind::camera, static_cast<std::size_t>(nameless)) +
                 " without a name not listed; --json shows them";
  }
  return {std::move(how), [list] { zrt4_dump_gige_descr(list->get()); }, std::move(not_listed)};
}

constexpr auto events = document_kind::events;
constexpr auto channels = document_kind::channels;
constexpr auto variables = document_kind::variables;
constexpr auto dictionary = document_kind::dictionary;
constexpr auto camera = document_kind::camera;

constexpr kind_traits kinds[] = {
    {events, "events", "BMR", "event list", "event", "events", list_events, load<zrt4::event_list>,
     known_in_events},
    {channels, "channels", "CHANDESCRIPTIONS", "channel descriptions, element dialect", "channel",
     "channels", list_dialect<channels>, load_dialect<channels>, known_in_channels},
    {variables, "variables", "DAQvariables", "channel descriptions, variable dialect", "channel",
     "channels", list_dialect<variables>, load_dialect<variables>, known_in_variables},
    {dictionary, "dictionary", "ENVINDEXDICT", "environment index dictionary", "entry", "entries",
     list_dictionary, load<zrt4::env_dictionary_2010>, known_in_dictionary},
    {camera, "camera", "", "camera features", "feature", "features", list_camera,
     load<zrt4::camera_features>, known_in_camera},
};

constexpr bool stand_in_order() {
  std::size_t place = 0;
  for (const kind_traits& each : kinds) {
    if (static_cast<std::size_t>(each.kind) != place++) return false;
  }
  return true;
}
static_assert(stand_in_order());

bool describes_a_camera(input_file& file) {
  const received_messages unheard;
  zrt4::camera_features list;
  return list.read_file(file.path()) == 0 && !list.empty();
}

// Where the bytes say it better than the scanner, which has not got to them.
xml_error why_unreadable(input_file& file, const xml_error& by_scanner) {
  finding_list found;
  find_in_bytes(mapped_file(file.path()).content(), found);
  const std::vector<finding> all = found.take();
  return all.empty() ? by_scanner : xml_error{all.front().text, all.front().place};
}

/// The kind that has this root element, if one has.
const kind_traits* kind_with_root(std::string_view root) {
  const auto found = std::find_if(std::begin(kinds), std::end(kinds), [&](const kind_traits& each) {
    return !each.root.empty() && each.root == root;
  });
  return found != std::end(kinds) ? found : nullptr;
}

// The reader of one dialect is that of the other.
bool is_or_reads(document_kind kind, document_kind expected) {
  return kind == expected || (is_channels(kind) && is_channels(expected));
}

[[noreturn]] void refuse_root(const input_file& file, const std::string& root,
                              document_kind expected) {
  const kind_traits& wanted = traits_of(expected);
  const kind_traits* own = kind_with_root(root);
  std::string reason = "its root element is " + ::quoted(std::string_view(root));
  if (own != nullptr) reason += " (" + std::string(own->description) + ")";
  throw bad_document(file.name(),
                     reason + ", not " +
                         (wanted.root.empty() ? "that of " + std::string(wanted.description)
                                              : "'" + std::string(wanted.root) + "'"));
}

/// The roots of the kinds that have such records.
std::string parent_of(const std::string& element) {
  std::string roots;
  for (const kind_traits& each : kinds) {
    for (const known_element& known : each.elements) {
      if (known.begins != part::record || known.name != element) continue;
      if (!roots.empty()) roots += " or ";
      roots += each.root;
    }
  }
  return roots;
}

[[noreturn]] void refuse_unknown_root(input_file& file, const root_element& root) {
  const std::string unknown =
      "unknown kind of document: its root element is " + ::quoted(std::string_view(root.name));
  std::vector<std::string_view> roots;
  for (const kind_traits& each : kinds) {
    if (!each.root.empty()) roots.push_back(each.root);
  }
  const std::string meant = did_you_mean(root.name.substr(root.name.find(':') + 1), roots);
  if (!meant.empty()) throw bad_document(file.name(), unknown + meant, root.place);
  const std::string parent = parent_of(root.name);
  if (!parent.empty()) {
    throw bad_document(file.name(), unknown + ", which stands in " + parent, root.place);
  }
  const xml_error damage = find_damage(file.path());
  if (!damage.text.empty()) {
    throw bad_document(file.name(), unknown + ", and it is damaged here: " + damage.text,
                       damage.place);
  }
  throw bad_document(file.name(), unknown + "; known are " + known_kinds(), root.place);
}

document_kind kind_in_json(input_file& file, std::optional<document_kind> expected) {
  const document_kind kind = kind_of_json(file);
  if (!expected || is_or_reads(kind, *expected)) return kind;
  throw bad_document(file.name(), "its kind is '" + std::string(traits_of(kind).name) + "', not '" +
                                      std::string(traits_of(*expected).name) + "'");
}

}  // namespace

int dialect_of(document_kind kind) {
  return kind == document_kind::variables ? MORV_FORMAT : ZRT4_FORMAT;
}

const kind_traits& traits_of(document_kind kind) {
  return kinds[static_cast<std::size_t>(kind)];
}

document_kind kind_of(input_file& file, std::optional<document_kind> expected) {
  if (is_json(file)) return kind_in_json(file, expected);
  const root_element root = find_root_element(file.path());
  const kind_traits* own = kind_with_root(root.name);
  if (expected && root.name.empty()) return *expected;
  if (expected) {
    const bool is_fit =
        own != nullptr ? is_or_reads(own->kind, *expected) : traits_of(*expected).root.empty();
    if (!is_fit) refuse_root(file, root.name, *expected);
    return own != nullptr ? own->kind : *expected;
  }
  if (root.name.empty()) {
    if (std::filesystem::is_empty(file.path())) throw bad_document(file.name(), "is empty");
    const xml_error reason = why_unreadable(file, root.first);
    throw bad_document(file.name(), "not a readable XML document: " + reason.text, reason.place);
  }
  if (own != nullptr) return own->kind;
  if (describes_a_camera(file)) return camera;
  refuse_unknown_root(file, root);
}

void refuse_json(input_file& file) {
  if (!is_json(file)) return;
  throw file_error(file.name(),
                   "is JSON, where XML is needed: 'zrt4xml convert --to xml' makes it");
}

std::optional<document_kind> kind_named(std::string_view name) {
  for (const kind_traits& each : kinds) {
    if (each.name == name) return each.kind;
  }
  return {};
}

file_error wrong_kind(const input_file& file, document_kind kind, const std::string& wanted) {
  return {file.name(), "of another kind (" + std::string(traits_of(kind).description) +
                           ") than is needed here: " + wanted};
}

std::string records_of(document_kind kind, std::size_t number) {
  const kind_traits& traits = traits_of(kind);
  return std::to_string(number) + " " +
         std::string(number == 1 ? traits.record_name : traits.records_name);
}

std::vector<std::string> kind_names() {
  std::vector<std::string> names;
  for (const kind_traits& each : kinds) names.emplace_back(each.name);
  return names;
}

std::string known_kinds() {
  std::string list;
  for (const kind_traits& each : kinds) {
    if (!list.empty()) list += ", ";
    if (each.root.empty()) {
      list.append(each.description).append(", under any other root");
    } else {
      list.append(each.root).append(" (").append(each.description).append(")");
    }
  }
  return list;
}
