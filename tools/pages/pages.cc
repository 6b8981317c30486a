// zrt4xml_pages MANUAL TABLES: writes the manual page and the tables of the completion. Part of the
// build, not installed.

#include "pages.hh"

#include <cstdio>
#include <fstream>

#include "command_line.hh"

namespace {

// "KIND:{events,channels}" is a KIND with only these values.
std::vector<std::string> values_in(const std::string& type_name) {
  const std::size_t open = type_name.find('{');
  const std::size_t close = type_name.find('}');
  if (open == std::string::npos || close == std::string::npos) return {};
  return CLI::detail::split(type_name.substr(open + 1, close - open - 1), ',');
}

bool write_page(const char* file, const std::string& page) {
  std::ofstream out(file);
  out << page;
  out.close();
  if (!out) std::perror(file);
  return bool(out);
}

}  // namespace

option_page::option_page(const CLI::Option& option)
    : text(option.get_description()),
      required(option.get_required()),
      repeated(option.get_items_expected_max() > 1) {
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  if (names.empty()) {
    value = option.get_name(true);
  } else if (option.get_items_expected_max() > 0) {
    const std::string type_name = option.get_type_name();
    value = type_name.substr(0, type_name.find(':'));
    values = values_in(type_name);
  }
}

std::vector<option_page> pages_of(const CLI::App& command) {
  std::vector<option_page> positionals;
  std::vector<option_page> options;
  for (const CLI::Option* option : command.get_options({})) {
    if (option->get_group().empty()) continue;  // not for people
    (option->get_positional() ? positionals : options).emplace_back(*option);
  }
  positionals.insert(positionals.end(), options.begin(), options.end());
  return positionals;
}

std::vector<const CLI::App*> subcommands_of(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: zrt4xml_pages MANUAL TABLES\n", stderr);
    return 2;
  }
  const command_line line;
  const bool written =
      write_page(argv[1], manual_page(line.app, ZRT4_VERSION, ZRT4_VERSION_DATE)) &&
      write_page(argv[2], completion_tables(line.app));
  return written ? 0 : 2;
}
