// The handlers of the pull parser, called as the scanner calls them.

#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "pull_parser_support.hh"

using test::shown;

namespace {

class attribute_list : public xercesc::AttributeList {
 public:
  struct item {
    const XMLCh *name, *type, *value;
  };
  attribute_list(std::initializer_list<item> list) : items(list) {}
  XMLSize_t getLength() const override { return items.size(); }
  const XMLCh* getName(const XMLSize_t i) const override { return items.at(i).name; }
  const XMLCh* getType(const XMLSize_t i) const override { return items.at(i).type; }
  const XMLCh* getValue(const XMLSize_t i) const override { return items.at(i).value; }
  const XMLCh* getType(const XMLCh* const) const override { return nullptr; }
  const XMLCh* getValue(const XMLCh* const) const override { return nullptr; }
  const XMLCh* getValue(const char* const) const override { return nullptr; }

 private:
  std::vector<item> items;
};

}  // namespace

template <class Variant>
struct ParseHandlers : testing::Test {
  struct open_handler : Variant::handler_type {
    using Variant::handler_type::end_flag;
    using Variant::handler_type::vattr;
  };

  ParseHandlers() { xercesc::XMLPlatformUtils::Initialize(); }
  ~ParseHandlers() override { xercesc::XMLPlatformUtils::Terminate(); }

  void start(const XMLCh* name) {
    attribute_list none({});
    handler.startElement(name, none);
  }
  void start(const XMLCh* name, std::initializer_list<attribute_list::item> items) {
    attribute_list list(items);
    handler.startElement(name, list);
  }
  void text(const std::u16string& units) { handler.characters(units.data(), units.size()); }
  std::string held() const { return shown(handler.getTag()) + " " + shown(handler.getValue()); }
  std::string counts() const {
    return std::to_string(handler.getElementCount()) + " " +
           std::to_string(handler.getAttrCount()) + " " +
           std::to_string(handler.getCharacterCount()) + " " +
           std::to_string(handler.getSpaceCount()) + " " + std::to_string(handler.getErrorCount());
  }

  open_handler handler;
};

using Variants = testing::Types<test::in_memory, test::in_file>;
TYPED_TEST_SUITE(ParseHandlers, Variants);

TYPED_TEST(ParseHandlers, StartEmpty) {
  EXPECT_EQ(this->held(), "- -");
  EXPECT_EQ(this->counts(), "0 0 0 0 0");
  EXPECT_TRUE(this->handler.vattr.empty());
  EXPECT_FALSE(this->handler.end_flag);
}

TYPED_TEST(ParseHandlers, StartElementHoldsNameAndAttributesInOrder) {
  this->start(u"E", {{u"bit", u"CDATA", u"3"}, {u"id", u"ID", u""}});
  EXPECT_EQ(this->held(), "'E' -");
  EXPECT_EQ(this->counts(), "1 2 0 0 0");
  ASSERT_EQ(this->handler.vattr.size(), 2U);
  EXPECT_STREQ(this->handler.vattr[0]->name, "bit");
  EXPECT_STREQ(this->handler.vattr[0]->type, "CDATA");
  EXPECT_STREQ(this->handler.vattr[0]->value, "3");
  EXPECT_STREQ(this->handler.vattr[1]->name, "id");
  EXPECT_STREQ(this->handler.vattr[1]->type, "ID");
  EXPECT_STREQ(this->handler.vattr[1]->value, "");
}

TYPED_TEST(ParseHandlers, StartElementReplacesNameAndAttributesButKeepsTheText) {
  this->start(u"E", {{u"a", u"CDATA", u"1"}, {u"b", u"CDATA", u"2"}});
  this->text(u"text");
  this->start(u"F", {{u"c", u"CDATA", u"3"}});
  EXPECT_EQ(this->held(), "'F' 'text'");
  ASSERT_EQ(this->handler.vattr.size(), 1U);
  EXPECT_STREQ(this->handler.vattr[0]->name, "c");
  EXPECT_EQ(this->counts(), "2 3 4 0 0");
}

TYPED_TEST(ParseHandlers, EndElementOnlySetsTheFlag) {
  this->start(u"E", {{u"a", u"CDATA", u"1"}});
  this->handler.endElement(u"E");
  EXPECT_TRUE(this->handler.end_flag);
  EXPECT_EQ(this->held(), "'E' -");
  EXPECT_EQ(this->handler.vattr.size(), 1U);
}

TYPED_TEST(ParseHandlers, CharactersWithoutTagAreCountedOnly) {
  this->text(u"lost");
  EXPECT_EQ(this->held(), "- -");
  EXPECT_EQ(this->counts(), "0 0 4 0 0");
}

TYPED_TEST(ParseHandlers, LaterCharactersReplaceEarlierOnes) {
  this->start(u"E");
  this->text(u"one");
  this->text(u"two");
  EXPECT_EQ(this->held(), "'E' 'two'");
  EXPECT_EQ(this->counts(), "1 0 6 0 0");
}

TYPED_TEST(ParseHandlers, OnlyTheGivenLengthIsText) {
  this->start(u"E");
  this->handler.characters(u"12345", 3);
  EXPECT_EQ(this->held(), "'E' '123'");
  EXPECT_EQ(this->counts(), "1 0 3 0 0");
}

TYPED_TEST(ParseHandlers, BlanksLineEndsAndTabsAloneDropTextAndTag) {
  this->start(u"E");
  this->text(u" \n\t");
  EXPECT_EQ(this->held(), "- -");
  EXPECT_EQ(this->counts(), "1 0 3 0 0");
}

TYPED_TEST(ParseHandlers, WhiteSpaceAfterTextDropsBoth) {
  this->start(u"E");
  this->text(u"one");
  this->text(u" ");
  EXPECT_EQ(this->held(), "- -");
}

TYPED_TEST(ParseHandlers, OtherWhiteSpaceIsText) {
  for (const char16_t* const other : {u"\r", u" \r", u"\v", u"\f"}) {
    this->start(u"E");
    this->text(other);
    EXPECT_NE(this->handler.getTag(), nullptr);
    EXPECT_NE(this->handler.getValue(), nullptr);
  }
}

TYPED_TEST(ParseHandlers, IgnorableWhitespaceIsCountedOnly) {
  this->start(u"E");
  this->handler.ignorableWhitespace(u"  ", 2);
  EXPECT_EQ(this->held(), "'E' -");
  EXPECT_EQ(this->counts(), "1 0 0 2 0");
}

TYPED_TEST(ParseHandlers, ResetEndTagFlagDropsEverythingAfterAnEndTag) {
  this->start(u"E", {{u"a", u"CDATA", u"1"}});
  this->handler.endElement(u"E");
  this->handler.reset_end_tag_flag();
  EXPECT_EQ(this->held(), "- -");
  EXPECT_TRUE(this->handler.vattr.empty());
  EXPECT_FALSE(this->handler.end_flag);
}

TYPED_TEST(ParseHandlers, ResetEndTagFlagDropsEverythingAfterAText) {
  this->start(u"E", {{u"a", u"CDATA", u"1"}});
  this->text(u"t");
  this->handler.reset_end_tag_flag();
  EXPECT_EQ(this->held(), "- -");
  EXPECT_TRUE(this->handler.vattr.empty());
}

TYPED_TEST(ParseHandlers, ResetEndTagFlagKeepsAStartTagWithoutText) {
  this->start(u"E", {{u"a", u"CDATA", u"1"}});
  this->handler.reset_end_tag_flag();
  EXPECT_EQ(this->held(), "'E' -");
  EXPECT_EQ(this->handler.vattr.size(), 1U);
}

TYPED_TEST(ParseHandlers, ResetDocumentKeepsAttributesAndEndFlag) {
  this->start(u"E", {{u"a", u"CDATA", u"1"}});
  this->text(u"t");
  this->handler.ignorableWhitespace(u" ", 1);
  this->handler.endElement(u"E");
  this->handler.resetDocument();
  EXPECT_EQ(this->held(), "- -");
  EXPECT_EQ(this->counts(), "0 0 0 0 0");
  EXPECT_EQ(this->handler.vattr.size(), 1U);
  EXPECT_TRUE(this->handler.end_flag);
}

TYPED_TEST(ParseHandlers, ResetsDropWhatTheyName) {
  this->start(u"E");
  this->text(u"t");
  this->handler.resetValue();
  EXPECT_EQ(this->held(), "'E' -");
  this->text(u"t");
  this->handler.resetTag();
  EXPECT_EQ(this->held(), "- 't'");
  this->start(u"E");
  this->handler.resetTagValue();
  EXPECT_EQ(this->held(), "- -");
}

TYPED_TEST(ParseHandlers, GetTagValueGivesBoth) {
  this->start(u"E");
  this->text(u"t");
  const char* tag = nullptr;
  const char* value = nullptr;
  this->handler.getTagValue(&tag, &value);
  EXPECT_STREQ(tag, "E");
  EXPECT_STREQ(value, "t");
}

TYPED_TEST(ParseHandlers, GetAttrGivesTheFirstOfThatName) {
  this->start(u"E", {{u"b", u"CDATA", u"0"}, {u"a", u"CDATA", u"1"}, {u"a", u"CDATA", u"2"}});
  char a[] = "a";
  char missing[] = "c";
  EXPECT_STREQ(this->handler.getAttr(a), "1");
  EXPECT_EQ(this->handler.getAttr(missing), nullptr);
}

TYPED_TEST(ParseHandlers, AttributeWithoutValueStaysWithoutAndHidesLaterOnes) {
  this->start(u"E", {{u"a", u"CDATA", nullptr}, {u"a", u"CDATA", u"2"}});
  char a[] = "a";
  EXPECT_EQ(this->handler.getAttr(a), nullptr);
}

TYPED_TEST(ParseHandlers, ManyAttributesKeepTheirTexts) {
  std::vector<std::u16string> names;
  for (int i = 0; i < 200; ++i) {
    std::u16string name = u"n";
    for (const char digit : std::to_string(i)) name += static_cast<char16_t>(digit);
    names.push_back(name);
  }
  for (int round = 0; round < 2; ++round) {
    for (const std::u16string& name : names) {
      this->start(name.c_str(), {{name.c_str(), u"CDATA", name.c_str()}});
      const std::string narrow(name.begin(), name.end());
      EXPECT_EQ(this->held(), "'" + narrow + "' -");
      EXPECT_STREQ(this->handler.getAttr(narrow.c_str()), narrow.c_str());
    }
  }
}

TEST(MemParseHandlers, ResetErrorsDoesNothing) {
  MemParseHandlers handler;
  handler.resetErrors();
  EXPECT_EQ(handler.getErrorCount(), 0);
}

TEST(FileParseHandlers, ResetErrorsClearsOnlyItsFlag) {
  struct open_handler : FileParseHandlers {
    using FileParseHandlers::error_count;
    using FileParseHandlers::fSawErrors;
  } handler;
  EXPECT_FALSE(handler.fSawErrors);
  handler.fSawErrors = true;
  handler.error_count = 3;
  handler.resetErrors();
  EXPECT_FALSE(handler.fSawErrors);
  EXPECT_EQ(handler.getErrorCount(), 3);
}
