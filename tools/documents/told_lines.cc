#include "told_lines.hh"

#include <algorithm>
#include <tuple>

#include "input_file.hh"
#include "message.hh"
#include "sources.hh"
#include "unread.hh"

namespace {

constexpr std::size_t most_alike = 5;

}  // namespace

bool tallies::add(std::string_view kind) {
  auto at = numbers.find(kind);
  if (at == numbers.end()) at = numbers.emplace(kind, 0).first;
  return ++at->second <= most_alike;
}

std::vector<std::string> tallies::others(std::string_view what_they_do) const {
  std::vector<std::string> lines;
  for (const auto& [kind, number] : numbers) {
    if (number <= most_alike) continue;
    lines.push_back(std::to_string(number - most_alike) + " more of the same kind " +
                    std::string(what_they_do) + ": " + kind);
  }
  return lines;
}

void told_lines::find_places(const sources& from) {
  for (std::size_t i = 0; i < from.documents.size(); ++i) {
    std::vector<line*> here;
    std::vector<std::string> properties;
    for (line& each : lines) {
      if (each.origin ? each.document != i : each.place.line != 0) continue;
      here.push_back(&each);
      properties.push_back(each.property);
    }
    if (here.empty()) continue;
    const sources::document& document = from.documents[i];
    const record_places places(*document.file, document.kind, properties);
    for (line* const each : here) {
      const std::vector<file_place>& known = places.of(each->property);
      if (known.empty()) continue;
      const std::size_t before = each->origin ? each->origin->before : 0;
      each->document = i;
      each->place = known[std::min(before, known.size() - 1)];
    }
  }
}

void told_lines::report(const sources& from) {
  find_places(from);
  std::stable_sort(lines.begin(), lines.end(), [](const line& a, const line& b) {
    return std::tie(a.document, a.place) < std::tie(b.document, b.place);
  });
  for (const line& each : lines) {
    ::report(from.documents[each.document].file->name() + each.place.shown(), each.text);
  }
  for (const auto& [document, counts] : alike) {
    const std::string& name = from.documents[document].file->name();
    for (const std::string& each : counts.others(what)) ::report(name, each);
  }
}
