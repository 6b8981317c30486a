#ifndef LOSSLESS_SUPPORT_HH
#define LOSSLESS_SUPPORT_HH

// Records written in a form and read back: all of it, or a loss is told of each that differs.

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "arrival.hh"
#include "input_file.hh"
#include "own_locale.hh"
#include "reading.hh"
#include "row_json.hh"
#include "support.hh"
#include "writing.hh"

namespace test {

inline std::multiset<std::string> records_in(const row_list& rows) {
  std::multiset<std::string> records;
  for (const row& record : rows) records.insert(to_json(record).dump());
  return records;
}

inline std::string property_in(const std::string& record) {
  return json::parse(record)["property"];
}

/// What of `sent` is not in `arrived`, by property.
inline std::set<std::string> missing(std::multiset<std::string> sent,
                                     const std::multiset<std::string>& arrived) {
  for (const std::string& record : arrived) {
    const auto same = sent.find(record);
    if (same != sent.end()) sent.erase(same);
  }
  std::set<std::string> properties;
  for (const std::string& record : sent) properties.insert(property_in(record));
  return properties;
}

inline std::vector<loss> losses_of(const composition& made, document_form form) {
  std::vector<loss> all;
  for_each_loss(made.sent, made.arriving, "record", form,
                [&](const loss& each) { all.push_back(each); });
  return all;
}

inline std::set<std::string> told(const std::vector<loss>& losses) {
  std::set<std::string> properties;
  for (const loss& each : losses) {
    properties.insert(to_utf8(each.property));
    EXPECT_FALSE(each.text.empty());
  }
  return properties;
}

/// Counts of what was seen, so that the tests cannot pass by seeing nothing.
struct seen {
  int whole = 0;
  int lossy = 0;
};

template <class List, class... How>
void write_and_read(List& list, document_form form, seen& counts, How... how) {
  const auto sent = records_in(rows_of(list));
  const composition made = compose(list, form);
  const std::vector<loss> losses = losses_of(made, form);
  const std::string content = made.content();
  input_file file("written", std::string_view(content));
  List arrived;
  EXPECT_EQ(read_into(arrived, file, how...).errors, 0) << content;
  const auto read = records_in(rows_of(arrived));
  const std::set<std::string> lost = missing(sent, read);
  const std::set<std::string> told_of = told(losses);
  std::set<std::string> differing = missing(read, sent);  // as something else, or under another key
  differing.insert(lost.begin(), lost.end());
  EXPECT_TRUE(std::includes(told_of.begin(), told_of.end(), lost.begin(), lost.end())) << content;
  EXPECT_TRUE(std::includes(differing.begin(), differing.end(), told_of.begin(), told_of.end()))
      << content;
  EXPECT_EQ(losses.empty(), sent == read) << content;
  ++(losses.empty() ? counts.whole : counts.lossy);
}

/// A test in the code page that the tool chooses, and with the numbers that it writes everywhere.
class in_utf8 : public testing::Test {
  const own_locale characters{LC_CTYPE, "C.UTF-8"};
  const own_locale numbers{LC_NUMERIC, "C"};

 protected:
  const zrt4::xml_session session;
};

}  // namespace test

#endif
