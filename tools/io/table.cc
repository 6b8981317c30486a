#include "table.hh"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>

namespace {

constexpr std::string_view gap = "  ";
constexpr std::string_view ellipsis = "\xe2\x80\xa6";
constexpr std::string_view plain_ellipsis = "~";  // where the code page has no other

struct character {
  std::size_t bytes;
  std::size_t columns;
};

// The first one. What is none takes a column, as on most terminals.
character first_of(std::string_view text) {
  std::mbstate_t state{};
  wchar_t code = 0;
  const std::size_t size = std::mbrtowc(&code, text.data(), text.size(), &state);
  if (size == 0 || size > text.size()) return {1, 1};
  const int columns = wcwidth(code);
  return {size, columns < 0 ? 1 : static_cast<std::size_t>(columns)};
}

std::string_view ellipsis_here() {
  const bool is_one = first_of(ellipsis).bytes == ellipsis.size();
  return is_one ? ellipsis : plain_ellipsis;
}

std::string padded(const std::string& text, std::size_t width, bool to_the_right) {
  const std::string room(width - std::min(width, display_width(text)), ' ');
  return to_the_right ? room + text : text + room;
}

std::size_t sum_within(const std::vector<std::size_t>& widths, std::size_t most) {
  std::size_t sum = 0;
  for (const std::size_t each : widths) sum += std::min(each, most) + gap.size();
  return sum - gap.size();
}

void end_line(std::string& line) {
  line.resize(line.find_last_not_of(' ') + 1);
  line += '\n';
}

}  // namespace

std::size_t display_width(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const character here = first_of(text);
    width += here.columns;
    text.remove_prefix(here.bytes);
  }
  return width;
}

std::string cut_to_width(std::string_view text, std::size_t width) {
  if (display_width(text) <= width) return std::string(text);
  if (width == 0) return {};
  std::size_t kept = 0;
  std::size_t columns = 0;
  for (std::string_view rest = text;;) {
    const character here = first_of(rest);
    if (columns + here.columns > width - 1) break;
    columns += here.columns;
    kept += here.bytes;
    rest.remove_prefix(here.bytes);
  }
  return std::string(text.substr(0, kept)).append(ellipsis_here());
}

std::size_t terminal_width() {
  constexpr std::size_t usual = 80;
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0) return size.ws_col;
  const char* const columns = std::getenv("COLUMNS");
  const unsigned long given = columns != nullptr ? std::strtoul(columns, nullptr, 10) : 0;
  return given != 0 ? given : usual;
}

std::string table_text(const std::vector<table_column>& columns,
                       const std::vector<std::vector<std::string>>& rows, std::size_t width,
                       std::size_t narrowest, std::size_t& shown) {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::size_t widest = display_width(columns[i].title);
    for (const auto& row : rows) widest = std::max(widest, display_width(row[i]));
    widths.push_back(widest);
  }
  while (widths.size() > 1 && sum_within(widths, narrowest) > width) widths.pop_back();
  shown = widths.size();
  std::size_t most = *std::max_element(widths.begin(), widths.end());
  while (most > 1 && sum_within(widths, most) > width) --most;

  const auto line_of = [&](const auto& text_in) {
    std::string line;
    for (std::size_t i = 0; i < shown; ++i) {
      if (i != 0) line += gap;
      const std::size_t room = std::min(widths[i], most);
      line += padded(cut_to_width(text_in(i), room), room, columns[i].is_number);
    }
    end_line(line);
    return line;
  };
  std::string result = line_of([&](std::size_t i) { return columns[i].title; });
  for (const auto& row : rows) result += line_of([&](std::size_t i) { return row[i]; });
  return result;
}

std::string tabbed_text(const std::vector<table_column>& columns,
                        const std::vector<std::vector<std::string>>& rows) {
  std::string result;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    result.append(i == 0 ? "" : "\t").append(columns[i].title);
  }
  result += '\n';
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) result.append(i == 0 ? "" : "\t").append(row[i]);
    result += '\n';
  }
  return result;
}
