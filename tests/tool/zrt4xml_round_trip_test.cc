// Random documents through the tool as a user runs it: converted and merged they hold the same
// records, or what differs is told, the exit code is 1 and nothing is replaced.

#include <fstream>

#include "lossless_support.hh"
#include "merging.hh"
#include "random_documents.hh"
#include "random_records.hh"
#include "tool_support.hh"

namespace {

using test::random_documents;
using test::random_records;
using test::run;
using test::run_result;
using test::temporary_file;

constexpr const char* no_leak_check = "ASAN_OPTIONS=detect_leaks=0 ";  // the readers keep records
#ifdef ZRT4_LEAK_CHECKED  // the same in-process, by the hundred: lossless_test and merging_test
constexpr unsigned rounds = 6;
#else
constexpr unsigned rounds = 12;
#endif

run_result run_tool(const std::string& arguments) {
  return run(arguments, no_leak_check);
}

/// The dialect of a document.
const char* form_of_document(unsigned seed) {
  return seed % 2 == 0 ? "xml" : "variables";
}

/// A random document of channels, of either dialect, as somebody or the tool wrote it.
std::string channels(unsigned seed) {
  if (seed % 3 == 2) {
    random_documents documents(seed);
    return documents.next(seed % 2 == 0 ? random_documents::elements : random_documents::variables);
  }
  zrt4::channel_list list =
      random_records(seed, seed % 3 == 0 ? random_records::gentle : random_records::hard)
          .channels();
  return compose(list, seed % 2 == 0 ? document_form::xml : document_form::variables).content();
}

std::string dictionary(unsigned seed) {
  if (seed % 3 == 2) return random_documents(seed).next(random_documents::dictionary);
  auto list = random_records(seed, seed % 3 == 0 ? random_records::gentle : random_records::hard)
                  .dictionary<zrt4_env_index_dictionary_entry_2010>();
  return compose(list, document_form::xml).content();
}

/// The records that the tool shows of a file, without the names of numbers.
std::multiset<std::string> shown(const std::string& path) {
  const json answer = json::parse(run_tool("show --json " + path).out);
  std::multiset<std::string> records;
  for (json record : answer["documents"][0].value("records", json::array())) {
    record.erase("event_type_name");
    record.erase("data_type_name");
    records.insert(record.dump());
  }
  return records;
}

bool is_readable(const std::string& path) {
  return run_tool("show " + path).code == 0;
}

/// That each property is in one of the lines, or that there is one for those that are alike.
void expect_told(const std::set<std::string>& properties, const std::string& lines) {
  if (lines.find(" more of the same kind ") != lines.npos) return;
  for (const std::string& each : properties) {
    const std::string beginning = each.substr(0, each.find_first_of("\t\n\r\x01\xef"));
    EXPECT_THAT(lines, testing::HasSubstr(beginning));
  }
}

struct seen {
  unsigned whole = 0;
  unsigned refused = 0;
  unsigned lossy = 0;
};

/// "COMMAND -o FILE", without and with --lossy, where a whole result holds these records.
void expect_all_or_told(const std::string& command, const std::multiset<std::string>& expected,
                        bool is_clean, seen& counts) {
  const temporary_file out("old");
  const run_result strict = run_tool(command + " -o " + out.path());
  if (strict.code == 0) {
    EXPECT_EQ(shown(out.path()), expected) << out.content();
    ++counts.whole;
    return;
  }
  EXPECT_EQ(strict.code, 1);
  EXPECT_EQ(out.content(), "old");
  EXPECT_NE(strict.err, "");
  ++counts.refused;
  const run_result lossy = run_tool(command + " --lossy -o " + out.path());
  EXPECT_EQ(lossy.code, is_clean ? 0 : 1) << lossy.err;
  if (!is_clean) return;
  EXPECT_THAT(strict.err, testing::HasSubstr(": not written, because something would be lost"));
  EXPECT_NE(lossy.err, "");
  expect_told(test::missing(expected, shown(out.path())), lossy.err);
  ++counts.lossy;
}

class RoundTrip : public test::in_utf8 {};

}  // namespace

TEST_F(RoundTrip, RandomChannelsToBothDialectsAndBack) {
  const test::kept_leak of_the_readers;
  seen counts;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    const std::string document = channels(seed);
    SCOPED_TRACE(document);
    const temporary_file original(document);
    if (!is_readable(original.path())) continue;
    const auto records = shown(original.path());
    for (const std::string form : {"xml", "variables"}) {
      expect_all_or_told("convert " + original.path() + " --to " + form, records, true, counts);
      if ((form == "xml") == (seed % 2 == 0)) continue;
      const temporary_file there("");
      run_tool("convert " + original.path() + " --lossy --to " + form + " -o " + there.path());
      expect_all_or_told("convert " + there.path() + " --to " + form_of_document(seed),
                         shown(there.path()), true, counts);
    }
    if (HasFailure()) break;
  }
  EXPECT_GE(counts.whole, rounds / 2);
  EXPECT_GE(counts.refused, rounds / 2);
  EXPECT_GE(counts.lossy, rounds / 2);
}

TEST_F(RoundTrip, RandomDictionaries) {
  const test::kept_leak of_the_readers;
  seen counts;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    const std::string document = dictionary(seed);
    SCOPED_TRACE(document);
    const temporary_file original(document);
    expect_all_or_told("convert --wide " + original.path() + " --to xml", shown(original.path()),
                       is_readable(original.path()), counts);
    if (HasFailure()) break;
  }
  EXPECT_GE(counts.whole, rounds / 3);
  EXPECT_GE(counts.refused, rounds / 4);
}

TEST_F(RoundTrip, RandomChannelsMerged) {
  const test::kept_leak of_the_readers;
  seen counts;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    const temporary_file base(channels(seed));
    const temporary_file from(channels(seed + (seed % 2 == 0 ? 6 : 3)));
    SCOPED_TRACE(base.content() + from.content());
    const bool force = seed % 4 < 2;
    const bool is_clean = is_readable(base.path()) && is_readable(from.path());
    std::multiset<std::string> expected;
    if (is_clean) {
      zrt4::channel_list whole;
      zrt4::channel_list others;
      for (auto [file, list] : {std::pair(&base, &whole), std::pair(&from, &others)}) {
        input_file input(file->path());
        read_into(*list, input, dialect_of(kind_of(input)), zrt4::types::numbers);
      }
      merge_into(whole, others, force);
      for (const row& each : rows_of(whole)) {
        json record = to_json(each);
        record.erase("event_type_name");
        record.erase("data_type_name");
        expected.insert(record.dump());
      }
    }
    for (const std::string form : {" --to xml", " --to variables"}) {
      expect_all_or_told(std::string("merge ") + (force ? "--force " : "") + base.path() + " " +
                             from.path() + form,
                         expected, is_clean, counts);
    }
    if (HasFailure()) break;
  }
  EXPECT_GE(counts.whole, rounds / 6);
  EXPECT_GE(counts.refused, rounds / 2);
  EXPECT_GE(counts.lossy, rounds / 2);
}
