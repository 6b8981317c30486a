#include "check_output.hh"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "each_file.hh"
#include "json_answer.hh"
#include "terminal.hh"

namespace {

std::string counted(std::size_t number, const std::string& one, const std::string& several) {
  return std::to_string(number) + " " + (number == 1 ? one : several);
}

std::string errors_of(std::size_t number) {
  return counted(number, "error", "errors");
}

std::string shown(const finding_count& count) {
  std::string text;
  if (count.errors != 0) text = errors_of(count.errors);
  if (count.errors != 0 && count.warnings != 0) text += " and ";
  if (count.warnings != 0) text += counted(count.warnings, "warning", "warnings");
  return text;
}

std::string_view name_of(severity weight) {
  return weight == severity::error ? "error" : "warning";
}

class text_output : public check_output {
 public:
  explicit text_output(const check_wishes& of) : wishes(of) {}

  void tell(const checked_document& document, const finding_count& count) override {
    if (!wishes.only_findings) {
      const colour hue = count.errors != 0     ? colour::red
                         : count.warnings != 0 ? colour::yellow
                                               : colour::green;
      std::printf("%s: %s\n", printable(document.file).c_str(),
                  coloured(hue, what_it_is(document)).c_str());
    }
    for (const finding& each : document.found) {
      const severity weight = *wishes.rules.weight_of(each.what);
      const colour hue = weight == severity::error ? colour::red : colour::yellow;
      std::printf("%s%s: %s %s [%s]\n", printable(document.file).c_str(),
                  each.place.shown().c_str(),
                  coloured(hue, std::string(name_of(weight)) + ":").c_str(), each.text.c_str(),
                  traits_of(each.what).name.data());
    }
  }

  void tell_unusable(const unusable_file& /*file*/) override {}

  void end(const check_summary& summary) override {
    if (summary.documents + summary.unusable < 2) return;
    const std::size_t found = summary.count.all();
    std::string line = "checked " + counted(summary.documents, "document", "documents") + ": " +
                       (found == 0 ? "nothing found"
                                   : shown(summary.count) + " in " +
                                         std::to_string(summary.with_findings) + " of them");
    if (summary.unusable != 0) {
      line += "; " + counted(summary.unusable, "file", "files") + " could not be used";
    }
    const colour hue = summary.count.errors + summary.unusable != 0 ? colour::red
                       : found != 0                                 ? colour::yellow
                                                                    : colour::green;
    std::printf("%s\n", coloured(hue, line).c_str());
  }

 private:
  static std::string what_it_is(const checked_document& document) {
    if (!document.kind) return "not read";
    return std::string(traits_of(*document.kind).description) + ", " +
           records_of(*document.kind, document.records) + ", " +
           errors_of(static_cast<std::size_t>(document.errors));
  }

  const check_wishes& wishes;
};

/// A line for each finding, and for each file that cannot be used.
class line_output : public check_output {
 public:
  explicit line_output(const check_wishes& of) : wishes(of) {}

  void tell(const checked_document& document, const finding_count& /*count*/) override {
    for (const finding& each : document.found) {
      print(document.file, each.place, name_of(*wishes.rules.weight_of(each.what)), each.text,
            each.what);
    }
  }

  void tell_unusable(const unusable_file& file) override {
    print(file.name, {}, name_of(severity::error), file.reason, rule::unreadable);
  }

 private:
  virtual void print(const std::string& file, file_place place, std::string_view weight,
                     const std::string& text, rule what) = 0;

  const check_wishes& wishes;
};

// FILE:LINE:COLUMN: error: text [rule]
class gcc_output : public line_output {
  using line_output::line_output;

  // An editor goes nowhere without a place.
  void print(const std::string& file, file_place place, std::string_view weight,
             const std::string& text, rule what) override {
    if (place.line == 0) place = {1, 1};
    std::printf("%s%s: %s: %s [%s]\n", printable(file).c_str(), place.shown().c_str(),
                weight.data(), text.c_str(), traits_of(what).name.data());
  }
};

// ::error file=FILE,line=LINE,col=COLUMN,title=rule::text
class github_output : public line_output {
  using line_output::line_output;

  static std::string escaped(const std::string& text, std::string_view signs) {
    std::string result;
    for (const char c : to_utf8(text)) {
      if (signs.find(c) == signs.npos) {
        result += c;
        continue;
      }
      char code[sizeof "%00"];
      std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(c));
      result += code;
    }
    return result;
  }

  void print(const std::string& file, file_place place, std::string_view weight,
             const std::string& text, rule what) override {
    std::string line = "::" + std::string(weight) + " file=" + escaped(file, "%\r\n:,");
    if (place.line != 0) {
      line += ",line=" + std::to_string(place.line) + ",col=" + std::to_string(place.column);
    }
    line += ",title=" + std::string(traits_of(what).name) + "::" + escaped(text, "%\r\n");
    std::printf("%s\n", line.c_str());
  }
};

class json_output : public check_output {
 public:
  explicit json_output(const check_wishes& of) : wishes(of) { begin_documents(out, "check"); }

  void tell(const checked_document& document, const finding_count& /*count*/) override {
    if (wishes.only_findings && document.found.empty()) return;
    out.begin_object();
    out.member("file", to_utf8(document.file));
    out.member("kind", document.kind ? json(traits_of(*document.kind).name) : json(nullptr));
    out.member("errors", document.errors);
    out.member("record_count", document.records);
    out.begin_array("findings");
    for (const finding& each : document.found) out.element(to_json(each));
    out.end();
    out.end();
  }

  void tell_unusable(const unusable_file& file) override { out.element(json_of_unusable(file)); }

  void end(const check_summary& summary) override {
    out.end();
    out.member("summary", {{"documents", summary.documents},
                           {"with_findings", summary.with_findings},
                           {"unusable", summary.unusable},
                           {"errors", summary.count.errors},
                           {"warnings", summary.count.warnings}});
    out.end();
  }

 private:
  json to_json(const finding& one) const {
    json shown = {{"rule", traits_of(one.what).name},
                  {"severity", name_of(*wishes.rules.weight_of(one.what))},
                  {"line", nullptr},
                  {"column", nullptr}};
    if (one.place.line != 0) {
      shown["line"] = one.place.line;
      shown["column"] = one.place.column;
    }
    shown["text"] = to_utf8(one.text);
    shown["count"] = one.count;
    json& places = shown["places"] = json::array();
    for (const file_place& each : one.places) {
      places.push_back({{"line", each.line}, {"column", each.column}});
    }
    return shown;
  }

  const check_wishes& wishes;
  json_printer out;
};

class no_output : public check_output {
 public:
  void tell(const checked_document& /*document*/, const finding_count& /*count*/) override {}
  void tell_unusable(const unusable_file& /*file*/) override {}
};

}  // namespace

std::unique_ptr<check_output> output_of(const check_wishes& wishes) {
  switch (wishes.format) {
    case finding_format::text:
      return std::make_unique<text_output>(wishes);
    case finding_format::gcc:
      return std::make_unique<gcc_output>(wishes);
    case finding_format::github:
      return std::make_unique<github_output>(wishes);
    case finding_format::json:
      return std::make_unique<json_output>(wishes);
    case finding_format::nothing:
      break;
  }
  return std::make_unique<no_output>();
}
