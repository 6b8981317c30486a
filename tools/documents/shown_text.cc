#include "shown_text.hh"

#include <algorithm>
#include <cstdint>

#include "terminal.hh"

namespace {

constexpr std::size_t told_lines = 10;

}  // namespace

std::string quoted(std::string_view text) {
  return "'" + shortened(printable(text)) + "'";
}

std::string times_and_lines(const std::vector<file_place>& places, std::size_t times) {
  std::vector<std::uint64_t> lines;
  for (const file_place& each : places) {
    if (lines.empty() || lines.back() != each.line) lines.push_back(each.line);
  }
  const bool all_told = times <= places.size() && lines.size() <= told_lines;
  const std::size_t told = std::min(lines.size(), told_lines);
  std::string text = std::to_string(times) + (times == 1 ? " time" : " times");
  text += told == 1 ? ": line " : ": lines ";
  for (std::size_t i = 0; i < told; ++i) {
    if (i != 0) text += all_told && i + 1 == told ? " and " : ", ";
    text += std::to_string(lines[i]);
  }
  return all_told ? text : text + ", ...";
}

std::string in_line(file_place place) {
  return place.line == 0 ? std::string() : " (line " + std::to_string(place.line) + ")";
}

std::string where_begun(std::string_view message, std::string_view element, file_place begin,
                        file_place damage) {
  const std::string name = "'" + std::string(element) + "'";
  const bool is_named = message.find(name) != message.npos;
  return is_named && begin.line != damage.line ? in_line(begin) : std::string();
}
