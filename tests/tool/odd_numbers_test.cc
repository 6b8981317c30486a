// Which documents are looked at once more for numbers that are read as others: never too few.

#include "odd_numbers.hh"

#include "bad_document.hh"
#include "findings.hh"
#include "input_file.hh"
#include "lossless_support.hh"
#include "random_documents.hh"

namespace {

class OddNumbers : public test::in_utf8 {};

bool may_be_odd(const std::string& document, document_kind kind) {
  return may_have_odd_numbers(document, traits_of(kind).elements);
}

std::string channel(const std::string& fields) {
  return "<?xml version='1.0'?>\n<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP>" + fields +
         "</CHANNEL></CHANDESCRIPTIONS>";
}

}  // namespace

TEST_F(OddNumbers, PlainOnesNeedNoSecondLook) {
  for (const char* const fields :
       {"", "<SIZE>1</SIZE>", "<SIZE> -2147483648\n</SIZE>", "<DB_KEY>2147483647</DB_KEY>",
        "<BIT>3\n<BIT_NAME>x</BIT_NAME></BIT>", "<NAME>4294967299</NAME>"}) {
    EXPECT_FALSE(may_be_odd(channel(fields), document_kind::channels)) << fields;
  }
  EXPECT_FALSE(
      may_be_odd("<DAQvariables><DaqBits><bitTitle bit=\"3\">x</bitTitle>"
                 "<dimension id='0'></dimension></DaqBits></DAQvariables>",
                 document_kind::variables));
  EXPECT_FALSE(
      may_be_odd("<BMR><EVENT><TMASK>0xffffffff</TMASK></EVENT></BMR>", document_kind::camera));
  EXPECT_FALSE(may_be_odd("<ENVINDEXDICT><CHANNEL><DABS>-0.000500</DABS></CHANNEL></ENVINDEXDICT>",
                          document_kind::dictionary));
}

TEST_F(OddNumbers, WhateverIsNotPlainGetsOne) {
  // The text of a number ends where a comment begins: another rule tells that.
  EXPECT_FALSE(may_be_odd(channel("<SIZE>1<!-- -->2</SIZE>"), document_kind::channels));
  for (const char* const fields :
       {"<SIZE>2147483648</SIZE>", "<SIZE>-2147483649</SIZE>", "<SIZE></SIZE>", "<SIZE/>",
        "<SIZE >1</SIZE >", "<SIZE a='b'>1</SIZE>", "<SIZE>&#49;k</SIZE>",
        "<SIZE><![CDATA[1k]]></SIZE>", "<SIZE>1k</SIZE>", "<SIZE>0x1</SIZE>", "<SIZE >"}) {
    EXPECT_TRUE(may_be_odd(channel(fields), document_kind::channels)) << fields;
  }
  EXPECT_TRUE(
      may_be_odd("<DAQvariables><DaqBits><bitTitle bit='3x'>x</bitTitle></DaqBits>"
                 "</DAQvariables>",
                 document_kind::variables));
  EXPECT_TRUE(may_be_odd(std::string("\xff\xfe<\0B\0", 6), document_kind::channels));
  EXPECT_TRUE(may_be_odd("", document_kind::channels));
}

TEST_F(OddNumbers, OfRandomDocumentsNoneIsMissed) {
  using test::random_documents;
  constexpr document_kind kinds[] = {document_kind::events, document_kind::channels,
                                     document_kind::variables, document_kind::dictionary};
  random_documents documents(3);
  int odd = 0;
  int plain = 0;
  for (unsigned i = 0; i < 4000 / test::random_share; ++i) {
    const auto format = static_cast<random_documents::format>(i % random_documents::formats);
    const std::string text = documents.next(format);
    input_file file("random", std::string_view(text));
    const bool is_odd = !odd_numbers_in(file, kinds[format]).empty();
    ++(is_odd ? odd : plain);
    int found = 0;
    for (const finding& each : findings_of(file, kinds[format], 1000, true)) {
      found += static_cast<int>(each.what == rule::not_a_number ||
                                each.what == rule::rest_ignored || each.what == rule::out_of_range);
    }
    ASSERT_EQ(is_odd, found != 0) << text;
  }
  EXPECT_GT(odd, 1000 / test::random_share);
  EXPECT_GT(plain, 500 / test::random_share);
}
