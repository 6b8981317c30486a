#include "selector_index.hh"
#include "selector_rules.hh"

#include "handmade_channels.hh"
#include "support.hh"

namespace {

constexpr std::uint32_t normal = 1U << 1;  // found by property
constexpr std::uint32_t image = 1U << 6;   // found by DAQ name only

struct index_of_records : testing::Test {
  chan_descr_2010& add(const char* property, const char* name, std::uint32_t event,
                       std::uint32_t data = 0) {
    chan_descr_2010& added = records.add(property, name);
    added.ev_type = event;
    added.dtype = data;
    return added;
  }
  void update() { index.update(records.list); }

  test::records records;
  zrt4::detail::channel_index index;
};

}  // namespace

using SelectorIndex = index_of_records;

TEST_F(SelectorIndex, WithoutDescriptionsNothingIsFound) {
  update();
  for (const char* name : {"A", ""}) {
    EXPECT_FALSE(index.has_daq_name(name));
    EXPECT_FALSE(index.has_property(name));
    EXPECT_EQ(index.event_types(name), 0U);
    EXPECT_EQ(index.data_type(name), 0U);
  }
}

TEST_F(SelectorIndex, NullIsNeverFound) {
  add("", "", normal, 5);
  update();
  EXPECT_FALSE(index.has_daq_name(nullptr));
  EXPECT_FALSE(index.has_property(nullptr));
  EXPECT_EQ(index.event_types(nullptr), 0U);
  EXPECT_EQ(index.data_type(nullptr), 0U);
}

TEST_F(SelectorIndex, PropertiesAndDaqNamesAreKeptApart) {
  add("A", "a", normal);
  update();
  EXPECT_TRUE(index.has_property("A"));
  EXPECT_FALSE(index.has_property("a"));
  EXPECT_TRUE(index.has_daq_name("a"));
  EXPECT_FALSE(index.has_daq_name("A"));
}

TEST_F(SelectorIndex, OneNameMayBeBoth) {
  add("x", "a", normal);
  add("B", "x", image);
  update();
  EXPECT_TRUE(index.has_property("x"));
  EXPECT_TRUE(index.has_daq_name("x"));
}

TEST_F(SelectorIndex, EventTypesByDaqNameWhateverTheyAre) {
  add("A", "a", normal);
  add("B", "b", image);
  update();
  EXPECT_EQ(index.event_types("a"), normal);
  EXPECT_EQ(index.event_types("b"), image);
}

TEST_F(SelectorIndex, EventTypesByPropertyUnlessAllAreFoundByDaqName) {
  add("A", "a", normal);
  add("B", "b", image);
  add("C", "c", image | normal);
  update();
  EXPECT_EQ(index.event_types("A"), normal);
  EXPECT_EQ(index.event_types("B"), 0U);
  EXPECT_EQ(index.event_types("C"), image | normal);
}

TEST_F(SelectorIndex, TheFirstWithAnEventTypeGivesThem) {
  add("A", "x", 0);
  add("x", "b", image);
  add("x", "c", normal);
  add("D", "x", image);
  update();
  EXPECT_EQ(index.event_types("x"), normal);
}

TEST_F(SelectorIndex, TheFirstOfADaqNameGivesTheDataType) {
  add("A", "x", 0, 0);
  add("B", "x", normal, 7);
  add("C", "c", 0, 9);
  update();
  EXPECT_EQ(index.data_type("x"), 0U);
  EXPECT_EQ(index.data_type("c"), 9U);
  EXPECT_EQ(index.data_type("C"), 0U);
}

TEST_F(SelectorIndex, CatchesUpWithMoreDescriptions) {
  add("A", "a", normal);
  update();
  add("B", "b", image, 3);
  add("a", "d", normal);
  EXPECT_FALSE(index.has_property("B"));
  update();
  EXPECT_TRUE(index.has_property("B"));
  EXPECT_EQ(index.data_type("b"), 3U);
  EXPECT_EQ(index.event_types("a"), normal);
}

TEST_F(SelectorIndex, CatchesUpWithTypesThatDescriptionsGained) {
  chan_descr_2010& first = add("A", "a", 0);
  add("A", "b", normal);
  update();
  EXPECT_EQ(index.event_types("A"), normal);
  EXPECT_EQ(index.event_types("a"), 0U);
  first.ev_type = normal | image;
  first.dtype = 4;
  update();
  EXPECT_EQ(index.event_types("A"), normal | image);
  EXPECT_EQ(index.event_types("a"), normal | image);
  EXPECT_EQ(index.data_type("a"), 4U);
}

TEST_F(SelectorIndex, NamesOfEveryLength) {
  std::vector<std::string> names;
  for (std::size_t length = 0; length < 256; ++length) names.emplace_back(length, 'n');
  for (const std::string& name : names) {
    add("P", name.c_str(), normal, static_cast<std::uint32_t>(name.size()));
  }
  update();
  for (const std::string& name : names) {
    EXPECT_EQ(index.data_type(name.c_str()), name.size());
  }
  EXPECT_FALSE(index.has_daq_name(std::string(256, 'n').c_str()));
}

TEST(SelectorLookup, EachEventTypeByDaqNameOrProperty) {
  for (int type = 0; type < 40; ++type) {
    const int structure = get_event_struct_type(type);
    EXPECT_EQ(zrt4::detail::found_by_daq_name(type), structure == 1 || structure == 3) << type;
  }
}
