// What a pass over a document tells of its deviations from the grammar, and where.

#include "grammar_pass.hh"

#include <xercesc/parsers/SAXParser.hpp>

#include "scan.hh"
#include "support.hh"
#include "zrt4xml.hh"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using lines = std::vector<std::string>;

/// "LINE:COLUMN text" of each deviation of `document`.
lines deviations(document_kind kind, const std::string& document) {
  const zrt4::xml_session session;
  const test::temporary_file file(document);
  lines found;
  grammar_pass pass(*grammar_of(kind), [&](file_place place, const std::string& text) {
    found.push_back(std::to_string(place.line) + ":" + std::to_string(place.column) + " " + text);
  });
  scan_document(file.path().c_str(), pass, xercesc::SAXParser::Val_Never, true);
  return found;
}

lines in_event(const std::string& more) {
  return deviations(document_kind::events,
                    "<BMR><EVENT><TYPE>1</TYPE>\n" + more + "</EVENT></BMR>");
}
lines in_channel(const std::string& more) {
  return deviations(document_kind::channels, "<CHANDESCRIPTIONS><CHANNEL><PROP>P</PROP>\n" + more +
                                                 "</CHANNEL></CHANDESCRIPTIONS>");
}
lines in_variable(const std::string& more) {
  return deviations(document_kind::variables, "<DAQvariables><DaqBits><vindo>P</vindo>\n" + more +
                                                  "</DaqBits></DAQvariables>");
}
lines in_entry(const std::string& more) {
  return deviations(document_kind::dictionary,
                    "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>P</PROP>\n" + more +
                        "</CHANNEL></ENVINDEXDICT>");
}

}  // namespace

TEST(GrammarPass, TheCameraHasNoGrammar) {
  EXPECT_EQ(grammar_of(document_kind::camera), nullptr);
}

// --- elements

TEST(GrammarPass, FieldsStandInAnyOrder) {
  EXPECT_THAT(in_channel("<UNITS>mm</UNITS><STREAM>1</STREAM><NAME>N</NAME><EVTYPE>1</EVTYPE>"),
              IsEmpty());
  EXPECT_THAT(in_event("<PRIORITY>1</PRIORITY><TMASK>1</TMASK>"), IsEmpty());
}

TEST(GrammarPass, AFieldStandsOnce) {
  EXPECT_THAT(in_channel("<NAME>A</NAME><NAME>B</NAME>\n<NAME>C</NAME>"),
              ElementsAre("2:21 NAME stands in this CHANNEL already",
                          "3:7 NAME stands in this CHANNEL already"));
}

TEST(GrammarPass, GroupsFollowOneAnother) {
  EXPECT_THAT(in_channel("<BIT>0</BIT><DIM>0</DIM><BIT>1</BIT><NAME>A</NAME>"),
              ElementsAre("2:30 BIT comes too late in CHANNEL: it belongs before DIM",
                          "2:43 NAME comes too late in CHANNEL: it belongs before DIM"));
}

TEST(GrammarPass, WhatIsRequiredIsMissedAtItsParent) {
  EXPECT_THAT(deviations(document_kind::channels,
                         "<CHANDESCRIPTIONS>\n<CHANNEL>\n</CHANNEL></CHANDESCRIPTIONS>"),
              ElementsAre("2:10 CHANNEL lacks PROP"));
  EXPECT_THAT(deviations(document_kind::dictionary, "<ENVINDEXDICT><CHANNEL/></ENVINDEXDICT>"),
              ElementsAre("1:25 CHANNEL lacks INDEX", "1:25 CHANNEL lacks PROP"));
  EXPECT_THAT(in_event("<SBLOCK>A<CHLIST/></SBLOCK>"), ElementsAre("2:19 CHLIST lacks CHAN"));
}

TEST(GrammarPass, AStrangerIsToldWithWhereItBelongs) {
  EXPECT_THAT(in_channel("<BIT_NAME>A</BIT_NAME>"),
              ElementsAre("2:11 BIT_NAME does not belong in CHANNEL, but in BIT"));
  EXPECT_THAT(deviations(document_kind::variables, "<DAQvariables><vindo>P</vindo></DAQvariables>"),
              ElementsAre("1:22 vindo does not belong in DAQvariables, but in DaqBits, DaqFloat or "
                          "DaqFloatMatrix"));
}

TEST(GrammarPass, AnUnknownElementIsToldAtEachPlaceAndNotJudgedInside) {
  EXPECT_THAT(in_channel("<FOO><NAME/><NAME/>x</FOO>\n<FOO/>"),
              ElementsAre("2:6 'FOO' is no element of the grammar",
                          "3:7 'FOO' is no element of the grammar"));
}

TEST(GrammarPass, AnElementInATextIsAStranger) {
  EXPECT_THAT(in_channel("<NAME><UNITS>mm</UNITS></NAME>"),
              ElementsAre("2:14 UNITS does not belong in NAME, but in CHANNEL"));
}

TEST(GrammarPass, DimensionParametersStandInAnyOrderAnyNumberOfTimesAndLast) {
  EXPECT_THAT(
      in_channel("<DIM>0<DIM_START>1e0</DIM_START><DIM_BPP>8</DIM_BPP><DIM_START>2</DIM_START>"
                 "</DIM>"),
      IsEmpty());
  EXPECT_THAT(in_channel("<DIM>0<DIM_BPP>8</DIM_BPP><STAT>0</STAT></DIM>"),
              ElementsAre("2:33 STAT comes too late in DIM: it belongs before DIM_BPP"));
}

TEST(GrammarPass, AnotherRootIsNotJudged) {
  EXPECT_THAT(deviations(document_kind::events, "<OTHER><FOO/></OTHER>"), IsEmpty());
}

TEST(GrammarPass, WhatStandsBeforeDamageIsJudged) {
  EXPECT_THAT(deviations(document_kind::events, "<BMR><FOO/><EVENT>"),
              ElementsAre("1:12 'FOO' is no element of the grammar"));
}

// --- attributes

TEST(GrammarPass, AnAttributeIsRequiredAndANumber) {
  EXPECT_THAT(in_variable("<bitTitle bit='3'>on</bitTitle>"), IsEmpty());
  EXPECT_THAT(in_variable("<bitTitle>on</bitTitle>"),
              ElementsAre("2:11 bitTitle lacks the attribute bit"));
  EXPECT_THAT(in_variable("<bitTitle bit='x'>on</bitTitle>"),
              ElementsAre("2:19 the attribute bit holds 'x': a whole number from -2147483648 to "
                          "2147483647 belongs there"));
}

TEST(GrammarPass, OtherAttributesAreTold) {
  EXPECT_THAT(in_channel("<NAME a='1' b='2'>N</NAME>"),
              ElementsAre("2:19 NAME has no attribute 'a' in the grammar",
                          "2:19 NAME has no attribute 'b' in the grammar"));
}

TEST(GrammarPass, TheRootMayNameItsSchema) {
  const std::string named =
      "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
      "xsi:noNamespaceSchemaLocation='events.xsd'";
  EXPECT_THAT(deviations(document_kind::events, "<BMR " + named + "/>"), IsEmpty());
  EXPECT_THAT(deviations(document_kind::events, "<BMR xmlns='urn:x'/>"),
              ElementsAre("1:21 BMR has no attribute 'xmlns' in the grammar"));
}

// --- texts

TEST(GrammarPass, ATextAmongElementsIsTold) {
  EXPECT_THAT(in_channel("stray <NAME>N</NAME>"),
              ElementsAre("2:1 the text 'stray' in CHANNEL, where only elements belong"));
  EXPECT_THAT(in_channel("<BIT>0<BIT_NAME>A</BIT_NAME> x</BIT>"),
              ElementsAre("2:30 the text 'x' in BIT, where only elements belong"));
}

TEST(GrammarPass, TheNumberOfARecordStandsBeforeItsElements) {
  EXPECT_THAT(in_channel("<BIT>0\n<BIT_NAME>A</BIT_NAME>\n</BIT>"), IsEmpty());
  EXPECT_THAT(in_channel("<BIT><BIT_NAME>A</BIT_NAME></BIT>"),
              ElementsAre("2:6 BIT is empty: a whole number from -2147483648 to 2147483647 belongs "
                          "there"));
  EXPECT_THAT(
      in_channel("<BIT>x</BIT>"),
      ElementsAre("2:6 BIT holds 'x': a whole number from -2147483648 to 2147483647 belongs "
                  "there"));
}

TEST(GrammarPass, LengthsAreThoseOfTheRecords) {
  const auto units = [](std::size_t length) {
    return in_channel("<UNITS>" + std::string(length, 'u') + "</UNITS>");
  };
  EXPECT_THAT(units(14), IsEmpty());
  EXPECT_THAT(units(15), IsEmpty());
  EXPECT_THAT(units(16), ElementsAre("2:8 UNITS has 16 characters, more than 15"));
  const auto block = [](std::size_t length) {
    return in_event("<SBLOCK>" + std::string(length, 'b') + "</SBLOCK>");
  };
  EXPECT_THAT(block(254), IsEmpty());
  EXPECT_THAT(block(255), ElementsAre("2:9 SBLOCK has 255 characters, more than 254"));
  EXPECT_THAT(block(0), ElementsAre("2:9 SBLOCK is empty"));
}

TEST(GrammarPass, LengthsAreCountedInCharacters) {
  std::string fifteen;
  for (int i = 0; i < 15; ++i) fifteen += "\xf0\x9f\x94\x94";
  EXPECT_THAT(in_channel("<UNITS>" + fifteen + "</UNITS>"), IsEmpty());
  EXPECT_THAT(in_channel("<UNITS>" + fifteen + "!</UNITS>"),
              ElementsAre("2:8 UNITS has 16 characters, more than 15"));
}

TEST(GrammarPass, APropertyIsNotEmpty) {
  EXPECT_THAT(deviations(document_kind::channels,
                         "<CHANDESCRIPTIONS><CHANNEL><PROP/></CHANNEL></CHANDESCRIPTIONS>"),
              ElementsAre("1:35 PROP is empty"));
}

// --- numbers

TEST(GrammarPass, ANumberHas32BitsAndNothingElse) {
  const auto stream = [](const std::string& text) {
    return in_channel("<STREAM>" + text + "</STREAM>").empty();
  };
  for (const char* right : {"0", "-2147483648", "2147483647", "+5", "007", " 5\n"}) {
    EXPECT_TRUE(stream(right)) << right;
  }
  for (const char* not_one : {"", " ", "-2147483649", "2147483648", "5x", "5 5", "0x5", "1.0",
                              "+-5", "-+5", "--5", "+", "-"}) {
    EXPECT_FALSE(stream(not_one)) << not_one;
  }
}

TEST(GrammarPass, ACountMayBeHexadecimalAndHasNoSign) {
  const auto mask = [](const std::string& text) {
    return in_event("<TMASK>" + text + "</TMASK>").empty();
  };
  for (const char* right : {"0", "4294967295", "0x0", "0xFfffffff", "\t7 "}) {
    EXPECT_TRUE(mask(right)) << right;
  }
  for (const char* not_one :
       {"", "-1", "4294967296", "0x", "0x100000000", "0X1F", "x1", "0x-1", "0x+1", "1F", "0x1G"}) {
    EXPECT_FALSE(mask(not_one)) << not_one;
  }
}

TEST(GrammarPass, AFractionIsAsCWritesIt) {
  const auto threshold = [](const std::string& text) {
    return in_entry("<DABS>" + text + "</DABS>").empty();
  };
  for (const char* right : {"0", "-0.05", "+1.5", ".5", "5.", "1e-3", "1E+3", "1e999", "inf",
                            "-inf", "nan", "-nan", "INF", "-INF", "NaN", " 1 "}) {
    EXPECT_TRUE(threshold(right)) << right;
  }
  for (const char* not_one :
       {"", ".", "0,05", "1 %", "0x1p3", "1e", "e3", "+inf", "infinity", "NAN", "+-1", "--1"}) {
    EXPECT_FALSE(threshold(not_one)) << not_one;
  }
}

TEST(GrammarPass, TheTypesOfAnEventListAreNumbers) {
  const auto type = [](const std::string& text) {
    return deviations(document_kind::events, "<BMR><EVENT><TYPE>" + text + "</TYPE></EVENT></BMR>");
  };
  EXPECT_THAT(type("0"), IsEmpty());
  EXPECT_THAT(type("32"), IsEmpty());
  EXPECT_THAT(type("33"),
              ElementsAre("1:19 TYPE holds '33': the number of an event type belongs there"));
  EXPECT_THAT(type("64"),  // the mask of UPD's successor is none in an event list
              ElementsAre("1:19 TYPE holds '64': the number of an event type belongs there"));
}

TEST(GrammarPass, TheTypesOfAChannelAreNumbersOrMasksOfThem) {
  const auto event_type = [](const std::string& text) {
    return in_channel("<EVTYPE>" + text + "</EVTYPE>").empty();
  };
  for (const char* right : {"0", "27", "32", "64", "1073741824", "-2147483648"}) {
    EXPECT_TRUE(event_type(right)) << right;
  }
  for (const char* not_one : {"33", "65", "-1", "NORMAL"}) EXPECT_FALSE(event_type(not_one));
  const auto data_type = [](const std::string& text) {
    return in_channel("<DTYPE>" + text + "</DTYPE>").empty();
  };
  // As masks 13 is 0x2000, 38 is 0x80000040, and 54, which is no type, would be 0x80400000.
  for (const char* right : {"0", "1", "63", "8192", "-2147483584"}) {
    EXPECT_TRUE(data_type(right)) << right;
  }
  for (const char* not_one : {"29", "54", "-5", "-2143289344", "BPM"})
    EXPECT_FALSE(data_type(not_one));
}
