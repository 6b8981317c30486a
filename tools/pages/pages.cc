// zrt4xml_pages MANUAL COMPLETION PROGRAM: writes the manual page, and the completion, which is its
// program with the tables behind. Part of the build, not installed.

#include "pages.hh"

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
  if (argc != 4) {
    std::fputs("usage: zrt4xml_pages MANUAL COMPLETION PROGRAM\n", stderr);
    return 2;
  }
  const command_line line;
  std::string program;
  const bool written =
      write_page(argv[1], manual_page(line.definition(), ZRT4_VERSION, ZRT4_VERSION_DATE)) &&
      read_file(argv[3], program) &&
      write_page(argv[2], program + completion_tables(line.definition()));
  return written ? 0 : 2;
}
