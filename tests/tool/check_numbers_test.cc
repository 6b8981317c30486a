// Numbers that `check` reads as their readers do, and what they say.

#include "finding_support.hh"
#include "own_locale.hh"
#include "zrt4xml.hh"

using test::channel_with;
using test::entry_with;
using test::event_with;
using test::found_in;
using test::lines;
using test::variable_with;

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

namespace {

struct number_case {
  const char* text;
  const char* found;  ///< empty: nothing
};

// Readers take numbers by way of a long, which holds the nearest that it can.
constexpr bool long_is_wide = sizeof(long) == 8;

std::string element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + text + "</" + name + ">";
}

lines expected(const std::string& place, const char* found) {
  return *found == '\0' ? lines{} : lines{place + " " + found};
}

class CheckNumbers : public testing::Test {
  const zrt4::xml_session session;
};

}  // namespace

TEST_F(CheckNumbers, TypeOfAnEvent) {
  const number_case cases[] = {
      {"NORMAL", "not_a_number: TYPE: 'NORMAL' is no number, read as 0 (HB); NORMAL is 1"},
      {"image", "not_a_number: TYPE: 'image' is no number, read as 0 (HB); IMAGE is 6"},
      {"5x", "rest_ignored: TYPE: '5x' is read as 5 (UPD), the rest is ignored"},
      {"1.5", "rest_ignored: TYPE: '1.5' is read as 1 (NORMAL), the rest is ignored"},
      {"0x4",
       "rest_ignored: TYPE: '0x4' is read as 0 (HB), the rest is ignored; hexadecimal "
       "numbers are not read here: write 4"},
      {"33", "event_skipped: event type 33 is none of 0 to 32: the whole event is skipped"},
      {"-1", "event_skipped: event type -1 is none of 0 to 32: the whole event is skipped"},
      {"4294967297",
       "event_skipped: event type 4294967297 is none of 0 to 32: the whole event is skipped"},
      {"99999999999999999999",
       "event_skipped: event type 99999999999999999999 is none of 0 to "
       "32: the whole event is skipped"},
      {"28", "unknown_event_type: event type 28 has no name"},
      {"32", "unknown_event_type: event type 32 has no name"},
      {"0", ""},
      {"27", ""},
      {" +7\n", ""},
  };
  for (const auto& [text, found] : cases) {
    EXPECT_EQ(found_in("<BMR><EVENT>\n" + element("TYPE", text) + "</EVENT></BMR>"),
              expected("2:7", found))
        << text;
  }
}

TEST_F(CheckNumbers, NumbersOfAnEvent) {
  const number_case cases[] = {
      {"0X1F", "rest_ignored: TMASK: '0X1F' is read as 0, the rest is ignored; write 0x1F"},
      {"1F", "rest_ignored: TMASK: '1F' is read as 1, the rest is ignored"},
      {"2k", "rest_ignored: TMASK: '2k' is read as 2, the rest is ignored"},
      {"0x1G", "rest_ignored: TMASK: '0x1G' is read as 1, the rest is ignored"},
      {"12x", "not_a_number: TMASK: '12x' is no number, read as 0"},
      {"all", "not_a_number: TMASK: 'all' is no number, read as 0"},
      {"-1", "out_of_range: TMASK: '-1' does not fit, read as 4294967295"},
      {"4294967296", long_is_wide
                         ? "out_of_range: TMASK: '4294967296' does not fit, read as 0"
                         : "out_of_range: TMASK: '4294967296' does not fit, read as 4294967295"},
      {"0x1FFFFFFFF", "out_of_range: TMASK: '0x1FFFFFFFF' does not fit, read as 4294967295"},
      {"0x1F", ""},
      {"4294967295", ""},
      {"0xffffFFFF", ""},
      {" 31 ", ""},
      {"+31", ""},
  };
  for (const auto& [text, found] : cases) {
    EXPECT_EQ(found_in(event_with(element("TMASK", text))), expected("3:8", found)) << text;
  }
}

TEST_F(CheckNumbers, MoreThanASecondOfMicroseconds) {
  EXPECT_EQ(found_in(event_with("<MINTIMEUSEC>999999</MINTIMEUSEC>")), lines{});
  EXPECT_EQ(found_in(event_with("<MINTIMEUSEC>1000000</MINTIMEUSEC>")),
            lines{"3:14 impossible_number: MINTIMEUSEC: '1000000' makes no sense: it is 0 to "
                  "999999"});
  EXPECT_EQ(found_in(event_with("<MINTIMESEC>1000000</MINTIMESEC>")), lines{});
}

TEST_F(CheckNumbers, TypesOfAChannel) {
  const number_case event_types[] = {
      {"ENV", "not_a_number: EVTYPE: 'ENV' is no number, read as 0 (HB); ENV is 4"},
      {"4294967297", long_is_wide
                         ? "out_of_range: EVTYPE: '4294967297' does not fit, read as 1 (NORMAL)"
                         : "out_of_range: EVTYPE: '4294967297' does not fit, read as 2147483647"},
      {"40", "unknown_event_type: event type 40 has no name"},
      {"1048576", "unknown_event_type: event type 1048576 has no name; as a mask it is LLRF_ML"},
      {"-1", "unknown_event_type: event type -1 has no name"},
      {"6", ""},
  };
  for (const auto& [text, found] : event_types) {
    EXPECT_EQ(found_in(channel_with(element("EVTYPE", text))), expected("3:9", found)) << text;
    EXPECT_EQ(found_in(variable_with("DaqFloat", element("evType", text))).size(),
              *found == '\0' ? 0U : 1U);
  }
  const number_case data_types[] = {
      {"IMAGE", "not_a_number: DTYPE: 'IMAGE' is no number, read as 0; IMAGE is 13"},
      {"38a", "rest_ignored: DTYPE: '38a' is read as 38 (BPM_2010), the rest is ignored"},
      {"4294967334", long_is_wide
                         ? "out_of_range: DTYPE: '4294967334' does not fit, read as 38 (BPM_2010)"
                         : "out_of_range: DTYPE: '4294967334' does not fit, read as 2147483647"},
      {"54", "unknown_data_type: data type 54 has no name"},
      {"-2147483584",
       "unknown_data_type: data type -2147483584 has no name; as a mask it is BPM_2010"},
      {"2147483712",
       long_is_wide
           ? "unknown_data_type: data type 2147483712 has no name; as a mask it is BPM_2010"
           : "out_of_range: DTYPE: '2147483712' does not fit, read as 2147483647"},
      {"0", ""},  // none, as writers write it
      {"63", ""},
  };
  for (const auto& [text, found] : data_types) {
    EXPECT_EQ(found_in(channel_with(element("DTYPE", text))), expected("3:8", found)) << text;
  }
}

TEST_F(CheckNumbers, NumbersOfAChannel) {
  const struct {
    const char* element;
    number_case expects;
  } cases[] = {
      {"SIZE", {"2k", "rest_ignored: SIZE: '2k' is read as 2, the rest is ignored"}},
      {"SIZE", {"0,5", "rest_ignored: SIZE: '0,5' is read as 0, the rest is ignored"}},
      {"SIZE",
       {"3000000000", long_is_wide
                          ? "out_of_range: SIZE: '3000000000' does not fit, read as -1294967296"
                          : "out_of_range: SIZE: '3000000000' does not fit, read as 2147483647"}},
      {"SIZE",
       {"9999999999", long_is_wide
                          ? "out_of_range: SIZE: '9999999999' does not fit, read as 1410065407"
                          : "out_of_range: SIZE: '9999999999' does not fit, read as 2147483647"}},
      {"SIZE", {"-1", "impossible_number: SIZE: '-1' makes no sense: it is never negative"}},
      {"SIZE", {"nan", "not_a_number: SIZE: 'nan' is no number, read as 0"}},
      {"SIZE", {"2147483647", ""}},
      {"STREAM", {"1%", "rest_ignored: STREAM: '1%' is read as 1, the rest is ignored"}},
      {"DB_KEY", {"-2", "impossible_number: DB_KEY: '-2' makes no sense: the least is -1"}},
      {"DB_KEY", {"-1", ""}},
      {"SETPOINT", {"yes", "not_a_number: SETPOINT: 'yes' is no number, read as 0"}},
      {"COUNT", {"-3", "impossible_number: COUNT: '-3' makes no sense: it is never negative"}},
      {"BIT", {"31", ""}},
      {"BIT", {"32", "impossible_number: BIT: '32' makes no sense: it is 0 to 31"}},
      {"BIT", {"-1", "impossible_number: BIT: '-1' makes no sense: it is 0 to 31"}},
      {"BIT", {"x", "not_a_number: BIT: 'x' is no number, read as 0"}},
      {"DIM", {"-1", "impossible_number: DIM: '-1' makes no sense: it is never negative"}},
  };
  for (const auto& [name, expects] : cases) {
    const std::string place = "3:" + std::to_string(std::string(name).size() + 3);
    EXPECT_EQ(found_in(channel_with(element(name, expects.text))), expected(place, expects.found))
        << name << " " << expects.text;
  }
}

TEST_F(CheckNumbers, NumbersOfTheVariableDialect) {
  const number_case indexes[] = {
      {"-1", "impossible_number: lastIndex: '-1' makes no sense: it is 0 to 2147483646"},
      {"2147483647",
       "impossible_number: lastIndex: '2147483647' makes no sense: it is 0 to 2147483646"},
      {"0", ""},
  };
  for (const auto& [text, found] : indexes) {
    EXPECT_EQ(found_in(variable_with("DaqFloatMatrix", element("lastIndex", text))),
              expected("3:12", found));
  }
  EXPECT_EQ(found_in(variable_with("DaqBits", "<bitTitle bit='32'>x</bitTitle>")),
            lines{"3:20 impossible_number: bitTitle bit: '32' makes no sense: it is 0 to 31"});
  EXPECT_EQ(found_in(variable_with("DaqBits", "<bitTitle bit='1x'>x</bitTitle>")),
            lines{"3:20 rest_ignored: bitTitle bit: '1x' is read as 1, the rest is ignored"});
  EXPECT_EQ(found_in(variable_with("DaqFloatMatrix", "<dimension id='a'> </dimension>")),
            lines{"3:19 not_a_number: dimension id: 'a' is no number, read as 0"});
}

TEST_F(CheckNumbers, ThresholdsOfADictionary) {
  const number_case cases[] = {
      {"0,5", "rest_ignored: DABS: '0,5' is read as 0, the rest is ignored; write 0.5"},
      {"1%",
       "rest_ignored: DABS: '1%' is read as 1, the rest is ignored; as a part of one it is "
       "0.01"},
      {"0.5.1", "rest_ignored: DABS: '0.5.1' is read as 0.5, the rest is ignored"},
      {"none", "impossible"},
      {"nan", "impossible_number: DABS: 'nan' is no threshold"},
      {"-inf", "impossible_number: DABS: '-inf' is no threshold"},
      {"1e400", "out_of_range: DABS: '1e400' does not fit, read as inf"},
      {"1e-60", "out_of_range: DABS: '1e-60' does not fit, read as 0"},
      {"-0.5", "impossible_number: DABS: '-0.5' makes no sense: it is never negative"},
      {"0x10", ""},
      {"16777217", ""},
      {".5", ""},
      {"2.", ""},
      {"1E-3", ""},
      {" 0.000000\n", ""},
  };
  for (const auto& [text, found] : cases) {
    const std::string wanted = std::string(found) == "impossible"
                                   ? "not_a_number: DABS: '" + std::string(text) +
                                         "' is no number, and leaves what was there, at first 0"
                                   : found;
    EXPECT_EQ(found_in(entry_with(element("DABS", text))), expected("3:7", wanted.c_str())) << text;
  }
}

TEST_F(CheckNumbers, IndexOfAnEntry) {
  const auto document = [](const std::string& index) {
    return "<ENVINDEXDICT><CHANNEL>\n" + element("INDEX", index) +
           "<PROP>A</PROP></CHANNEL></ENVINDEXDICT>";
  };
  const number_case cases[] = {
      {"first", "not_a_number: INDEX: 'first' is no number, read as 0"},
      {"7.", "rest_ignored: INDEX: '7.' is read as 7, the rest is ignored; write 7"},
      {"-1", "impossible_number: INDEX: '-1' makes no sense: it is never negative"},
      {"4294967303", long_is_wide
                         ? "out_of_range: INDEX: '4294967303' does not fit, read as 7"
                         : "out_of_range: INDEX: '4294967303' does not fit, read as 2147483647"},
      {"007", ""},
  };
  for (const auto& [text, found] : cases) {
    EXPECT_EQ(found_in(document(text)), expected("2:8", found)) << text;
  }
}

// What the reader takes is asked of the library itself; here of its records.
TEST_F(CheckNumbers, WhatIsToldIsWhatIsRead) {
  for (const char* const text : {"0X1F", "1F", "12x", "-1", "4294967296", "0x1FFFFFFFF", " 0x1f"}) {
    zrt4::event_list list;
    ASSERT_EQ(list.read_text(event_with(element("TMASK", text))), 0);
    ASSERT_EQ(list.get()->size(), 1U);
    const lines found = found_in(event_with(element("TMASK", text)));
    if (found.empty()) continue;
    EXPECT_THAT(found.front(),
                testing::HasSubstr("read as " + std::to_string(list.get()->front()->tmask)));
  }
  for (const char* const text : {"0,5", "1e400", "1e-60", "1e", "5 %"}) {
    zrt4::env_dictionary list;
    ASSERT_EQ(list.read_text(entry_with(element("DREL", text))), 0);
    const lines found = found_in(entry_with(element("DREL", text)));
    ASSERT_EQ(found.size(), 1U) << text;
    const float read = list.get()->front()->data.env_ch_rel_delta;
    std::ostringstream shown;
    shown << read;
    EXPECT_THAT(found.front(), testing::HasSubstr("read as " + shown.str()));
  }
}

TEST_F(CheckNumbers, HowToWriteWhatWasMeant) {
  const auto advised = [](const std::string& text) {
    const lines found = found_in(channel_with("<SIZE>" + text + "</SIZE>"));
    const std::size_t at = found.empty() ? std::string::npos : found[0].find("; ");
    return at == std::string::npos ? std::string() : found[0].substr(at + 2);
  };
  for (const char* const text :
       {"1 000", "1,000", "1'000", "1_000", "1e3", "1E+3", "1000.0", "l000", "1OOO", "\"1000\"",
        "\xef\xbc\x91\xef\xbc\x90\xef\xbc\x90\xef\xbc\x90"}) {
    EXPECT_EQ(advised(text), "write 1000") << text;
  }
  EXPECT_EQ(advised("1.000.000"), "write 1000000");
  EXPECT_EQ(advised("\xe2\x88\x92"
                    "1"),
            "write -1");
  EXPECT_EQ(advised("1\xc2\xa0"
                    "000"),
            "write 1000 (it holds U+00A0)");
  EXPECT_EQ(advised("\xe2\x80\x8b"
                    "7"),
            "write 7 (it holds U+200B)");
  // It is not clear what was meant.
  for (const char* const text : {"1.5", "1.000", "1,5", "1 2", "10 00", "1/2", "2k", "many", "l",
                                 "1e99", "1e-3", "-", "+", "1\xc3\xbc"}) {
    EXPECT_EQ(advised(text), "") << text;
  }
  EXPECT_EQ(found_in(entry_with("<DABS>1 000</DABS>")),
            lines{"3:7 rest_ignored: DABS: '1 000' is read as 1, the rest is ignored; write 1000"});
}
