#include <algorithm>
#include <cctype>
#include <string_view>

#include "pages.hh"

namespace {

struct heading {
  std::string_view start;  ///< of a paragraph in the tool's footer
  std::string_view title;
};
constexpr heading headings[] = {
    {"Example:", "EXAMPLES"},
    {"Exit code:", "EXIT STATUS"},
    {"Environment:", "ENVIRONMENT"},
};

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '\\') {
      result += "\\e";
    } else if (character == '-') {
      result += "\\-";
    } else {
      result += character;
    }
  }
  const bool would_be_a_request = !result.empty() && (result[0] == '.' || result[0] == '\'');
  return would_be_a_request ? "\\&" + result : result;
}

std::string bold(std::string_view text) {
  return "\\fB" + escaped(text) + "\\fR";
}
std::string italic(std::string_view text) {
  return "\\fI" + escaped(text) + "\\fR";
}

bool is_example(std::string_view line) {
  return line.substr(0, 2) == "  ";
}

const heading* heading_of(std::string_view line) {
  const auto* const known = std::find_if(
      std::begin(headings), std::end(headings),
      [&](const heading& each) { return line.substr(0, each.start.size()) == each.start; });
  return known != std::end(headings) ? known : nullptr;
}

// Plain lines fill paragraphs, indented lines are shown as they are.
void add_text(std::string& page, std::string_view text) {
  bool in_example = false;
  bool in_paragraph = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const bool turns = is_example(line) != in_example;
    if (in_paragraph && (turns || heading_of(line) != nullptr)) page += ".PP\n";
    if (turns) {
      page += in_example ? ".EE\n" : ".EX\n";
      in_example = !in_example;
    }
    in_paragraph = !in_example;
    page += escaped(line) + "\n";
  }
  if (in_example) page += ".EE\n";
}

std::vector<std::string> paragraphs_of(const std::string& text) {
  std::vector<std::string> paragraphs;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find("\n\n", start), text.size());
    paragraphs.push_back(text.substr(start, end - start));
    start = end + 2;
  }
  return paragraphs;
}

// "Example:" and the like become sections of their own; they begin with a capital letter.
void add_section(std::string& page, std::string paragraph) {
  const heading* known = heading_of(paragraph);
  if (known == nullptr) {
    page += ".SH NOTES\n";
  } else {
    page.append(".SH ").append("\"").append(known->title).append("\"\n");
    const std::size_t begin = paragraph.find_first_not_of(" \n", known->start.size());
    const bool an_example = paragraph[known->start.size()] == '\n';
    paragraph.erase(0, an_example ? known->start.size() + 1 : begin);
  }
  add_text(page, paragraph);
}

std::string joined(const std::vector<std::string>& words, const std::string& between) {
  std::string result;
  for (const std::string& word : words) result += (result.empty() ? "" : between) + word;
  return result;
}

std::string synopsis(const command_page& tool, const command_page& command) {
  std::string line = bold(tool.name + " " + command.name) + " [" + italic("OPTIONS") + "]";
  for (const option_page& option : command.options) {
    if (option.names.empty()) line += " " + italic(option.value + (option.repeated ? "..." : ""));
  }
  return line;
}

void add_option(std::string& page, const option_page& option) {
  page += ".TP\n";
  if (option.names.empty()) {
    page += italic(option.value + (option.repeated ? "..." : ""));
  } else {
    std::vector<std::string> names;
    for (const std::string& name : option.names) names.push_back(bold(name));
    page += joined(names, ", ");
    if (!option.value.empty()) page += " " + italic(option.value);
  }
  page += "\n" + escaped(option.text);
  if (!option.values.empty()) {
    page += " (" + option.value + ": " + escaped(joined(option.values, ", ")) + ")";
  }
  if (option.required && !option.names.empty()) page += " (required)";
  page += "\n";
}

void add_command(std::string& page, const command_page& tool, const command_page& command) {
  page += ".SS \"" + escaped(tool.name + " " + command.name) + "\"\n";
  page += synopsis(tool, command) + "\n.PP\n" + escaped(command.text) + ".\n";
  for (const option_page& option : command.options) add_option(page, option);
  if (command.footer.empty()) return;
  page += ".PP\n";
  add_text(page, command.footer);
}

}  // namespace

std::string manual_page(const command_page& tool, const std::string& version,
                        const std::string& date) {
  const std::string& description = tool.text;
  std::string title = description.substr(0, description.find_last_not_of('.') + 1);
  title[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(title[0])));

  std::string page = ".\\\" Written from the definition of the command line; do not edit.\n";
  page +=
      ".TH ZRT4XML 1 \"" + date + "\" \"" + tool.name + " " + version + "\" \"User Commands\"\n";
  page += ".SH NAME\n" + escaped(tool.name) + " \\- " + escaped(title) + "\n.SH SYNOPSIS\n";
  for (const command_page& command : tool.subcommands) page += synopsis(tool, command) + "\n.br\n";
  page += bold(tool.name) + " " + bold("--help") + " | " + bold("--version") + "\n";
  page += ".SH DESCRIPTION\n" + escaped(description) + "\n.SH OPTIONS\n";
  for (const option_page& option : tool.options) add_option(page, option);
  page += ".SH COMMANDS\n";
  for (const command_page& command : tool.subcommands) add_command(page, tool, command);
  for (const std::string& paragraph : paragraphs_of(tool.footer)) add_section(page, paragraph);
  return page;
}
