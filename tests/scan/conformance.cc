// The W3C XML conformance documents, each through both pull parsers and through a plain scan with
// the scanner's own parser and the same settings: every step, every message and the number of
// errors must be the same. And through the camera reader, which must survive them.
//
//     conformance FOLDER
//
// Prints the figures; the result is 0 when all documents agree: none is beyond a limit of the
// library's own, either.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "plain_parser.hh"
#include "support.hh"
#include "zrt4_gige_descr.hh"

namespace {

/// What a parser made of a document.
struct reading {
  std::string steps;
  std::string messages;
  int errors = 0;
  bool started = false;

  bool operator==(const reading& other) const {
    return steps == other.steps && messages == other.messages && errors == other.errors &&
           started == other.started;
  }
};

std::string shown(const char* text) {
  return text != nullptr ? std::string("'") + text + "'" : "-";
}

std::string shown(const std::optional<std::string>& text) {
  return shown(text ? text->c_str() : nullptr);
}

// Both go on after an error, as long as the scanner does: so that all errors are counted.

template <class Parser>
reading pulled(Parser& parser, bool failed) {
  reading seen;
  seen.started = !failed;
  char* tag = nullptr;
  char* text = nullptr;
  for (int code = 0; !failed && (code = parser.parse(&tag, &text)) != -1;) {
    if (code == 0) seen.steps += shown(tag) + " " + shown(text) + "\n";
  }
  seen.errors = parser.get_error_counter();
  return seen;
}

reading of_memory(std::string document) {
  reading seen;
  seen.messages = test::captured([&] {
                    SAX_Memory_Parser parser(document.data());
                    seen = pulled(parser, parser.start());
                  }).err;
  return seen;
}

reading of_file(std::string name) {
  reading seen;
  seen.messages = test::captured([&] {
                    SAX_File_Parser parser;
                    seen = pulled(parser, parser.start(name.data()));
                  }).err;
  return seen;
}

reading plainly(const std::string& source, bool is_file) {
  reading seen;
  const test::kept_leak of_the_scanner;  // declarations that it was building when a scan ended
  test::plain_parser parser(source, is_file, seen.messages);
  seen.started = !parser.start();
  while (seen.started && parser.has_more()) {
    if (parser.parse()) seen.steps += shown(parser.tag()) + " " + shown(parser.val()) + "\n";
  }
  seen.errors = parser.errors();
  return seen;
}

struct figures {
  int documents = 0;
  int agreed = 0;
  int without_errors = 0;
  int errors = 0;
  int differing = 0;
};

void compare(const std::string& name, const reading& ours, const reading& plain, figures& count) {
  ++count.documents;
  if (ours == plain) {
    ++count.agreed;
    count.errors += plain.errors;
    if (plain.started && plain.errors == 0) ++count.without_errors;
  } else {
    ++count.differing;
    std::printf("%s differs: %d errors, plainly %d\n%s%splainly\n%s%s", name.c_str(), ours.errors,
                plain.errors, ours.messages.c_str(), ours.steps.c_str(), plain.messages.c_str(),
                plain.steps.c_str());
  }
}

std::string content_of(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

std::vector<std::filesystem::path> files_below(const char* folder) {
  std::vector<std::filesystem::path> all;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) all.push_back(std::filesystem::canonical(entry.path()));
  }
  std::sort(all.begin(), all.end());
  return all;
}

void read_features(std::string name) {
  test::captured([&] {
    std::vector<ZRT4GigEFeature*> list;
    zrt4_fill_gige_descr(name.data(), &list);
    zrt4_clean_gige_descr(&list);
  });
}

void print(const char* parser, const figures& count) {
  std::printf(
      "%s: %d documents, %d agree (%d without errors, %d errors in the others), %d differ\n",
      parser, count.documents, count.agreed, count.without_errors, count.errors, count.differing);
}

int lowest_descriptor() {
  const int fd = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(fd);
  return fd;
}

int run(const char* folder) {
  figures memory;
  figures file;
  const int free_descriptor = lowest_descriptor();
  for (const std::filesystem::path& path : files_below(folder)) {
    const std::string document = content_of(path);
    compare(path, of_memory(document), plainly(document, false), memory);
    compare(path, of_file(path), plainly(path, true), file);
    read_features(path);
  }
  print("memory", memory);
  print("file", file);
  const bool kept = lowest_descriptor() != free_descriptor;
  if (kept) std::puts("a file stayed open");
  const bool enough = memory.without_errors > 0 && memory.errors > 0;
  return memory.differing + file.differing == 0 && enough && !kept ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: conformance FOLDER\n", stderr);
    return 2;
  }
  std::setlocale(LC_CTYPE, "C.UTF-8");
  xercesc::XMLPlatformUtils::Initialize();
  const int result = run(argv[1]);
  xercesc::XMLPlatformUtils::Terminate();
  return result;
}
