#include "property_index.hh"

#include <random>

#include "handmade_channels.hh"
#include "support.hh"

namespace {

struct index_of_records : testing::Test {
  const chan_descr_2010* find(const std::string& property) {
    return index.find(records.list, property.c_str());
  }
  test::records records;
  zrt4::detail::property_index index;
};

}  // namespace

using PropertyIndex = index_of_records;

TEST_F(PropertyIndex, AnEmptyListHasNone) {
  EXPECT_EQ(find("P"), nullptr);
  EXPECT_EQ(find(""), nullptr);
}

TEST_F(PropertyIndex, TheFirstOfEqualProperties) {
  records.add("A");
  records.add("B", "first");
  records.add("B", "second");
  EXPECT_EQ(find("B"), records.list[1]);
  EXPECT_EQ(find("A"), records.list[0]);
}

TEST_F(PropertyIndex, PropertiesAreExact) {
  records.add("LINAC/BPM");
  for (const char* other : {"", "LINAC", "LINAC/BPM/", "linac/bpm", " LINAC/BPM"}) {
    EXPECT_EQ(find(other), nullptr) << other;
  }
}

TEST_F(PropertyIndex, AnEmptyPropertyIsOne) {
  records.add("");
  EXPECT_EQ(find(""), records.list[0]);
}

TEST_F(PropertyIndex, ALongestPropertyIsFoundAndNoLongerOne) {
  const std::string longest(255, 'p');
  records.add(longest);
  EXPECT_EQ(find(longest), records.list[0]);
  EXPECT_EQ(find(longest + "p"), nullptr);
}

TEST_F(PropertyIndex, CatchesUpWithTheList) {
  EXPECT_EQ(find("A"), nullptr);
  records.add("A");
  EXPECT_EQ(find("A"), records.list[0]);
  records.add("A");
  records.add("B");
  EXPECT_EQ(find("B"), records.list[2]);
  EXPECT_EQ(find("A"), records.list[0]);
}

TEST_F(PropertyIndex, PassesNullsBy) {
  records.list.push_back(nullptr);
  records.add("A");
  EXPECT_EQ(find("A"), records.list[1]);
}

TEST_F(PropertyIndex, ARecordAppendedAfterItWasMissedIsFound) {
  records.add("A");
  ASSERT_EQ(find("B"), nullptr);
  records.add("B");
  EXPECT_EQ(find("B"), records.list[1]);
  EXPECT_EQ(find("A"), records.list[0]);
}

TEST_F(PropertyIndex, AChangedPropertyIsFoundOnceItsRecordIsAppendedAgain) {
  chan_descr_2010& channel = records.add("A");
  ASSERT_EQ(find("A"), &channel);
  test::set(channel.prop_name, "B");
  EXPECT_EQ(find("A"), nullptr);
  ASSERT_EQ(find("B"), nullptr);
  records.list.push_back(&channel);
  EXPECT_EQ(find("B"), &channel);
  EXPECT_EQ(find("A"), nullptr);
}

// As readers use it: a property that is missing is appended.
TEST_F(PropertyIndex, AnswersAsAWalkFromTheFront) {
  std::mt19937 random(3);
  for (int round = 0; round < 5000; ++round) {
    const std::string property = "P" + std::to_string(random() % 2000);
    const chan_descr_2010* const found = find(property);
    ASSERT_EQ(found, find_chan_entry(&records.list, property.c_str())) << property;
    if (found == nullptr) records.add(property);
  }
  EXPECT_GT(records.list.size(), 1500U);
}
