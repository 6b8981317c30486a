// The tool started without standard input, output or error, as a shell's ">&-" does: what it opens
// itself must not take their place.

#include "tool_support.hh"

using test::channel;
using test::run;

namespace {

const std::string text_line = "0\t2\tA.C\tA/B/C\t0\t\"\"\t\"\"\t1\t0\t0\n";

}  // namespace

TEST(ToolClosedStreams, AFileIsWrittenWhole) {
  const test::temporary_file file(channel());
  for (const char* closed : {">&-", "<&-", "2>&-", "<&- >&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
    const test::temporary_file to("old");
    const auto result =
        run("convert " + file.path() + " --lossy --to text -o " + to.path() + " " + closed);
    EXPECT_EQ(result.code, 0) << closed;
    EXPECT_EQ(to.content(), text_line) << closed;
  }
}

TEST(ToolClosedStreams, NothingToWriteToIsAFailure) {
  const test::temporary_file file(channel());
  const std::string message = "zrt4xml: standard output: Bad file descriptor\n";
  for (const char* what :
       {"show ", "show --json ", "convert --to xml ", "convert -q --to text ", "stat "}) {
    for (const char* closed : {" >&-", " <&- >&-"}) {
      const auto result = run(what + file.path() + closed);
      EXPECT_EQ(result.code, 2) << what << closed;
      EXPECT_EQ(result.err, message) << what << closed;
    }
    EXPECT_EQ(run(what + file.path() + " <&- >&- 2>&-").code, 2) << what;
  }
}

TEST(ToolClosedStreams, NothingToReadFromIsAFailure) {
  const auto result = run("show - <&-");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::HasSubstr("Bad file descriptor"));
}
