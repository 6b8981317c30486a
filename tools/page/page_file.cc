#include "page_file.hh"

#include <array>
#include <ctime>
#include <future>
#include <map>

#include "columns.hh"
#include "input_file.hh"
#include "json.hh"
#include "packing.hh"
#include "page_sources.hh"

namespace {

// As in data.js. A card unpacks one piece, so a piece must not be large; and a small one is packed
// badly.
constexpr std::size_t records_of_piece = 512;

// Of each rule so many; a page that tells all of them is of no more use.
constexpr std::size_t findings_of_a_rule = 1000;

std::string_view name_of(severity weight) {
  return weight == severity::error ? "error" : "warning";
}

/// What is found out without the records.
struct source_scan {
  std::string text;
  std::vector<record_place> places;
};

std::string pack_source(const std::string& text, const std::vector<record_place>& places) {
  std::string packed_pieces;
  std::string piece;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const record_place& place = places[i];
    if (place.begin < place.end) piece.append(text, place.begin, place.end - place.begin);
    const bool is_last = i + 1 == places.size();
    if (is_last || (i + 1) % records_of_piece == 0) {
      packed_pieces.append(packed(piece)).append(is_last ? "" : "\n");
      piece.clear();
    } else {
      piece += '\0';
    }
  }
  return packed_pieces;
}

void append_member(std::string& json, std::string_view name, std::string_view text) {
  json.append(",\"").append(name).append("\":");
  append_text(json, text);
}

void append_member(std::string& json, std::string_view name, std::size_t number) {
  json.append(",\"").append(name).append("\":").append(std::to_string(number));
}

std::string iso_time(std::time_t seconds) {
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, sizeof "2026-11-22T00:00:00Z"> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text.data();
}

std::vector<const row*> all_of(const std::vector<row>& rows) {
  std::vector<const row*> all;
  all.reserve(rows.size());
  for (const row& each : rows) all.push_back(&each);
  return all;
}

/// All documents with records of the same fields.
struct record_table {
  std::string_view one;
  std::string_view several;
  std::vector<std::size_t> documents;
};

using record_tables = std::vector<record_table>;

// Both dialects of channel descriptions make one.
record_tables tables_of(const std::vector<page_document>& documents) {
  record_tables tables;
  for (std::size_t i = 0; i < documents.size(); ++i) {
    if (!documents[i].kind) continue;
    const kind_traits& traits = traits_of(*documents[i].kind);
    auto place = tables.begin();
    while (place != tables.end() && place->several != traits.records_name) ++place;
    if (place == tables.end()) {
      place = tables.insert(place, {traits.record_name, traits.records_name, {}});
    }
    place->documents.push_back(i);
  }
  return tables;
}

class page_data {
 public:
  page_data(const std::vector<page_document>& all, const page_changes* found, std::size_t jobs)
      : documents(all), changes(found), threads(jobs), tables(tables_of(all)) {}

  std::string json(const std::string& title, std::time_t made);

 private:
  void append_documents();
  void append_document(const page_document& document, std::size_t first);
  void append_records(const record_table& table);
  void append_change_column(const std::vector<row>& rows);
  void append_findings();
  void append_changes();

  const std::vector<page_document>& documents;
  const page_changes* changes;
  std::size_t threads;
  record_tables tables;
  std::string to;
};

std::string page_data::json(const std::string& title, std::time_t made) {
  to = "{\"title\":";
  append_text(to, title);
  append_member(to, "made", iso_time(made));
  append_member(to, "tool", "zrt4xml " ZRT4_VERSION);
  append_documents();
  to += ",\"tables\":[";
  for (const record_table& table : tables) {
    if (to.back() != '[') to += ',';
    append_records(table);
  }
  to += ']';
  append_findings();
  if (changes != nullptr) append_changes();
  to += '}';
  return std::move(to);
}

void page_data::append_documents() {
  std::map<std::string_view, std::size_t> firsts;
  to += ",\"documents\":[";
  for (const page_document& document : documents) {
    if (&document != &documents.front()) to += ',';
    std::size_t& first =
        firsts[document.kind ? traits_of(*document.kind).records_name : std::string_view()];
    append_document(document, first);
    first += document.loaded.rows.size();
  }
  to += ']';
}

void page_data::append_document(const page_document& document, std::size_t first) {
  to += "{\"file\":";
  append_text(to, document.file);
  if (!document.kind) {
    append_member(to, "unusable", document.unusable);
  } else {
    const kind_traits& traits = traits_of(*document.kind);
    append_member(to, "what", traits.description);
    append_member(to, "one", traits.record_name);
    append_member(to, "several", traits.records_name);
    append_member(to, "records", document.loaded.rows.size());
    append_member(to, "first", first);
    append_member(to, "errors", static_cast<std::size_t>(document.loaded.how.errors));
    append_member(to, "findings", document.findings.size());
  }
  to += '}';
}

void page_data::append_records(const record_table& table) {
  std::vector<row> rows;
  std::vector<std::int64_t> numbers;
  std::vector<std::int64_t> lines;
  for (const std::size_t number : table.documents) {
    const page_document& document = documents[number];
    rows.reserve(rows.size() + document.loaded.rows.size());
    for (row each : document.loaded.rows) rows.push_back(std::move(each));
    numbers.resize(rows.size(), static_cast<std::int64_t>(number));
    for (const record_place& place : document.places) {
      lines.push_back(static_cast<std::int64_t>(place.line));
    }
  }
  to += "{\"id\":";
  append_text(to, table.several);
  append_member(to, "one", table.one);
  append_member(to, "several", table.several);
  to += ",\"document\":";
  append_numbers(to, "document", numbers);
  to += ",\"line\":";
  append_numbers(to, "line", lines);
  if (changes != nullptr && table.several == traits_of(changes->kind).records_name) {
    append_change_column(rows);
  }
  to += ",\"table\":";
  append_table(to, all_of(rows), threads);
  to += '}';
}

// What became of each record that is there now.
void page_data::append_change_column(const std::vector<row>& rows) {
  std::vector<row> states;
  states.reserve(rows.size());
  for (const row& each : rows) {
    states.push_back({{{"change", changes->all.state_of(each), ""}}, {}});
  }
  to += ",\"change\":";
  append_table(to, all_of(states), threads);
}

void page_data::append_findings() {
  std::vector<row> found;
  for (const page_document& document : documents) {
    for (const finding& each : document.findings) {
      found.push_back({{{"document", std::string_view(document.file), ""},
                        {"line", static_cast<std::int64_t>(each.place.line), ""},
                        {"column", static_cast<std::int64_t>(each.place.column), ""},
                        {"severity", name_of(traits_of(each.what).weight), ""},
                        {"finding", traits_of(each.what).name, ""},
                        {"text", std::string_view(each.text), ""}},
                       {}});
    }
  }
  if (found.empty()) return;
  to += ",\"findings\":";
  append_table(to, all_of(found), threads);
}

void page_data::append_changes() {
  to += ",\"changes\":{\"before\":";
  append_text(to, changes->before);
  append_member(to, "after", changes->after);
  append_member(to, "of", traits_of(changes->kind).records_name);
  append_member(to, "one", traits_of(changes->kind).record_name);
  append_member(to, "several", traits_of(changes->kind).records_name);
  append_member(to, "added", changes->all.number_of(difference::kind::added));
  append_member(to, "removed", changes->all.number_of(difference::kind::removed));
  append_member(to, "changed", changes->all.number_of(difference::kind::changed));
  to += ",\"table\":";
  append_table(to, all_of(changes->all.rows()), threads);
  to += '}';
}

std::string escaped(const std::string& local) {
  std::string html;
  for (const char c : to_utf8(local)) {
    if (c == '&') {
      html += "&amp;";
    } else if (c == '<') {
      html += "&lt;";
    } else if (c == '>') {
      html += "&gt;";
    } else if (static_cast<unsigned char>(c) < 0x20) {
      html += ' ';
    } else {
      html += c;
    }
  }
  return html;
}

std::string policy() {
  std::string text = "default-src 'none'; script-src ";
  text.append(page_parts.script_hash).append("; style-src ").append(page_parts.style_hash);
  return text + "; base-uri 'none'; form-action 'none'";
}

}  // namespace

page_document read_for_page(input_file& file) {
  page_document document;
  document.file = file.name();
  document.kind = kind_of(file);
  const document_kind kind = *document.kind;
  // Where there is no further thread, it happens when it is asked for.
  auto check = std::async([&] { return findings_of(file, kind, findings_of_a_rule); });
  auto scan = std::async([&] {
    source_scan result{utf8_text(file), {}};
    result.places = record_places(file, kind, result.text);
    return result;
  });
  document.loaded = traits_of(kind).load(file);
  source_scan source = scan.get();
  document.places = places_of(document.loaded.rows, std::move(source.places));
  document.source = pack_source(source.text, document.places);
  document.findings = check.get();
  return document;
}

std::string make_page(const std::string& title, const std::vector<page_document>& documents,
                      const page_changes* changes, std::time_t made, std::size_t jobs) {
  const auto content_of = [&](std::string_view name, std::string& page) {
    if (name == "title") page += escaped(title);
    if (name == "generator") page += "zrt4xml " ZRT4_VERSION;
    if (name == "policy") page += policy();
    if (name == "style") page += page_parts.style;
    if (name == "data") page += packed(page_data(documents, changes, jobs).json(title, made));
    if (name == "script") {
      for (const std::string_view part : page_parts.script) page += part;
    }
    if (name != "sources") return;
    for (std::size_t i = 0; i < documents.size(); ++i) {
      page += "<script type=\"application/octet-stream\" id=\"source-" + std::to_string(i) + "\">" +
              documents[i].source + "</script>\n";
    }
  };
  std::string page;
  std::string_view rest = page_parts.html;
  for (;;) {
    const std::size_t begin = rest.find('@');
    page += rest.substr(0, begin);
    if (begin == rest.npos) return page;
    const std::size_t end = rest.find('@', begin + 1);
    content_of(rest.substr(begin + 1, end - begin - 1), page);
    rest.remove_prefix(end + 1);
  }
}
