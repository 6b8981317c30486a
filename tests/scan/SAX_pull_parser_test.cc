// Steps, results, counters, attributes and messages of the pull parser, through both variants.

#include "own_locale.hh"
#include "pull_parser_support.hh"

using test::captured;
using test::output;
using test::step;
using test::trace;

/// As a derived class sees its handler.
struct counting_parser : SAX_Memory_Parser {
  using SAX_Memory_Parser::SAX_Memory_Parser;
  const MemParseHandlers& counts() const { return *handler; }
};

template <class Variant>
struct PullParser : testing::Test {
  /// Starts the document, which must succeed silently, and traces it.
  static std::string steps(const std::string& document) {
    Variant variant(document);
    std::string lines;
    const output said = captured([&] {
      EXPECT_FALSE(variant.start());
      lines = trace(variant.parser);
    });
    EXPECT_EQ(said.out, "");
    EXPECT_EQ(said.err, "");
    return lines;
  }

  /// Traces a document that has an error, and checks what is said about it.
  static std::string steps(const std::string& document, const std::string& before_id,
                           const std::string& after_id) {
    Variant variant(document);
    std::string lines;
    const output said = captured([&] {
      EXPECT_FALSE(variant.start());
      lines = trace(variant.parser);
    });
    EXPECT_EQ(said.out, "");
    EXPECT_EQ(said.err, before_id + variant.system_id() + after_id);
    return lines;
  }

  /// A document that cannot be started; returns its error count.
  static int refused(const std::string& document, const std::string& before_id,
                     const std::string& after_id) {
    Variant variant(document);
    bool failed = false;
    const output said = captured([&] { failed = variant.start(); });
    EXPECT_TRUE(failed);
    EXPECT_EQ(said.out, "");
    EXPECT_EQ(said.err, before_id + variant.system_id() + after_id);
    return variant.parser.get_error_counter();
  }
};

using Variants = testing::Types<test::in_memory, test::in_file>;
TYPED_TEST_SUITE(PullParser, Variants);

TYPED_TEST(PullParser, EachOfManyNamesIsReportedEachTime) {
  std::string document;
  std::string expected = "0 'ROOT' -\n";
  for (int round = 0; round < 3; ++round) {
    for (int n = 0; n < 300; ++n) {
      const std::string name = "E" + std::to_string(n);
      document += "<" + name + ">5</" + name + ">";
      expected += "0 '" + name + "' -\n0 '" + name + "' '5'\n0 - -\n";
    }
  }
  EXPECT_EQ(this->steps("<ROOT>" + document + "</ROOT>"), expected + "0 - -\n0 - -\n-1 - -\n");
}

TYPED_TEST(PullParser, TextElementYieldsTagThenTextThenNothing) {
  EXPECT_EQ(this->steps("<ELEM>5</ELEM>\n"),
            "0 'ELEM' -\n"
            "0 'ELEM' '5'\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, LineBreakAfterTextElementIsAStepOfItsOwn) {
  EXPECT_EQ(this->steps("<R><ELEM>5</ELEM>\n</R>"),
            "0 'R' -\n"
            "0 'ELEM' -\n"
            "0 'ELEM' '5'\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, ContainerIsReportedByItsStartTagOnly) {
  EXPECT_EQ(this->steps("<R>\n\t<C>\n <E>5</E></C></R>"),
            "0 'R' -\n"
            "0 - -\n"
            "0 'C' -\n"
            "0 - -\n"
            "0 'E' -\n"
            "0 'E' '5'\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, EmptyElementYieldsItsTagOnce) {
  EXPECT_EQ(this->steps("<R><E/>\n</R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, EmptyRootYieldsItsTag) {
  EXPECT_EQ(this->steps("<R/>"),
            "0 'R' -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, StartTagWithoutTextStaysHeldUntilTheEndTagIsConsumed) {
  EXPECT_EQ(this->steps("<R><E></E></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 'E' -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, CommentInsideTextEndsIt) {
  EXPECT_EQ(this->steps("<R><E>one<!-- c -->two</E></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 'E' 'one'\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, CommentBeforeTextKeepsTheTag) {
  EXPECT_EQ(this->steps("<R><E><!-- c -->two</E></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 'E' -\n"
            "0 'E' 'two'\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, CdataSectionIsAChunkOfItsOwn) {
  EXPECT_EQ(this->steps("<R><E>one<![CDATA[two]]></E><F><![CDATA[three]]></F></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 'E' 'one'\n"
            "0 - -\n"
            "0 - -\n"
            "0 'F' -\n"
            "0 'F' 'three'\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, EmptyCdataSectionCountsAsWhiteSpace) {
  EXPECT_EQ(this->steps("<R><E><![CDATA[]]>x</E></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

// The scanner delivers both chunks in one step: the later one replaces the earlier.
TYPED_TEST(PullParser, EntityReferenceInsideTextLeavesTheLastChunkOfTheStep) {
  EXPECT_EQ(this->steps("<R><E>one&amp;two</E><F>a&#65;b</F></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 'E' '&two'\n"
            "0 - -\n"
            "0 'F' -\n"
            "0 'F' 'Ab'\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, EntityOfTheInternalSubsetIsReplaced) {
  EXPECT_EQ(this->steps("<!DOCTYPE R [<!ELEMENT R (#PCDATA)><!ENTITY e 'value'>]><R>&e;</R>"),
            "0 'R' -\n"
            "0 'R' 'value'\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, WhiteSpaceAloneDropsTheTag) {
  EXPECT_EQ(this->steps("<R><E> \t\n </E></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, CarriageReturnIsNotWhiteSpace) {
  EXPECT_EQ(this->steps("<R><E>&#13; </E></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 'E' '\r '\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, CarriageReturnOfALineEndIsNormalisedAway) {
  EXPECT_EQ(this->steps("<R><E>\r\n</E></R>"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, TextKeepsItsBlanks) {
  EXPECT_EQ(this->steps("<R>\n  x\t</R>"),
            "0 'R' -\n"
            "0 'R' '\n  x\t'\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, IgnorableWhiteSpaceLeavesTheTag) {
  EXPECT_EQ(this->steps("<!DOCTYPE R [<!ELEMENT R (E)><!ELEMENT E EMPTY>]><R>\n <E/></R>"),
            "0 'R' -\n"
            "0 'R' -\n"
            "0 'E' -\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, TruncatedDocumentYieldsTheErrorCount) {
  EXPECT_EQ(this->steps("<R><E>5</E>", "\nFatal Error at (file ",
                        ", line 1, char 12): input ended before all started tags were ended; "
                        "last tag started is 'R'\n"),
            "0 'R' -\n"
            "0 'E' -\n"
            "0 'E' '5'\n"
            "0 - -\n"
            "1 - -\n");
}

TYPED_TEST(PullParser, MismatchedEndTagYieldsTheErrorCount) {
  EXPECT_EQ(this->steps("<R>\n<E>5</F></R>", "\nFatal Error at (file ",
                        ", line 2, char 7): expected end of tag 'E'\n"),
            "0 'R' -\n"
            "0 - -\n"
            "0 'E' -\n"
            "0 'E' '5'\n"
            "1 - -\n");
}

TYPED_TEST(PullParser, ValidationErrorIsAnError) {
  EXPECT_EQ(this->steps("<!DOCTYPE R [<!ELEMENT R ANY>]>\n<R><F>5</F></R>", "\nError at (file ",
                        ", line 2, char 6): no declaration found for element 'F'\n"),
            "0 'R' -\n"
            "1 - -\n");
}

TYPED_TEST(PullParser, AWarningCountsLikeAnError) {
  EXPECT_EQ(this->steps("<!DOCTYPE R [<!ELEMENT R ANY><!ATTLIST R a CDATA #IMPLIED>"
                        "<!ATTLIST R a CDATA #IMPLIED>]>\n<R>x</R>",
                        "\nWarning at (file ",
                        ", line 1, char 72): attribute 'a' has already been declared for element "
                        "'R'\n"),
            "1 - -\n");
}

TYPED_TEST(PullParser, ErrorsAddUpOverSteps) {
  TypeParam variant("<!DOCTYPE R [<!ELEMENT R ANY>]><R><F/><G/></R>");
  captured([&] {
    EXPECT_FALSE(variant.start());
    EXPECT_EQ(step(variant.parser), "0 'R' -");
    EXPECT_EQ(step(variant.parser), "1 - -");
    EXPECT_EQ(step(variant.parser), "2 - -");
    EXPECT_EQ(variant.parser.get_error_counter(), 2);
  });
}

TYPED_TEST(PullParser, EndIsReportedAgainAndAgain) {
  TypeParam variant("<R/>");
  ASSERT_FALSE(variant.start());
  EXPECT_EQ(trace(variant.parser), "0 'R' -\n0 - -\n-1 - -\n");
  EXPECT_EQ(step(variant.parser), "-1 - -");
  EXPECT_EQ(step(variant.parser), "-1 - -");
  EXPECT_EQ(variant.parser.get_error_counter(), 0);
}

TYPED_TEST(PullParser, WhatFollowsTheRootIsScanned) {
  EXPECT_EQ(this->steps("<R/>\n<!-- end -->\n"),
            "0 'R' -\n"
            "0 - -\n"
            "-1 - -\n");
  EXPECT_EQ(this->steps("<R>a</R>more", "\nFatal Error at (file ",
                        ", line 1, char 9): comment or processing instruction expected\n"),
            "0 'R' -\n"
            "0 'R' 'a'\n"
            "1 - -\n");
}

TYPED_TEST(PullParser, NullOutputsAreLeftOut) {
  TypeParam variant("<R>a</R>");
  ASSERT_FALSE(variant.start());
  EXPECT_EQ(variant.parser.parse(nullptr, nullptr), 0);
  char* val = nullptr;
  EXPECT_EQ(variant.parser.parse(nullptr, &val), 0);
  EXPECT_STREQ(val, "a");
}

TYPED_TEST(PullParser, StartScansOnlyWhatStandsBeforeTheRoot) {
  TypeParam variant("<?xml version='1.0'?><!-- c --><R></R");
  const output said = captured([&] {
    EXPECT_FALSE(variant.start());
    EXPECT_EQ(step(variant.parser), "0 'R' -");
  });
  EXPECT_EQ(said.err, "");
}

TYPED_TEST(PullParser, EmptyTextIsRefused) {
  EXPECT_EQ(this->refused("", "\nFatal Error at (file ",
                          ", line 1, char 1): invalid document structure\nscanFirst() failed\n"),
            1);
}

TYPED_TEST(PullParser, TextThatIsNotXmlIsRefused) {
  EXPECT_EQ(this->refused("plain", "\nFatal Error at (file ",
                          ", line 1, char 1): invalid document structure\nscanFirst() failed\n"),
            1);
}

TYPED_TEST(PullParser, UnknownEncodingIsRefused) {
  EXPECT_EQ(this->refused("<?xml version='1.0' encoding='nope'?><R/>", "\nFatal Error at (file ",
                          ", line 1, char 38): unable to create converter for 'NOPE' encoding\n"
                          "scanFirst() failed\n"),
            1);
}

TYPED_TEST(PullParser, UndecodableDeclarationIsAnExceptionOfStart) {
  EXPECT_EQ(this->refused("<?xml version='1.0' encoding='\xe9'?><R/>",
                          "\nError during parsing memory stream:\n"
                          "Exception message is:  \n"
                          "unable to decode first line in entity '",
                          "'\n"),
            0);
}

TYPED_TEST(PullParser, ExternalDocumentTypeIsNotOpened) {
  const test::temporary_file external("<!ELEMENT R ANY>");
  EXPECT_EQ(
      this->refused("<!DOCTYPE R SYSTEM '" + external.path() + "'><R/>", "\nFatal Error at (file ",
                    ", line 1, char " + std::to_string(23 + external.path().size()) +
                        "): unable to open DTD document '" + external.path() +
                        "'\nscanFirst() failed\n"),
      1);
}

TYPED_TEST(PullParser, ExternalEntityIsNotOpened) {
  const test::temporary_file external("secret");
  TypeParam variant("<!DOCTYPE R [<!ELEMENT R ANY><!ENTITY e SYSTEM '" + external.path() +
                    "'>]><R>&e;</R>");
  std::string steps;
  const output said = captured([&] {
    EXPECT_FALSE(variant.start());
    steps = trace(variant.parser);
  });
  EXPECT_EQ(steps, "0 'R' -\n1 - -\n");
  EXPECT_THAT(said.err, testing::StartsWith("\nFatal Error at (file " + variant.system_id()));
  EXPECT_THAT(said.err, testing::Not(testing::HasSubstr("secret")));
}

TYPED_TEST(PullParser, TextsAreInTheLocalCodePage) {
  const test::own_locale utf8(LC_ALL, "C.UTF-8");
  ASSERT_TRUE(utf8.set());
  EXPECT_EQ(this->steps("<?xml version='1.0' encoding='ISO-8859-1'?><R>50 \xb5m</R>"),
            "0 'R' -\n"
            "0 'R' '50 \xc2\xb5m'\n"
            "0 - -\n"
            "0 - -\n"
            "-1 - -\n");
}

TYPED_TEST(PullParser, GetAttrFindsAnAttributeByItsWholeName) {
  TypeParam variant("<R><E bit='3' bits='4' empty=''>on</E><F/></R>");
  ASSERT_FALSE(variant.start());
  auto& parser = variant.parser;
  char bit[] = "bit";
  char bi[] = "bi";
  char upper[] = "BIT";
  char empty[] = "empty";
  static char untouched[] = "untouched";
  char* value = untouched;
  EXPECT_EQ(step(parser), "0 'R' -");
  EXPECT_EQ(parser.get_attr(bit, &value), -1);
  EXPECT_EQ(value, nullptr);
  for (const char* const expected : {"0 'E' -", "0 'E' 'on'"}) {
    EXPECT_EQ(step(parser), expected);
    EXPECT_EQ(parser.get_attr(bit, &value), 0);
    EXPECT_STREQ(value, "3");
    EXPECT_EQ(parser.get_attr(empty, &value), 0);
    EXPECT_STREQ(value, "");
    value = untouched;
    EXPECT_EQ(parser.get_attr(bi, &value), -1);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(parser.get_attr(upper, &value), -1);
  }
  EXPECT_EQ(step(parser), "0 - -");
  EXPECT_EQ(parser.get_attr(bit, &value), -1);
  EXPECT_EQ(step(parser), "0 'F' -");
  EXPECT_EQ(parser.get_attr(bit, &value), -1);
}

TYPED_TEST(PullParser, GetAttrOfANullNameFails) {
  TypeParam variant("<R a='1'/>");
  ASSERT_FALSE(variant.start());
  EXPECT_EQ(step(variant.parser), "0 'R' -");
  static char untouched[] = "untouched";
  char* value = untouched;
  EXPECT_EQ(variant.parser.get_attr(nullptr, &value), -1);
  EXPECT_EQ(value, nullptr);
}

TYPED_TEST(PullParser, GetAttrSeesDefaultsOfTheInternalSubset) {
  TypeParam variant("<!DOCTYPE R [<!ELEMENT R ANY><!ATTLIST R a CDATA 'd'>]><R>x</R>");
  ASSERT_FALSE(variant.start());
  EXPECT_EQ(step(variant.parser), "0 'R' -");
  char name[] = "a";
  char* value = nullptr;
  EXPECT_EQ(variant.parser.get_attr(name, &value), 0);
  EXPECT_STREQ(value, "d");
}

TYPED_TEST(PullParser, GetAttrFailsFromTheFirstErrorOrWarningOn) {
  TypeParam variant(
      "<!DOCTYPE R [<!ELEMENT R ANY><!ATTLIST R a CDATA #IMPLIED><!ATTLIST R a CDATA #IMPLIED>]>"
      "<R a='1'>x</R>");
  captured([&] {
    ASSERT_FALSE(variant.start());
    EXPECT_EQ(step(variant.parser), "1 - -");
    char name[] = "a";
    static char untouched[] = "untouched";
    char* value = untouched;
    EXPECT_EQ(variant.parser.get_attr(name, &value), -1);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(step(variant.parser), "1 - -");
    EXPECT_EQ(variant.parser.get_attr(name, &value), -1);
  });
}

TYPED_TEST(PullParser, IsDestroyedWhileTagTextAndAttributesAreHeld) {
  TypeParam variant("<R a='1'>text</R>");
  ASSERT_FALSE(variant.start());
  EXPECT_EQ(step(variant.parser), "0 'R' -");
  EXPECT_EQ(step(variant.parser), "0 'R' 'text'");
}

TYPED_TEST(PullParser, ParsersNest) {
  TypeParam outer("<R>outer</R>");
  ASSERT_FALSE(outer.start());
  EXPECT_EQ(step(outer.parser), "0 'R' -");
  {
    TypeParam inner("<S>inner</S>");
    ASSERT_FALSE(inner.start());
    EXPECT_EQ(step(inner.parser), "0 'S' -");
  }
  EXPECT_EQ(step(outer.parser), "0 'R' 'outer'");
}

TYPED_TEST(PullParser, LongTextArrivesWhole) {
  const std::string text(500'000, 'x');
  EXPECT_EQ(this->steps("<R>" + text + "</R>"),
            "0 'R' -\n0 'R' '" + text + "'\n0 - -\n0 - -\n-1 - -\n");
}

TEST(PullParserCounts, WhatTheRootContains) {
  char text[] =
      "<!DOCTYPE R [<!ELEMENT R (b)*><!ELEMENT b (#PCDATA)><!ATTLIST b x CDATA #IMPLIED>]>\n"
      "<R> <b x='1'>five5</b>\n</R>\n";
  counting_parser parser(text);
  EXPECT_FALSE(parser.start());
  trace(parser);
  EXPECT_EQ(parser.counts().getElementCount(), 2U);
  EXPECT_EQ(parser.counts().getAttrCount(), 1U);
  EXPECT_EQ(parser.counts().getCharacterCount(), 5U);
  EXPECT_EQ(parser.counts().getSpaceCount(), 2U);
  EXPECT_EQ(parser.get_error_counter(), 0);
}
