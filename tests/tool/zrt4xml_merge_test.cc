// What merge makes of channels that several files describe, and where it says that something is
// lost.

#include "tool_support.hh"

using test::prints_valid_json;
using test::run;
using test::run_result;

namespace {

/// Channel descriptions, the first channel in line 2.
std::string list(const std::string& channels) {
  return "<CHANDESCRIPTIONS>\n" + channels + "</CHANDESCRIPTIONS>";
}

std::string chan(const std::string& more, const std::string& property = "A") {
  return "<CHANNEL><PROP>" + property + "</PROP>" + more + "</CHANNEL>\n";
}

/// "merge OPTIONS BASE FROM" of two documents. BASE and FROM stand for their names in what was
/// told.
run_result merged(const std::string& base, const std::string& from,
                  const std::string& options = "") {
  const test::temporary_file first(base);
  const test::temporary_file second(from);
  run_result result = run("merge " + options + " " + first.path() + " " + second.path());
  for (const auto& [path, name] :
       {std::pair(first.path(), "BASE"), std::pair(second.path(), "FROM")}) {
    for (std::size_t at = 0; (at = result.err.find(path)) != result.err.npos;) {
      result.err.replace(at, path.size(), name);
    }
  }
  return result;
}

/// The same, with what differs between BASE and what was merged, without the heading.
run_result changed(const std::string& base, const std::string& from,
                   const std::string& options = "") {
  run_result result = merged(base, from, "--dry-run " + options);
  for (int line = 0; line < 2 && !result.out.empty(); ++line) {
    result.out.erase(0, result.out.find('\n') + 1);
  }
  return result;
}

}  // namespace

TEST(ToolMerge, BitsAreCompletedOneByOne) {
  const run_result result = changed(
      list(chan("<BIT>1</BIT><BIT>2<BIT_NAME>two</BIT_NAME></BIT>")),
      list(chan("<BIT>1<BIT_NAME>one</BIT_NAME></BIT><BIT>2<BIT_DESCR>second</BIT_DESCR></BIT>"
                "<BIT>3</BIT>")));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "~ channel A\n"
            "    ~ bit 1\n        name: \"\" -> \"one\"\n"
            "    ~ bit 2\n        description: \"\" -> \"second\"\n"
            "    + bit 3\n");
}

TEST(ToolMerge, DimensionsAndStatisticsAreCompletedOneByOne) {
  const run_result result = changed(
      list(chan("<DIM>0<STAT>2</STAT></DIM>")),
      list(chan("<DIM>0<DIM_NAME>samples</DIM_NAME><STAT>2<STAT_NAME>mean</STAT_NAME></STAT>"
                "<STAT>3</STAT></DIM>")));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "~ channel A\n"
            "    ~ dimension 0\n"
            "        name: \"\" -> \"samples\"\n"
            "        ~ statistic 2\n            name: \"\" -> \"mean\"\n"
            "        + statistic 3\n");
}

TEST(ToolMerge, WithForceNothingOfTheFirstVanishes) {
  const run_result result = changed(
      list(chan("<BIT>1<BIT_NAME>one</BIT_NAME></BIT><BIT>2</BIT><DIM>0<STAT>2</STAT></DIM>")),
      list(chan("<BIT>1<BIT_NAME>ON</BIT_NAME></BIT><DIM>1</DIM>")), "--force");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "~ channel A\n"
            "    ~ bit 1\n        name: \"one\" -> \"ON\"\n"
            "    + dimension 1\n");
  EXPECT_EQ(result.err, "zrt4xml: FROM:2:16: channel 'A', bit 1: name \"ON\" replaces \"one\"\n");
}

TEST(ToolMerge, EveryChannelOfAPropertyIsAdded) {
  const run_result result =
      changed(list(chan("", "B")), list(chan("<NAME>x</NAME>") + chan("<NAME>y</NAME>")));
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::HasSubstr("+ channel A\n    name: \"x\"\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("+ channel A\n    name: \"y\"\n"));
}

TEST(ToolMerge, OfSeveralChannelsOfAPropertyThoseOfOneNameAreTheSame) {
  const run_result result = changed(list(chan("<NAME>x</NAME>") + chan("<NAME>y</NAME>")),
                                    list(chan("<NAME>y</NAME><UNITS>mm</UNITS>")));
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  const run_result written = merged(list(chan("<NAME>x</NAME>") + chan("<NAME>y</NAME>")),
                                    list(chan("<NAME>y</NAME><UNITS>mm</UNITS>")));
  EXPECT_THAT(written.out, testing::ContainsRegex("<NAME>y</NAME>\n.*\n.*\n<UNITS>mm</UNITS>"));
}

TEST(ToolMerge, ValuesThatAreNotTakenAreToldAtTheirPlace) {
  const std::string base = list(chan("<UNITS>mm</UNITS><SIZE>2</SIZE>"));
  const std::string from = list("\n" + chan("<UNITS>m</UNITS><SIZE>2</SIZE><DB_KEY>7</DB_KEY>"));
  const run_result kept = merged(base, from);
  EXPECT_EQ(kept.code, 0);
  EXPECT_THAT(kept.out, testing::HasSubstr("<UNITS>mm</UNITS>"));
  EXPECT_EQ(kept.err,
            "zrt4xml: FROM:3:16: channel 'A': units \"m\" is not taken: it is \"mm\" already\n");
  const run_result forced = merged(base, from, "--force");
  EXPECT_EQ(forced.code, 0);
  EXPECT_THAT(forced.out, testing::HasSubstr("<UNITS>m</UNITS>"));
  EXPECT_EQ(forced.err, "zrt4xml: FROM:3:16: channel 'A': units \"m\" replaces \"mm\"\n");
  EXPECT_EQ(merged(base, from, "-q").err, "");
}

TEST(ToolMerge, ManyValuesThatAreNotTakenAreCounted) {
  std::string base;
  std::string from;
  for (int i = 10; i < 18; ++i) {
    base += chan("<UNITS>mm</UNITS>", "P" + std::to_string(i));
    from += chan("<UNITS>m</UNITS>", "P" + std::to_string(i));
  }
  const run_result result = merged(list(base), list(from));
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 6);
  EXPECT_THAT(result.err,
              testing::EndsWith("zrt4xml: FROM: 3 more of the same kind are not taken: units\n"));
}

TEST(ToolMerge, ALossIsToldWhereItsValueStands) {
  const std::string base = list(chan("") + chan("<DTYPE>9</DTYPE>", "B"));
  const std::string from = list("\n" + chan("<DTYPE>9</DTYPE>") + chan("<STREAM>3</STREAM>", "B") +
                                chan("<COUNT>5</COUNT>", "C"));
  const run_result result = merged(base, from, "--to variables");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "zrt4xml: BASE:3:16: channel 'B': data_type 9 SINGLE does not arrive: the variable "
            "dialect has no place for it\n"
            "zrt4xml: FROM:3:16: channel 'A': data_type 9 SINGLE does not arrive: the variable "
            "dialect has no place for it\n"
            "zrt4xml: FROM:4:16: channel 'B': stream 3 does not arrive: the variable dialect has "
            "no place for it\n"
            "zrt4xml: FROM:5:16: channel 'C': count 5 does not arrive: the variable dialect has no "
            "place for it\n");
}

TEST(ToolMerge, ALossInsideAChannelIsToldWhereItStands) {
  const run_result result =
      merged(list(chan("<BIT>1<BIT_NAME>a</BIT_NAME></BIT>")),
             list(chan("<BIT>1<BIT_DESCR>d</BIT_DESCR></BIT><BIT>2<BIT_DESCR>e</BIT_DESCR></BIT>")),
             "--to variables");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "zrt4xml: FROM:2:16: channel 'A', bit 1: description \"d\" does not arrive: the "
            "variable dialect has no place for it\n"
            "zrt4xml: FROM:2:16: channel 'A', bit 2: description \"e\" does not arrive: the "
            "variable dialect has no place for it\n");
}

TEST(ToolMerge, AChannelThatIsLostIsToldAtItsOwnPlace) {
  const run_result result =
      merged(list(chan("<NAME>x</NAME>")), list(chan("<NAME>x</NAME>") + chan("<NAME>y</NAME>")),
             "--to variables");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "zrt4xml: FROM:3:16: channel 'A' does not arrive: it has the property of another one "
            "before it, which this form holds once\n");
}

TEST(ToolMerge, ALossFromJsonNamesThatFile) {
  const run_result result = merged(
      list(chan("")), R"({"kind": "channels", "records": [{"property": "A", "data_type": 9}]})",
      "--to variables");
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, testing::StartsWith("zrt4xml: FROM: channel 'A': data_type 9 SINGLE"));
}

TEST(ToolMerge, EveryFileThatCannotBeUsedIsTold) {
  const test::temporary_file good(list(chan("")));
  const test::temporary_file events(test::one_event);
  const std::string files = good.path() + " " + events.path() + " /nonexistent";
  const std::string told = "zrt4xml: " + events.path() +
                           ": of another kind (event list) than is needed here: channel "
                           "descriptions\nzrt4xml: /nonexistent: No such file or directory\n";
  for (const std::string options : {"", "--dry-run ", "--dry-run --json "}) {
    const run_result result = run("merge " + options + files);
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.err, told);
    EXPECT_EQ(result.out.empty(), options != "--dry-run --json ");
  }
  EXPECT_EQ(run("merge --dry-run --json " + files).out,
            R"({
  "format_version": 1,
  "subcommand": "merge",
  "before": ")" +
                good.path() +
                R"(",
  "after": "merged",
  "equal": null,
  "differences": [],
  "not_compared": [],
  "unusable": [
    {
      "file": ")" +
                events.path() +
                R"(",
      "kind": null,
      "unusable": "of another kind (event list) than is needed here: channel descriptions"
    },
    {
      "file": "/nonexistent",
      "kind": null,
      "unusable": "No such file or directory"
    }
  ]
}
)");
  EXPECT_TRUE(prints_valid_json("merge --dry-run --json " + files));
}

TEST(ToolMerge, ADocumentOfNoUseIsNoWrongUsage) {
  const test::temporary_file good(list(chan("")));
  const test::temporary_file empty("");
  EXPECT_EQ(run("merge " + good.path() + " " + empty.path()).code, 1);
  const std::string arguments = "merge --dry-run --json " + good.path() + " " + empty.path();
  EXPECT_EQ(run(arguments).code, 1);
  EXPECT_TRUE(prints_valid_json(arguments));
}

TEST(ToolMerge, EventTypeThatIsNotToldIsTakenFromTheOther) {
  EXPECT_EQ(changed(list(chan("")), list(chan("<EVTYPE>0</EVTYPE>"))).out,
            "~ channel A\n    event_type: 0 UNKNOWN -> 0 HB\n");
  EXPECT_EQ(changed(list(chan("")), list(chan("<EVTYPE>4</EVTYPE>"))).out,
            "~ channel A\n    event_type: 0 UNKNOWN -> 4 ENV\n");
  EXPECT_EQ(changed(list(chan("<EVTYPE>0</EVTYPE>")), list(chan("<EVTYPE>4</EVTYPE>"))).out,
            "~ channel A\n    event_type: 0 HB -> 4 ENV\n");
}

TEST(ToolMerge, EventTypeStaysWhereTheOtherTellsNone) {
  for (const char* const options : {"", "--force"}) {
    EXPECT_EQ(changed(list(chan("<EVTYPE>0</EVTYPE>")), list(chan("")), options).out, "");
    EXPECT_EQ(changed(list(chan("<EVTYPE>4</EVTYPE>")), list(chan("")), options).out, "");
    EXPECT_EQ(changed(list(chan("")), list(chan("")), options).out, "");
  }
}
