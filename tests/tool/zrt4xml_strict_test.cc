// `zrt4xml check --strict`.

#include "tool_support.hh"

namespace {

using testing::HasSubstr;
using testing::Not;

// Read as it is meant, though it is not laid out as the writers lay it out.
const std::string late_name =
    "<CHANDESCRIPTIONS>\n<CHANNEL><EVTYPE>1</EVTYPE><PROP>P</PROP>\n<BIT>0</BIT>\n<NAME>N</"
    "NAME>\n</CHANNEL>\n"
    "</CHANDESCRIPTIONS>\n";

std::string checked(const std::string& options, const std::string& document, int code = 1) {
  const test::temporary_file file(document);
  const test::run_result result = test::run("check " + options + " - <" + file.path());
  EXPECT_EQ(result.code, code);
  EXPECT_EQ(result.err, "");
  return result.out;
}

}  // namespace

TEST(StrictCheck, TellsWhatTheGrammarDoesNotAllow) {
  EXPECT_THAT(
      checked("--strict", late_name),
      HasSubstr("\nstandard input:4:7: error: NAME comes too late in CHANNEL: it belongs before "
                "BIT [beyond_grammar]\n"));
}

TEST(StrictCheck, IsAskedFor) {
  EXPECT_EQ(checked("", late_name, 0),
            "standard input: channel descriptions, element dialect, 1 channel, 0 errors\n");
}

TEST(StrictCheck, ExamplesDeviateNowhere) {
  for (const std::string& file : test::examples()) {
    EXPECT_THAT(test::run("check --strict --json " + file).out, Not(HasSubstr("beyond_grammar")))
        << file;
  }
}

TEST(StrictCheck, WhatIsToldOfAPlaceIsNotToldAgain) {
  const std::string unknown = checked("--strict", "<BMR>\n<FOO/>\n<FOO/>\n</BMR>", 0);
  EXPECT_THAT(unknown, Not(HasSubstr("2:7: 'FOO' is no element")));
  const std::string cut = checked("--strict", test::channel("<UNITS>sixteen letters!</UNITS>"));
  EXPECT_THAT(cut, Not(HasSubstr("UNITS has 16 characters")));
}

TEST(StrictCheck, IsARuleForPrograms) {
  const test::temporary_file file(late_name);
  const std::string arguments = "check --strict --json " + file.path();
  EXPECT_THAT(test::run(arguments).out, HasSubstr("\"rule\": \"beyond_grammar\""));
  EXPECT_TRUE(test::prints_valid_json(arguments));
}

TEST(StrictCheck, CamerasHaveNoGrammar) {
  EXPECT_EQ(test::run("check --strict examples/cameras/minimal.xml").code,
            test::run("check examples/cameras/minimal.xml").code);
}
