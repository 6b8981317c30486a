// Completing one channel description with what another one knows.

#include <cstring>
#include <memory>

#include "parse_chan_descr.hh"
#include "support.hh"

using test::captured;

namespace {

struct release {
  void operator()(chan_descr_2010* channel) const {
    std::vector<chan_descr_2010*> list{channel};
    clean_chan_desr_list(&list);
  }
};
using owned_channel = std::unique_ptr<chan_descr_2010, release>;

owned_channel channel(const char* property = "LINAC/BPM/X") {
  owned_channel created(new chan_descr_2010);
  std::strcpy(created->prop_name, property);
  return created;
}

owned_channel full_channel() {
  owned_channel created = channel();
  created->stream = 1;
  created->ev_type = 2;
  created->count = 3;
  created->dtype = 4;
  created->db_key = 5;
  std::strcpy(created->daq_name, "daq");
  std::strcpy(created->prop_desc, "desc");
  std::strcpy(created->units, "mm");
  created->max_size = 6;
  std::strcpy(created->sb_name, "server");
  created->set_point = 7;
  std::strcpy(created->subsystem, "DIAG");
  return created;
}

owned_channel other_channel() {
  owned_channel created = channel();
  created->stream = 11;
  created->ev_type = 12;
  created->count = 13;
  created->dtype = 14;
  created->db_key = 15;
  std::strcpy(created->daq_name, "other daq");
  std::strcpy(created->prop_desc, "other desc");
  std::strcpy(created->units, "um");
  created->max_size = 16;
  std::strcpy(created->sb_name, "other server");
  created->set_point = 17;
  std::strcpy(created->subsystem, "RF");
  return created;
}

std::string fields(const chan_descr_2010& c) {
  std::ostringstream text;
  text << c.stream << " " << c.ev_type << " " << c.count << " " << c.dtype << " " << c.db_key
       << " '" << c.daq_name << "' '" << c.prop_desc << "' '" << c.units << "' " << c.max_size
       << " '" << c.sb_name << "' " << c.set_point << " '" << c.subsystem << "'";
  return text.str();
}

void add_bit(chan_descr_2010& to, int number, const char* name) {
  to.bits.push_back(new bit_descr);
  to.bits.back()->bit = number;
  std::strcpy(to.bits.back()->bit_name, name);
  ++to.nbits;
}

dim_descr& add_dim(chan_descr_2010& to, int number, const char* name) {
  to.dims.push_back(new dim_descr);
  to.dims.back()->dim = number;
  std::strcpy(to.dims.back()->dim_name, name);
  ++to.ndims;
  return *to.dims.back();
}

void add_stat(dim_descr& to, int number) {
  to.stats.push_back(new stat_descr);
  to.stats.back()->stat = number;
  ++to.nstats;
}

/// "2: 0 on, 5 off" for two bits.
std::string bits(const chan_descr_2010& c) {
  std::string text = std::to_string(c.nbits) + ":";
  for (const bit_descr* bit : c.bits)
    text += " " + (bit != nullptr ? std::to_string(bit->bit) + bit->bit_name : "null");
  return text;
}

/// "1: 0time(2: 1 2)" for one dimension with two statistics.
std::string dims(const chan_descr_2010& c) {
  std::string text = std::to_string(c.ndims) + ":";
  for (const dim_descr* dim : c.dims) {
    text += " " + std::to_string(dim->dim) + dim->dim_name + "(" + std::to_string(dim->nstats);
    for (const stat_descr* stat : dim->stats) text += " " + std::to_string(stat->stat);
    text += ")";
  }
  return text;
}

bool complete(const owned_channel& in, const owned_channel& from) {
  return extend_channel_description(in.get(), from.get(), false);
}
bool replace(const owned_channel& in, const owned_channel& from) {
  return extend_channel_description(in.get(), from.get(), true);
}

const char* const unchanged = "1 2 3 4 5 'daq' 'desc' 'mm' 6 'server' 7 'DIAG'";
const char* const replaced =
    "11 12 13 14 15 'other daq' 'other desc' 'um' 16 'other server' 17 'RF'";

TEST(ExtendRefused, NullArguments) {
  const auto in = full_channel();
  EXPECT_TRUE(extend_channel_description(in.get(), nullptr, true));
  EXPECT_TRUE(extend_channel_description(nullptr, in.get(), true));
  EXPECT_TRUE(extend_channel_description(nullptr, nullptr, false));
  EXPECT_EQ(fields(*in), unchanged);
}

TEST(ExtendRefused, DifferentProperties) {
  const auto in = full_channel();
  const auto from = other_channel();
  std::strcpy(from->prop_name, "LINAC/BPM/Y");
  EXPECT_TRUE(complete(in, from));
  EXPECT_TRUE(replace(in, from));
  EXPECT_EQ(fields(*in), unchanged);
}

TEST(ExtendCompleting, TakesWhatIsMissing) {
  const auto in = channel();
  in->max_size = 0;
  const auto from = other_channel();
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(fields(*in), replaced);
  EXPECT_EQ(fields(*from), replaced);
}

TEST(ExtendCompleting, KeepsWhatIsThere) {
  const auto in = full_channel();
  EXPECT_FALSE(complete(in, other_channel()));
  EXPECT_EQ(fields(*in), unchanged);
}

TEST(ExtendCompleting, FreshSizeOfOneStays) {
  const auto in = channel();
  EXPECT_FALSE(complete(in, other_channel()));
  EXPECT_EQ(in->max_size, 1);
}

TEST(ExtendCompleting, DatabaseKeyWhenZeroOrNegative) {
  const auto from = channel();
  from->db_key = 7;
  for (const int key : {-1, 0, -5}) {
    const auto in = channel();
    in->db_key = key;
    EXPECT_FALSE(complete(in, from));
    EXPECT_EQ(in->db_key, 7);
  }
  const auto in = channel();
  in->db_key = 3;
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(in->db_key, 3);
}

TEST(ExtendCompleting, DatabaseKeyIsTakenWhateverItIs) {
  const auto in = channel();
  const auto from = channel();
  from->db_key = 0;
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(in->db_key, 0);
}

TEST(ExtendCompleting, BitsArriveAsCopies) {
  const auto in = channel();
  const auto from = channel();
  add_bit(*from, 0, "on");
  add_bit(*from, 1, "off");
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "2: 0on 1off");
  EXPECT_NE(in->bits[0], from->bits[0]);
}

TEST(ExtendCompleting, NullBitsAreNotCopied) {
  const auto in = channel();
  const auto from = channel();
  add_bit(*from, 0, "on");
  from->bits.push_back(nullptr);
  ++from->nbits;
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "1: 0on");
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "1: 0on");
}

TEST(ExtendCompleting, UncountedBitsOfTheOtherAreIgnored) {
  const auto in = channel();
  const auto from = channel();
  bit_descr bit;
  from->bits.push_back(&bit);
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "0:");
  from->bits.clear();
}

TEST(ExtendCompleting, OnlyNewBitNumbersAreAdded) {
  const auto in = channel();
  add_bit(*in, 0, "zero");
  add_bit(*in, 2, "mine");
  const auto from = channel();
  add_bit(*from, 2, "theirs");
  add_bit(*from, 5, "five");
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "3: 0zero 2mine 5five");
}

TEST(ExtendCompleting, BitNumberTwiceInTheOtherIsAddedOnce) {
  const auto in = channel();
  add_bit(*in, 0, "zero");
  const auto from = channel();
  add_bit(*from, 5, "first");
  add_bit(*from, 5, "second");
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "2: 0zero 5first");
}

TEST(ExtendCompleting, BitNumberTwiceInTheOtherIsCopiedTwiceToAChannelWithoutBits) {
  const auto in = channel();
  const auto from = channel();
  add_bit(*from, 5, "first");
  add_bit(*from, 5, "second");
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "2: 5first 5second");
}

TEST(ExtendCompleting, DimensionsArriveWithTheirStatistics) {
  const auto in = channel();
  const auto from = channel();
  add_stat(add_dim(*from, 0, "time"), 3);
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(dims(*in), "1: 0time(1 3)");
  EXPECT_NE(in->dims[0], from->dims[0]);
  EXPECT_NE(in->dims[0]->stats[0], from->dims[0]->stats[0]);
}

TEST(ExtendCompleting, NewDimensionIsAppendedWhole) {
  const auto in = channel();
  add_dim(*in, 0, "mine");
  const auto from = channel();
  add_stat(add_dim(*from, 1, "theirs"), 3);
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(dims(*in), "2: 0mine(0) 1theirs(1 3)");
}

TEST(ExtendCompleting, KnownDimensionWithoutStatisticsGetsThem) {
  const auto in = channel();
  add_dim(*in, 1, "mine");
  const auto from = channel();
  dim_descr& dim = add_dim(*from, 1, "theirs");
  add_stat(dim, 3);
  add_stat(dim, 4);
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(dims(*in), "1: 1mine(2 3 4)");
}

TEST(ExtendCompleting, StatisticsAreNeverMergedOneByOne) {
  const auto in = channel();
  dim_descr& mine = add_dim(*in, 1, "mine");
  add_stat(mine, 0);
  add_stat(mine, 1);
  const auto from = channel();
  dim_descr& theirs = add_dim(*from, 1, "theirs");
  for (const int stat : {2, 3, 4}) add_stat(theirs, stat);
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(dims(*in), "1: 1mine(2 0 1)");
}

TEST(ExtendCompleting, UncountedDimensionsOfTheOtherAreIgnored) {
  const auto in = channel();
  const auto from = channel();
  dim_descr dim;
  from->dims.push_back(&dim);
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(dims(*in), "0:");
  from->dims.clear();
}

TEST(ExtendCompleting, NullBitsAreNoBits) {
  const auto in = channel();
  add_bit(*in, 0, "mine");
  in->bits.push_back(nullptr);
  const auto from = channel();
  from->bits.push_back(nullptr);
  add_bit(*from, 0, "theirs");
  add_bit(*from, 5, "five");
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(bits(*in), "2: 0mine null 5five");
}

TEST(ExtendCompleting, NullDimensionsAreNoDimensions) {
  const auto in = channel();
  add_dim(*in, 0, "mine");
  in->dims.insert(in->dims.begin(), nullptr);
  const auto from = channel();
  add_dim(*from, 0, "theirs");
  add_dim(*from, 1, "theirs");
  from->dims.insert(from->dims.begin(), nullptr);
  EXPECT_FALSE(complete(in, from));
  in->dims.erase(in->dims.begin());
  from->dims.erase(from->dims.begin());
  EXPECT_EQ(dims(*in), "2: 0mine(0) 1theirs(0)");
}

TEST(ExtendCompleting, UncountedStatisticsOfTheOtherAreIgnored) {
  const auto in = channel();
  add_dim(*in, 1, "mine");
  const auto from = channel();
  stat_descr stat;
  dim_descr& theirs = add_dim(*from, 1, "theirs");
  theirs.stats.push_back(&stat);
  EXPECT_FALSE(complete(in, from));
  EXPECT_EQ(dims(*in), "1: 1mine(0)");
  theirs.stats.clear();
}

TEST(ExtendReplacing, TakesWhatTheOtherHas) {
  const auto in = full_channel();
  EXPECT_FALSE(replace(in, other_channel()));
  EXPECT_EQ(fields(*in), replaced);
}

TEST(ExtendReplacing, KeepsWhatTheOtherLacks) {
  const auto in = full_channel();
  const auto from = channel();
  from->max_size = 0;
  EXPECT_FALSE(replace(in, from));
  EXPECT_EQ(fields(*in), unchanged);
}

TEST(ExtendReplacing, DatabaseKeyOnlyWhenPositive) {
  for (const int key : {-1, 0}) {
    const auto in = full_channel();
    const auto from = channel();
    from->db_key = key;
    EXPECT_FALSE(replace(in, from));
    EXPECT_EQ(in->db_key, 5);
  }
  const auto in = full_channel();
  const auto from = channel();
  from->db_key = 1;
  EXPECT_FALSE(replace(in, from));
  EXPECT_EQ(in->db_key, 1);
}

TEST(ExtendReplacing, ShorterTextLeavesNothingBehind) {
  const auto in = channel();
  std::strcpy(in->daq_name, "a long name");
  const auto from = channel();
  std::strcpy(from->daq_name, "b");
  EXPECT_FALSE(replace(in, from));
  EXPECT_EQ(std::memcmp(in->daq_name, from->daq_name, sizeof in->daq_name), 0);
}

TEST(ExtendReplacing, BitsAreExchanged) {
  const auto in = channel();
  for (const int bit : {0, 1, 2}) add_bit(*in, bit, "mine");
  in->bits.push_back(nullptr);
  const auto from = channel();
  add_bit(*from, 1, "theirs");
  EXPECT_FALSE(replace(in, from));
  EXPECT_EQ(bits(*in), "1: 1theirs");
}

TEST(ExtendReplacing, BitsStayWhenTheOtherHasNone) {
  const auto in = channel();
  for (const int bit : {0, 1, 2}) add_bit(*in, bit, "mine");
  EXPECT_FALSE(replace(in, channel()));
  EXPECT_EQ(bits(*in), "3: 0mine 1mine 2mine");
}

TEST(ExtendReplacing, DimensionsAreExchanged) {
  const auto in = channel();
  add_stat(add_dim(*in, 0, "mine"), 9);
  add_dim(*in, 1, "mine");
  const auto from = channel();
  add_stat(add_dim(*from, 1, "theirs"), 3);
  EXPECT_FALSE(replace(in, from));
  EXPECT_EQ(dims(*in), "1: 1theirs(1 3)");
}

TEST(ExtendReplacing, DimensionsStayWhenTheOtherHasNone) {
  const auto in = channel();
  add_dim(*in, 0, "mine");
  EXPECT_FALSE(replace(in, channel()));
  EXPECT_EQ(dims(*in), "1: 0mine(0)");
}

TEST(ExtendReplacing, CountWithoutDimensionsIsReset) {
  const auto in = channel();
  in->ndims = 4;
  const auto from = channel();
  add_dim(*from, 1, "theirs");
  EXPECT_FALSE(replace(in, from));
  EXPECT_EQ(dims(*in), "1: 1theirs(0)");
}

TEST(ExtendReplacing, UncountedBitsStay) {
  const auto in = channel();
  const auto mine = std::make_unique<bit_descr>();
  in->bits.push_back(mine.get());
  const auto from = channel();
  add_bit(*from, 1, "theirs");
  EXPECT_FALSE(replace(in, from));
  in->bits.erase(in->bits.begin());
  EXPECT_EQ(mine->bit, 0);
  EXPECT_EQ(bits(*in), "1: 1theirs");
}

TEST(ExtendReplacing, UncountedStatisticsAreReportedAndLeft) {
  const auto in = channel();
  const auto first = std::make_unique<stat_descr>();
  const auto second = std::make_unique<stat_descr>();
  add_dim(*in, 0, "mine").stats = {first.get(), second.get()};
  const auto from = channel();
  add_dim(*from, 1, "theirs");
  const auto output = captured([&] { EXPECT_FALSE(replace(in, from)); });
  EXPECT_EQ(output.out, "ERROR: nstats = 0, but stats.size() > 0 (2) prop: LINAC/BPM/X\n");
  EXPECT_EQ(output.err, "");
  EXPECT_EQ(first->stat + second->stat, 0);
  EXPECT_EQ(dims(*in), "1: 1theirs(0)");
}

}  // namespace
