// Channel description records: names, lookup, copies, release.

#include "parse_chan_descr.hh"

#include <cstring>
#include <memory>

#include "support.hh"

using test::captured;

namespace {

using channels = std::vector<chan_descr_2010*>;

chan_descr_2010* channel(const char* property) {
  auto created = std::make_unique<chan_descr_2010>();
  std::strcpy(created->prop_name, property);
  return created.release();
}

template <class Record>
Record* full(int number, const char* name) {
  auto created = std::make_unique<Record>();
  if constexpr (std::is_same_v<Record, bit_descr>) {
    created->bit = number;
    std::strcpy(created->bit_name, name);
    std::strcpy(created->bit_desc, "description");
  } else {
    created->stat = number;
    std::strcpy(created->stat_name, name);
    std::strcpy(created->stat_desc, "description");
    std::strcpy(created->units, "mm");
  }
  return created.release();
}

TEST(ChannelRecord, FreshOneHasNoKeyAndOneValue) {
  const std::unique_ptr<chan_descr_2010> fresh(new chan_descr_2010);
  EXPECT_EQ(fresh->db_key, -1);
  EXPECT_EQ(fresh->max_size, 1);
  EXPECT_EQ(fresh->stream, 0);
  EXPECT_EQ(fresh->ev_type, 0U);
  EXPECT_EQ(fresh->count, 0);
  EXPECT_EQ(fresh->dtype, 0U);
  EXPECT_EQ(fresh->nbits, 0);
  EXPECT_EQ(fresh->ndims, 0);
  EXPECT_EQ(fresh->set_point, 0);
  EXPECT_TRUE(fresh->bits.empty());
  EXPECT_TRUE(fresh->dims.empty());
  const auto zero = [](char c) { return c == '\0'; };
  EXPECT_TRUE(std::all_of(std::begin(fresh->prop_name), std::end(fresh->prop_name), zero));
  EXPECT_TRUE(std::all_of(std::begin(fresh->daq_name), std::end(fresh->daq_name), zero));
  EXPECT_TRUE(std::all_of(std::begin(fresh->prop_desc), std::end(fresh->prop_desc), zero));
  EXPECT_TRUE(std::all_of(std::begin(fresh->units), std::end(fresh->units), zero));
  EXPECT_TRUE(std::all_of(std::begin(fresh->sb_name), std::end(fresh->sb_name), zero));
  EXPECT_TRUE(std::all_of(std::begin(fresh->subsystem), std::end(fresh->subsystem), zero));
}

TEST(ChannelEnumerations, HaveTheirValues) {
  EXPECT_EQ(ZRT4_FORMAT, 0);
  EXPECT_EQ(MORV_FORMAT, 1);
  EXPECT_EQ(INVD_FORMAT, 2);
  EXPECT_EQ(MORV_TYPE_FLOAT, 0);
  EXPECT_EQ(MORV_TYPE_BITS, 1);
  EXPECT_EQ(MORV_TYPE_ARRAY, 2);
  EXPECT_EQ(DUMP_TO_SCREEN, 0);
  EXPECT_EQ(DUMP_TXT_FILE, 1);
  EXPECT_EQ(DUMP_XML_FILE, 2);
  EXPECT_EQ(DUMP_TXT_FILE_SHORT, 3);
}

TEST(Tags, HoldEveryNameAndNullElsewhere) {
  const char* const expected[18][3] = {
      {"CHANDESCRIPTIONS", nullptr, nullptr},
      {"CHANNEL", nullptr, nullptr},
      {"EVTYPE", nullptr, nullptr},
      {"STREAM", nullptr, nullptr},
      {"PROP", nullptr, nullptr},
      {"NAME", nullptr, nullptr},
      {"DESC", nullptr, nullptr},
      {"UNITS", "DIM_UNITS", "STAT_UNITS"},
      {"SIZE", nullptr, nullptr},
      {"BIT", "DIM", "STAT"},
      {"BIT_NAME", "DIM_NAME", "STAT_NAME"},
      {"BIT_DESCR", "DIM_DESCR", "STAT_DESCR"},
      {"SB_NAME", nullptr, nullptr},
      {"DTYPE", nullptr, nullptr},
      {"COUNT", nullptr, nullptr},
      {"SETPOINT", nullptr, nullptr},
      {"SUBSYSTEM", nullptr, nullptr},
      {"DB_KEY", nullptr, nullptr},
  };
  for (int row = 0; row < 18; ++row) {
    for (int column = 0; column < 3; ++column)
      EXPECT_STREQ(tags[row][column], expected[row][column]) << row << " " << column;
  }
}

TEST(Tags, RowsHaveTheirEnumerators) {
  EXPECT_STREQ(tags[DESCR_ROOT][0], "CHANDESCRIPTIONS");
  EXPECT_STREQ(tags[DESCR_CHAN][0], "CHANNEL");
  EXPECT_STREQ(tags[DESCR_EVTYPE][0], "EVTYPE");
  EXPECT_STREQ(tags[DESCR_STREAM][0], "STREAM");
  EXPECT_STREQ(tags[DESCR_PROP][0], "PROP");
  EXPECT_STREQ(tags[DESCR_NAME][0], "NAME");
  EXPECT_STREQ(tags[DESCR_DESC][0], "DESC");
  EXPECT_STREQ(tags[DESCR_UNITS][0], "UNITS");
  EXPECT_STREQ(tags[DESCR_SIZE][0], "SIZE");
  EXPECT_STREQ(tags[DESCR_BIT][0], "BIT");
  EXPECT_STREQ(tags[DESCR_BIT_NAME][0], "BIT_NAME");
  EXPECT_STREQ(tags[DESCR_BIT_DESC][0], "BIT_DESCR");
  EXPECT_STREQ(tags[DESCR_SB_NAME][0], "SB_NAME");
  EXPECT_STREQ(tags[DESCR_DTYPE][0], "DTYPE");
  EXPECT_STREQ(tags[DESCR_COUNT][0], "COUNT");
  EXPECT_STREQ(tags[DESCR_SETPNT][0], "SETPOINT");
  EXPECT_STREQ(tags[DESCR_SUBSYS][0], "SUBSYSTEM");
  EXPECT_STREQ(tags[DESCR_DBKEY][0], "DB_KEY");
}

TEST(RootTag, GivesOutRowsUpToDataType) {
  EXPECT_STREQ(get_chan_descr_root_tag(0, 0), "CHANDESCRIPTIONS");
  EXPECT_STREQ(get_chan_descr_root_tag(1, 0), "CHANNEL");
  EXPECT_STREQ(get_chan_descr_root_tag(9, 2), "STAT");
  EXPECT_STREQ(get_chan_descr_root_tag(13, 0), "DTYPE");
}

TEST(RootTag, EmptyCellIsNull) {
  EXPECT_EQ(get_chan_descr_root_tag(5, 1), nullptr);
  EXPECT_EQ(get_chan_descr_root_tag(13, 2), nullptr);
}

TEST(RootTag, HeldBackRowsAreNull) {
  for (int row = 14; row <= 17; ++row) EXPECT_EQ(get_chan_descr_root_tag(row, 0), nullptr);
}

TEST(RootTag, OutsideTheTableIsNull) {
  EXPECT_EQ(get_chan_descr_root_tag(-1, 0), nullptr);
  EXPECT_EQ(get_chan_descr_root_tag(0, -1), nullptr);
  EXPECT_EQ(get_chan_descr_root_tag(0, 3), nullptr);
  EXPECT_EQ(get_chan_descr_root_tag(18, 0), nullptr);
  EXPECT_EQ(get_chan_descr_root_tag(0x7fffffff, 0), nullptr);
}

TEST(FindChanEntry, EmptyListHasNone) {
  channels list;
  EXPECT_EQ(find_chan_entry(&list, "A"), nullptr);
}

TEST(FindChanEntry, EarlierOfEqualProperties) {
  channels list{channel("A"), channel("B"), channel("B")};
  EXPECT_EQ(find_chan_entry(&list, "B"), list[1]);
  clean_chan_desr_list(&list);
}

TEST(FindChanEntry, ComparesExactly) {
  channels list{channel("LINAC/BPM"), channel("")};
  EXPECT_EQ(find_chan_entry(&list, "LINAC"), nullptr);
  EXPECT_EQ(find_chan_entry(&list, "LINAC/BPM/X"), nullptr);
  EXPECT_EQ(find_chan_entry(&list, "linac/bpm"), nullptr);
  EXPECT_EQ(find_chan_entry(&list, ""), list[1]);
  clean_chan_desr_list(&list);
}

TEST(Clone, NullGivesNull) {
  EXPECT_EQ(zrt4_clone_bit_descr(nullptr), nullptr);
  EXPECT_EQ(zrt4_clone_stat_descr(nullptr), nullptr);
  EXPECT_EQ(zrt4_clone_dim_descr(nullptr), nullptr);
}

TEST(Clone, BitIsIndependent) {
  const std::unique_ptr<bit_descr> bit(full<bit_descr>(7, "interlock"));
  const std::unique_ptr<bit_descr> copy(zrt4_clone_bit_descr(bit.get()));
  *bit = {};
  EXPECT_EQ(copy->bit, 7);
  EXPECT_STREQ(copy->bit_name, "interlock");
  EXPECT_STREQ(copy->bit_desc, "description");
}

TEST(Clone, StatisticIsIndependent) {
  const std::unique_ptr<stat_descr> stat(full<stat_descr>(3, "mean"));
  const std::unique_ptr<stat_descr> copy(zrt4_clone_stat_descr(stat.get()));
  *stat = {};
  EXPECT_EQ(copy->stat, 3);
  EXPECT_STREQ(copy->stat_name, "mean");
  EXPECT_STREQ(copy->stat_desc, "description");
  EXPECT_STREQ(copy->units, "mm");
}

TEST(Clone, FullTextsArriveWhole) {
  bit_descr bit;
  std::memset(bit.bit_name, 'n', sizeof bit.bit_name - 1);
  std::memset(bit.bit_desc, 'd', sizeof bit.bit_desc - 1);
  const std::unique_ptr<bit_descr> copy(zrt4_clone_bit_descr(&bit));
  EXPECT_EQ(std::memcmp(copy.get(), &bit, sizeof bit), 0);
}

void release(dim_descr* dim) {
  for (const stat_descr* stat : dim->stats) delete stat;
  delete dim;
}

TEST(Clone, DimensionCopiesItsStatistics) {
  auto* dim = new dim_descr;
  dim->dim = 1;
  std::strcpy(dim->dim_name, "time");
  std::strcpy(dim->dim_desc, "bunch time");
  std::strcpy(dim->units, "us");
  dim->stats = {full<stat_descr>(0, "mean"), full<stat_descr>(1, "rms")};
  dim->nstats = 2;
  dim_descr* copy = zrt4_clone_dim_descr(dim);
  EXPECT_NE(copy->stats[0], dim->stats[0]);
  release(dim);
  EXPECT_EQ(copy->dim, 1);
  EXPECT_STREQ(copy->dim_name, "time");
  EXPECT_STREQ(copy->dim_desc, "bunch time");
  EXPECT_STREQ(copy->units, "us");
  EXPECT_EQ(copy->nstats, 2);
  ASSERT_EQ(copy->stats.size(), 2U);
  EXPECT_STREQ(copy->stats[0]->stat_name, "mean");
  EXPECT_STREQ(copy->stats[1]->stat_name, "rms");
  release(copy);
}

TEST(Clone, DimensionSkipsNullStatistics) {
  auto* dim = new dim_descr;
  dim->stats = {full<stat_descr>(0, "mean"), nullptr, full<stat_descr>(2, "rms")};
  dim->nstats = 3;
  dim_descr* copy = zrt4_clone_dim_descr(dim);
  EXPECT_EQ(copy->nstats, 2);
  ASSERT_EQ(copy->stats.size(), 2U);
  EXPECT_STREQ(copy->stats[1]->stat_name, "rms");
  release(dim);
  release(copy);
}

TEST(Clone, DimensionCountsWhatItCopiedWhateverTheCounterSays) {
  auto* dim = new dim_descr;
  dim->stats = {full<stat_descr>(0, "mean")};
  dim_descr* copy = zrt4_clone_dim_descr(dim);
  EXPECT_EQ(copy->nstats, 1);
  EXPECT_EQ(copy->stats.size(), 1U);
  release(dim);
  release(copy);
}

TEST(CleanList, NullOrEmptyDoesNothing) {
  channels empty;
  const auto output = captured([&] {
    clean_chan_desr_list(nullptr);
    clean_chan_desr_list(&empty);
  });
  EXPECT_EQ(output.out + output.err, "");
}

TEST(CleanList, ReleasesEverythingAndKeepsCapacity) {
  channels list{channel("A"), channel("B")};
  list[0]->bits = {full<bit_descr>(0, "on"), nullptr, full<bit_descr>(1, "off")};
  list[0]->nbits = 3;
  list[1]->dims = {new dim_descr, new dim_descr};
  list[1]->ndims = 2;
  list[1]->dims[0]->stats = {full<stat_descr>(0, "mean"), nullptr};
  list[1]->dims[0]->nstats = 2;
  const auto capacity = list.capacity();
  const auto output = captured([&] { clean_chan_desr_list(&list); });
  EXPECT_EQ(output.out + output.err, "");
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.capacity(), capacity);
}

TEST(CleanList, RecordListedTwiceInARowIsReleasedOnce) {
  channels list{channel("A"), channel("B")};
  list.insert(list.begin(), list.front());
  list.push_back(list.back());
  list.push_back(list.back());
  clean_chan_desr_list(&list);
  EXPECT_TRUE(list.empty());
}

TEST(CleanList, UncountedBitsAreReportedAndLeft) {
  channels list{channel("LINAC/BITS"), channel("B")};
  const std::unique_ptr<bit_descr> first(full<bit_descr>(0, "on"));
  const std::unique_ptr<bit_descr> second(full<bit_descr>(1, "off"));
  list[0]->bits = {first.get(), second.get()};
  const auto output = captured([&] { clean_chan_desr_list(&list); });
  EXPECT_EQ(output.out, "ERROR: nbits = 0, but bits.size() > 0 prop: LINAC/BITS\n");
  EXPECT_EQ(output.err, "");
  EXPECT_STREQ(first->bit_name, "on");
  EXPECT_STREQ(second->bit_name, "off");
  EXPECT_TRUE(list.empty());
}

TEST(CleanList, UncountedDimensionsAreReportedAndLeft) {
  channels list{channel("LINAC/DIMS")};
  const auto dim = std::make_unique<dim_descr>();
  list[0]->dims = {dim.get()};
  const auto output = captured([&] { clean_chan_desr_list(&list); });
  EXPECT_EQ(output.out, "ERROR: ndims = 0, but dims.size() > 0 prop: LINAC/DIMS\n");
  EXPECT_TRUE(dim->stats.empty());
  EXPECT_TRUE(list.empty());
}

TEST(CleanList, UncountedStatisticsAreReportedAndLeftWhileTheirDimensionGoes) {
  channels list{channel("LINAC/STATS")};
  const std::unique_ptr<stat_descr> first(full<stat_descr>(0, "mean"));
  const std::unique_ptr<stat_descr> second(full<stat_descr>(1, "rms"));
  list[0]->dims = {new dim_descr};
  list[0]->ndims = 1;
  list[0]->dims[0]->stats = {first.get(), second.get()};
  const auto output = captured([&] { clean_chan_desr_list(&list); });
  EXPECT_EQ(output.out, "ERROR: nstats = 0, but stats.size() > 0 (2) prop: LINAC/STATS\n");
  EXPECT_STREQ(second->stat_name, "rms");
  EXPECT_TRUE(list.empty());
}

}  // namespace
