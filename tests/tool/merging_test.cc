// Random channels, merged: what comes out is what a plain reading of the rule makes of them, where
// each value is from is known, and what the written form loses is told.

#include <map>

#include "bad_document.hh"
#include "lossless_support.hh"
#include "merging.hh"
#include "random_documents.hh"
#include "random_records.hh"

namespace {

using test::random_records;

// Bytes as they are: texts may end within a character.
json bytes(std::string_view text) {
  std::string utf8;
  for (const char c : text) {
    const auto unit = static_cast<unsigned char>(c);
    if (unit < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xc0 | unit >> 6);
      utf8 += static_cast<char>(0x80 | (unit & 0x3f));
    }
  }
  return utf8;
}

json plain(const row& record) {
  json result = json::object();
  for (const row::field& field : record.fields) {
    const auto* const text = std::get_if<std::string_view>(&field.value);
    result[std::string(field.name)] =
        text != nullptr ? bytes(*text) : json(std::get<std::int64_t>(field.value));
  }
  for (const row_group& group : record.groups) {
    json& inner = result[std::string(group.name)] = json::array();
    for (const row& each : group.rows) inner.push_back(plain(each));
  }
  return result;
}

// A channel with several properties is listed several times; it counts once.
json plain(const zrt4::channel_list& list) {
  json all = json::array();
  std::set<const void*> met;
  for (const row& record : rows_of(list)) {
    if (met.insert(record.record).second) all.push_back(plain(record));
  }
  return all;
}

/// The rule, as it is told to users.
class rule {
 public:
  explicit rule(bool with_force) : force(with_force) {}

  void merge(json& base, const json& from, const std::string& key) {
    const std::size_t known = base.size();
    std::vector<bool> has_partner(known);
    std::vector<std::size_t> partner(from.size(), known);
    for (const bool by_name : {true, false}) {
      for (std::size_t i = 0; i < from.size(); ++i) {
        for (std::size_t j = 0; j < known && partner[i] == known; ++j) {
          const bool fits = !has_partner[j] && base[j][key] == from[i][key] &&
                            (!by_name || base[j]["name"] == from[i]["name"]);
          if (fits) partner[i] = j;
          if (fits) has_partner[j] = true;
        }
      }
    }
    for (std::size_t i = 0; i < from.size(); ++i) {
      if (partner[i] == known) {
        base.push_back(from[i]);
      } else {
        complete(base[partner[i]], from[i]);
      }
    }
  }

  int contradictions = 0;

 private:
  static bool is_known(const std::string& name, const json& value) {
    if (value.is_string()) return value != "";
    return name == "db_key" ? value > 0 : value != 0 && value != untold;
  }

  void complete(json& base, const json& from) {
    for (const auto& [name, value] : from.items()) {
      if (value.is_array()) {
        merge(base[name], value, "number");
      } else if (base[name] == untold) {
        base[name] = value;
      } else if (is_known(name, value) && base[name] != value) {
        const bool contradicts = is_known(name, base[name]);
        if (contradicts) ++contradictions;
        if (!contradicts || force) base[name] = value;
      }
    }
  }

  const bool force;
};

/// Every record of a list and inside it, by its address.
void add_rows(const row& record, std::map<const void*, json>& all) {
  all[record.record] = plain(record);
  for (const row_group& group : record.groups) {
    for (const row& each : group.rows) add_rows(each, all);
  }
}

bool holds(const json& record, const std::string& name, const json& value) {
  for (const auto& [key, held] : record.items()) {
    if (key == name && held == value) return true;
    if (!held.is_array()) continue;
    for (const json& inner : held) {
      if (holds(inner, name, value)) return true;
    }
  }
  return false;
}

/// What a record was read from, of the inputs.
const json* at(const std::vector<json>& inputs, const record_origin& origin, const json& property) {
  if (origin.document >= inputs.size()) return nullptr;
  std::size_t before = origin.before;
  for (const json& record : inputs[origin.document]) {
    if (record["property"] == property && before-- == 0) return &record;
  }
  return nullptr;
}

struct seen : test::seen {
  int contradicting = 0;
  int origins = 0;
  int from_others = 0;
};

/// That the value of each loss stands in the document and record that are told.
void expect_origins(const composition& made, const std::vector<json>& inputs,
                    merged_origins& origins, document_form form, seen& counts) {
  std::map<const void*, json> sent;
  for (const row& record : made.sent) add_rows(record, sent);
  for (const loss& each : test::losses_of(made, form)) {
    const auto origin = origin_of(each, &origins);
    if (!origin) continue;
    ++counts.origins;
    if (origin->document != 0) ++counts.from_others;
    const json* const record = at(inputs, *origin, bytes(each.property));
    ASSERT_NE(record, nullptr) << each.text;
    const std::string name = each.kind.substr(each.kind.rfind(' ') + 1);
    const json& lost = sent.at(each.records.back());
    const bool is_value = each.field != merged_origins::itself && lost.contains(name);
    if (is_value) {
      EXPECT_TRUE(holds(*record, name, lost[name])) << each.text << *record;
    }
    if (!is_value && each.records.size() > 1 && lost.contains("number")) {
      EXPECT_TRUE(holds(*record, "number", lost["number"])) << each.text << *record;
    }
  }
}

/// Merges all into the first.
void expect_merged(std::vector<zrt4::channel_list>& lists, const std::vector<json>& inputs,
                   bool force, merge_report& report, seen& counts) {
  rule expected(force);
  json whole = inputs.front();
  for (std::size_t i = 1; i < lists.size(); ++i) {
    merge_into(lists.front(), lists[i], force, &report);
    expected.merge(whole, inputs[i], "property");
  }
  EXPECT_TRUE(plain(lists.front()) == whole) << plain(lists.front()).dump(1) << whole.dump(1);
  EXPECT_EQ(report.contradictions.empty(), expected.contradictions == 0);
  if (expected.contradictions != 0) ++counts.contradicting;
}

std::vector<json> plain(const std::vector<zrt4::channel_list>& lists) {
  std::vector<json> all;
  for (const zrt4::channel_list& each : lists) all.push_back(plain(each));
  return all;
}

void expect_written(zrt4::channel_list& list, seen& counts) {
  using test::write_and_read;
  write_and_read(list, document_form::xml, counts, ZRT4_FORMAT, zrt4::types::numbers);
  write_and_read(list, document_form::variables, counts, MORV_FORMAT, zrt4::types::numbers);
}

std::vector<zrt4::channel_list> random_lists(unsigned seed) {
  std::vector<zrt4::channel_list> lists;
  for (unsigned i = 0; i < 2 + seed % 3; ++i) {
    lists.push_back(
        random_records(seed * 10 + i, seed % 4 == 0 ? random_records::hard : random_records::gentle)
            .channels());
  }
  return lists;
}

class Merging : public test::in_utf8 {};

constexpr unsigned rounds = 2000 / test::random_share;
constexpr unsigned written_ones = 8;  // of so many rounds one is written, which takes longer

}  // namespace

TEST_F(Merging, RandomRecordsAreCompletedByTheRule) {
  const test::kept_leak of_the_readers;
  seen counts;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    SCOPED_TRACE(seed);
    std::vector<zrt4::channel_list> lists = random_lists(seed);
    const std::vector<json> inputs = plain(lists);
    merge_report report{0, {}, told_lines("")};
    expect_merged(lists, inputs, seed % 2 == 1, report, counts);
    if (seed / 4 % written_ones == 0) {
      expect_written(lists.front(), counts);
      for (const document_form form : {document_form::xml, document_form::variables}) {
        expect_origins(compose(lists.front(), form), inputs, report.origins, form, counts);
      }
    }
    if (HasFailure()) break;
  }
  EXPECT_GT(counts.contradicting, 1000 / test::random_share);
  EXPECT_GT(counts.whole, 50 / test::random_share);
  EXPECT_GT(counts.lossy, 200 / test::random_share);
  EXPECT_GT(counts.origins, 1000 / test::random_share);
  EXPECT_GT(counts.from_others, 500 / test::random_share);
}

TEST_F(Merging, RandomDocumentsOfBothDialects) {
  const test::kept_leak of_the_readers;
  seen counts;
  test::random_documents documents(2);
  for (unsigned i = 0; i < rounds; ++i) {
    std::vector<zrt4::channel_list> lists;
    std::string texts;
    for (unsigned n = 0; n < 2 + i % 2; ++n) {
      const bool variables = documents.one_in(2);
      const std::string text = documents.next(variables ? test::random_documents::variables
                                                        : test::random_documents::elements);
      texts += text;
      input_file file("random", std::string_view(text));
      read_into(lists.emplace_back(), file, variables ? MORV_FORMAT : ZRT4_FORMAT,
                zrt4::types::numbers);
    }
    SCOPED_TRACE(texts);
    merge_report report{0, {}, told_lines("")};
    expect_merged(lists, plain(lists), i % 2 == 1, report, counts);
    if (i % written_ones == 0) expect_written(lists.front(), counts);
    if (HasFailure()) break;
  }
  EXPECT_GT(counts.contradicting, 30 / test::random_share);
  EXPECT_GT(counts.whole, 200 / test::random_share);
  EXPECT_GT(counts.lossy, 30 / test::random_share);
}

TEST_F(Merging, AnEmptyListTakesEveryRecordAndGivesNone) {
  for (unsigned seed = 0; seed < 100; ++seed) {
    zrt4::channel_list base;
    zrt4::channel_list from = random_records(seed).channels();
    const json all = plain(from);
    merge_into(base, from, seed % 2 == 1);
    EXPECT_EQ(plain(base), all);
    EXPECT_TRUE(from.empty());
    merge_into(base, from, seed % 2 == 1);
    EXPECT_EQ(plain(base), all);
  }
}

TEST_F(Merging, ACopyOfAListChangesNothing) {
  for (unsigned seed = 0; seed < 100; ++seed) {
    zrt4::channel_list base = random_records(seed).channels();
    zrt4::channel_list same = random_records(seed).channels();
    const json all = plain(base);
    merge_report report{0, {}, told_lines("")};
    merge_into(base, same, seed % 2 == 1, &report);
    EXPECT_EQ(plain(base), all);
    EXPECT_TRUE(report.contradictions.empty());
  }
}
