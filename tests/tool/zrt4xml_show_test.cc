// `show`: numbers as the document has them, and --kind.

#include "tool_support.hh"

using test::channel;
using test::one_event;
using test::prints_valid_json;
using test::run;
using test::run_result;
using test::variable;

namespace {

// Readers take numbers by way of a long, which holds the nearest that it can.
constexpr bool long_is_wide = sizeof(long) == 8;

std::string described(const std::string& types) {
  return "<CHANDESCRIPTIONS><CHANNEL>" + types + "<PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>";
}

/// The lines of event type and data type.
std::string shown_types(const std::string& document) {
  const test::temporary_file file(document);
  const run_result result = run("show " + file.path() + " | grep type");
  EXPECT_EQ(result.code, 0);
  return result.out;
}

}  // namespace

TEST(ToolShow, TypesWithANameAreMasksAsTheLibraryListsThem) {
  EXPECT_EQ(shown_types(described("<EVTYPE>4</EVTYPE><DTYPE>38</DTYPE>")),
            " ev type  : 0x10 ENV\n data type: 0x80000040 BPM_2010\n");
  EXPECT_EQ(shown_types(described("<EVTYPE>31</EVTYPE><DTYPE>13</DTYPE>")),
            " ev type  : 0x80000000 31\n data type: 0x2000 IMAGE\n");
  EXPECT_EQ(shown_types(described("<EVTYPE> 0\n</EVTYPE><DTYPE>062</DTYPE>")),
            " ev type  : 0x1 HB\n data type: 0xc0000000 7CHAN_2010\n");
  EXPECT_EQ(shown_types(described("")), " ev type  : 0x0 \n data type: 0x0 \n");
}

// A mask has only 32 bits: 40 would be 8, MCP.
TEST(ToolShow, NumbersWithoutANameAreShownAsTheyAreWritten) {
  EXPECT_EQ(shown_types(described("<EVTYPE>40</EVTYPE><DTYPE>100</DTYPE>")),
            " ev type  : 40 UNKNOWN\n data type: 100 UNKNOWN\n");
  EXPECT_EQ(shown_types(described("<EVTYPE>32</EVTYPE><DTYPE>63</DTYPE>")),
            " ev type  : 32 EVMAX\n data type: 63 MAX_2010\n");
  EXPECT_EQ(shown_types(described("<EVTYPE>-1</EVTYPE><DTYPE>30</DTYPE>")),
            " ev type  : '-1', read as 4294967295 UNKNOWN\n data type: 30 UNKNOWN\n");
  EXPECT_EQ(shown_types(described("<DTYPE>0</DTYPE>")),
            " ev type  : 0x0 \n data type: 0 UNKNOWN\n");
}

TEST(ToolShow, NumbersThatAreReadAsOthersAreShownAsTheyAreWritten) {
  const std::string type = long_is_wide ? "38 BPM_2010" : "2147483647 UNKNOWN";
  const std::string far_beyond = long_is_wide ? "4294967295 UNKNOWN" : "2147483647 UNKNOWN";
  EXPECT_EQ(shown_types(described("<EVTYPE>NORMAL</EVTYPE><DTYPE>4294967334</DTYPE>")),
            " ev type  : 'NORMAL', read as 0 HB\n data type: '4294967334', read as " + type + "\n");
  EXPECT_EQ(shown_types(described("<EVTYPE>1.5</EVTYPE><DTYPE>9999999999999999999</DTYPE>")),
            " ev type  : '1.5', read as 1 NORMAL\n"
            " data type: '9999999999999999999', read as " +
                far_beyond + "\n");
}

TEST(ToolShow, BothDialectsAndFurtherPropertiesToo) {
  EXPECT_EQ(shown_types("<DAQvariables><DaqFloat><evType>33</evType><vindo>A</vindo></DaqFloat>"
                        "<DaqFloat><vindo>B</vindo><evType>2x</evType></DaqFloat></DAQvariables>"),
            " ev type  : 33 UNKNOWN\n data type: 0x0 \n"
            " ev type  : '2x', read as 2 BOR\n data type: 0x0 \n");
  EXPECT_EQ(shown_types(described("<EVTYPE>50</EVTYPE><PROP>B</PROP><DTYPE>32</DTYPE>")),
            " ev type  : 50 UNKNOWN\n data type: 32 UNKNOWN\n"
            " ev type  : 50 UNKNOWN\n data type: 32 UNKNOWN\n");
}

// The second of a property is merged: what it says of the types counts where the first says
// nothing.
TEST(ToolShow, MergedVariablesAndJsonAgree) {
  const test::temporary_file file(
      "<DAQvariables><DaqFloat><evType>1</evType><vindo>A</vindo></DaqFloat>"
      "<DaqFloat><evType>2</evType><vindo>A</vindo></DaqFloat></DAQvariables>");
  EXPECT_THAT(run("show " + file.path()).out, testing::HasSubstr(" ev type  : 0x2 NORMAL\n"));
  EXPECT_THAT(run("show --json " + file.path()).out,
              testing::HasSubstr("\"event_type\": 1,\n          \"event_type_name\": \"NORMAL\""));
}

TEST(ToolShow, NumbersBelowZeroAreTheSameInListingAndJson) {
  const test::temporary_file file(described("<EVTYPE>-1</EVTYPE><DTYPE>-5</DTYPE>"));
  EXPECT_THAT(run("show " + file.path()).out,
              testing::HasSubstr(" ev type  : '-1', read as 4294967295 UNKNOWN\n"
                                 " data type: '-5', read as 4294967291 UNKNOWN\n"));
  const std::string json = run("show --json " + file.path()).out;
  EXPECT_THAT(json, testing::HasSubstr("\"event_type\": 4294967295,"));
  EXPECT_THAT(json, testing::HasSubstr("\"data_type\": 4294967291,"));
}

// A client has no event type then, where it has HB for the number 0.
TEST(ToolShow, AnEventTypeThatIsNotToldHasNoNameInJsonEither) {
  const struct {
    const char* types;
    const char* name;
  } cases[] = {{"", "UNKNOWN"}, {"<EVTYPE></EVTYPE>", "UNKNOWN"}, {"<EVTYPE>0</EVTYPE>", "HB"}};
  for (const auto& each : cases) {
    const test::temporary_file file(described(each.types));
    const std::string named =
        "\"event_type\": 0,\n          \"event_type_name\": \"" + std::string(each.name) + "\",";
    const std::string shown = run("show --json " + file.path()).out;
    EXPECT_THAT(shown, testing::HasSubstr(named)) << each.types;
    EXPECT_EQ(run("show --json " + file.path() + " | " + test::tool() + " convert - --to xml").out,
              run("convert --to xml " + file.path()).out);
    EXPECT_THAT(run("stat " + file.path()).out,
                testing::HasSubstr("  0 " + std::string(each.name) + " "));
  }
  const test::temporary_file variables(
      "<DAQvariables><DaqFloat><vindo>A</vindo></DaqFloat>"
      "</DAQvariables>");
  EXPECT_THAT(run("show --json " + variables.path()).out,
              testing::HasSubstr("\"event_type_name\": \"UNKNOWN\""));
}

TEST(ToolShow, NumbersOfAllFieldsThatAreReadAsOthersAreTold) {
  const struct {
    const char* document;
    const char* told;
  } cases[] = {
      {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP>\n<STREAM>4294967299</STREAM></CHANNEL>"
       "</CHANDESCRIPTIONS>",
       long_is_wide ? ":2:9: STREAM: '4294967299' does not fit, read as 3"
                    : ":2:9: STREAM: '4294967299' does not fit, read as 2147483647"},
      {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP>\n<SIZE>2k</SIZE></CHANNEL></CHANDESCRIPTIONS>",
       ":2:7: SIZE: '2k' is read as 2, the rest is ignored"},
      {"<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP>\n<DIM>one</DIM></CHANNEL></CHANDESCRIPTIONS>",
       ":2:6: DIM: 'one' is no number, read as 0"},
      {"<DAQvariables><DaqBits><vindo>A</vindo>\n<bitTitle bit='1.5'>x</bitTitle></DaqBits>"
       "</DAQvariables>",
       ":2:21: bitTitle bit: '1.5' is read as 1, the rest is ignored"},
      {"<BMR><EVENT><TYPE>1</TYPE>\n<PRIORITY>0X1F</PRIORITY></EVENT></BMR>",
       ":2:11: PRIORITY: '0X1F' is read as 0, the rest is ignored; write 0x1F"},
      {"<ENVINDEXDICT><CHANNEL>\n<INDEX>5000000000</INDEX><PROP>A</PROP></CHANNEL></ENVINDEXDICT>",
       long_is_wide ? ":2:8: INDEX: '5000000000' does not fit, read as 705032704"
                    : ":2:8: INDEX: '5000000000' does not fit, read as 2147483647"},
      {"<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX>\n<DABS>0,5</DABS><PROP>A</PROP></CHANNEL>"
       "</ENVINDEXDICT>",
       ":2:7: DABS: '0,5' is read as 0, the rest is ignored; write 0.5"},
  };
  for (const auto& each : cases) {
    const test::temporary_file file(each.document);
    for (const std::string format : {"", "--json "}) {
      const run_result result = run("show " + format + file.path());
      EXPECT_EQ(result.code, 0);
      EXPECT_EQ(result.err, "zrt4xml: " + file.path() + each.told + "\n");
    }
    EXPECT_EQ(run("-q show " + file.path()).err, "");
  }
}

TEST(ToolShow, ManyNumbersThatAreReadAsOthersAreCounted) {
  std::string channels;
  for (int i = 0; i < 8; ++i) channels += "<CHANNEL><PROP>A</PROP><SIZE>2k</SIZE></CHANNEL>";
  const test::temporary_file file("<CHANDESCRIPTIONS>" + channels + "</CHANDESCRIPTIONS>");
  const run_result result = run("show " + file.path());
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 6);
  EXPECT_THAT(result.err, testing::EndsWith(": 3 more of the same kind are read as others than "
                                            "are written: rest_ignored\n"));
}

TEST(ToolShow, TimesBeyond31BitsAsInJson) {
  const test::temporary_file file(
      "<BMR><EVENT><TYPE>1</TYPE><MINTIMESEC>3000000000</MINTIMESEC>"
      "<MINTIMEUSEC>4294967295</MINTIMEUSEC></EVENT></BMR>");
  EXPECT_THAT(run("show " + file.path()).out,
              testing::HasSubstr("Min event time:\t3000000000 sec 4294967295 usec\n"));
  EXPECT_THAT(run("show --json " + file.path()).out,
              testing::HasSubstr("\"min_time_seconds\": 3000000000"));
}

TEST(ToolShow, FeaturesThatAreNotListedAreCounted) {
  const test::temporary_file one("<Camera><Integer Name='Width'/><Float/></Camera>");
  const run_result result = run("show " + one.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "[0] Name:'Width' type:1 ToolTip:'' Description:''\n");
  EXPECT_EQ(result.err, "zrt4xml: " + one.path() +
                            ": 1 feature without a name not listed; --json shows them\n");
  EXPECT_EQ(run("-q show " + one.path()).err, "");
}

TEST(ToolShow, KindOfAnotherRootIsRefusedForEveryKind) {
  const test::temporary_file events(one_event);
  const test::temporary_file channels(channel());
  const struct {
    const char* kind;
    const std::string& path;
    const char* told;
  } cases[] = {
      {"channels", events.path(), "its root element is 'BMR' (event list), not 'CHANDESCRIPTIONS'"},
      {"variables", events.path(), "its root element is 'BMR' (event list), not 'DAQvariables'"},
      {"dictionary", events.path(), "its root element is 'BMR' (event list), not 'ENVINDEXDICT'"},
      {"camera", events.path(),
       "its root element is 'BMR' (event list), not that of camera features"},
      {"events", channels.path(),
       "its root element is 'CHANDESCRIPTIONS' (channel descriptions, element dialect), not 'BMR'"},
  };
  for (const auto& each : cases) {
    for (const std::string format : {"", "--json "}) {
      const run_result result =
          run("show " + format + "--kind " + std::string(each.kind) + " " + each.path);
      EXPECT_EQ(result.code, 1) << each.kind;
      EXPECT_EQ(result.err, "zrt4xml: " + each.path + ": " + each.told + "\n");
    }
  }
  const test::temporary_file other("<Camera><Integer Name='Width'/></Camera>");
  EXPECT_EQ(run("show --kind events " + other.path()).err,
            "zrt4xml: " + other.path() + ": its root element is 'Camera', not 'BMR'\n");
}

TEST(ToolShow, KindOfACameraFitsEveryOtherRoot) {
  const test::temporary_file file("<nothing/>");
  EXPECT_EQ(run("show " + file.path()).code, 1);
  const run_result result = run("show --kind camera " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out + result.err, "");
  EXPECT_EQ(run("show --kind nonsense " + file.path()).code, 2);
}

TEST(ToolShow, KindOfTheOtherDialectIsTheDialectOfTheRoot) {
  const test::temporary_file file(variable);
  EXPECT_EQ(run("show --kind channels " + file.path()).out, run("show " + file.path()).out);
  EXPECT_THAT(run("show --json --kind channels " + file.path()).out,
              testing::HasSubstr("\"kind\": \"variables\""));
  EXPECT_TRUE(prints_valid_json("show --json --kind channels " + file.path()));
}

TEST(ToolShow, ControlCharactersOfTextsAndFileNamesNeverReachATerminal) {
  const test::temporary_file file(
      "<?xml version='1.1' encoding='UTF-8'?>"
      "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>1</EVTYPE><PROP>&#x1b;[31m</PROP><NAME>&#x9b;2J</NAME>"
      "<DESC>\xe2\x82\xac</DESC><UNITS>12345678901234\xc3\xa9</UNITS></CHANNEL></"
      "CHANDESCRIPTIONS>");
  const std::string listing = run("show " + file.path()).out;
  EXPECT_THAT(listing, testing::HasSubstr("\tprop   :\\x1b[31m\n\tname   :\\xc2\\x9b2J\n"));
  EXPECT_THAT(listing, testing::HasSubstr("\tdesc   :\xe2\x82\xac\n"));
  EXPECT_THAT(listing, testing::HasSubstr("\tunit   :12345678901234\\xc3\n"));

  const std::string odd = file.path() + "\x1b[31m\n.xml";
  const std::string shown = file.path() + "\\x1b[31m\\x0a.xml";
  std::filesystem::copy_file(file.path(), odd);
  const std::string names = " '" + odd + "' " + file.path();
  EXPECT_THAT(run("show" + names).out, testing::StartsWith("==> " + shown + " <==\n"));
  EXPECT_THAT(run("stat" + names).out, testing::StartsWith(shown + ": channel descriptions, "));
  EXPECT_THAT(run("check" + names).out, testing::StartsWith(shown + ": channel descriptions, "));
  EXPECT_THAT(run("check --format gcc" + names).out, testing::StartsWith(shown + ":1:"));
  EXPECT_THAT(run("find --name '*'" + names).out,
              testing::HasSubstr("\nstands in:     " + shown + ":1\n"));
  EXPECT_THAT(run("diff" + names).out, "");
  const test::temporary_file other(test::channel());
  EXPECT_THAT(run("diff '" + odd + "' " + other.path()).out,
              testing::StartsWith("--- " + shown + "\n+++ " + other.path() + "\n"));
  EXPECT_EQ(run("find --name A --event '\x1b[31m' x").err,
            "zrt4xml: --event: no such event type: \\x1b[31m; zrt4xml types lists them\nTry "
            "'zrt4xml find --help'.\n");
  std::filesystem::remove(odd);
}

TEST(ToolShow, ALongListingThatTheDeviceDoesNotTakeIsToldOnce) {
  std::string many;
  for (int i = 0; i < 2000; ++i) many += "<CHANNEL><PROP>A</PROP></CHANNEL>";
  const test::temporary_file file("<CHANDESCRIPTIONS>" + many + "</CHANDESCRIPTIONS>");
  const run_result result = run("show " + file.path() + " >/dev/full");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.err, "zrt4xml: standard output: No space left on device\n");
}
