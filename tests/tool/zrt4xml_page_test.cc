// `page`; what a browser makes of it is tested by scripts/check page.

#include "tool_support.hh"

using test::channel;
using test::one_event;
using test::run;
using test::run_result;
using testing::HasSubstr;
using testing::Not;

namespace {

const std::string unpack = " | " ZRT4_PYTHON " " ZRT4_SOURCE_DIR "/tests/tool/page_data.py ";

// At a time that is told, so that the same documents make the same page.
std::string page(const std::string& arguments) {
  return run("page " + arguments, "SOURCE_DATE_EPOCH=1763769600 ").out;
}

std::string data(const std::string& arguments) {
  const run_result result = run("page " + arguments + unpack, "SOURCE_DATE_EPOCH=1763769600 ");
  EXPECT_EQ(result.err, "");
  return result.out;
}

}  // namespace

TEST(ToolPage, HoldsTheRecordsAndWhereTheyStand) {
  const test::temporary_file file(channel("<BIT>3<BIT_NAME>on</BIT_NAME></BIT>"));
  const std::string found = data(file.path());
  EXPECT_THAT(found,
              HasSubstr("{\"title\":\"" + std::filesystem::path(file.path()).filename().string()));
  EXPECT_THAT(found, HasSubstr(R"("made":"2025-11-22T00:00:00Z","tool":"zrt4xml )"));
  EXPECT_THAT(found, HasSubstr(R"("what":"channel descriptions, element dialect","one":"channel",)"
                               R"("several":"channels","records":1,"first":0,"errors":0)"));
  EXPECT_THAT(found, HasSubstr(R"({"name":"property","kind":"text","all":"A/B/C"})"));
  EXPECT_THAT(found,
              HasSubstr(R"({"name":"event_type","kind":"number","names":{"1":"NORMAL"},"all":1})"));
  EXPECT_THAT(found, HasSubstr(R"("line":{"name":"line","kind":"number","all":1})"));
}

TEST(ToolPage, HoldsTheXmlOfEachRecord) {
  const test::temporary_file file(
      "<BMR>\n<EVENT><TYPE>1</TYPE></EVENT><!-- between "
      "-->\n<EVENT>\n<TYPE>4</TYPE></EVENT></BMR>");
  EXPECT_EQ(run("page " + file.path() + unpack + "0").out,
            "<EVENT><TYPE>1</TYPE></EVENT>\n--\n<EVENT>\n<TYPE>4</TYPE></EVENT>\n");
}

TEST(ToolPage, HoldsFindings) {
  const test::temporary_file file("<BMR>\n<EVENT><TYPE>1</TYPE><COLOUR>3</COLOUR></EVENT></BMR>");
  EXPECT_THAT(run("page " + file.path() + unpack).out,
              HasSubstr(R"({"name":"finding","kind":"text","all":"unknown_element"})"));
}

TEST(ToolPage, BothDialectsMakeOneTable) {
  const test::temporary_file element(channel());
  const test::temporary_file variables(test::variable);
  const std::string found = data(element.path() + " " + variables.path());
  EXPECT_THAT(found, HasSubstr(R"({"title":"2 documents")"));
  EXPECT_THAT(found, HasSubstr(R"("tables":[{"id":"channels","one":"channel","several":"channels",)"
                               R"("document":{"name":"document","kind":"number","each":[0,1]})"));
  EXPECT_THAT(found, Not(HasSubstr(R"("id":"variables")")));
}

TEST(ToolPage, TheSameDocumentsMakeTheSamePage) {
  const std::string examples = ZRT4_SOURCE_DIR "/examples/channels/*.xml";
  const std::string once = page(examples);
  EXPECT_GT(once.size(), 10000U);
  EXPECT_EQ(once, page("-j 1 " + examples));
}

TEST(ToolPage, TitleAndFileNamesAreTexts) {
  const test::temporary_file file(one_event);
  const std::string shown = page("--title '</title><script>x</script>&' " + file.path());
  EXPECT_THAT(shown, HasSubstr("<title>&lt;/title&gt;&lt;script&gt;x&lt;/script&gt;&amp;</title>"));
  EXPECT_THAT(shown, Not(HasSubstr("<script>x")));
}

TEST(ToolPage, WritesAFileOrStandardOutput) {
  const test::temporary_file file(one_event);
  const test::temporary_file output("as it was");
  const run_result result = run("page " + file.path() + " -o " + output.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_THAT(output.content(), testing::StartsWith("<!doctype html>\n"));
  EXPECT_THAT(run("page - <" + file.path()).out, testing::EndsWith("</html>\n"));
  EXPECT_EQ(run("page " + file.path() + " >/dev/full").code, 2);
  EXPECT_EQ(run("page " + file.path() + " -o /nonexistent/page.html").code, 2);
}

TEST(ToolPage, AFileThatCannotBeOpenedLeavesEverythingAsItWas) {
  const test::temporary_file file(one_event);
  const test::temporary_file output("as it was");
  const run_result result = run("page " + file.path() + " /nonexistent -o " + output.path());
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "zrt4xml: /nonexistent: No such file or directory\n");
  EXPECT_EQ(output.content(), "as it was");
}

TEST(ToolPage, ADamagedDocumentIsShownAsFarAsItGoes) {
  const test::temporary_file file("<BMR><EVENT><TYPE>1</TYPE></EVENT>");
  const test::temporary_file output("");
  const run_result result = run("page " + file.path() + " -o " + output.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.err, testing::EndsWith(
                              ": not read cleanly (1 error); what could be read is on the page\n"));
  EXPECT_THAT(output.content(), testing::StartsWith("<!doctype html>"));
}

TEST(ToolPage, ADocumentOfNoKindIsTold) {
  const test::temporary_file file("plain text");
  const run_result result = run("page " + file.path() + unpack);
  EXPECT_THAT(result.out, HasSubstr(R"("unusable":"not a readable XML document)"));
  EXPECT_EQ(run("page " + file.path()).code, 1);
}

TEST(ToolPage, TellsWhatChanged) {
  const test::temporary_file before(channel("<UNITS>mm</UNITS>"));
  const test::temporary_file after(channel("<UNITS>um</UNITS>"));
  const std::string found = data("--diff " + before.path() + " " + after.path());
  EXPECT_THAT(found, HasSubstr(R"("added":0,"removed":0,"changed":1)"));
  EXPECT_THAT(found, HasSubstr(R"({"name":"field","kind":"text","all":"units"},)"
                               R"({"name":"before","kind":"text","all":"mm"},)"
                               R"({"name":"after","kind":"text","all":"um"})"));
  EXPECT_THAT(
      found,
      HasSubstr(
          R"("change":{"rows":1,"columns":[{"name":"change","kind":"text","all":"changed"}])"));
}

TEST(ToolPage, TellsThatNothingChanged) {
  const test::temporary_file file(channel());
  EXPECT_THAT(data("--diff " + file.path() + " " + file.path()),
              HasSubstr(R"("changed":0,"table":{"rows":0)"));
}

TEST(ToolPage, ComparesTwoDocumentsOfOneKind) {
  const test::temporary_file file(channel());
  const test::temporary_file variables(test::variable);
  const test::temporary_file events(one_event);
  EXPECT_EQ(run("page --diff " + file.path() + " " + variables.path() + " >/dev/null").code, 0);
  const run_result other = run("page --diff " + events.path() + " " + file.path());
  EXPECT_EQ(other.code, 2);
  EXPECT_EQ(other.out, "");
  EXPECT_THAT(other.err,
              HasSubstr("of another kind (channel descriptions, element dialect) than "));
  const run_result several =
      run("page --diff " + file.path() + " " + file.path() + " " + file.path());
  EXPECT_EQ(several.code, 2);
  EXPECT_THAT(several.err, HasSubstr("--diff: takes two documents: --diff OLD NEW"));
  EXPECT_EQ(run("page --diff - - <" + file.path()).code, 2);
}
