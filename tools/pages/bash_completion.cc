#include <cstring>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "csv_writing.hh"
#include "document_kind.hh"
#include "event_util.hh"
#include "pages.hh"
#include "record_types.hh"
#include "rules.hh"
#include "selection.hh"

namespace {

std::string words(const std::vector<std::string>& list) {
  std::string line = "_zrt4xml_words";
  for (const std::string& word : list) line += " '" + word + "'";
  return line;
}

std::string event_types() {
  std::vector<std::string> names;
  for (int type = 0; type < static_cast<int>(ZRT4_EV_EVMAX); ++type) {
    std::string name = event_name_itoa(type);
    if (name != std::to_string(type)) names.push_back(std::move(name));
  }
  return words(names);
}

std::string fields(const std::set<std::string>& names) {
  return "_zrt4xml_fields" +
         words({names.begin(), names.end()}).substr(std::strlen("_zrt4xml_words"));
}

std::vector<const record_group*> writable_records() {
  return {&records_in(zrt4::channel_list()), &records_in(zrt4::env_dictionary_2010())};
}
std::vector<const record_group*> all_records() {
  std::vector<const record_group*> all = writable_records();
  all.push_back(&records_in(zrt4::event_list()));
  all.push_back(&records_in(zrt4::camera_features()));
  return all;
}

std::string all_fields() {
  std::set<std::string> names;
  for (const record_group* each : all_records()) {
    for (std::string& name : field_names(*each->type)) names.insert(std::move(name));
  }
  return fields(names);
}

// Those of the records themselves, which can be set.
std::string settable_fields() {
  std::set<std::string> names;
  for (const record_group* each : writable_records()) {
    const record_type& type = *each->type;
    for (std::size_t i = 0; i < type.field_count; ++i) names.emplace(type.fields[i].name);
  }
  return fields(names);
}

// For each field whose numbers have names, these.
std::string names_of_fields() {
  std::map<std::string_view, std::set<std::string>> names;
  for (const record_group* each : all_records()) {
    const record_type& type = *each->type;
    for (std::size_t i = 0; i < type.field_count; ++i) {
      for (const std::string_view name : names_in(type.fields[i])) {
        names[type.fields[i].name].emplace(name);
      }
    }
  }
  std::string rows;
  for (const auto& [field, all] : names) {
    rows.append("    '").append(field).append("') ");
    rows += words({all.begin(), all.end()}) + " ;;\n";
  }
  return rows;
}

// What may have a line of its own.
std::string kinds_of_records() {
  std::set<std::string> names;
  for (const record_group* each : all_records()) {
    for (std::string& name : group_names(*each->type)) names.insert(std::move(name));
  }
  for (const std::string& kind : kind_names()) {
    names.emplace(traits_of(*kind_named(kind)).records_name);
  }
  return words({names.begin(), names.end()});
}

std::string rules() {
  std::vector<std::string> values = {"error", "none", "all"};
  for (const rule_traits& each : all_rules()) values.emplace_back(each.name);
  return words(values);
}

// What completes the value of an option; nothing when it is free text.
std::string completion_of(const option_page& option) {
  if (!option.values.empty()) return words(option.values);
  if (option.value == "FILE") return "_zrt4xml_files";
  if (option.value == "EVENT") return event_types();
  if (option.value == "RULE") return rules();
  if (option.value == "CHANNEL") return "_zrt4xml_channels";
  if (option.value == "CONDITION" || option.value == "FIELDS") return all_fields();
  if (option.value == "RECORDS") return kinds_of_records();
  return ":";
}

std::string pattern(const std::string& command, const option_page& option) {
  std::string alternatives;
  for (const std::string& name : option.names) {
    if (!alternatives.empty()) alternatives += " | ";
    alternatives.append("'").append(command).append(" ").append(name).append("'");
  }
  return alternatives;
}

std::vector<std::string> option_names(const command_page& command) {
  std::vector<std::string> names;
  for (const option_page& option : command.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return names;
}

std::string function(const std::string& name, const std::string& body) {
  return "\n" + name + "() {\n" + body + "}\n";
}

std::string choice(const std::string& rows) {
  return "  case $1 in\n" + rows + "  esac\n";
}

}  // namespace

std::string completion_tables(const command_page& tool) {
  std::vector<std::string> commands;
  std::string values;
  std::string options = "    '') " + words(option_names(tool)) + " ;;\n";
  for (const command_page& command : tool.subcommands) {
    const std::string& name = command.name;
    commands.push_back(name);
    options += "    '" + name + "') " + words(option_names(command)) + " ;;\n";
    for (const option_page& option : command.options) {
      if (option.names.empty() || option.value.empty()) continue;
      values += "    " + pattern(name, option) + ") " + completion_of(option) + " ;;\n";
    }
  }
  return function("_zrt4xml_commands", "  " + words(commands) + "\n") +
         function("_zrt4xml_settable", "  " + settable_fields() + "\n") +
         function("_zrt4xml_names", choice(names_of_fields())) +
         function("_zrt4xml_options", choice(options)) +
         function("_zrt4xml_value", choice(values + "    *) return 1 ;;\n") + "  return 0\n");
}
