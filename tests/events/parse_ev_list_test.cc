// Event lists: both readers, listing and release.

#include <clocale>
#include <memory>

#include "support.hh"
#include "zrt4xml.hh"

using test::captured;
using test::output;

namespace {

using entries = std::vector<zrt4_ev_entry*>;

struct from_text {
  static int read(const std::string& document, entries* list) {
    std::string text = document;
    return zrt4_parse_ev_list_read(text.data(), list);
  }
  static std::string system_id() { return "my_mem_info"; }
};

struct from_file {
  static int read(const std::string& document, entries* list) {
    test::temporary_file file(document);
    last_name() = file.path();
    return zrt4_parse_ev_list_readf(file.name(), list);
  }
  static std::string system_id() { return last_name(); }
  static std::string& last_name() {
    static std::string name;
    return name;
  }
};

std::string listing(entries& list) {
  return captured([&] { zrt4_print_ev_list(&list); }).out;
}

/// The entries in one line each: type, mask, time, priority, blocks with their channels.
std::string summary(const entries& list) {
  std::ostringstream text;
  for (const zrt4_ev_entry* entry : list) {
    text << entry->evtype << " mask " << entry->tmask << " time " << entry->min_ev_time.timeup
         << "." << entry->min_ev_time.timelow << " prio " << entry->priority;
    for (const zrt4_ev_sb_list* block : *entry->sb_list) {
      text << " [" << block->sb_list;
      for (const char* channel : *block->ch_list) text << " " << channel;
      text << "]";
    }
    text << "\n";
  }
  return text.str();
}

}  // namespace

template <class Source>
struct EvList : testing::Test {
  /// Reads the body of a BMR document that must be clean, and sums the list up.
  std::string read(const std::string& body) {
    const output said =
        captured([&] { EXPECT_EQ(Source::read("<BMR>" + body + "</BMR>", &list), 0); });
    EXPECT_EQ(said.out, "");
    EXPECT_EQ(said.err, "");
    return summary(list);
  }

  zrt4::event_list owner;
  entries& list = *owner.get();
};

using Sources = testing::Types<from_text, from_file>;
TYPED_TEST_SUITE(EvList, Sources);

TYPED_TEST(EvList, WholeEventIsRead) {
  EXPECT_EQ(this->read("\n <EVENT>\n  <TYPE>1</TYPE>\n  <TMASK>0x10</TMASK>\n"
                       "  <MINTIMESEC>2</MINTIMESEC>\n  <MINTIMEUSEC>500</MINTIMEUSEC>\n"
                       "  <PRIORITY>3</PRIORITY>\n  <SBLOCK>BPM.SERVER<CHLIST>\n"
                       "   <CHAN>BPM.1</CHAN>\n   <CHAN>BPM.2</CHAN>\n  </CHLIST></SBLOCK>\n"
                       " </EVENT>\n"),
            "1 mask 16 time 2.500 prio 3 [BPM.SERVER BPM.1 BPM.2]\n");
}

TYPED_TEST(EvList, EmptyDocumentHasNoEntries) {
  EXPECT_EQ(this->read(""), "");
  EXPECT_EQ(TypeParam::read("<BMR/>", &this->list), 0);
  EXPECT_TRUE(this->list.empty());
}

TYPED_TEST(EvList, NewEntryHasZerosAndAnEmptyBlockVector) {
  this->read("<EVENT><TYPE>7</TYPE></EVENT>");
  ASSERT_EQ(this->list.size(), 1U);
  const zrt4_ev_entry& entry = *this->list[0];
  EXPECT_EQ(entry.evtype, ZRT4_EV_WS);
  ASSERT_NE(entry.sb_list, nullptr);
  EXPECT_TRUE(entry.sb_list->empty());
  EXPECT_EQ(entry.min_ev_time.timeup, 0U);
  EXPECT_EQ(entry.min_ev_time.timelow, 0U);
  EXPECT_EQ(entry.tmask, 0U);
  EXPECT_EQ(entry.priority, 0U);
}

TYPED_TEST(EvList, TypesFrom0To32AreAccepted) {
  EXPECT_EQ(this->read("<EVENT><TYPE>0</TYPE></EVENT><EVENT><TYPE>31</TYPE></EVENT>"
                       "<EVENT><TYPE>32</TYPE></EVENT>"),
            "0 mask 0 time 0.0 prio 0\n"
            "31 mask 0 time 0.0 prio 0\n"
            "32 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, TypeOutsideRejectsItsEventOnly) {
  for (const char* const type : {"33", "-1"}) {
    EXPECT_EQ(this->read(std::string("<EVENT><TYPE>") + type +
                         "</TYPE><TMASK>5</TMASK><SBLOCK>S<CHLIST><CHAN>C</CHAN></CHLIST></SBLOCK>"
                         "</EVENT><EVENT><TYPE>4</TYPE><TMASK>6</TMASK></EVENT>"),
              "4 mask 6 time 0.0 prio 0\n");
    this->owner.clear();
  }
}

TYPED_TEST(EvList, TypeBeyond32BitsRejectsItsEventWhateverItsLowerBits) {
  EXPECT_EQ(this->read("<EVENT><TYPE>4294967297</TYPE><TMASK>5</TMASK></EVENT>"
                       "<EVENT><TYPE>-4294967295</TYPE></EVENT>"
                       "<EVENT><TYPE>99999999999999999999</TYPE></EVENT>"
                       "<EVENT><TYPE>2</TYPE></EVENT>"),
            "2 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, TypeIsDecimal) {
  EXPECT_EQ(this->read("<EVENT><TYPE> \n 12abc</TYPE></EVENT><EVENT><TYPE>none</TYPE></EVENT>"
                       "<EVENT><TYPE>0x9</TYPE></EVENT><EVENT><TYPE>+3</TYPE></EVENT>"),
            "12 mask 0 time 0.0 prio 0\n"
            "0 mask 0 time 0.0 prio 0\n"
            "0 mask 0 time 0.0 prio 0\n"
            "3 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, RepeatedTypeMakesAFurtherEntry) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><TMASK>1</TMASK><TYPE>2</TYPE><TMASK>2</TMASK>"
                       "<SBLOCK>S</SBLOCK></EVENT>"),
            "1 mask 1 time 0.0 prio 0\n"
            "2 mask 2 time 0.0 prio 0 [S]\n");
}

TYPED_TEST(EvList, RejectedRepeatedTypeEndsTheEvent) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><TYPE>99</TYPE><TMASK>2</TMASK></EVENT>"),
            "1 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, CommentBeforeTheTypesTextDoesNotMatter) {
  EXPECT_EQ(this->read("<EVENT><TYPE><!-- c -->6</TYPE></EVENT>"), "6 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, ElementsOutsideAnyEventAreIgnored) {
  EXPECT_EQ(this->read("<TYPE>1</TYPE><TMASK>2</TMASK><SBLOCK>S</SBLOCK>"), "");
}

TYPED_TEST(EvList, ElementsBeforeTheTypeAreIgnored) {
  EXPECT_EQ(this->read("<EVENT><TMASK>2</TMASK><SBLOCK>S</SBLOCK><TYPE>1</TYPE></EVENT>"),
            "1 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, EmptyTypeContinuesTheEntryBefore) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE></EVENT>"
                       "<EVENT><TYPE/><TMASK>9</TMASK><SBLOCK>S</SBLOCK></EVENT>"),
            "1 mask 9 time 0.0 prio 0 [S]\n");
}

TYPED_TEST(EvList, EmptyTypeWithoutAnyEntryIsIgnored) {
  EXPECT_EQ(this->read("<EVENT><TYPE/><TMASK>9</TMASK><SBLOCK>S<CHLIST><CHAN>C</CHAN></CHLIST>"
                       "</SBLOCK><MINTIMESEC>1</MINTIMESEC></EVENT>"),
            "");
}

TYPED_TEST(EvList, EventMayCarryText) {
  EXPECT_EQ(this->read("<EVENT>text<TYPE>1</TYPE></EVENT>"), "1 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, NamesAreCaseSensitiveAndWhole) {
  EXPECT_EQ(this->read("<event><TYPE>1</TYPE></event><EVENTS><TYPE>1</TYPE></EVENTS>"
                       "<EVENT><TYPE>2</TYPE><TMASKS>3</TMASKS><tmask>3</tmask></EVENT>"),
            "2 mask 0 time 0.0 prio 0\n");
}

template <class Source>
struct EvListNumber : EvList<Source> {
  /// What a text gives as TMASK, PRIORITY and both times alike.
  std::uint32_t number(const std::string& text) {
    this->owner.clear();
    this->read("<EVENT><TYPE>1</TYPE><TMASK>" + text + "</TMASK><PRIORITY>" + text +
               "</PRIORITY><MINTIMESEC>" + text + "</MINTIMESEC><MINTIMEUSEC>" + text +
               "</MINTIMEUSEC></EVENT>");
    const zrt4_ev_entry& entry = *this->list.at(0);
    EXPECT_EQ(entry.priority, entry.tmask);
    EXPECT_EQ(entry.min_ev_time.timeup, entry.tmask);
    EXPECT_EQ(entry.min_ev_time.timelow, entry.tmask);
    return entry.tmask;
  }
};
TYPED_TEST_SUITE(EvListNumber, Sources);

TYPED_TEST(EvListNumber, LowerCaseXMakesItHexadecimal) {
  EXPECT_EQ(this->number("0x1F"), 31U);
}
TYPED_TEST(EvListNumber, OtherwiseDecimal) {
  EXPECT_EQ(this->number("31"), 31U);
}
TYPED_TEST(EvListNumber, UpperCaseXReadsTheLeadingZero) {
  EXPECT_EQ(this->number("0X1F"), 0U);
}
TYPED_TEST(EvListNumber, XWithoutPrefixLeavesZero) {
  EXPECT_EQ(this->number("12x"), 0U);
}
TYPED_TEST(EvListNumber, BlanksMayPrecede) {
  EXPECT_EQ(this->number(" \n 0xfF \n"), 255U);
}
TYPED_TEST(EvListNumber, NoNumberLeavesZero) {
  EXPECT_EQ(this->number("none"), 0U);
}
TYPED_TEST(EvListNumber, AllBits) {
  EXPECT_EQ(this->number("4294967295"), 4294967295U);
}
TYPED_TEST(EvListNumber, AsManyDigitsAsFit) {
  EXPECT_EQ(this->number("999999999"), 999999999U);
  EXPECT_EQ(this->number("0000000000000000031"), 31U);
  EXPECT_EQ(this->number("0xFFFFFFFF"), 4294967295U);
  EXPECT_EQ(this->number("0xdeadBEEF"), 0xdeadbeefU);
  EXPECT_EQ(this->number("0x000000001F"), 31U);
}
TYPED_TEST(EvListNumber, TooLargeIsTheLargest) {
  EXPECT_EQ(this->number("99999999999999999999"), 4294967295U);
  EXPECT_EQ(this->number("0x10000000000000000"), 4294967295U);
}
TYPED_TEST(EvListNumber, StopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(this->number("12;"), 12U);
  EXPECT_EQ(this->number("12 34"), 12U);
  EXPECT_EQ(this->number("12a"), 12U);
  EXPECT_EQ(this->number("0x1g"), 1U);
  EXPECT_EQ(this->number("0x1x2"), 1U);
}
TYPED_TEST(EvListNumber, PrefixMayComeTwiceAndWithASign) {
  EXPECT_EQ(this->number("0x0x1F"), 31U);
  EXPECT_EQ(this->number("0x-1"), 4294967295U);
}
TYPED_TEST(EvListNumber, PrefixAloneLeavesZero) {
  EXPECT_EQ(this->number("0x"), 0U);
  EXPECT_EQ(this->number("0xx"), 0U);
}
TYPED_TEST(EvListNumber, NegativeWrapsAround) {
  EXPECT_EQ(this->number("-1"), 4294967295U);
}

TYPED_TEST(EvListNumber, ATextThatDoesNotMatchLeavesTheFieldAsItWas) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><TMASK>5</TMASK><TMASK>12x</TMASK>"
                       "<MINTIMESEC>7</MINTIMESEC><MINTIMESEC>0x</MINTIMESEC>"
                       "<PRIORITY>6</PRIORITY><PRIORITY>high</PRIORITY></EVENT>"),
            "1 mask 5 time 7.0 prio 6\n");
}

TYPED_TEST(EvList, BlockNameKeepsLineBreakAndIndentation) {
  this->read("<EVENT><TYPE>1</TYPE><SBLOCK>\n    NAME\n  </SBLOCK></EVENT>");
  EXPECT_STREQ(this->list.at(0)->sb_list->at(0)->sb_list, "\n    NAME\n  ");
}

TYPED_TEST(EvList, BlockNameIsCutAt254Characters) {
  const std::string name(300, 'n');
  this->read("<EVENT><TYPE>1</TYPE><SBLOCK>" + name + "</SBLOCK><SBLOCK>" + name.substr(0, 254) +
             "</SBLOCK><SBLOCK>" + name.substr(0, 253) + "</SBLOCK></EVENT>");
  const auto& blocks = *this->list.at(0)->sb_list;
  EXPECT_EQ(blocks.at(0)->sb_list, std::string(254, 'n'));
  EXPECT_EQ(blocks.at(1)->sb_list, std::string(254, 'n'));
  EXPECT_EQ(blocks.at(2)->sb_list, std::string(253, 'n'));
  EXPECT_EQ(blocks.at(0)->sb_list[255], '\0');
}

TYPED_TEST(EvList, BlockWithoutChannelListHasAnEmptyChannelVector) {
  this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S</SBLOCK></EVENT>");
  ASSERT_NE(this->list.at(0)->sb_list->at(0)->ch_list, nullptr);
  EXPECT_TRUE(this->list.at(0)->sb_list->at(0)->ch_list->empty());
  EXPECT_THAT(listing(this->list),
              testing::EndsWith("Server block[0]: 'S'\nNo channel list -> ALL channels\n"));
}

TYPED_TEST(EvList, ChannelOutsideAChannelListIsIgnored) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><CHAN>A</CHAN><SBLOCK>S<CHAN>B</CHAN></SBLOCK>"
                       "<CHAN>C</CHAN></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S]\n");
}

TYPED_TEST(EvList, ChannelAfterAnEarlierChannelListOfTheEventIsTaken) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK>"
                       "<CHAN>B</CHAN></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S A B]\n");
}

TYPED_TEST(EvList, NextBlockClosesTheChannelList) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK>"
                       "<SBLOCK>T<CHAN>B</CHAN></SBLOCK></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S A] [T]\n");
}

TYPED_TEST(EvList, NextEventClosesTheChannelListAndTheBlock) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK>"
                       "</EVENT><EVENT><TYPE>2</TYPE><CHLIST><CHAN>B</CHAN></CHLIST></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S A]\n"
            "2 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, ChannelListOutsideABlockIsIgnored) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><CHLIST><CHAN>A</CHAN></CHLIST></EVENT>"),
            "1 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, ChannelListWithTextOpensToo) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST>text<CHAN>A</CHAN></CHLIST>"
                       "</SBLOCK></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S A]\n");
}

TYPED_TEST(EvList, EmptyChannelIsIgnored) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN/><CHAN> </CHAN><CHAN>A</CHAN>"
                       "</CHLIST></SBLOCK></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S A]\n");
}

TYPED_TEST(EvList, BlockWithoutNameIsNoBlock) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>\n <CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK>"
                       "</EVENT>"),
            "1 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, ChannelsOfABlockWithoutNameGoToTheBlockBefore) {
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S</SBLOCK>"
                       "<SBLOCK>\n <CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S A]\n");
}

TYPED_TEST(EvList, LongChannelNameIsKeptWhole) {
  const std::string name(1000, 'c');
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>" + name +
                       "</CHAN></CHLIST></SBLOCK></EVENT>"),
            "1 mask 0 time 0.0 prio 0 [S " + name + "]\n");
}

TYPED_TEST(EvList, ReadingTwiceDoublesTheEntries) {
  this->read("<EVENT><TYPE>1</TYPE></EVENT><EVENT><TYPE>2</TYPE></EVENT>");
  EXPECT_EQ(this->read("<EVENT><TYPE>1</TYPE></EVENT><EVENT><TYPE>2</TYPE></EVENT>"),
            "1 mask 0 time 0.0 prio 0\n2 mask 0 time 0.0 prio 0\n"
            "1 mask 0 time 0.0 prio 0\n2 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, WrongRootIsReported) {
  const output said =
      captured([&] { EXPECT_EQ(TypeParam::read("<EVENTS><EVENT/></EVENTS>", &this->list), 1); });
  EXPECT_EQ(said.err, "WRONG root tag: EVENTS must be 'BMR'\n");
  EXPECT_EQ(said.out, "");
  EXPECT_TRUE(this->list.empty());
}

TYPED_TEST(EvList, StartThatFailsCountsItsErrors) {
  const output said = captured([&] { EXPECT_EQ(TypeParam::read("", &this->list), 2); });
  EXPECT_EQ(said.err, "\nFatal Error at (file " + TypeParam::system_id() +
                          ", line 1, char 1): invalid document structure\nscanFirst() failed\n");
}

TYPED_TEST(EvList, FirstStepThatFailsCountsItsErrors) {
  const output said = captured([&] { EXPECT_EQ(TypeParam::read("<BMR", &this->list), 2); });
  EXPECT_THAT(said.err, testing::StartsWith("\nFatal Error at (file " + TypeParam::system_id() +
                                            ", line 1, char 5): "));
}

TYPED_TEST(EvList, BrokenDocumentKeepsWhatWasRead) {
  const std::string document = "<BMR><EVENT><TYPE>1</TYPE><TMASK>2</TMASK></EVENT><EVENT><TYPE>3";
  const output said = captured([&] { EXPECT_EQ(TypeParam::read(document, &this->list), 1); });
  EXPECT_EQ(said.err, "\nFatal Error at (file " + TypeParam::system_id() + ", line 1, char " +
                          std::to_string(document.size() + 1) +
                          "): input ended before all started tags were ended; "
                          "last tag started is 'TYPE'\n");
  EXPECT_EQ(summary(this->list), "1 mask 2 time 0.0 prio 0\n3 mask 0 time 0.0 prio 0\n");
}

TYPED_TEST(EvList, WarningIsCounted) {
  captured([&] {
    EXPECT_EQ(TypeParam::read("<!DOCTYPE BMR [<!ELEMENT BMR ANY><!ATTLIST BMR a CDATA #IMPLIED>"
                              "<!ATTLIST BMR a CDATA #IMPLIED>]><BMR/>",
                              &this->list),
              2);
  });
}

TYPED_TEST(EvList, BrokenAtEveryCharacterNeverLosesWholeEvents) {
  const std::string document =
      "<?xml version='1.0'?><BMR><EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>A</CHAN></CHLIST>"
      "</SBLOCK></EVENT></BMR>";
  const std::size_t type_known = document.find("</TYPE>");  // the text is delivered without its end
  captured([&] {
    for (std::size_t length = 0; length < document.size(); ++length) {
      EXPECT_GT(TypeParam::read(document.substr(0, length), &this->list), 0) << length;
      EXPECT_EQ(this->list.size(), length >= type_known ? 1U : 0U) << length;
      this->owner.clear();
    }
  });
}

TEST(EvListFile, MissingFile) {
  entries list;
  char name[] = "/nonexistent/list.xml";
  const output said = captured([&] { EXPECT_EQ(zrt4_parse_ev_list_readf(name, &list), 1); });
  EXPECT_EQ(said.err,
            "\nError during parsing memory stream:\nException message is:  \n"
            "unable to open primary document entity '/nonexistent/list.xml'\n");
}

TEST(EvListFile, Directory) {
  entries list;
  char name[] = "/tmp";
  const test::kept_leak ten_bytes_of_the_scanner;
  const output said = captured([&] { EXPECT_EQ(zrt4_parse_ev_list_readf(name, &list), 1); });
  EXPECT_EQ(said.err,
            "\nError during parsing memory stream:\nException message is:  \n"
            "unable to read data from file\n");
}

struct EvListing : testing::Test {
  zrt4::event_list owner;
  entries& list = *owner.get();
};

TEST_F(EvListing, NothingForNullOrEmpty) {
  EXPECT_EQ(captured([] { zrt4_print_ev_list(nullptr); }).out, "");
  EXPECT_EQ(listing(list), "");
}

TEST_F(EvListing, ShowsEverything) {
  from_text::read(
      "<BMR><EVENT><TYPE>20</TYPE><TMASK>0xFFFFFFFF</TMASK><MINTIMESEC>4294967295</MINTIMESEC>"
      "<MINTIMEUSEC>250</MINTIMEUSEC><PRIORITY>17</PRIORITY>"
      "<SBLOCK>S1<CHLIST><CHAN>A</CHAN><CHAN>B</CHAN></CHLIST></SBLOCK><SBLOCK>S2</SBLOCK></EVENT>"
      "<EVENT><TYPE>32</TYPE></EVENT></BMR>",
      &list);
  EXPECT_EQ(listing(list),
            "Entry[0]\n"
            "EVENT TYPE:\tLLRF_ML\n"
            "Trigger mask:\t0xffffffff (4294967295)\n"
            "Min event time:\t-1 sec 250 usec\n"
            "Priority:\t0x11 (17)\n"
            "Server Blocks: 2\n"
            "Server block[0]: 'S1'\n"
            "Channels: 2\n"
            "Channel[0]:\t'A'\n"
            "Channel[1]:\t'B'\n"
            "Server block[1]: 'S2'\n"
            "No channel list -> ALL channels\n"
            "Entry[1]\n"
            "EVENT TYPE:\tEVMAX\n"
            "Trigger mask:\t0x0 (0)\n"
            "Min event time:\t0 sec 0 usec\n"
            "Priority:\t0x0 (0)\n"
            "Server Blocks: 0\n");
}

TEST_F(EvListing, EntryWithoutBlockVectorIsTheFullEvent) {
  zrt4_ev_entry entry{};
  entry.evtype = ZRT4_EV_NORMAL;
  entries own{&entry};
  EXPECT_EQ(listing(own),
            "Entry[0]\n"
            "EVENT TYPE:\tNORMAL\n"
            "Trigger mask:\t0x0 (0)\n"
            "Min event time:\t0 sec 0 usec\n"
            "Priority:\t0x0 (0)\n"
            "No server block list -> Full event\n");
}

TEST_F(EvListing, TypeIsPassedUnchecked) {
  zrt4_ev_entry entry{};
  entry.evtype = static_cast<ZRT4_EVTYPE>(77);
  entries own{&entry};
  EXPECT_THAT(listing(own), testing::HasSubstr("EVENT TYPE:\tUNKNOWN\n"));
}

TEST_F(EvListing, BlockWithoutChannelVectorWantsAllChannels) {
  zrt4_ev_sb_list block{"S", nullptr};
  std::vector<zrt4_ev_sb_list*> blocks{&block};
  zrt4_ev_entry entry{};
  entry.sb_list = &blocks;
  entries own{&entry};
  EXPECT_THAT(listing(own), testing::EndsWith("Server Blocks: 1\nServer block[0]: 'S'\n"
                                              "No channel list -> ALL channels\n"));
}

TEST(EvListRelease, NothingForNullOrEmpty) {
  entries list;
  const output said = captured([&] {
    zrt4_clean_ev_list(nullptr);
    zrt4_clean_ev_list(&list);
  });
  EXPECT_EQ(said.out, "");
}

TEST(EvListRelease, EmptiesTheListAndKeepsItsCapacity) {
  entries list;
  from_text::read(
      "<BMR><EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>A</CHAN></CHLIST></SBLOCK>"
      "</EVENT><EVENT><TYPE>2</TYPE></EVENT></BMR>",
      &list);
  ASSERT_EQ(list.size(), 2U);
  const std::size_t capacity = list.capacity();
  zrt4_clean_ev_list(&list);
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.capacity(), capacity);
}

TEST(EvListRelease, EntryWithoutBlockVectorIsOnlyDropped) {
  const auto entry = std::make_unique<zrt4_ev_entry>();
  entry->tmask = 7;
  entries list{entry.get()};
  zrt4_clean_ev_list(&list);
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(entry->tmask, 7U);
}

TEST(EvListRelease, EmptyChannelVectorIsNotReleased) {
  entries list;
  from_text::read("<BMR><EVENT><TYPE>1</TYPE><SBLOCK>S</SBLOCK></EVENT></BMR>", &list);
  const std::unique_ptr<std::vector<char*>> channels(list.at(0)->sb_list->at(0)->ch_list);
  zrt4_clean_ev_list(&list);
  EXPECT_TRUE(channels->empty());
}

TEST(EvListRelease, NullChannelAndNullChannelVectorAreTolerated) {
  auto* channels = new std::vector<char*>{nullptr};
  auto* blocks = new std::vector<zrt4_ev_sb_list*>{new zrt4_ev_sb_list{"S", channels},
                                                   new zrt4_ev_sb_list{"T", nullptr}};
  entries list{new zrt4_ev_entry{ZRT4_EV_HB, blocks, {0, 0}, 0, 0}};
  zrt4_clean_ev_list(&list);
  EXPECT_TRUE(list.empty());
}
