// Texts of which a reader gets only a part, or more than is meant.

#include "finding_support.hh"
#include "own_locale.hh"
#include "zrt4xml.hh"

using test::channel_with;
using test::event_with;
using test::found_in;
using test::lines;

namespace {

class CheckTexts : public testing::Test {
  const test::own_locale in_utf8{LC_CTYPE, "C.UTF-8"};
  const zrt4::xml_session session;
};

}  // namespace

TEST_F(CheckTexts, OnlyAPieceIsRead) {
  EXPECT_EQ(found_in(channel_with("<DESC>a&lt;b&gt;c</DESC>")),
            lines{"3:7 interrupted_text: DESC: only '>c' is read of 'a<b>c', which a reference, a "
                  "comment or a section interrupts; <![CDATA[a<b>c]]> is read whole"});
  EXPECT_EQ(found_in(channel_with("<SIZE>1<!-- kilo -->024</SIZE>")),
            lines{"3:7 interrupted_text: SIZE: only '1' is read of '1024', which a reference, a "
                  "comment or a section interrupts"});
  EXPECT_EQ(found_in(channel_with("<DESC>a]]&gt;b</DESC>")),
            lines{"3:7 interrupted_text: DESC: only '>b' is read of 'a]]>b', which a reference, a "
                  "comment or a section interrupts"});
  // These get all of it.
  EXPECT_EQ(found_in(channel_with("<DESC>&lt;b</DESC><UNITS>mm<!-- c --></UNITS>"
                                  "<SB_NAME><!-- c -->B</SB_NAME><SIZE>7<!-- c --> </SIZE>")),
            lines{});
}

TEST_F(CheckTexts, WhatIsToldIsWhatIsRead) {
  for (const char* const text : {"a&lt;b&gt;c", "x<!-- c -->y", "x<?p?>y", "x<![CDATA[y]]>",
                                 "<![CDATA[x]]>y", "a&#65;b&#66;", "&#65;b"}) {
    zrt4::channel_list list;
    const std::string document = channel_with("<DESC>" + std::string(text) + "</DESC>");
    ASSERT_EQ(list.read_text(document, zrt4::types::numbers), 0);
    const std::string read = list.get()->front()->prop_desc;
    const lines found = found_in(document);
    if (found.empty()) {
      EXPECT_EQ(read, "Ab");
    } else {
      EXPECT_THAT(found.front(), testing::HasSubstr("only '" + read + "' is read of '"));
    }
  }
}

TEST_F(CheckTexts, CutWithinACharacter) {
  EXPECT_EQ(found_in(channel_with("<UNITS>\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5\xc2\xb5"
                                  "\xc2\xb5</UNITS>"))
                .size(),
            1U);
  EXPECT_THAT(found_in(channel_with("<UNITS>12345678901234\xc2\xb5</UNITS>")),
              testing::ElementsAre(testing::StartsWith(
                  "3:8 character_cut: UNITS has 16 bytes; the record keeps 15, the last within a "
                  "character: '12345678901234")));
  EXPECT_EQ(
      found_in(channel_with("<UNITS>1234567890123\xc2\xb5x</UNITS>")),
      lines{"3:8 text_cut: UNITS has 16 bytes; the record keeps 15: '1234567890123\xc2\xb5'"});
}

TEST_F(CheckTexts, BlanksThatBelongToAName) {
  EXPECT_EQ(
      found_in(
          "<CHANDESCRIPTIONS><CHANNEL>\n<PROP> A</PROP><NAME>N\n</NAME><EVTYPE>1</EVTYPE></CHANNEL>"
          "</CHANDESCRIPTIONS>"),
      (lines{"2:7 blanks_around_name: PROP begins with a blank, which belongs to the name: "
             "' A'",
             "2:22 blanks_around_name: NAME ends with a line end, which belongs to the name: "
             "'N\\x0a'"}));
  EXPECT_EQ(found_in(event_with("<SBLOCK>\n  B\n  <CHLIST><CHAN>C\nD</CHAN></CHLIST></SBLOCK>")),
            (lines{"3:9 blanks_around_name: SBLOCK begins with a line end, which belongs to the "
                   "name: '\\x0a  B\\x0a  '",
                   "5:17 blanks_around_name: CHAN holds a line end, which belongs to the name: "
                   "'C\\x0aD'"}));
}

TEST_F(CheckTexts, BlanksThatBelongToAText) {
  EXPECT_EQ(found_in(channel_with("<DESC>a line\nand another</DESC><UNITS>mm </UNITS>")),
            lines{"4:26 blanks_around_text: UNITS ends with a blank, which belongs to the text: "
                  "'mm '"});
}

TEST_F(CheckTexts, CharactersThatNobodySeesInAName) {
  for (const auto& [bytes, code] : {std::pair{"\xc2\xa0", "U+00A0"},
                                    {"\xc2\xad", "U+00AD"},
                                    {"\xe2\x80\x8b", "U+200B"},
                                    {"\xe3\x80\x80", "U+3000"},
                                    {"\xef\xbb\xbf", "U+FEFF"}}) {
    const std::string name = std::string("a") + bytes + "b";
    EXPECT_EQ(found_in(event_with("<SBLOCK>" + name + "</SBLOCK>")),
              lines{std::string("3:9 unseen_character: SBLOCK holds ") + code +
                    ", which nobody sees and which belongs to the name: '" + name + "'"});
  }
  EXPECT_EQ(found_in(event_with("<SBLOCK>gr\xc3\xbcn \xe2\x82\xac</SBLOCK>")), lines{});
  // In other texts they are typography, but not at an end.
  EXPECT_EQ(found_in(channel_with("<DESC>20\xc2\xa0mm</DESC>")), lines{});
  EXPECT_EQ(found_in(channel_with("<UNITS>mm\xc2\xa0</UNITS>")),
            lines{"3:8 blanks_around_text: UNITS begins or ends with U+00A0, which nobody sees and "
                  "which belongs to the text: 'mm\xc2\xa0'"});
}

TEST_F(CheckTexts, CharactersThatWereLostBefore) {
  EXPECT_EQ(
      found_in(channel_with("<UNITS>\xef\xbf\xbdm</UNITS>")),
      lines{"3:8 replacement_character: U+FFFD in '\xef\xbf\xbdm' stands for a character that "
            "was lost before: write it anew"});
}
