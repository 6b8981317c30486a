// zrt4xml_pages MANUAL COMPLETION PROGRAM: writes the manual page, and the completion, which is its
// program with the tables behind. Part of the build, not installed.

#include "pages.hh"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "command_line.hh"

namespace {

// "KIND:{events,channels}" is a KIND with only these values.
std::vector<std::string> values_in(const std::string& type_name) {
  const std::size_t open = type_name.find('{');
  const std::size_t close = type_name.find('}');
  if (open == std::string::npos || close == std::string::npos) return {};
  return CLI::detail::split(type_name.substr(open + 1, close - open - 1), ',');
}

bool read_file(const char* file, std::string& content) {
  std::ifstream in(file);
  content.assign(std::istreambuf_iterator<char>(in), {});
  if (!in) std::perror(file);
  return bool(in);
}

bool write_page(const char* file, const std::string& page) {
  std::ofstream out(file);
  out << page;
  out.close();
  if (!out) std::perror(file);
  return bool(out);
}

option_page page_of(const CLI::Option& option) {
  option_page page;
  for (const std::string& name : option.get_snames()) page.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) page.names.push_back("--" + name);
  if (page.names.empty()) {
    page.value = option.get_name(true);
  } else if (option.get_items_expected_max() > 0) {
    const std::string type_name = option.get_type_name();
    page.value = type_name.substr(0, type_name.find(':'));
    page.values = values_in(type_name);
  }
  page.text = option.get_description();
  page.required = option.get_required();
  page.repeated = option.get_items_expected_max() > 1;
  return page;
}

// What has no group is not for people.
command_page page_of(const CLI::App& command) {
  command_page page;
  page.name = command.get_name();
  page.text = command.get_description();
  page.footer = command.get_footer();
  std::vector<option_page> options;
  for (const CLI::Option* option : command.get_options({})) {
    if (option->get_group().empty()) continue;
    (option->get_positional() ? page.options : options).push_back(page_of(*option));
  }
  page.options.insert(page.options.end(), options.begin(), options.end());
  for (const CLI::App* subcommand : command.get_subcommands({})) {
    if (!subcommand->get_group().empty()) page.subcommands.push_back(page_of(*subcommand));
  }
  return page;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: zrt4xml_pages MANUAL COMPLETION PROGRAM\n", stderr);
    return 2;
  }
  const command_page tool = page_of(command_line().definition());
  std::string program;
  const bool written = write_page(argv[1], manual_page(tool, ZRT4_VERSION, ZRT4_VERSION_DATE)) &&
                       read_file(argv[3], program) &&
                       write_page(argv[2], program + completion_tables(tool));
  return written ? 0 : 2;
}
