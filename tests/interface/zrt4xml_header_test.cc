// The convenience header. Run with the address sanitizer, it also shows that nothing leaks and
// nothing is released twice.

#include <iterator>
#include <set>
#include <type_traits>

#include "support.hh"
#include "zrt4xml.hh"

using zrt4::camera_features;
using zrt4::channel_list;
using zrt4::duplicates;
using zrt4::env_dictionary;
using zrt4::env_dictionary_2010;
using zrt4::event_list;
using zrt4::types;
using zrt4::xml_session;

// What would dangle does not compile.

namespace {

template <class Void, template <class> class Use, class Type>
struct detected : std::false_type {};
template <template <class> class Use, class Type>
struct detected<std::void_t<Use<Type>>, Use, Type> : std::true_type {};
template <template <class> class Use, class Type>
constexpr bool compiles = detected<void, Use, Type>::value;

template <class List>
using begin_of = decltype(std::declval<List>().begin());
template <class List>
using end_of = decltype(std::declval<List>().end());
template <class List>
using first_of = decltype(std::declval<List>()[0]);
template <class List>
using get_of = decltype(std::declval<List>().get());
template <class List>
using find_in = decltype(std::declval<List>().find(std::string()));
template <class List>
using read_text_of = decltype(std::declval<List>().read_text(std::string()));

template <class List>
constexpr bool a_temporary_hands_nothing_out =
    !compiles<begin_of, List> && !compiles<begin_of, const List> && !compiles<end_of, List> &&
    !compiles<end_of, const List> && !compiles<first_of, List> && !compiles<first_of, const List> &&
    !compiles<get_of, List>;
template <class List>
constexpr bool a_variable_hands_all_out = compiles<begin_of, List&>&&
    compiles<begin_of, const List&>&& compiles<end_of, List&>&& compiles<end_of, const List&>&&
        compiles<first_of, List&>&& compiles<first_of, const List&>&& compiles<get_of, List&>;
template <class List>
constexpr bool is_moved_only =
    !std::is_copy_constructible_v<List> && !std::is_copy_assignable_v<List> &&
    std::is_nothrow_move_constructible_v<List> && std::is_nothrow_move_assignable_v<List>;

template <class... Lists>
constexpr bool keep_the_rules = (... && (a_temporary_hands_nothing_out<Lists> &&
                                         a_variable_hands_all_out<Lists> && is_moved_only<Lists>));
static_assert(
    keep_the_rules<channel_list, event_list, env_dictionary, env_dictionary_2010, camera_features>);

static_assert(compiles<find_in, channel_list&> && compiles<find_in, const channel_list&>);
static_assert(!compiles<find_in, channel_list> && !compiles<find_in, const channel_list>);

static_assert(!std::is_copy_constructible_v<xml_session>);
static_assert(!std::is_move_constructible_v<xml_session>);
static_assert(!std::is_copy_assignable_v<xml_session>);
static_assert(!std::is_move_assignable_v<xml_session>);

// A constant list gives constant records, and is not handed to functions that may change it.
static_assert(std::is_same_v<first_of<channel_list&>, chan_descr_2010&>);
static_assert(std::is_same_v<first_of<const channel_list&>, const chan_descr_2010&>);
static_assert(!compiles<get_of, const channel_list&>);
static_assert(!compiles<read_text_of, const channel_list&>);

// A list takes over only what is given up to it.
static_assert(std::is_constructible_v<channel_list, channel_list::pointers&&>);
static_assert(!std::is_constructible_v<channel_list, channel_list::pointers&>);
static_assert(!std::is_convertible_v<channel_list::pointers&&, channel_list>);

const std::string two_channels =
    "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>1</EVTYPE><PROP>A</PROP></CHANNEL>"
    "<CHANNEL><STREAM>4</STREAM><PROP>B</PROP></CHANNEL></CHANDESCRIPTIONS>";
const std::string dictionary =
    "<ENVINDEXDICT><CHANNEL><INDEX>7</INDEX><PROP>A</PROP></CHANNEL></ENVINDEXDICT>";

}  // namespace

TEST(ChannelList, ReadsTextAndFile) {
  const test::temporary_file file(two_channels);
  channel_list list;
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.read_text(two_channels), 0);
  EXPECT_EQ(list.read_file(file.path()), 0);
  ASSERT_EQ(list.size(), 4U);
  EXPECT_STREQ(list[0].prop_name, "A");
  EXPECT_STREQ(list[3].prop_name, "B");
  EXPECT_EQ(list[0].ev_type, 1U);
  EXPECT_EQ(list[3].stream, 4);
}

TEST(ChannelList, TypesAsMasks) {
  const test::temporary_file file(two_channels);
  channel_list list;
  EXPECT_EQ(list.read_text(two_channels, types::masks), 0);
  EXPECT_EQ(list.read_file(file.path(), types::masks), 0);
  EXPECT_EQ(list[0].ev_type, 2U);
  EXPECT_EQ(list[2].ev_type, 2U);
}

TEST(ChannelList, MergesDuplicates) {
  channel_list list;
  EXPECT_EQ(list.read_text(two_channels), 0);
  EXPECT_EQ(list.read_text(two_channels, types::numbers, duplicates::merge), 0);
  EXPECT_EQ(list.size(), 2U);
}

TEST(ChannelList, ErrorsAreCountedAndWhatWasReadStays) {
  channel_list list;
  test::captured([&] {
    EXPECT_EQ(list.read_text("<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP>"), 1);
    EXPECT_EQ(list.read_text("<BMR/>"), 1);
    EXPECT_GT(list.read_file("/nonexistent"), 0);
  });
  EXPECT_EQ(list.size(), 1U);
}

TEST(ChannelList, Iterates) {
  channel_list list;
  EXPECT_EQ(list.read_text(two_channels), 0);
  for (chan_descr_2010& channel : list) channel.count = 5;
  const channel_list& constant = list;
  std::string names;
  for (const chan_descr_2010& channel : constant) {
    EXPECT_EQ(channel.count, 5);
    names += channel.prop_name;
  }
  EXPECT_EQ(names, "AB");
  auto place = constant.begin();
  EXPECT_STREQ(place++->prop_name, "A");
  EXPECT_STREQ(place->prop_name, "B");
  EXPECT_EQ(std::distance(constant.begin(), constant.end()), 2);
  EXPECT_TRUE(++place == constant.end());
  EXPECT_TRUE(constant.begin() != constant.end());
}

TEST(ChannelList, Finds) {
  channel_list list;
  EXPECT_EQ(list.read_text(two_channels), 0);
  EXPECT_EQ(list.find("B"), &list[1]);
  EXPECT_EQ(list.find("C"), nullptr);
  const channel_list& constant = list;
  EXPECT_EQ(constant.find("A"), &list[0]);
}

TEST(ChannelList, ChannelListedTwiceIsReleasedOnce) {
  channel_list list;
  EXPECT_EQ(list.read_text("<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><PROP>B</PROP></CHANNEL>"
                           "</CHANDESCRIPTIONS>"),
            0);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(&list[0], &list[1]);
}

TEST(ChannelList, IsWhatTheFunctionsTake) {
  channel_list list;
  EXPECT_EQ(list.read_text(two_channels), 0);
  std::string document;
  EXPECT_EQ(dump_chan_desr(list.get(), nullptr, DUMP_XML_FILE, ZRT4_FORMAT, -1, &document, nullptr),
            0);
  channel_list again;
  EXPECT_EQ(again.read_text(document), 0);
  EXPECT_EQ(again.size(), 2U);
}

TEST(OwnedList, MovesAndLeavesNothingBehind) {
  channel_list list;
  EXPECT_EQ(list.read_text(two_channels), 0);
  const chan_descr_2010* const first = &list[0];
  channel_list moved(std::move(list));
  EXPECT_EQ(list.size(), 0U);  // NOLINT(bugprone-use-after-move): empty is what is promised
  EXPECT_EQ(&moved[0], first);
  channel_list assigned;
  EXPECT_EQ(assigned.read_text(two_channels), 0);
  assigned = std::move(moved);
  EXPECT_EQ(moved.size(), 0U);  // NOLINT(bugprone-use-after-move)
  ASSERT_EQ(assigned.size(), 2U);
  EXPECT_EQ(&assigned[0], first);
  channel_list& itself = assigned;
  assigned = std::move(itself);
  EXPECT_EQ(assigned.size(), 2U);
}

TEST(OwnedList, TakesOverAndHandsOver) {
  std::vector<chan_descr_2010*> plain{new chan_descr_2010};
  chan_descr_2010* const record = plain[0];
  channel_list list(std::move(plain));
  EXPECT_EQ(&list[0], record);
  std::vector<chan_descr_2010*> back = list.release();
  EXPECT_TRUE(list.empty());
  ASSERT_EQ(back.size(), 1U);
  EXPECT_EQ(back[0], record);
  clean_chan_desr_list(&back);
}

TEST(OwnedList, ClearReleasesAndCanBeFilledAgain) {
  env_dictionary list;
  EXPECT_EQ(list.read_text(dictionary), 0);
  list.clear();
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.read_text(dictionary), 0);
  EXPECT_EQ(list.size(), 1U);
}

TEST(EventList, ReadsTextAndFile) {
  const std::string document =
      "<BMR><EVENT><TYPE>1</TYPE><SBLOCK>S<CHLIST><CHAN>C</CHAN></CHLIST></SBLOCK></EVENT></BMR>";
  const test::temporary_file file(document);
  event_list list;
  EXPECT_EQ(list.read_text(document), 0);
  EXPECT_EQ(list.read_file(file.path()), 0);
  ASSERT_EQ(list.size(), 2U);
  for (const zrt4_ev_entry& entry : list) {
    EXPECT_EQ(entry.evtype, ZRT4_EV_NORMAL);
    EXPECT_STREQ(entry.sb_list->at(0)->sb_list, "S");
    EXPECT_STREQ(entry.sb_list->at(0)->ch_list->at(0), "C");
  }
}

// The leak checker of the sanitizer build fails when a vector stays.
TEST(EventList, BlocksWithoutChannelsDoNotLeak) {
  event_list list;
  EXPECT_EQ(list.read_text("<BMR><EVENT><TYPE>1</TYPE><SBLOCK>S</SBLOCK><SBLOCK>T<CHLIST>"
                           "<CHAN>C</CHAN></CHLIST></SBLOCK></EVENT></BMR>"),
            0);
  EXPECT_TRUE(list[0].sb_list->at(0)->ch_list->empty());
}

TEST(EventList, FullEventsMadeByHandDoNotLeak) {
  auto* const full = new zrt4_ev_entry{};
  auto* const block = new zrt4_ev_sb_list{};
  auto* const wanted = new zrt4_ev_entry{};
  wanted->sb_list = new std::vector<zrt4_ev_sb_list*>{block};
  const event_list list(std::vector<zrt4_ev_entry*>{full, wanted});
  EXPECT_EQ(list[0].sb_list, nullptr);
}

template <class List>
class EnvDictionary : public testing::Test {};
using widths = testing::Types<env_dictionary, env_dictionary_2010>;
TYPED_TEST_SUITE(EnvDictionary, widths);

TYPED_TEST(EnvDictionary, ReadsTextAndFile) {
  const test::temporary_file file(dictionary);
  TypeParam list;
  EXPECT_EQ(list.read_text(dictionary), 0);
  EXPECT_EQ(list.read_file(file.path()), 0);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].index, 7);
  EXPECT_EQ(list[1].index, 7);
}

TYPED_TEST(EnvDictionary, EntryListedTwiceIsReleasedOnce) {
  TypeParam list;
  EXPECT_EQ(list.read_text("<ENVINDEXDICT><CHANNEL><INDEX>7</INDEX><PROP>A</PROP><PROP>B</PROP>"
                           "<PROP>C</PROP></CHANNEL></ENVINDEXDICT>"),
            0);
  ASSERT_EQ(list.size(), 3U);
  EXPECT_EQ(&list[0], &list[1]);
  EXPECT_EQ(&list[0], &list[2]);
}

TEST(CameraFeatures, ReadsFilesOneAfterTheOther) {
  const test::temporary_file file("<Camera><Integer Name='Width'/><Float Name='Gain'/></Camera>");
  camera_features list;
  EXPECT_EQ(list.read_file(file.path()), 0);
  EXPECT_EQ(list.read_file(file.path()), 0);
  ASSERT_EQ(list.size(), 4U);
  EXPECT_EQ(list[0].name, "Width");
  EXPECT_EQ(list[3].name, "Gain");
}

TEST(CameraFeatures, UnreadableFileLeavesTheList) {
  const test::temporary_file file("<Camera><Integer Name='Width'/></Camera>");
  camera_features list;
  EXPECT_EQ(list.read_file(file.path()), 0);
  const test::output printed =
      test::captured([&] { EXPECT_EQ(list.read_file("/nonexistent"), 1); });
  EXPECT_THAT(printed.out, testing::StartsWith("An error occurred during parsing"));
  EXPECT_EQ(list.size(), 1U);
}

TEST(XmlSession, HoldsTheXmlLibraryAndListsOutliveIt) {
  camera_features list;
  const test::temporary_file file("<Camera><Integer Name='Width'/></Camera>");
  {
    const xml_session session;
    EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
    EXPECT_EQ(list.read_file(file.path()), 0);
    EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
  }
  EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
  EXPECT_EQ(list[0].name, "Width");
}

TEST(XmlSession, Nests) {
  const xml_session outer;
  { const xml_session inner; }
  event_list list;
  EXPECT_EQ(list.read_text("<BMR/>"), 0);
  EXPECT_NE(xercesc::XMLPlatformUtils::fgMemoryManager, nullptr);
}
