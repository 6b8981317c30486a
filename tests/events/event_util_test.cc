#include "event_util.hh"

#include "support.hh"

TEST(EventNameItoa, NamesEveryEventType) {
  const char* const names[] = {"HB",       "NORMAL",
                               "BOR",      "EOR",
                               "ENV",      "UPD",
                               "IMAGE",    "WS",
                               "MCP",      "WSS",
                               "BL1",      "BL2",
                               "BL3",      "PG0",
                               "PG1",      "PG2",
                               "GMD",      "PHOTEN",
                               "PHOTWL",   "BEAM_ENERGY",
                               "LLRF_ML",  "BEAM_ENERGY_BYPASS",
                               "SPECTR_1", "SPECTR_2",
                               "SPECTR_3", "SPECTR_4",
                               "SPECTR_5", "TOROID_ML",
                               "28",       "29",
                               "30",       "31",
                               "EVMAX"};
  for (int type = 0; type <= 32; ++type) EXPECT_STREQ(event_name_itoa(type), names[type]);
}

TEST(EventNameItoa, OtherNumbersAreUnknown) {
  EXPECT_STREQ(event_name_itoa(-1), "UNKNOWN");
  EXPECT_STREQ(event_name_itoa(33), "UNKNOWN");
  EXPECT_STREQ(event_name_itoa(0x7fffffff), "UNKNOWN");
}

TEST(BlockNameItoa, NamesBothFamilies) {
  EXPECT_STREQ(block_name_itoa(ZRT4_UPD_BLOCK), "UPD");
  EXPECT_STREQ(block_name_itoa(ZRT4_ENV_DICT_BLOCK), "ENV_DICT");
  EXPECT_STREQ(block_name_itoa(ZRT4_EOR_BLOCK), "EOR");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_BPM), "BPM");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_BPM_Z), "BPM_Z");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_RF_250K), "RF_250K");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_NAME_VALUE), "NAME_VALUE");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_IMG_ROI1), "IMG_ROI1");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_GENERIC_SPECT), "GENERIC_SPECT");
  EXPECT_STREQ(block_name_itoa(ZRT4_UPD_BLOCK_DONT_USE_31), "UPD_DONT_USE_31");
  EXPECT_STREQ(block_name_itoa(ZRT4_UPD_BLOCK_2010), "UPD_2010");
  EXPECT_STREQ(block_name_itoa(ZRT4_ENV_DICT_BLOCK_2010), "ENV_DICT_2010");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_1CHAN_2010), "1CHAN_2010");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_8CHAN_2010), "8CHAN_2010");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_3CHAN_2010), "3CHAN_2010");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_7CHAN_2010), "7CHAN_2010");
  EXPECT_STREQ(block_name_itoa(ZRT4_BLOCK_MAX_2010), "MAX_2010");
}

TEST(BlockNameItoa, UnassignedNumbersAreUnknown) {
  for (const int number : {-1, 0, 29, 30, 32, 54, 55, 56, 57, 58, 59, 64, 1000}) {
    EXPECT_STREQ(block_name_itoa(number), "UNKNOWN") << number;
  }
}

TEST(GetEventStructType, ClassOfEveryEventType) {
  for (int type = 0; type <= 5; ++type) EXPECT_EQ(get_event_struct_type(type), 2) << type;
  for (int type = 6; type <= 26; ++type) {
    EXPECT_EQ(get_event_struct_type(type), type == ZRT4_EV_LLRF_ML ? 3 : 1) << type;
  }
  EXPECT_EQ(get_event_struct_type(ZRT4_EV_TOROID_ML), 3);
  for (int type = 28; type <= 31; ++type) EXPECT_EQ(get_event_struct_type(type), 0) << type;
  EXPECT_EQ(get_event_struct_type(32), 4);
  EXPECT_EQ(get_event_struct_type(33), 4);
  EXPECT_EQ(get_event_struct_type(-1), 4);
}
