// A site links its own event-utility library, which may give out classes of its own. This program
// brings such a `get_event_struct_type`, and the selector calls this one.

#include "chan_selector.hh"
#include "support.hh"

namespace {

int class_of[32];

}  // namespace

int get_event_struct_type(int evtype) {
  return evtype >= 0 && evtype < 32 ? class_of[evtype] : ZRT4_EV_STRUCT_UNDEF;
}

namespace {

void load(chan_selector& selector) {
  selector.set_mode(EXTR_FROM_XML);
  char text[] =
      "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>9</EVTYPE><PROP>A</PROP><NAME>a</NAME></CHANNEL>"
      "</CHANDESCRIPTIONS>";
  std::vector<char*> source{text};
  ASSERT_FALSE(selector.set_descriptions(&source, nullptr));
}

}  // namespace

TEST(ChanSelectorSite, Classes3And10To15AreMainLinac) {
  chan_selector selector;
  load(selector);
  for (int structure = -1; structure < 20; ++structure) {
    class_of[9] = structure;
    EXPECT_EQ(selector.is_channel_ml(0), structure == 3 || (structure >= 10 && structure <= 15))
        << structure;
  }
}

TEST(ChanSelectorSite, OnlyClasses1And3AreFoundByDaqName) {
  char prop[] = "A";
  char name[] = "a";
  for (int structure = -1; structure < 20; ++structure) {
    class_of[9] = structure;
    chan_selector selector;
    load(selector);
    const bool by_name = structure == 1 || structure == 3;
    EXPECT_EQ(selector.find_channel(9, name), by_name) << structure;
    EXPECT_EQ(selector.find_channel(9, prop), !by_name) << structure;
    EXPECT_EQ(selector.get_event_type(name), 1 << 9) << structure;
    test::captured(
        [&] { EXPECT_EQ(selector.get_event_type(prop), by_name ? 0 : 1 << 9) << structure; });
  }
}
