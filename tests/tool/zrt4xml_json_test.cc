// `--json` of the subcommands that show and find.

#include "tool_support.hh"

using test::channel;
using test::one_event;
using test::prints_valid_json;
using test::run;
using test::run_result;

TEST(ToolJson, ShowsAnEventList) {
  const test::temporary_file file(
      "<BMR><EVENT><TYPE>1</TYPE><TMASK>0x1F</TMASK>"
      "<SBLOCK>S<CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK></EVENT></BMR>");
  const run_result result = run("show --json " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, R"({
  "format_version": 1,
  "subcommand": "show",
  "documents": [
    {
      "file": ")" + file.path() +
                            R"(",
      "kind": "events",
      "errors": 0,
      "records": [
        {
          "event_type": 1,
          "event_type_name": "NORMAL",
          "trigger_mask": 31,
          "min_time_seconds": 0,
          "min_time_microseconds": 0,
          "priority": 0,
          "server_blocks": [
            {
              "name": "S",
              "channels": [
                "A"
              ]
            }
          ]
        }
      ]
    }
  ]
}
)");
}

TEST(ToolJson, EveryExampleFitsTheSchema) {
  ASSERT_GE(test::examples().size(), 11U);
  std::string all;
  for (const std::string& example : test::examples()) {
    all += " " + example;
    EXPECT_TRUE(prints_valid_json("diff --json " + example + " " + example));
  }
  EXPECT_TRUE(prints_valid_json("show --json" + all));
  EXPECT_TRUE(prints_valid_json("check --json" + all));
  EXPECT_TRUE(prints_valid_json("stat --json" + all));
  EXPECT_TRUE(prints_valid_json("find --json --name BPM.3.L1.X --event NORMAL " ZRT4_SOURCE_DIR
                                "/examples/channels/channels.xml"));
}

TEST(ToolJson, SchemaIsNoOpenDoor) {
  const std::string check =
      "true | printf '%s' '{\"format_version\": 1, \"subcommand\": \"show\", ";
  const std::string validator =
      "}' | " ZRT4_PYTHON " " ZRT4_SOURCE_DIR "/tests/tool/validate_json.py " ZRT4_SOURCE_DIR
      "/docs/zrt4xml.schema.json";
  EXPECT_EQ(std::system((check + "\"documents\": []" + validator + " >/dev/null").c_str()), 0);
  EXPECT_NE(std::system((check + "\"documents\": [1]" + validator + " >/dev/null 2>&1").c_str()),
            0);
}

TEST(ToolJson, KeepsTheNumbersOfTypesInBothDialects) {
  for (const std::string& document : {channel(), test::variable}) {
    const test::temporary_file file(document);
    EXPECT_THAT(
        run("show --json " + file.path()).out,
        testing::HasSubstr("\"event_type\": 1,\n          \"event_type_name\": \"NORMAL\""));
  }
}

TEST(ToolJson, TextCutInsideACharacterIsStillUtf8) {
  // The units hold 15 bytes: seven characters and the first byte of the eighth.
  const test::temporary_file file(
      channel("<UNITS>\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5</UNITS>"));
  EXPECT_THAT(run("show --json " + file.path()).out,
              testing::HasSubstr("\"units\": \"\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2"
                                 "\xb5\xef\xbf\xbd\""));
  EXPECT_TRUE(prints_valid_json("show --json " + file.path()));
  EXPECT_TRUE(prints_valid_json("check --json " + file.path()));
  const test::temporary_file other(channel("<UNITS>mm</UNITS>"));
  EXPECT_TRUE(prints_valid_json("diff --json " + file.path() + " " + other.path()));
}

// Everything that is shown or named by subcommands other than show, cut in the middle of "\u00e9".
TEST(ToolJson, NamesCutInsideACharacterAreStillUtf8) {
  std::string long_name = "x";
  while (long_name.size() < 300) long_name += "\xc3\xa9";
  const test::temporary_file file("<CHANDESCRIPTIONS><CHANNEL><PROP>" + long_name +
                                  "</PROP><NAME>" + long_name + "</NAME><SUBSYSTEM>xx" + long_name +
                                  "</SUBSYSTEM></CHANNEL></CHANDESCRIPTIONS>");
  EXPECT_TRUE(prints_valid_json("stat --json " + file.path()));
  EXPECT_TRUE(prints_valid_json("check --json " + file.path()));
  EXPECT_TRUE(
      prints_valid_json("find --json --name " + long_name.substr(0, 255) + " " + file.path()));
  EXPECT_TRUE(
      prints_valid_json("find --json --name " + long_name.substr(0, 200) + " " + file.path()));
}

TEST(ToolJson, TextsOfEveryLengthOfCharacter) {
  const std::string text = "A\xc3\xa9\xe2\x82\xac\xf0\x9d\x84\x9e";
  const test::temporary_file file(channel("<DESC>" + text + "</DESC>"));
  EXPECT_THAT(run("show --json " + file.path()).out,
              testing::HasSubstr("\"description\": \"" + text + "\""));
}

TEST(ToolJson, FileNameThatIsNoUtf8) {
  const test::temporary_file file(one_event);
  const std::string odd = file.path() + "\xff";
  std::filesystem::copy_file(file.path(), odd);
  EXPECT_THAT(run("show --json " + odd).out,
              testing::HasSubstr("\"file\": \"" + file.path() + "\xef\xbf\xbd\""));
  std::filesystem::remove(odd);
}

TEST(ToolJson, ThresholdsAreTheDecimalsThatWereWritten) {
  const test::temporary_file file(
      "<ENVINDEXDICT><CHANNEL><INDEX>7</INDEX><PROP>A</PROP><DABS>0.05</DABS><DREL>nan</DREL>"
      "</CHANNEL></ENVINDEXDICT>");
  EXPECT_THAT(run("show --json " + file.path()).out,
              testing::HasSubstr("\"absolute_threshold\": 0.05,\n"
                                 "          \"relative_threshold\": null,\n"
                                 "          \"relative_threshold_name\": \"nan\"\n"));
  EXPECT_TRUE(prints_valid_json("show --json " + file.path()));
}

TEST(ToolJson, NamesFilesThatCannotBeUsed) {
  const test::temporary_file bad("<html/>");
  const test::temporary_file good(one_event);
  const std::string arguments = "show --json /nonexistent " + bad.path() + " " + good.path();
  const run_result result = run(arguments);
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.out,
              testing::HasSubstr("      \"file\": \"/nonexistent\",\n"
                                 "      \"kind\": null,\n"
                                 "      \"unusable\": \"No such file or directory\"\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("\"kind\": \"events\""));
  EXPECT_TRUE(prints_valid_json(arguments));
}

TEST(ToolJson, BrokenDocumentCountsItsErrors) {
  const test::temporary_file file("<BMR><EVENT><TYPE>1</TYPE></EVENT>");
  const run_result result = run("show --json - <" + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::HasSubstr("\"file\": \"standard input\""));
  EXPECT_THAT(result.out, testing::HasSubstr("\"errors\": 1"));
  EXPECT_THAT(result.out, testing::HasSubstr("\"event_type\": 1"));
}

TEST(ToolJson, DamagedCameraCounts) {
  const test::temporary_file file("<Camera><Integer Name='Width'/><Float></Camera>");
  const run_result result = run("show --json " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::HasSubstr("\"errors\": 1"));
  EXPECT_THAT(result.out, testing::HasSubstr("\"type_name\": \"Integer\""));
}

TEST(ToolJson, FindsAChannel) {
  const test::temporary_file file(channel());
  const run_result result = run("find --json --name A/B/C --event BOR " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, testing::StartsWith(R"({
  "format_version": 1,
  "subcommand": "find",
  "name": "A/B/C",
  "channel": {
    "name": "A.C",
    "property": "A/B/C",
    "event_type_mask": 2,
    "event_type_names": [
      "NORMAL"
    ],
    "data_type_mask": 2147484160,
    "slow": false,
    "main_linac": false,
    "sub_channels": 0,
    "event_type": 1,
    "data_type": 41,
    "data_type_names": [
      "1CHAN_2010"
    ],
    "description": "",
    "units": "",
    "file": ")" + file.path() + R"(",
    "line": 1,
    "merged_with": []
  },
  "event": {
    "type": 2,
    "name": "BOR",
    "selected": false,
    "remark": "no channel has event type BOR"
  },
  "reason": null,
  "matches": [
    {
)"));
  EXPECT_TRUE(prints_valid_json("find --json --name A/B/C " + file.path()));
}

TEST(ToolJson, ChannelNotFoundIsNull) {
  const test::temporary_file file(channel());
  const run_result result = run("find --json --name nothing " + file.path());
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, testing::EndsWith("  \"channel\": null,\n"
                                            "  \"event\": null,\n"
                                            "  \"reason\": \"no channel has this DAQ name or "
                                            "property\",\n"
                                            "  \"matches\": [],\n"
                                            "  \"unusable\": []\n"
                                            "}\n"));
  EXPECT_TRUE(prints_valid_json("find --json --name nothing " + file.path()));
}

TEST(ToolJson, FullDeviceAndClosedPipe) {
  const std::string example = ZRT4_SOURCE_DIR "/examples/channels/linac.xml";
  const run_result full = run("show --json " + example + " >/dev/full");
  EXPECT_EQ(full.code, 2);
  EXPECT_EQ(full.err, "zrt4xml: standard output: No space left on device\n");
  const run_result closed = run("show --json " + example + " | head -n 1");
  EXPECT_EQ(closed.out, "{\n");
  EXPECT_EQ(closed.err, "");
}

TEST(ToolJson, TextsAreUtf8WhateverTheLocale) {
  char folder[] = "/tmp/zrt4_locale_XXXXXX";
  ASSERT_NE(mkdtemp(folder), nullptr);
  const std::string place = folder;
  // It warns of what it does not know of the language, and makes the locale all the same.
  (void)std::system(("localedef -i en_US -f ISO-8859-1 " + place + "/latin1 2>/dev/null").c_str());
  ASSERT_TRUE(std::filesystem::exists(place + "/latin1"));
  const test::temporary_file file(test::channel("<DESC>\xc3\x9c\xce\xa9</DESC>"));
  const auto answered = [&](const std::string& locale, const std::string& arguments) {
    const test::temporary_file out("");
    // The C library itself leaves memory behind when LOCPATH has no such locale.
    const int status =
        std::system(("ASAN_OPTIONS=detect_leaks=0 LOCPATH=" + place + " LC_ALL=" + locale + " " +
                     test::tool() + arguments + " >" + out.path() + " 2>&1")
                        .c_str());
    return std::to_string(WEXITSTATUS(status)) + "\n" + out.content();
  };
  for (const std::string& command :
       {"show --json " + file.path(), "show " + file.path(), "check " + file.path(),
        "list --csv " + file.path(), "convert --to text --lossy " + file.path(),
        "find --name A.C " + file.path(), "find -i --name '\xc3\xbc*' " + file.path()}) {
    const std::string expected = answered("C.UTF-8", command);
    for (const std::string locale : {"latin1", "C", "nonsense"}) {
      EXPECT_EQ(answered(locale, command), expected) << locale;
    }
  }
  EXPECT_THAT(answered("latin1", "show --json " + file.path()),
              testing::HasSubstr("\"description\": \"\xc3\x9c\xce\xa9\""));
  EXPECT_THAT(answered("latin1", "check " + file.path()), testing::StartsWith("0\n"));
  EXPECT_THAT(answered("latin1", "convert --to xml " + file.path()),
              testing::HasSubstr("\n<DESC>\xc3\x9c\xce\xa9</DESC>\n"));
  std::filesystem::remove_all(folder);
}
