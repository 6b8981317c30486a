// Screen listing of channel descriptions.

#include <cstring>
#include <memory>

#include "parse_chan_descr.hh"
#include "support.hh"

using test::captured;

namespace {

using channels = std::vector<chan_descr_2010*>;

std::string listing(channels* list) {
  const auto output = captured([&] { print_zrt4_chan_descr(list); });
  EXPECT_EQ(output.err, "");
  return output.out;
}

std::string listing(chan_descr_2010& channel) {
  channels list{&channel};
  return listing(&list);
}

const std::string header =
    "========================\n"
    "ZRT4 XML Channel Description (XCD)\n";

const std::string fresh_fields =
    "\tcount  :0\n"
    "\tdb_key :-1\n"
    "\tprop   :\n"
    "\tname   :\n"
    "\tset_pnt:no\n"
    "\tdesc   :\n"
    "\tsb_name:\n"
    "\tsubsys :\n"
    "\tunit   :\n"
    "\tmax_sz :1\n";

std::string fresh(const std::string& ev_type = "0x0 ", const std::string& dtype = "0x0 ") {
  return header + "--------------[0]-----------------\n stream   : 0 \n ev type  : " + ev_type +
         "\n data type: " + dtype + "\n" + fresh_fields;
}

TEST(PrintChannels, NullListPrintsNothing) {
  EXPECT_EQ(listing(nullptr), "");
}

TEST(PrintChannels, EmptyListPrintsTheHeader) {
  channels list;
  EXPECT_EQ(listing(&list), header);
}

TEST(PrintChannels, FreshRecord) {
  chan_descr_2010 channel;
  EXPECT_EQ(listing(channel), fresh());
}

TEST(PrintChannels, EveryField) {
  chan_descr_2010 channel;
  channel.stream = 2;
  channel.ev_type = 1U << 1U;
  channel.count = 17;
  channel.dtype = 1U << 6U;
  channel.db_key = 4711;
  std::strcpy(channel.prop_name, "LINAC/BPM/X");
  std::strcpy(channel.daq_name, "BPM.X");
  std::strcpy(channel.prop_desc, "horizontal position");
  std::strcpy(channel.units, "mm");
  channel.max_size = 2048;
  std::strcpy(channel.sb_name, "BPM.SERVER");
  channel.set_point = 5;
  std::strcpy(channel.subsystem, "DIAG");
  EXPECT_EQ(listing(channel), header +
                                  "--------------[0]-----------------\n"
                                  " stream   : 2 \n"
                                  " ev type  : 0x2 NORMAL\n"
                                  " data type: 0x40 BPM\n"
                                  "\tcount  :17\n"
                                  "\tdb_key :4711\n"
                                  "\tprop   :LINAC/BPM/X\n"
                                  "\tname   :BPM.X\n"
                                  "\tset_pnt:yes\n"
                                  "\tdesc   :horizontal position\n"
                                  "\tsb_name:BPM.SERVER\n"
                                  "\tsubsys :DIAG\n"
                                  "\tunit   :mm\n"
                                  "\tmax_sz :2048\n");
}

TEST(PrintChannels, NumbersAllRecordsDuplicatesIncluded) {
  chan_descr_2010 channel;
  channels list{&channel, &channel};
  const std::string body = " stream   : 0 \n ev type  : 0x0 \n data type: 0x0 \n" + fresh_fields;
  EXPECT_EQ(listing(&list), header + "--------------[0]-----------------\n" + body +
                                "--------------[1]-----------------\n" + body);
}

TEST(PrintChannels, EventTypesLowestFirst) {
  chan_descr_2010 channel;
  channel.ev_type = 1U << 0U | 1U << 3U;
  EXPECT_EQ(listing(channel), fresh("0x9 HB:EOR"));
}

TEST(PrintChannels, HighestEventType) {
  chan_descr_2010 channel;
  channel.ev_type = 1U << 31U;
  EXPECT_EQ(listing(channel), fresh("0x80000000 31"));
}

TEST(PrintChannels, AllEventTypesAreCutAt255Characters) {
  chan_descr_2010 channel;
  channel.ev_type = 0xffffffff;
  const std::string all =
      "HB:NORMAL:BOR:EOR:ENV:UPD:IMAGE:WS:MCP:WSS:BL1:BL2:BL3:PG0:PG1:PG2:GMD:PHOTEN:PHOTWL:"
      "BEAM_ENERGY:LLRF_ML:BEAM_ENERGY_BYPASS:SPECTR_1:SPECTR_2:SPECTR_3:SPECTR_4:SPECTR_5:"
      "TOROID_ML:28:29:30:31";
  EXPECT_EQ(listing(channel), fresh("0xffffffff " + all.substr(0, 255)));
}

TEST(PrintChannels, AllDataTypesAreCutAt255Characters) {
  chan_descr_2010 channel;
  channel.dtype = 0x7fffffff;
  const std::string all =
      "UNKNOWN:UPD:ENV_DICT:ENV:BOR:EOR:BPM:BPM_Z:BPM_S:SINGLE:TOROID:RF_250K:ENERGY:IMAGE:WS_FAST:"
      "WS_SLOW:CPLINTL:GUNINTL:MCP:PHM:WSS_RAW:WSS_COR:NAME_VALUE:EQDATA:IMG_ROI1:IMG_ROI2:"
      "IMG_ROI3:IMAGE_EXT:GENERIC_SPECT:UNKNOWN:UNKNOWN";
  EXPECT_EQ(listing(channel), fresh("0x0 ", "0x7fffffff " + all.substr(0, 255)));
}

TEST(PrintChannels, AllNewerDataTypesAreCutAt255Characters) {
  chan_descr_2010 channel;
  channel.dtype = 0xffffffff;
  const std::string all =
      "UNKNOWN:UPD_2010:ENV_DICT_2010:ENV_2010:BOR_2010:EOR_2010:BPM_2010:BPM_Z_2010:BPM_S_2010:"
      "1CHAN_2010:TOROID_2010:RF_250K_2010:ENERGY_2010:2CHAN_2010:WS_2010:4CHAN_2010:CPLINTL_2010:"
      "GUNINTL_2010:MCP_2010:PHM_2010:6CHAN_2010:8CHAN_2010:UNKNOWN:UNKNOWN:UNKNOWN:UNKNOWN:"
      "UNKNOWN:UNKNOWN:3CHAN_2010:5CHAN_2010:7CHAN_2010";
  ASSERT_GT(all.size(), 255U);
  EXPECT_EQ(listing(channel), fresh("0x0 ", "0xffffffff " + all.substr(0, 255)));
}

TEST(PrintChannels, DataTypesOfTheOlderFamily) {
  chan_descr_2010 channel;
  channel.dtype = 1U << 1U | 1U << 13U | 1U << 30U;
  EXPECT_EQ(listing(channel), fresh("0x0 ", "0x40002002 UPD:IMAGE:UNKNOWN"));
}

TEST(PrintChannels, Bit31SelectsTheNewerFamily) {
  chan_descr_2010 channel;
  channel.dtype = 0x80000002;
  EXPECT_EQ(listing(channel), fresh("0x0 ", "0x80000002 UPD_2010"));
}

TEST(PrintChannels, Bit31AndBit0SelectPosition32) {
  chan_descr_2010 channel;
  channel.dtype = 0x80000001;
  EXPECT_EQ(listing(channel), fresh("0x0 ", "0x80000001 UNKNOWN"));
}

TEST(PrintChannels, Bit31AloneSelectsNothing) {
  chan_descr_2010 channel;
  channel.dtype = 0x80000000;
  EXPECT_EQ(listing(channel), fresh("0x0 ", "0x80000000 "));
}

TEST(PrintChannels, HighestPositionIs62) {
  chan_descr_2010 channel;
  channel.dtype = 0x80000000 | 1U << 30U;
  EXPECT_EQ(listing(channel), fresh("0x0 ", "0xc0000000 7CHAN_2010"));
}

TEST(PrintChannels, Bits) {
  bit_descr on;
  on.bit = 3;
  std::strcpy(on.bit_name, "on");
  std::strcpy(on.bit_desc, "switched on");
  bit_descr nameless;
  nameless.bit = 4;
  chan_descr_2010 channel;
  channel.bits = {&on, &nameless};
  channel.nbits = 2;
  EXPECT_EQ(listing(channel), fresh() +
                                  "\t\t# bits :2\n"
                                  "\t\tbit    : 3\n"
                                  "\t\tname   : on\n"
                                  "\t\tdesc   : switched on\n"
                                  "\t\tbit    : 4\n"
                                  "\t\tname   : \n"
                                  "\t\tdesc   : \n");
}

TEST(PrintChannels, UncountedBitsAreReported) {
  bit_descr bit;
  chan_descr_2010 channel;
  channel.bits = {&bit, &bit};
  EXPECT_EQ(listing(channel), fresh() + "ERROR: nbits = 0, but bits.size() > 0\n");
}

TEST(PrintChannels, CountWithoutBitsPrintsTheCount) {
  chan_descr_2010 channel;
  channel.nbits = 2;
  EXPECT_EQ(listing(channel), fresh() + "\t\t# bits :2\n");
}

TEST(PrintChannels, DimensionsWithStatistics) {
  stat_descr mean;
  mean.stat = 1;
  std::strcpy(mean.stat_name, "mean");
  std::strcpy(mean.stat_desc, "mean of the train");
  std::strcpy(mean.units, "mm");
  dim_descr time;
  time.dim = 0;
  std::strcpy(time.dim_name, "time");
  std::strcpy(time.dim_desc, "sample time");
  std::strcpy(time.units, "us");
  time.stats = {&mean};
  time.nstats = 1;
  dim_descr plain;
  plain.dim = 1;
  chan_descr_2010 channel;
  channel.dims = {&time, &plain};
  channel.ndims = 2;
  EXPECT_EQ(listing(channel), fresh() +
                                  "\t\t# dims : 2\n"
                                  "\t\tid    : 0\n"
                                  "\t\tname : time\n"
                                  "\t\tdesc : sample time\n"
                                  "\t\tunits: us\n"
                                  "\t\t\t# stats : 1\n"
                                  "\t\t\tid     : 1\n"
                                  "\t\t\tname   : mean\n"
                                  "\t\t\tdesc   : mean of the train\n"
                                  "\t\t\tunits  : mm\n"
                                  "\t\tid    : 1\n"
                                  "\t\tname : \n"
                                  "\t\tdesc : \n"
                                  "\t\tunits: \n");
}

TEST(PrintChannels, UncountedStatisticsAreReportedAndTheListingGoesOn) {
  stat_descr stat;
  dim_descr dim;
  dim.stats = {&stat};
  dim_descr next;
  next.dim = 1;
  next.nstats = 3;
  chan_descr_2010 channel;
  channel.dims = {&dim, &next};
  channel.ndims = 2;
  EXPECT_EQ(listing(channel), fresh() +
                                  "\t\t# dims : 2\n"
                                  "\t\tid    : 0\n\t\tname : \n\t\tdesc : \n\t\tunits: \n"
                                  "ERROR: nstats = 0, but stats.size() > 0\n"
                                  "\t\tid    : 1\n\t\tname : \n\t\tdesc : \n\t\tunits: \n"
                                  "\t\t\t# stats : 3\n");
}

TEST(PrintChannels, UncountedDimensionsAreReported) {
  dim_descr dim;
  chan_descr_2010 channel;
  channel.dims = {&dim};
  EXPECT_EQ(listing(channel), fresh() + "ERROR: ndims = 0, but dims.size() > 0\n");
}

TEST(PrintChannels, CountWithoutDimensionsPrintsTheCount) {
  chan_descr_2010 channel;
  channel.ndims = 1;
  EXPECT_EQ(listing(channel), fresh() + "\t\t# dims : 1\n");
}

}  // namespace
