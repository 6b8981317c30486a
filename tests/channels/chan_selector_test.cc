// Channel selectors: loading, and each question that they answer.

#include "selections.hh"

using test::document;
using test::load;
using test::selection;

namespace {

constexpr int canary = 4711;

constexpr const char* nothing_loaded = "get_event_type() No descroption !!!!\n";

const std::string broken_b =
    "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>5</EVTYPE><PROP>B</PROP><NAME>b</NAME></CHANNEL>";

}  // namespace

// Before anything is loaded

TEST(ChanSelectorEmpty, StartsWithFilesAndShift) {
  chan_selector selector;
  EXPECT_EQ(selector.get_mode(), EXTR_FROM_FILE);
  EXPECT_EQ(selector.size(), 0);
  EXPECT_FALSE(load(selector, {document({{4, "A", "a", ""}})}));
  char name[] = "a";
  EXPECT_EQ(selector.get_event_type(name), 16);
}

TEST(ChanSelectorEmpty, FindChannelSelectsEverything) {
  chan_selector selector;
  char name[] = "anything";
  for (const int event : {0, 1, 6, 33, -1}) EXPECT_TRUE(selector.find_channel(event, name));
  EXPECT_TRUE(selector.find_channel(1, nullptr));
}

TEST(ChanSelectorEmpty, GetEventTypeSaysSo) {
  chan_selector selector;
  char name[] = "X";
  int types = canary;
  EXPECT_EQ(test::captured([&] { types = selector.get_event_type(name); }).out, nothing_loaded);
  EXPECT_EQ(types, 0);
}

TEST(ChanSelectorEmpty, GetDataTypeSaysTheSame) {
  chan_selector selector;
  char name[] = "X";
  int type = canary;
  EXPECT_EQ(test::captured([&] { type = selector.get_data_type(name); }).out, nothing_loaded);
  EXPECT_EQ(type, 0);
}

TEST(ChanSelectorEmpty, EveryIndexIsOutOfRange) {
  chan_selector selector;
  const auto output = test::captured([&] {
    for (const int num : {0, -1}) {
      EXPECT_EQ(selector.get_channel(num), nullptr);
      EXPECT_EQ(selector.get_prop(num), nullptr);
      EXPECT_TRUE(selector.set_counter(num, 1));
      EXPECT_EQ(selector.is_channel_slow(num), -1);
      EXPECT_EQ(selector.is_channel_ml(num), -1);
      EXPECT_EQ(selector.get_subchannels(num), 0);
    }
  });
  EXPECT_EQ(output.out, "");
}

TEST(ChanSelectorEmpty, ChangeModeIsSetMode) {
  chan_selector selector;
  EXPECT_FALSE(selector.change_mode(EXTR_FROM_XML));
  EXPECT_TRUE(selector.change_mode(2));
  EXPECT_TRUE(selector.change_mode(-1));
  EXPECT_EQ(selector.get_mode(), EXTR_FROM_XML);
}

// Loading

TEST(ChanSelectorLoad, FromFiles) {
  const test::temporary_file file(document({{1, "A", "a", ""}, {6, "B", "b", ""}}));
  std::string name = file.path();
  std::vector<char*> source{name.data()};
  chan_selector selector;
  int total = canary;
  EXPECT_FALSE(selector.set_descriptions(&source, &total));
  EXPECT_EQ(total, 1);
  EXPECT_EQ(selector.size(), 2);
}

TEST(ChanSelectorLoad, EachCallAppendsAndWidens) {
  selection selector({{1, "A", "a", ""}});
  EXPECT_FALSE(selector.find(6, "b"));
  EXPECT_FALSE(load(selector, {document({{6, "B", "b", ""}})}));
  EXPECT_EQ(selector.size(), 2);
  EXPECT_TRUE(selector.find(1, "A"));
  EXPECT_TRUE(selector.find(6, "b"));
}

TEST(ChanSelectorLoad, FirstSourceFailsSecondSucceeds) {
  chan_selector selector;
  int total = canary;
  EXPECT_FALSE(load(selector, {broken_b, document({{1, "A", "a", ""}})}, &total));
  EXPECT_EQ(total, 1);
  EXPECT_EQ(selector.size(), 2);
  char b[] = "B";
  EXPECT_TRUE(selector.find_channel(5, b));
}

TEST(ChanSelectorLoad, FirstSourceSucceedsSecondFails) {
  chan_selector selector;
  int total = canary;
  EXPECT_TRUE(load(selector, {document({{1, "A", "a", ""}}), broken_b}, &total));
  EXPECT_EQ(total, canary);
  EXPECT_EQ(selector.size(), 2);
}

TEST(ChanSelectorLoad, WhatAFailedCallReadCountsByNameButNotByEventType) {
  selection selector({{1, "A", "a", "<DTYPE>3</DTYPE>"}});
  EXPECT_TRUE(load(selector, {broken_b}));
  EXPECT_FALSE(selector.find(5, "B"));
  EXPECT_TRUE(selector.find(1, "B"));
  EXPECT_EQ(selector.event_type("b"), 32);
  EXPECT_STREQ(selector.get_channel(1), "b");
  EXPECT_FALSE(load(selector, {document({{2, "C", "c", ""}})}));
  EXPECT_TRUE(selector.find(5, "B"));
}

TEST(ChanSelectorLoad, WithoutSourcesChangesNothing) {
  selection selector({{1, "A", "a", ""}});
  int total = canary;
  EXPECT_FALSE(selector.set_descriptions(nullptr, &total));
  EXPECT_EQ(total, 0);
  EXPECT_EQ(selector.size(), 1);
}

TEST(ChanSelectorLoad, SuccessWithoutSourcesCountsWhatAFailedCallRead) {
  chan_selector selector;
  EXPECT_TRUE(load(selector, {broken_b}));
  char b[] = "B";
  EXPECT_FALSE(selector.find_channel(5, b));
  EXPECT_FALSE(load(selector, {}));
  EXPECT_TRUE(selector.find_channel(5, b));
}

TEST(ChanSelectorLoad, WithoutShiftEventTypesAreTakenAsTheyStand) {
  selection selector({{5, "A", "a", ""}}, true);
  EXPECT_EQ(selector.event_type("a"), 5);
  EXPECT_TRUE(selector.find(0, "A"));
  EXPECT_FALSE(selector.find(1, "A"));
  EXPECT_TRUE(selector.find(2, "A"));
}

// A later source may add types to a description that is already there.
TEST(ChanSelectorLoad, TypesMergedIntoAnEarlierDescriptionAreFound) {
  const auto variable = [](int event) {
    return "<DAQvariables><DaqFloat><evType>" + std::to_string(event) +
           "</evType><vindo>A</vindo><daqName>a</daqName></DaqFloat></DAQvariables>";
  };
  const test::temporary_file first(variable(64));  // the mask of IMAGE, found by DAQ name only
  const test::temporary_file second(variable(2));
  chan_selector selector;
  char prop[] = "A";
  char name[] = "a";
  for (const auto* file : {&first, &second}) {
    std::string path = file->path();
    std::vector<char*> source{path.data()};
    if (file == &second) {
      EXPECT_EQ(test::captured([&] { selector.get_event_type(prop); }).out,
                "CHANNEL A NOT FOUND\n");
    }
    EXPECT_FALSE(selector.set_descriptions(&source, nullptr));
  }
  EXPECT_EQ(selector.size(), 1);
  EXPECT_EQ(selector.get_event_type(prop), 66);
  EXPECT_EQ(selector.get_event_type(name), 66);
  EXPECT_TRUE(selector.find_channel(1, prop));
}

// find_channel

TEST(ChanSelectorFindChannel, EventTypeOfNoDescription) {
  selection selector({{1, "A", "a", ""}});
  EXPECT_TRUE(selector.find(1, "A"));
  EXPECT_FALSE(selector.find(0, "A"));
  EXPECT_FALSE(selector.find(2, "A"));
}

TEST(ChanSelectorFindChannel, GlobalTypesByProperty) {
  selection selector({{1, "A", "a", ""}});
  EXPECT_TRUE(selector.find(1, "A"));
  EXPECT_FALSE(selector.find(1, "a"));
}

TEST(ChanSelectorFindChannel, LocalTypesByDaqName) {
  selection selector({{6, "A", "a", ""}});
  EXPECT_TRUE(selector.find(6, "a"));
  EXPECT_FALSE(selector.find(6, "A"));
}

TEST(ChanSelectorFindChannel, MainLinacTypesByDaqName) {
  selection selector({{20, "A", "a", ""}});
  EXPECT_TRUE(selector.find(20, "a"));
  EXPECT_FALSE(selector.find(20, "A"));
}

TEST(ChanSelectorFindChannel, UnknownTypesByProperty) {
  selection selector({{31, "A", "a", ""}});
  EXPECT_TRUE(selector.find(31, "A"));
  EXPECT_FALSE(selector.find(31, "a"));
}

TEST(ChanSelectorFindChannel, AnyDescriptionMayBearTheName) {
  selection selector({{1, "A", "a", ""}, {6, "B", "b", ""}});
  EXPECT_TRUE(selector.find(1, "B"));
  EXPECT_TRUE(selector.find(6, "a"));
}

TEST(ChanSelectorFindChannel, EventTypeModulo32) {
  selection selector({{1, "A", "a", ""}, {6, "B", "b", ""}});
  EXPECT_TRUE(selector.find(33, "A"));
  EXPECT_FALSE(selector.find(34, "A"));
  // The class of 38 is not that of 6: the name is a property.
  EXPECT_TRUE(selector.find(38, "B"));
  EXPECT_FALSE(selector.find(38, "b"));
}

TEST(ChanSelectorFindChannel, NegativeEventTypes) {
  selection selector({{31, "A", "a", ""}});
  EXPECT_TRUE(selector.find(-1, "A"));
  EXPECT_FALSE(selector.find(-2, "A"));
}

TEST(ChanSelectorFindChannel, NamesAreExact) {
  selection selector({{1, "Abc", "a", ""}});
  for (const char* name : {"abc", "ABC", "Ab", "Abcd", "", " Abc"}) {
    EXPECT_FALSE(selector.find(1, name)) << name;
  }
  EXPECT_TRUE(selector.find(1, "Abc"));
}

TEST(ChanSelectorFindChannel, EmptyNames) {
  selection with_empty({{6, "A", "", ""}});
  EXPECT_TRUE(with_empty.find(6, ""));
  EXPECT_FALSE(with_empty.find(6, "A"));
  selection without_empty({{6, "A", "a", ""}});
  EXPECT_FALSE(without_empty.find(6, ""));
}

TEST(ChanSelectorFindChannel, NullIsNotFound) {
  selection selector({{1, "A", "a", ""}, {6, "B", "b", ""}});
  EXPECT_FALSE(selector.find_channel(1, nullptr));
  EXPECT_FALSE(selector.find_channel(6, nullptr));
}

TEST(ChanSelectorFindChannel, LongestNames) {
  const std::string name(255, 'n');
  const std::string prop(255, 'p');
  selection selector({{6, prop, name, ""}, {1, "A", "a", ""}});
  EXPECT_TRUE(selector.find(6, name));
  EXPECT_TRUE(selector.find(1, prop));
  EXPECT_FALSE(selector.find(6, name + "n"));
  EXPECT_FALSE(selector.find(6, name.substr(1)));
}

// get_event_type

TEST(ChanSelectorGetEventType, ByDaqNameForEveryClass) {
  selection selector(
      {{1, "A", "a", ""}, {6, "B", "b", ""}, {20, "C", "c", ""}, {28, "D", "d", ""}});
  EXPECT_EQ(selector.event_type("a"), 1 << 1);
  EXPECT_EQ(selector.event_type("b"), 1 << 6);
  EXPECT_EQ(selector.event_type("c"), 1 << 20);
  EXPECT_EQ(selector.event_type("d"), 1 << 28);
}

TEST(ChanSelectorGetEventType, ByPropertyUnlessLocalOrMainLinac) {
  selection selector(
      {{1, "A", "a", ""}, {6, "B", "b", ""}, {20, "C", "c", ""}, {28, "D", "d", ""}});
  EXPECT_EQ(selector.event_type("A"), 1 << 1);
  EXPECT_EQ(selector.event_type("D"), 1 << 28);
  const auto output = test::captured([&] {
    EXPECT_EQ(selector.event_type("B"), 0);
    EXPECT_EQ(selector.event_type("C"), 0);
  });
  EXPECT_EQ(output.out, "CHANNEL B NOT FOUND\nCHANNEL C NOT FOUND\n");
}

TEST(ChanSelectorGetEventType, TheWholeMask) {
  selection selector({{-0x7fffffbe, "A", "a", ""}}, true);
  EXPECT_EQ(selector.event_type("a"), static_cast<int>(0x80000042));
  EXPECT_EQ(selector.event_type("A"), static_cast<int>(0x80000042));
}

TEST(ChanSelectorGetEventType, OneOtherTypeIsEnoughForTheProperty) {
  selection selector({{0x42, "A", "a", ""}, {0x40, "B", "b", ""}}, true);
  EXPECT_EQ(selector.event_type("A"), 0x42);
  EXPECT_EQ(test::captured([&] { selector.event_type("B"); }).out, "CHANNEL B NOT FOUND\n");
}

TEST(ChanSelectorGetEventType, WithoutEventTypeNothingMatches) {
  selection selector({{0, "A", "a", ""}}, true);
  const auto output = test::captured([&] {
    EXPECT_EQ(selector.event_type("a"), 0);
    EXPECT_EQ(selector.event_type("A"), 0);
  });
  EXPECT_EQ(output.out, "CHANNEL a NOT FOUND\nCHANNEL A NOT FOUND\n");
}

TEST(ChanSelectorGetEventType, PassesDescriptionsWithoutEventTypeBy) {
  selection selector({{0, "A", "a", ""}, {4, "A", "a", ""}}, true);
  EXPECT_EQ(selector.event_type("a"), 4);
  EXPECT_EQ(selector.event_type("A"), 4);
}

TEST(ChanSelectorGetEventType, TheFrontMostOfSeveral) {
  selection selector({{1, "A", "x", ""}, {2, "x", "b", ""}, {6, "C", "x", ""}});
  EXPECT_EQ(selector.event_type("x"), 1 << 1);
}

TEST(ChanSelectorGetEventType, APropertyBeforeADaqName) {
  selection selector({{6, "x", "a", ""}, {2, "x", "b", ""}, {3, "C", "x", ""}});
  EXPECT_EQ(selector.event_type("x"), 1 << 2);
}

TEST(ChanSelectorGetEventType, PropertyAndDaqNameEqual) {
  selection selector({{6, "x", "x", ""}, {1, "x", "x", ""}});
  EXPECT_EQ(selector.event_type("x"), 1 << 6);
}

TEST(ChanSelectorGetEventType, NullIsNotFound) {
  selection selector({{1, "A", "a", ""}});
  int types = canary;
  EXPECT_EQ(test::captured([&] { types = selector.get_event_type(nullptr); }).out,
            "CHANNEL (null) NOT FOUND\n");
  EXPECT_EQ(types, 0);
}

TEST(ChanSelectorGetEventType, NamesWithPercentSigns) {
  selection selector({{1, "A", "a", ""}});
  EXPECT_EQ(test::captured([&] { selector.event_type("100%s%n"); }).out,
            "CHANNEL 100%s%n NOT FOUND\n");
}

// get_data_type

TEST(ChanSelectorGetDataType, ByDaqNameOnly) {
  selection selector({{1, "A", "a", "<DTYPE>9</DTYPE>"}});
  const auto output = test::captured([&] {
    EXPECT_EQ(selector.data_type("a"), 1 << 9);
    EXPECT_EQ(selector.data_type("A"), 0);
    EXPECT_EQ(selector.data_type("b"), 0);
    EXPECT_EQ(selector.get_data_type(nullptr), 0);
  });
  EXPECT_EQ(output.out, "");
}

TEST(ChanSelectorGetDataType, TheFirstOfSeveral) {
  selection selector({{1, "A", "x", ""}, {1, "B", "x", "<DTYPE>9</DTYPE>"}});
  EXPECT_EQ(selector.data_type("x"), 0);
}

TEST(ChanSelectorGetDataType, WithoutEventType) {
  selection selector({{0, "A", "a", "<DTYPE>9</DTYPE>"}}, true);
  EXPECT_EQ(selector.data_type("a"), 9);
}

TEST(ChanSelectorGetDataType, Bit31) {
  selection selector({{1, "A", "a", "<DTYPE>33</DTYPE>"}});
  EXPECT_EQ(selector.data_type("a"), static_cast<int>(0x80000002));
}

// By index

TEST(ChanSelectorIndex, NamesAreTheDescriptionsOwn) {
  selection selector({{1, "A", "a", ""}, {1, "B", "", ""}});
  EXPECT_STREQ(selector.get_channel(0), "a");
  EXPECT_STREQ(selector.get_prop(0), "A");
  EXPECT_STREQ(selector.get_channel(1), "");
  EXPECT_STREQ(selector.get_prop(1), "B");
  EXPECT_EQ(selector.get_prop(0), selector.get_prop(0));
}

TEST(ChanSelectorIndex, OutOfRange) {
  selection selector({{1, "A", "a", ""}});
  for (const int num : {1, 2, -1, -2147483647 - 1, 2147483647}) {
    EXPECT_EQ(selector.get_channel(num), nullptr) << num;
    EXPECT_EQ(selector.get_prop(num), nullptr) << num;
    EXPECT_TRUE(selector.set_counter(num, 1)) << num;
    EXPECT_EQ(selector.is_channel_slow(num), -1) << num;
    EXPECT_EQ(selector.is_channel_ml(num), -1) << num;
    EXPECT_EQ(selector.get_subchannels(num), 0) << num;
  }
}

TEST(ChanSelectorIndex, SetCounterIsSeenInADump) {
  selection selector({{1, "A", "a", ""}});
  EXPECT_FALSE(selector.set_counter(0, 77));
  test::temporary_file file("");
  selector.dump(file.name(), DUMP_XML_FILE, ZRT4_FORMAT);
  EXPECT_THAT(file.content(), testing::HasSubstr("<COUNT>77</COUNT>\n"));
}

// Slow and main-linac channels

TEST(ChanSelectorSlow, BorEorEnvUpd) {
  for (int event = 0; event < 32; ++event) {
    selection selector({{event, "A", "a", ""}});
    EXPECT_EQ(selector.is_channel_slow(0), event >= 2 && event <= 5 ? 1 : 0) << event;
  }
}

TEST(ChanSelectorSlow, OneOfSeveralTypes) {
  selection selector({{0x42 | 0x10, "A", "a", ""}, {0x42, "B", "b", ""}}, true);
  EXPECT_EQ(selector.is_channel_slow(0), 1);
  EXPECT_EQ(selector.is_channel_slow(1), 0);
}

TEST(ChanSelectorSlow, AnEarlierDescriptionOfTheNameAnswers) {
  selection selector({{4, "A", "x", ""}, {6, "B", "x", ""}});
  EXPECT_EQ(selector.is_channel_slow(1), 1);
}

TEST(ChanSelectorSlow, UnknownChannel) {
  selection selector({{0, "A", "a", ""}}, true);
  const auto output = test::captured([&] {
    EXPECT_EQ(selector.is_channel_slow(0), -1);
    EXPECT_EQ(selector.is_channel_ml(0), -1);
    EXPECT_EQ(selector.get_subchannels(0), 0);
  });
  EXPECT_EQ(output.out, "CHANNEL a NOT FOUND\nCHANNEL a NOT FOUND\nCHANNEL a NOT FOUND\n");
}

TEST(ChanSelectorMainLinac, ByEventType) {
  for (int event = 0; event < 32; ++event) {
    selection selector({{event, "A", "a", ""}});
    EXPECT_EQ(selector.is_channel_ml(0), event == 20 || event == 27 ? 1 : 0) << event;
  }
}

TEST(ChanSelectorMainLinac, ByDaqName) {
  selection selector({{1, "A", "BPM.ML3", ""},
                      {1, "B", ".ML", ""},
                      {1, "C", "BPM.ml", ""},
                      {1, "D.ML", "ML", ""}});
  EXPECT_EQ(selector.is_channel_ml(0), 1);
  EXPECT_EQ(selector.is_channel_ml(1), 1);
  EXPECT_EQ(selector.is_channel_ml(2), 0);
  EXPECT_EQ(selector.is_channel_ml(3), 0);
}

TEST(ChanSelectorMainLinac, TheNameNeedsAnEventType) {
  selection selector({{0, "A", "BPM.ML3", ""}}, true);
  test::captured([&] { EXPECT_EQ(selector.is_channel_ml(0), -1); });
}

TEST(ChanSelectorSubchannels, OneForASlowChannelWhateverItsDimensions) {
  selection selector({{4, "A", "a", "<DIM>0</DIM><DIM>1</DIM><DIM>2</DIM>"}});
  EXPECT_EQ(selector.get_subchannels(0), 1);
}

TEST(ChanSelectorSubchannels, DimensionsOfAFastChannel) {
  selection selector({{1, "A", "a", "<DIM>0</DIM><DIM>1</DIM><DIM>2</DIM>"}, {1, "B", "b", ""}});
  EXPECT_EQ(selector.get_subchannels(0), 3);
  EXPECT_EQ(selector.get_subchannels(1), 0);
}

TEST(ChanSelectorSubchannels, AnEarlierDescriptionOfTheNameDecidesSlow) {
  selection selector({{4, "A", "x", ""}, {1, "B", "x", "<DIM>0</DIM><DIM>1</DIM>"}});
  EXPECT_EQ(selector.get_subchannels(1), 1);
}

// Dump

TEST(ChanSelectorDump, HandsModeAndDialectOn) {
  selection selector({{1, "A", "a", "<UNITS>mm</UNITS>"}});
  test::temporary_file file("");
  selector.dump(file.name(), DUMP_TXT_FILE_SHORT, ZRT4_FORMAT);
  EXPECT_EQ(file.content(), std::string(49, ' ') + "a\t1\tUNKNOWN\n");
  selector.dump(file.name(), DUMP_XML_FILE, MORV_FORMAT);
  EXPECT_THAT(file.content(), testing::HasSubstr("<vindo>A</vindo>\n"));
}

TEST(ChanSelectorDump, WithoutFileListsOnTheScreen) {
  selection selector({{1, "A", "a", ""}});
  const auto output = test::captured([&] { selector.dump(nullptr, DUMP_XML_FILE, ZRT4_FORMAT); });
  EXPECT_THAT(output.out, testing::HasSubstr("\tprop   :A\n"));
}
