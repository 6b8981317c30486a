// `check`: severities, the choice of rules, exit codes and formats.

#include <sys/stat.h>

#include "check_support.hh"

using test::check;
using test::one_event;
using test::prints_valid_json;
using test::run;
using test::run_result;

namespace {

// A warning on line 2, an error on line 3.
const std::string odd_and_wrong = "<BMR>\n<X/>\n<EVENT></EVENT></BMR>";
const std::string warned =
    "F:2:5: warning: no reader knows the element 'X' (1 time) [unknown_element]\n";
const std::string failed = "F:3:8: error: EVENT without TYPE is left out [record_left_out]\n";
const std::string head = "F: event list, 0 events, 0 errors\n";

const std::string odd = "<BMR>\n<X/></BMR>";

std::size_t lines_of(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

TEST(ToolCheckFormats, SeverityAndRuleOfEachFinding) {
  const run_result result = check(odd_and_wrong);
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, head + warned + failed);
}

TEST(ToolCheckFormats, WarningsAloneAreFine) {
  EXPECT_EQ(check(odd).code, 0);
  EXPECT_EQ(check(odd, "-q").code, 0);
  EXPECT_EQ(check(odd_and_wrong, "-q").code, 1);
  EXPECT_EQ(check(odd_and_wrong, "-q").out, "");
}

TEST(ToolCheckFormats, WarningsAsErrors) {
  const run_result result = check(odd, "-W error");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, head +
                            "F:2:5: error: no reader knows the element 'X' (1 time) "
                            "[unknown_element]\n");
  EXPECT_EQ(check(odd, "-Werror").code, 1);
  EXPECT_EQ(check(odd, "-W error -W no-error").code, 0);
  EXPECT_EQ(check(odd, "-W error -q").code, 1);
}

TEST(ToolCheckFormats, OneRuleAsErrorOrWarningOrNotAtAll) {
  EXPECT_EQ(check(odd, "-W unknown_element=error").code, 1);
  EXPECT_EQ(check(odd, "-W unknown_element=warning -W error").code, 0);
  EXPECT_EQ(check(odd, "-W error -W unknown_element=warning").code, 0);
  for (const char* const off :
       {"-W no-record_left_out", "-Wno-record_left_out", "-W record_left_out=off"}) {
    const run_result result = check(odd_and_wrong, off);
    EXPECT_EQ(result.code, 0) << off;
    EXPECT_EQ(result.out, head + warned) << off;
  }
  EXPECT_EQ(check(odd_and_wrong, "-W record_left_out=warning").code, 0);
}

TEST(ToolCheckFormats, OnlySomeRules) {
  const run_result result = check(odd_and_wrong, "-W none -W record_left_out");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, head + failed);
  EXPECT_EQ(check(odd_and_wrong, "-W none").out, head);
  EXPECT_EQ(check(odd_and_wrong, "-W none -W all").out, head + warned + failed);
}

TEST(ToolCheckFormats, WrongChoices) {
  const struct {
    const char* options;
    const char* reason;
  } cases[] = {{"-W nonsense", "-W: no such rule: nonsense"},
               {"-W no-nonsense", "-W: no such rule: nonsense"},
               {"-W damage=fatal", "-W: neither error nor warning nor off: damage=fatal"},
               {"-W ''", "-W: no such rule: "},
               {"--most 0", "--most: "},
               {"--format xml", "--format: "},
               {"--format gcc --json", "--format excludes --json"}};
  for (const auto& [options, reason] : cases) {
    const run_result result = check(odd, options);
    EXPECT_EQ(result.code, 2) << options;
    EXPECT_EQ(result.out, "") << options;
    EXPECT_THAT(result.err, testing::StartsWith(std::string("zrt4xml: ") + reason)) << options;
  }
  EXPECT_THAT(run("check").err, testing::StartsWith("zrt4xml: FILE is required\n"));
}

// A value of -W does not take the name of a file behind it.
TEST(ToolCheckFormats, AFileBehindARule) {
  const test::temporary_file file(odd);
  EXPECT_EQ(run("check -W error " + file.path()).code, 1);
  EXPECT_EQ(run("check " + file.path() + " -W error").code, 1);
}

TEST(ToolCheckFormats, ManyFiles) {
  const test::temporary_file good(one_event);
  const test::temporary_file bad(odd_and_wrong);
  const std::string all = good.path() + " " + bad.path();
  EXPECT_EQ(run("check " + all).out,
            good.path() + ": event list, 1 event, 0 errors\n" + bad.path() +
                ": event list, 0 events, 0 errors\n" + bad.path() + warned.substr(1) + bad.path() +
                failed.substr(1) + "checked 2 documents: 1 error and 1 warning in 1 of them\n");
  EXPECT_EQ(run("check --only-findings " + all).out,
            bad.path() + warned.substr(1) + bad.path() + failed.substr(1) +
                "checked 2 documents: 1 error and 1 warning in 1 of them\n");
  EXPECT_EQ(run("check --only-findings " + good.path() + " " + good.path()).out,
            "checked 2 documents: nothing found\n");
  EXPECT_EQ(run("check --only-findings " + good.path()).out, "");
  const run_result missing = run("check --only-findings /nonexistent " + good.path());
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.out, "checked 1 document: nothing found; 1 file could not be used\n");
  EXPECT_EQ(missing.err, "zrt4xml: /nonexistent: No such file or directory\n");
}

TEST(ToolCheckFormats, SummedUpFindingsAreCounted) {
  std::string list = "<BMR>\n";
  for (int i = 0; i < 150; ++i) list += "<EVENT></EVENT>\n";
  const test::temporary_file bad(list + "</BMR>");
  const std::string out = run("check " + bad.path() + " " + bad.path()).out;
  EXPECT_EQ(lines_of(out), 2 * (1 + 101) + 1);
  EXPECT_THAT(out, testing::HasSubstr(":102:8: error: 50 more of this kind from here on (a record "
                                      "lacks what its reader leaves it out without) "
                                      "[record_left_out]\n"));
  EXPECT_THAT(out, testing::EndsWith("checked 2 documents: 300 errors in 2 of them\n"));
  EXPECT_EQ(lines_of(run("check --most 1000 " + bad.path()).out), 151);
}

TEST(ToolCheckFormats, AsCompilersTellIt) {
  const run_result result = check(odd_and_wrong, "--format gcc");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, warned + failed);
  EXPECT_EQ(check(one_event, "--format gcc").out, "");
  // Editors go nowhere without a place.
  EXPECT_EQ(check("", "--format gcc").out, "F:1:1: error: is empty [unreadable]\n");
  const run_result missing = run("check --format gcc /nonexistent");
  EXPECT_EQ(missing.code, 2);
  EXPECT_EQ(missing.out, "/nonexistent:1:1: error: No such file or directory [unreadable]\n");
}

TEST(ToolCheckFormats, AsAnnotations) {
  const run_result result = check(odd_and_wrong, "--format github");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(
      result.out,
      "::warning file=F,line=2,col=5,title=unknown_element::no reader knows the element 'X' (1 "
      "time)\n"
      "::error file=F,line=3,col=8,title=record_left_out::EVENT without TYPE is left out\n");
  EXPECT_EQ(run("check --format github /nonexistent").out,
            "::error file=/nonexistent,title=unreadable::No such file or directory\n");
}

// What would end a property, or the command.
TEST(ToolCheckFormats, AnnotationsAreEscaped) {
  char folder[] = "/tmp/zrt4_escape_XXXXXX";
  ASSERT_NE(mkdtemp(folder), nullptr);
  const std::string place = folder;
  std::ofstream(place + "/50%,a:b\nc.xml") << "<BMR>\n<X:Y%0A,/></BMR>";
  const run_result result = run("check --format github " + place + "/*.xml");
  EXPECT_THAT(result.out,
              testing::StartsWith("::error file=" + place + "/50%25%2Ca%3Ab%0Ac.xml,line=2,col="));
  EXPECT_EQ(lines_of(result.out), 1U);
  std::filesystem::remove_all(place);
  EXPECT_EQ(check("<BMR><Y_%C3/></BMR>", "--format github").code, 1);
  EXPECT_THAT(check("<C><Integer Name='50%'/><Float Name='50%'/></C>", "--format github").out,
              testing::HasSubstr("title=duplicate_feature::feature '50%25' stands"));
}

TEST(ToolCheckFormats, AsJson) {
  const run_result result = check(odd_and_wrong, "--format json");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, R"json({
  "format_version": 1,
  "subcommand": "check",
  "documents": [
    {
      "file": "F",
      "kind": "events",
      "errors": 0,
      "record_count": 0,
      "findings": [
        {
          "rule": "unknown_element",
          "severity": "warning",
          "line": 2,
          "column": 5,
          "text": "no reader knows the element 'X' (1 time)",
          "count": 1,
          "places": [
            {
              "line": 2,
              "column": 5
            }
          ]
        },
        {
          "rule": "record_left_out",
          "severity": "error",
          "line": 3,
          "column": 8,
          "text": "EVENT without TYPE is left out",
          "count": 1,
          "places": []
        }
      ]
    }
  ],
  "summary": {
    "documents": 1,
    "with_findings": 1,
    "unusable": 0,
    "errors": 1,
    "warnings": 1
  }
}
)json");
  EXPECT_EQ(check(odd_and_wrong, "--json").out, result.out);
  const test::temporary_file bad(odd_and_wrong);
  const test::temporary_file foreign("<html/>");
  const test::temporary_file twice("<C><Integer Name='W'/>\n<Float Name='W'/></C>");
  EXPECT_TRUE(prints_valid_json("check --json /nonexistent " + bad.path() + " " + foreign.path() +
                                " " + twice.path()));
  EXPECT_TRUE(prints_valid_json("check --json --only-findings " + bad.path()));
}

TEST(ToolCheckFormats, AllPlacesOfWhatStandsThereSeveralTimes) {
  EXPECT_THAT(check("<C><Integer Name='W'/>\n<Float Name='W'/></C>", "--json").out,
              testing::HasSubstr(R"json("places": [
            {
              "line": 1,
              "column": 23
            },
            {
              "line": 2,
              "column": 18
            }
          ])json"));
}

TEST(ToolCheckFormats, JsonOfOnlyWhatWasFound) {
  const test::temporary_file good(one_event);
  EXPECT_THAT(run("check --json --only-findings " + good.path()).out,
              testing::HasSubstr("\"documents\": [],\n"));
}

TEST(ToolCheckFormats, TheListOfRules) {
  const run_result result = run("check --rules");
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::StartsWith("unreadable               error    nothing of the "
                                              "document can be read\n"));
  EXPECT_THAT(result.out,
              testing::HasSubstr("\nunknown_event_type       warning  an event type has "
                                 "no name\n"));
}

TEST(ToolCheckFormats, ColoursOnATerminal) {
  const test::temporary_file bad(odd_and_wrong);
  const std::string shown = test::run_on_terminal("check " + bad.path());
  EXPECT_THAT(shown, testing::HasSubstr(": \033[31mevent list, 0 events, 0 errors\033[0m\r\n"));
  EXPECT_THAT(shown, testing::HasSubstr(":2:5: \033[33mwarning:\033[0m no reader"));
  EXPECT_THAT(shown, testing::HasSubstr(":3:8: \033[31merror:\033[0m EVENT without"));
}
