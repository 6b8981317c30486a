#include "local_text.hh"

#include <string>
#include <xercesc/util/PlatformUtils.hpp>

#include "own_locale.hh"
#include "support.hh"
#include "zrt4xml.hh"

using zrt4::detail::code_page;
using zrt4::detail::local_text;
using zrt4::detail::to_local;
using zrt4::detail::utf8_texts;

namespace {

struct in_utf8 : testing::Test {
  const test::own_locale utf8{LC_CTYPE, "C.UTF-8"};  // before the XML library asks for it
  const zrt4::xml_session session;
  code_page page;
  local_text text;
};

}  // namespace

using LocalText = in_utf8;

TEST_F(LocalText, TheCodePageKeepsAscii) {
  EXPECT_TRUE(page.keeps_ascii());
  EXPECT_TRUE(page.keeps_ascii());
}

TEST_F(LocalText, AsciiIsKept) {
  EXPECT_STREQ(text.assign(u"BPM.3/X ~", page), "BPM.3/X ~");
  EXPECT_STREQ(text.assign(u"", page), "");
}

TEST_F(LocalText, SoManyUnitsAndNoMore) {
  EXPECT_STREQ(text.assign(u"abcdef", 3, page), "abc");
  EXPECT_STREQ(text.assign(u"abcdef", 0, page), "");
  EXPECT_STREQ(text.assign(u"ab\u00e4def", 3, page), "ab\xc3\xa4");
}

TEST_F(LocalText, NullIsNull) {
  EXPECT_EQ(text.assign(nullptr, page), nullptr);
}

TEST_F(LocalText, EverythingElseIsTranscoded) {
  EXPECT_STREQ(text.assign(u"\u00e4", page), "\xc3\xa4");
  EXPECT_STREQ(text.assign(u"\u00b5m \u2126", page), "\xc2\xb5m \xe2\x84\xa6");
  EXPECT_STREQ(text.assign(u"\u007f\u0080", page), "\x7f\xc2\x80");
}

TEST_F(LocalText, TheFirstUnitBeyondAsciiMayStandAnywhere) {
  for (std::size_t before = 0; before < 40; ++before) {
    std::u16string units(40, u'a');
    std::string expected(40, 'a');
    units[before] = u'\u00e4';
    expected.replace(before, 1, "\xc3\xa4");
    EXPECT_EQ(text.assign(units.c_str(), page), expected) << before;
  }
}

TEST_F(LocalText, TextsOfAnyLength) {
  for (const std::size_t length : {1U, 63U, 64U, 65U, 128U, 100'000U, 5U}) {
    const std::u16string units(length, u'x');
    EXPECT_EQ(text.assign(units.c_str(), page), std::string(length, 'x'));
    const std::u16string wide(length, u'\u00e4');
    EXPECT_EQ(std::string(text.assign(wide.c_str(), page)).size(), 2 * length);
  }
}

TEST_F(LocalText, MemoryIsKeptForTheNext) {
  const char* const first = text.assign(u"a text of some length", page);
  EXPECT_EQ(text.held(), first);
  EXPECT_EQ(text.assign(u"short", page), first);
  EXPECT_STREQ(text.held(), "short");
}

TEST_F(LocalText, OfAMessage) {
  EXPECT_EQ(to_local(nullptr), "");
  EXPECT_EQ(to_local(u""), "");
  EXPECT_EQ(to_local(u"no such file"), "no such file");
  EXPECT_EQ(to_local(u"\u00fcber"),
            "\xc3\xbc"
            "ber");
}

TEST(LocalTextWithoutXmlLibrary, AMessageInAsciiIsToldAndNoOther) {
  ASSERT_EQ(xercesc::XMLPlatformUtils::fgTransService, nullptr);
  EXPECT_EQ(to_local(u"out of memory"), "out of memory");
  EXPECT_EQ(to_local(u"\u00fcber"), "");
}

TEST(Utf8Texts, AreUtf8WhateverTheLocale) {
  const test::own_locale plain(LC_CTYPE, "C");
  const zrt4::xml_session session;
  code_page page;
  local_text text;
  const utf8_texts wanted;
  EXPECT_TRUE(page.keeps_ascii());
  EXPECT_STREQ(text.assign(u"BPM.3/X ~", page), "BPM.3/X ~");
  EXPECT_STREQ(text.assign(u"\u00b5m \u2126 \U0001f52c", page),
               "\xc2\xb5m \xe2\x84\xa6 \xf0\x9f\x94\xac");
  EXPECT_STREQ(text.assign(u"ab\u00e4def", 3, page), "ab\xc3\xa4");
  EXPECT_EQ(to_local(u"\u00b5m \u2126"), "\xc2\xb5m \xe2\x84\xa6");
}

TEST(Utf8Texts, OfAnyLength) {
  const zrt4::xml_session session;
  code_page page;
  local_text text;
  const utf8_texts wanted;
  for (const std::size_t length : {1U, 63U, 64U, 65U, 128U, 100'000U, 5U}) {
    const std::u16string wide(length, u'\u2126');
    const std::string bytes = text.assign(wide.c_str(), page);
    EXPECT_EQ(bytes.size(), 3 * length);
    EXPECT_EQ(bytes.substr(bytes.size() - 3), "\xe2\x84\xa6");
  }
}

TEST(Utf8Texts, HalfAPairIsNoCharacter) {
  const zrt4::xml_session session;
  code_page page;
  local_text text;
  const utf8_texts wanted;
  const char16_t at_end[] = {u'a', 0xd83d, 0};
  EXPECT_STREQ(text.assign(at_end, page), "a");
}

TEST(Utf8Texts, OnlyWhileItLives) {
  EXPECT_FALSE(utf8_texts::are_wanted());
  {
    const utf8_texts wanted;
    {
      const utf8_texts within;
      EXPECT_TRUE(utf8_texts::are_wanted());
    }
    EXPECT_TRUE(utf8_texts::are_wanted());
  }
  EXPECT_FALSE(utf8_texts::are_wanted());
}
