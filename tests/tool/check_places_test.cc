// Elements, texts and attributes that stand where nobody reads them, or for another record.

#include "finding_support.hh"
#include "own_locale.hh"
#include "zrt4xml.hh"

using test::channel_with;
using test::entry_with;
using test::event_with;
using test::found_in;
using test::lines;
using test::variable_with;

namespace {

class CheckPlaces : public testing::Test {
  const test::own_locale in_utf8{LC_CTYPE, "C.UTF-8"};  // as the tool
  const zrt4::xml_session session;
};

}  // namespace

TEST_F(CheckPlaces, FieldBeforeTheTypeOfItsEvent) {
  EXPECT_EQ(found_in("<BMR>\n<EVENT><PRIORITY>1</PRIORITY><TYPE>1</TYPE></EVENT></BMR>"),
            lines{"2:18 too_early: PRIORITY stands before the type of its event, and is ignored"});
}

TEST_F(CheckPlaces, EventWithoutATypeSaysItAll) {
  EXPECT_EQ(found_in("<BMR>\n<EVENT><PRIORITY>1</PRIORITY></EVENT></BMR>"),
            lines{"2:8 record_left_out: EVENT without TYPE is left out"});
  EXPECT_EQ(
      found_in("<BMR>\n<EVENT>\n<TYPE/><PRIORITY>1</PRIORITY></EVENT></BMR>"),
      lines{"3:8 empty_element: TYPE is empty: what stands in this event (line 2) is ignored"});
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>1</TYPE></EVENT>\n<EVENT><TYPE>40</TYPE></EVENT>\n"
                     "<EVENT><TYPE/><PRIORITY>1</PRIORITY></EVENT></BMR>")
                .back(),
            "4:15 empty_element: TYPE is empty: what stands in this event goes to the one before "
            "(line 2)");
  // Of an event that is skipped nothing else is told.
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>40</TYPE><SBLOCK>B<CHLIST><CHAN>C</CHAN></CHLIST>"
                     "</SBLOCK></EVENT></BMR>")
                .size(),
            1U);
}

TEST_F(CheckPlaces, SecondType) {
  EXPECT_EQ(found_in(event_with("<TYPE>2</TYPE>")),
            lines{"3:7 repeated_element: TYPE stands again in EVENT (line 2), as in line 2: it "
                  "begins another event"});
}

TEST_F(CheckPlaces, ChannelWithoutAnEventType) {
  EXPECT_EQ(found_in("<CHANDESCRIPTIONS>\n<CHANNEL>\n<PROP>A</PROP><NAME>N</NAME>\n</CHANNEL>"
                     "</CHANDESCRIPTIONS>"),
            lines{"2:10 channel_without_event_type: channel 'A' has no event type: clients never "
                  "find it"});
  EXPECT_EQ(found_in("<DAQvariables>\n<DaqFloat><vindo>A</vindo><daqName>N</daqName></DaqFloat>"
                     "</DAQvariables>"),
            lines{"2:11 channel_without_event_type: channel 'A' has no event type: clients never "
                  "find it"});
  // Another word says it already.
  EXPECT_EQ(found_in(channel_with("<EVTYPE/>")),
            lines{"3:10 empty_element: EVTYPE lacks its number"});
  EXPECT_EQ(found_in(channel_with("<EVTYPE>0</EVTYPE>")), lines{});
  EXPECT_EQ(found_in("<CHANDESCRIPTIONS>\n<CHANNEL><NAME>N</NAME></CHANNEL></CHANDESCRIPTIONS>"),
            lines{"2:10 record_left_out: CHANNEL without PROP is left out"});
  // It is not read of what is merged into another.
  EXPECT_EQ(found_in("<DAQvariables>\n<DaqFloat><evType>1</evType><vindo>A</vindo><daqName>N"
                     "</daqName></DaqFloat>\n<DaqFloat><vindo>A</vindo><daqName>N</daqName>"
                     "</DaqFloat></DAQvariables>"),
            lines{"2:36 duplicate_property: property 'A' stands here 2 times: lines 2 and 3; they "
                  "are read as one, which keeps the first"});
}

TEST_F(CheckPlaces, RecordsWithinOneAnother) {
  EXPECT_EQ(found_in(event_with("<EVENT><TYPE>2</TYPE></EVENT>")),
            lines{"3:8 nested_record: EVENT stands within EVENT (line 2), and ends it"});
  EXPECT_EQ(found_in(channel_with("<EVTYPE>1</EVTYPE>\n<CHANNEL><PROP>B</PROP><NAME>M</NAME>"
                                  "<EVTYPE>1</EVTYPE></CHANNEL>")),
            lines{"4:10 nested_record: CHANNEL stands within CHANNEL (line 2), and ends it"});
  EXPECT_EQ(found_in(channel_with("<DIM>0<DIM>1</DIM></DIM>")),
            lines{"3:12 nested_record: DIM stands within DIM (line 3), and ends it"});
  EXPECT_EQ(found_in(variable_with("DaqBits",
                                   "<evType>1</evType>\n<DaqFloat><vindo>B</vindo>"
                                   "<daqName>M</daqName><evType>1</evType></DaqFloat>")),
            lines{"4:11 nested_record: DaqFloat stands within DaqBits (line 2), and ends it"});
  EXPECT_EQ(found_in(entry_with("<CHANNEL><INDEX>2</INDEX><PROP>B</PROP></CHANNEL>")),
            lines{"3:10 nested_record: CHANNEL stands within CHANNEL (line 2), and ends it"});
}

TEST_F(CheckPlaces, FieldOutsideItsRecord) {
  EXPECT_EQ(found_in("<BMR><PRIORITY>1</PRIORITY></BMR>"),
            lines{"1:16 too_early: PRIORITY stands without any EVENT before it, and is ignored"});
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>1</TYPE></EVENT>\n<PRIORITY>1</PRIORITY></BMR>"),
            lines{"3:11 loose_element: PRIORITY stands behind EVENT (line 2), and is read as a "
                  "part of it"});
  EXPECT_EQ(found_in("<DAQvariables><units>mm</units></DAQvariables>"),
            lines{"1:22 too_early: units stands without any DaqFloat or DaqBits or DaqFloatMatrix "
                  "before it, and is ignored"});
}

TEST_F(CheckPlaces, ChannelsOfAServerBlock) {
  EXPECT_EQ(found_in(event_with("<SBLOCK>B<CHAN>C</CHAN></SBLOCK>")),
            lines{"3:16 too_early: CHAN stands without any CHLIST before it, and is ignored"});
  EXPECT_EQ(found_in(event_with("<CHLIST><CHAN>C</CHAN></CHLIST>")),
            (lines{"3:9 too_early: CHLIST stands without any SBLOCK before it, and is ignored"}));
  EXPECT_EQ(found_in(event_with("<SBLOCK>B<CHLIST><CHAN>C</CHAN></CHLIST></SBLOCK>"
                                "<CHAN>D</CHAN>")),
            lines{"3:56 loose_element: CHAN stands behind CHLIST (line 3), and is read as a part "
                  "of it"});
  EXPECT_EQ(found_in(event_with("<SBLOCK>B<CHLIST/></SBLOCK>")),
            lines{"3:19 empty_list: CHLIST names no channel, which means all of them"});
  EXPECT_EQ(found_in(event_with("<SBLOCK><CHLIST><CHAN>C</CHAN></CHLIST></SBLOCK>")),
            lines{"3:9 empty_element: SBLOCK lacks its text directly behind the start tag: what "
                  "stands in it is not its own"});
  EXPECT_EQ(found_in(event_with("<SBLOCK>B<CHLIST><CHAN/><CHAN>C</CHAN></CHLIST></SBLOCK>")),
            lines{"3:25 empty_element: CHAN lacks its name, and is ignored"});
}

TEST_F(CheckPlaces, PartsOfAChannel) {
  EXPECT_EQ(found_in(channel_with("<BIT_NAME>x</BIT_NAME><BIT>0</BIT>")),
            lines{"3:11 too_early: BIT_NAME stands without any BIT before it, and is ignored"});
  EXPECT_EQ(found_in(channel_with("<STAT>0</STAT>")),
            lines{"3:7 too_early: STAT stands without any DIM before it, and is ignored"});
  EXPECT_EQ(found_in(channel_with("<DIM_DESCR>x</DIM_DESCR>")),
            lines{"3:12 too_early: DIM_DESCR stands without any DIM before it, and describes the "
                  "channel"});
  // Behind their part, or in it.
  EXPECT_EQ(found_in(channel_with("<BIT>0</BIT><BIT_NAME>x</BIT_NAME><DIM>0</DIM><STAT>0</STAT>"
                                  "<STAT_NAME>y</STAT_NAME>")),
            lines{});
  EXPECT_EQ(found_in(channel_with("<DIM>0<STAT>0</STAT></DIM><STAT_NAME>x</STAT_NAME>")),
            lines{"3:38 loose_element: STAT_NAME stands behind STAT (line 3), and is read as a "
                  "part of it"});
}

TEST_F(CheckPlaces, FieldOfAnotherRecord) {
  EXPECT_EQ(found_in(channel_with("<DIM>0<UNITS>mm</UNITS></DIM>")),
            lines{"3:14 misplaced_element: UNITS stands in DIM, but is read as a part of CHANNEL "
                  "(line 2); DIM has DIM_UNITS"});
  EXPECT_EQ(found_in(channel_with("<BIT>0<SIZE>4</SIZE></BIT>")),
            lines{"3:13 misplaced_element: SIZE stands in BIT, but is read as a part of CHANNEL "
                  "(line 2)"});
  EXPECT_EQ(found_in(variable_with("DaqFloat", "<bitTitle bit='0'>x</bitTitle>")),
            lines{"3:19 misplaced_element: bitTitle counts in DaqBits only; in DaqFloat it is "
                  "ignored"});
  EXPECT_EQ(found_in(variable_with("DaqBits", "<dimension id='0'> </dimension>")),
            lines{"3:19 misplaced_element: dimension counts in DaqFloatMatrix only; in DaqBits it "
                  "is ignored"});
  EXPECT_EQ(found_in(variable_with("DaqFloatMatrix",
                                   "<dimension id='0'> </dimension>\n<units>mm</units>")),
            lines{"4:8 loose_element: units stands behind dimension (line 3), and is read as a "
                  "part of it"});
}

TEST_F(CheckPlaces, ElementsThatStandAgain) {
  EXPECT_EQ(found_in(channel_with("<UNITS>a</UNITS>\n<UNITS>b</UNITS>")),
            lines{"4:8 repeated_element: UNITS stands again in CHANNEL (line 2), as in line 3: "
                  "only the last one counts"});
  EXPECT_EQ(found_in(channel_with("<PROP>B</PROP>")),
            lines{"3:7 repeated_element: PROP stands again in CHANNEL (line 2), as in line 2: it "
                  "lists it again, as the last one says"});
  EXPECT_EQ(found_in(channel_with("<BIT>0<BIT_NAME>a</BIT_NAME><BIT_NAME>b</BIT_NAME></BIT>")),
            lines{"3:39 repeated_element: BIT_NAME stands again in BIT (line 3), as in line 3: "
                  "only the last one counts"});
  EXPECT_EQ(found_in(entry_with("<DABS>1</DABS><DABS>2</DABS>")).size(), 1U);
}

TEST_F(CheckPlaces, NumberThatDoesNotStandDirectlyBehindItsTag) {
  EXPECT_EQ(found_in(channel_with("<BIT><BIT_NAME>x</BIT_NAME>0</BIT>")),
            lines{"3:28 stray_text: BIT holds the text '0' behind an element in it, where it is "
                  "not read"});
  EXPECT_EQ(found_in(channel_with("<BIT><BIT_NAME>x</BIT_NAME></BIT>")),
            lines{"3:6 empty_element: BIT lacks its text directly behind the start tag: what "
                  "stands in it is not its own"});
  EXPECT_EQ(found_in(channel_with("<BIT/>")),
            lines{"3:7 empty_element: BIT lacks its text, and is ignored"});
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>\n<!-- NORMAL -->1</TYPE></EVENT></BMR>"),
            lines{"2:14 interrupted_text: TYPE: '1' is not read: it must stand directly behind the "
                  "start tag, and in one piece"});
  EXPECT_EQ(found_in(event_with("<TMASK/>")), lines{"3:9 empty_element: TMASK lacks its number"});
}

TEST_F(CheckPlaces, TextsAndAttributesThatNobodyReads) {
  EXPECT_EQ(found_in("<BMR>x<EVENT>\n<TYPE>1</TYPE>y</EVENT></BMR>"),
            (lines{"1:6 stray_text: BMR holds the text 'x', which is not read",
                   "2:15 stray_text: EVENT holds the text 'y', which is not read"}));
  EXPECT_EQ(found_in("<BMR>\n<EVENT type='1'><TYPE>1</TYPE></EVENT></BMR>"),
            lines{"2:17 stray_attribute: EVENT has the attribute 'type', which is not read"});
  EXPECT_EQ(found_in("<BMR xmlns:x='y' xml:lang='en'/>"), lines{});
}

TEST_F(CheckPlaces, TextsThatNobodyReadsAreToldWhereTheyBegin) {
  const auto within = [](const std::string& text) {
    return found_in("<BMR>\n<EVENT>\n<TYPE>1</TYPE>" + text + "<TMASK>1</TMASK></EVENT></BMR>");
  };
  EXPECT_EQ(within("\n\n  one\n two\n"),
            lines{"5:3 stray_text: EVENT holds the text 'one\\x0a two', which is not read"});
  EXPECT_EQ(within(" one\n"),
            lines{"3:1 stray_text: EVENT holds the text 'one', which is not read"});
  EXPECT_EQ(within(" \xc3\xa4 "), lines{"3:16 stray_text: EVENT holds the text '\xc3\xa4', which "
                                        "is not read"});
  EXPECT_EQ(found_in("<BMR>\n<EVENT> one\n<TYPE>1</TYPE></EVENT>\r\n\r\n >>>>>>> mine\r\n</BMR>"),
            (lines{"2:9 stray_text: EVENT holds the text 'one', which is not read",
                   "5:2 stray_text: BMR holds the text '>>>>>>> mine', which is not read"}));
  EXPECT_EQ(found_in(channel_with("<DIM>0\n<DIM_NAME>x</DIM_NAME>\ny</DIM>")),
            lines{"5:1 stray_text: DIM holds the text 'y' behind an element in it, where it is not "
                  "read"});
}

TEST_F(CheckPlaces, DamageWithinAnElementTellsWhereThatBegins) {
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>1</TYPE>\n</BMR>"),
            lines{"3:3 damage: expected end of tag 'EVENT' (line 2)"});
  EXPECT_EQ(found_in("<BMR>\n<EVENT><TYPE>1</TYPE></BMR>"),
            lines{"2:24 damage: expected end of tag 'EVENT'"});
  EXPECT_EQ(found_in("<BMR>\n\n"),
            lines{"3:1 damage: input ended before all started tags were ended; last tag started is "
                  "'BMR' (line 1)"});
  EXPECT_EQ(found_in("<C>\n<Integer Name='W'/>\n<Float Name='G'>\n</C>"),
            lines{"4:3 damage: expected end of tag 'Float' (line 3)"});
}

TEST_F(CheckPlaces, WhatHasNoEndIsToldWhereItBegins) {
  EXPECT_EQ(found_in("<BMR>\n <!-- <EVENT>\n</BMR>\n"),
            lines{"2:2 damage: unterminated comment, which begins here"});
  EXPECT_EQ(found_in("<BMR>\n<EVENT><![CDATA[\n</BMR>\n"),
            lines{"2:8 damage: unterminated CDATA section, which begins here"});
  EXPECT_EQ(found_in("<BMR><?x\n</BMR>\n"),
            lines{"1:6 damage: unterminated processing instruction, which begins here"});
}

TEST_F(CheckPlaces, DamageWithAdvice) {
  EXPECT_EQ(found_in("<BMR>\n<<<<<<< mine\n<EVENT/></BMR>"),
            lines{"2:2 damage: element name expected; this marks a conflict of two versions: keep "
                  "one, and remove the marks"});
  EXPECT_EQ(found_in(event_with("<SBLOCK>R&D</SBLOCK>")).back(),
            "3:12 damage: unterminated entity reference 'D'; the sign & itself is written &amp;");
  EXPECT_EQ(found_in(event_with("<SBLOCK>R & D</SBLOCK>")).back(),
            "3:12 damage: expected entity name for reference; the sign & itself is written &amp;");
  EXPECT_EQ(found_in(event_with("<SBLOCK>1&nbsp;mm</SBLOCK>")).back(),
            "3:16 damage: entity 'nbsp' not found; there are no others than amp, lt, gt, quot and "
            "apos");
  EXPECT_EQ(found_in(channel_with("<DESC>U < 5 V</DESC>")).back(),
            "3:10 damage: element name expected; the sign < itself is written &lt;");
  EXPECT_EQ(found_in("<BMR>\n<!-- a <!-- b -->\n</BMR>"),
            lines{"2:13 damage: '--' sequence is illegal in comment; does the comment end where it "
                  "should?"});
  EXPECT_EQ(found_in(variable_with("DaqBits", "<bitTitle bit=1>x</bitTitle>")).back(),
            "3:15 damage: attribute value expected; it stands in quotes");
}

TEST_F(CheckPlaces, AttributesThatAreMissing) {
  EXPECT_EQ(found_in(variable_with("DaqBits", "<bitTitle Bit='1'>x</bitTitle>")),
            (lines{"3:19 stray_attribute: bitTitle has the attribute 'Bit', which is not read; did "
                   "you mean 'bit'?",
                   "3:19 missing_attribute: bitTitle without the attribute bit"}));
}

TEST_F(CheckPlaces, ATextWithinAnElementThatNoReaderKnows) {
  EXPECT_EQ(found_in(channel_with("<DESC><b>beam</b></DESC>")),
            (lines{"3:7 empty_element: DESC lacks its text: what stands in it is not its own",
                   "3:10 unknown_element: no reader knows the element 'b' (1 time)"}));
  EXPECT_EQ(found_in(channel_with("<DESC/><UNITS></UNITS>")), lines{});
  // No root stands within anything.
  EXPECT_EQ(found_in(event_with("<SBLOCK>A<br/></SBLOCK>")),
            lines{"3:15 unknown_element: no reader knows the element 'br' (1 time)"});
}

TEST_F(CheckPlaces, DimensionsThatAreReadTwice) {
  EXPECT_EQ(found_in(variable_with("DaqFloatMatrix", "<dimension id='0'/>")), lines{});
  EXPECT_EQ(found_in(variable_with("DaqFloatMatrix", "<dimension id='0'></dimension>")),
            lines{"3:19 read_again: dimension is read several times: a comment or its end stands "
                  "directly behind its start tag"});
  EXPECT_EQ(found_in(variable_with("DaqBits", "<bitTitle bit='0'></bitTitle>")), lines{});
}

TEST_F(CheckPlaces, MisspeltElements) {
  const struct {
    const char* written;
    const char* advice;
  } cases[] = {{"Units", "; did you mean UNITS?"},     {"UNIT", "; did you mean UNITS?"},
               {"PROPERTY", "; did you mean PROP?"},   {"STERAM", "; did you mean STREAM?"},
               {"DB-KEY", "; did you mean DB_KEY?"},   {"DESCRIPTION", "; did you mean DESC?"},
               {"sbName", "; did you mean SB_NAME?"},  {"lastIndex", "; did you mean SIZE?"},
               {"SUBSYS", "; did you mean SUBSYSTEM?"}};
  for (const auto& [written, advice] : cases) {
    const std::string name = written;
    EXPECT_EQ(
        found_in(channel_with("<" + name + "/>")),
        lines{"3:" + std::to_string(name.size() + 4) +
              " misspelt_element: no reader knows the element '" + name + "' (1 time)" + advice});
  }
  EXPECT_EQ(found_in(channel_with("<FOO/>\n<FOO/>")),
            lines{"3:7 unknown_element: no reader knows the element 'FOO' (2 times: lines 3 and "
                  "4)"});
}
