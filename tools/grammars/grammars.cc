// zrt4xml_grammars FOLDER: writes the grammars of all kinds of documents that have one, and what
// editors find them by. Part of the build, not installed.

#include "grammars.hh"

#include <cstdio>
#include <fstream>

#include "xml_text.hh"

namespace {

constexpr struct {
  const char* suffix;
  std::string (*write)(const document_grammar&);
} forms[] = {{".rng", relax_ng_xml}, {".rnc", relax_ng_compact}, {".xsd", xml_schema}};

/// The kinds that have a grammar.
std::vector<document_kind> kinds() {
  std::vector<document_kind> all;
  for (const std::string& name : kind_names()) {
    const document_kind kind = *kind_named(name);
    if (grammar_of(kind) != nullptr) all.push_back(kind);
  }
  return all;
}

bool write_file(const std::string& name, const std::string& content) {
  std::ofstream out(name, std::ios::binary);
  out << content;
  out.close();
  if (!out) std::perror(name.c_str());
  return bool(out);
}

}  // namespace

std::string catalog(const std::vector<std::string>& files) {
  xml_text out;
  out.comment(origin);
  out.open("catalog", {{"xmlns", "urn:oasis:names:tc:entity:xmlns:xml:catalog"}});
  for (const std::string& file : files) {
    const std::string name = "urn:zrt4xml:" + file;
    out.empty("system", {{"systemId", name}, {"uri", file}});
    out.empty("uri", {{"name", name}, {"uri", file}});
  }
  out.close();
  return out.text();
}

std::string locating_rules() {
  xml_text out;
  out.comment(origin);
  out.open("locatingRules", {{"xmlns", "http://thaiopensource.com/ns/locating-rules/1.0"}});
  for (const document_kind kind : kinds()) {
    out.empty("documentElement", {{"localName", grammar_of(kind)->root.name},
                                  {"uri", std::string(traits_of(kind).name) + ".rnc"}});
  }
  out.close();
  return out.text();
}

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: zrt4xml_grammars FOLDER\n", stderr);
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "/";
  std::vector<std::string> files;
  bool written = true;
  for (const document_kind kind : kinds()) {
    for (const auto& form : forms) {
      files.push_back(std::string(traits_of(kind).name) + form.suffix);
      written = write_file(folder + files.back(), form.write(*grammar_of(kind))) && written;
    }
  }
  written = write_file(folder + "catalog.xml", catalog(files)) && written;
  written = write_file(folder + "schemas.xml", locating_rules()) && written;
  return written ? 0 : 2;
}
