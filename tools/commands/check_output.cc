#include "check_output.hh"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

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
      std::printf("%s: %s\n", document.file.c_str(), coloured(hue, what_it_is(document)).c_str());
    }
    for (const finding& each : document.found) {
      const severity weight = *wishes.rules.weight_of(each.what);
      const colour hue = weight == severity::error ? colour::red : colour::yellow;
      std::printf("%s%s: %s %s [%s]\n", document.file.c_str(), each.place.shown().c_str(),
                  coloured(hue, std::string(name_of(weight)) + ":").c_str(), each.text.c_str(),
                  traits_of(each.what).name.data());
    }
  }

  void tell_unusable(const std::string& /*file*/, const std::string& /*reason*/) override {}

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

// FILE:LINE:COLUMN: error: text [rule]
class gcc_output : public check_output {
 public:
  explicit gcc_output(const check_wishes& of) : wishes(of) {}

  void tell(const checked_document& document, const finding_count& /*count*/) override {
    for (const finding& each : document.found) {
      print(document.file, each.place, *wishes.rules.weight_of(each.what), each.text, each.what);
    }
  }

  void tell_unusable(const std::string& file, const std::string& reason) override {
    print(file, {}, severity::error, reason, rule::unreadable);
  }

 private:
  // An editor goes nowhere without a place.
  static void print(const std::string& file, file_place place, severity weight,
                    const std::string& text, rule what) {
    if (place.line == 0) place = {1, 1};
    std::printf("%s%s: %s: %s [%s]\n", file.c_str(), place.shown().c_str(), name_of(weight).data(),
                text.c_str(), traits_of(what).name.data());
  }

  const check_wishes& wishes;
};

// ::error file=FILE,line=LINE,col=COLUMN,title=rule::text
class github_output : public check_output {
 public:
  explicit github_output(const check_wishes& of) : wishes(of) {}

  void tell(const checked_document& document, const finding_count& /*count*/) override {
    for (const finding& each : document.found) {
      print(document.file, each.place, *wishes.rules.weight_of(each.what), each.text, each.what);
    }
  }

  void tell_unusable(const std::string& file, const std::string& reason) override {
    print(file, {}, severity::error, reason, rule::unreadable);
  }

 private:
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

  static void print(const std::string& file, file_place place, severity weight,
                    const std::string& text, rule what) {
    std::string line = "::" + std::string(name_of(weight)) + " file=" + escaped(file, "%\r\n:,");
    if (place.line != 0) {
      line += ",line=" + std::to_string(place.line) + ",col=" + std::to_string(place.column);
    }
    line += ",title=" + std::string(traits_of(what).name) + "::" + escaped(text, "%\r\n");
    std::printf("%s\n", line.c_str());
  }

  const check_wishes& wishes;
};

class json_output : public check_output {
 public:
  explicit json_output(const check_wishes& of) : wishes(of) {}

  void tell(const checked_document& document, const finding_count& /*count*/) override {
    if (wishes.only_findings && document.found.empty()) return;
    json one = {{"file", to_utf8(document.file)}, {"kind", nullptr}};
    if (document.kind) one["kind"] = traits_of(*document.kind).name;
    one["errors"] = document.errors;
    one["record_count"] = document.records;
    json& list = one["findings"] = json::array();
    for (const finding& each : document.found) list.push_back(to_json(each));
    documents.push_back(std::move(one));
  }

  void tell_unusable(const std::string& file, const std::string& reason) override {
    documents.push_back(
        {{"file", to_utf8(file)}, {"kind", nullptr}, {"unusable", to_utf8(reason)}});
  }

  void end(const check_summary& summary) override {
    json result = json_head("check");
    result["documents"] = std::move(documents);
    result["summary"] = {{"documents", summary.documents},
                         {"with_findings", summary.with_findings},
                         {"unusable", summary.unusable},
                         {"errors", summary.count.errors},
                         {"warnings", summary.count.warnings}};
    print_json(result);
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
  json documents = json::array();
};

class no_output : public check_output {
 public:
  void tell(const checked_document& /*document*/, const finding_count& /*count*/) override {}
  void tell_unusable(const std::string& /*file*/, const std::string& /*reason*/) override {}
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
