// No document takes more than its size allows: every family of hostile documents in every way in
// which its tags can arise.

#include <algorithm>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "cost_of_reading.hh"
#include "hostile_documents.hh"
#include "pull_parser_support.hh"
#include "scan_budget.hh"

namespace {

#ifdef ZRT4_LEAK_CHECKED
// Sanitizers look for misused memory, which smaller documents misuse as well.
constexpr double slowness = 20;
constexpr bool checks_memory = false;
constexpr std::size_t document_size = 4'000;
constexpr std::size_t tree_size = 250'000;
constexpr bool takes_all = false;
#else
constexpr double slowness = 1;
constexpr bool checks_memory = true;
constexpr std::size_t document_size = 16'000;
constexpr std::size_t tree_size = 1'000'000;
constexpr bool takes_all = true;
#endif

double allowed(const zrt4::detail::cost_limit& promised, const cost::reader& with,
               std::size_t size) {
  const std::uint64_t of_byte = with.makes_tree ? promised.of_byte_in_tree : promised.of_byte;
  return static_cast<double>(promised.base + of_byte * size);
}

void expect_within_promise(const cost::hostile_document& document, const cost::reader& with) {
  SCOPED_TRACE(document.family + ", " + document.multiplier + ", " + with.name);
  const cost::taken taken = cost::measure(with, document.text);
  const std::size_t size = document.text.size();
  EXPECT_TRUE(taken.ended);
  EXPECT_LE(taken.seconds, slowness * 1e-9 * allowed(zrt4::detail::promised_time, with, size));
  if (checks_memory) {
    EXPECT_LE(taken.bytes, allowed(zrt4::detail::promised_memory, with, size));
  }
  // Beside its text, a message names the document.
  EXPECT_LE(taken.bytes_of_messages, 4 * allowed(zrt4::detail::message_limit, with, size));
}

/// All of them, or another one for each family in turn.
template <class Element>
std::vector<Element> chosen(const std::vector<Element>& all, const std::string& family) {
  if (takes_all) return all;
  const std::vector<std::string> families = cost::families();
  const auto place = std::find(families.begin(), families.end(), family) - families.begin();
  return {all[static_cast<std::size_t>(place) % all.size()]};
}

/// A reader of each kind: from memory, going on after errors, and with a tree.
std::vector<cost::reader> examples_of_readers() {
  std::vector<cost::reader> examples;
  for (const cost::reader& each : cost::readers()) {
    if (each.name == std::string("pull parser, memory") || each.makes_tree) {
      examples.push_back(each);
    }
  }
  return examples;
}

class EveryReader : public testing::TestWithParam<std::string> {};

/// Takes so much of this thread's time.
void work(double seconds) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  for (const double end = now() + seconds; now() < end;) continue;
}

}  // namespace

TEST_P(EveryReader, TakesNoMoreThanTheSizeAllows) {
  for (const std::string& multiplier : chosen(cost::multipliers_of(GetParam()), GetParam())) {
    for (const cost::reader& with : chosen(examples_of_readers(), GetParam())) {
      expect_within_promise(cost::make(GetParam(), multiplier, document_size, with.root), with);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Documents, EveryReader, testing::ValuesIn(cost::families()),
                         [](const testing::TestParamInfo<std::string>& family) {
                           std::string name = family.param;
                           for (char& c : name) c = std::isalnum(c) != 0 ? c : '_';
                           return name;
                         });

TEST(Cost, IdentifiersOfATree) {
  for (const cost::reader& with : cost::readers()) {
    if (!with.makes_tree) continue;
    expect_within_promise(cost::make("colliding identifiers", "by an entity", tree_size, with.root),
                          with);
  }
}

TEST(Cost, TheErrorTellsWhatADocumentTook) {
  const auto document = cost::make("references to a long entity in one value", "", 65'536, "R");
  test::in_memory variant(document.text);
  const test::output written = test::captured([&] {
    if (!variant.start()) test::trace(variant.parser);
  });
  EXPECT_THAT(written.err,
              testing::MatchesRegex("\nFatal Error at .file my_mem_info, line 1, char [0-9]+.: the "
                                    "document takes too much memory: [0-9]+ MB for " +
                                    std::to_string(document.text.size()) + " bytes\n"));
  EXPECT_EQ(variant.parser.get_error_counter(), 1);
}

// The validator numbers its errors by itself: that this one has the number of one that ends a scan
// must not leave it uncounted.
TEST(Cost, MessagesOfTheValidatorAreCounted) {
  const auto document =
      cost::make("child that a long content model lacks", "by nested entities", 4'000, "R");
  test::in_memory variant(document.text);
  const test::output written = test::captured([&] {
    ASSERT_FALSE(variant.start());
    char* tag = nullptr;
    char* value = nullptr;
    while (variant.parser.parse(&tag, &value) != -1) continue;
  });
  EXPECT_THAT(written.err, testing::HasSubstr("element 'b' is not allowed for content model '("));
  EXPECT_THAT(written.err,
              testing::ContainsRegex("the document takes too much room for messages: 4 MB for " +
                                     std::to_string(document.text.size()) + " bytes\n$"));
}

// What the user of a parser does between its steps is not the document's cost.
TEST(Cost, ASlowUserIsNotTheDocument) {
  std::string document = "<R>";
  for (int i = 0; i < 100; ++i) document += "<b/>";
  test::in_memory variant(document + "</R>");
  ASSERT_FALSE(variant.start());
  char* tag = nullptr;
  char* value = nullptr;
  while (variant.parser.parse(&tag, &value) == 0) work(0.02);
  EXPECT_EQ(variant.parser.get_error_counter(), 0);
}

TEST(Cost, OrdinaryNumbersOfNamesAreRead) {
  std::string declarations = "<!ELEMENT R ANY>";
  std::string content;
  std::string attributes;
  for (int i = 0; i < 1024; ++i) {
    const std::string n = std::to_string(i);
    declarations += "<!ELEMENT e" + n + " ANY><!ATTLIST e" + n + " a" + n + " CDATA 'd'>";
    declarations += "<!ENTITY t" + n + " 'text'>";
    content += "<e" + n + ">&t" + n + ";</e" + n + ">";
    attributes += " b" + n + "='v'";
  }
  declarations += "<!ELEMENT c (e0";
  for (int i = 1; i < 1024; ++i) declarations += "|e" + std::to_string(i);
  declarations += ")>";
  for (const std::string& text :
       {"<!DOCTYPE R [" + declarations + "]><R>" + content + "<c><e1023/></c></R>",
        "<R" + attributes + ">" + std::string(1024, ' ') + "</R>"}) {
    test::in_file variant(text);
    ASSERT_FALSE(variant.start());
    EXPECT_THAT(test::trace(variant.parser), testing::EndsWith("-1 - -\n"));
  }
}
