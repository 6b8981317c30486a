#ifndef EVENT_HH
#define EVENT_HH

/// DAQ event and sub-block vocabulary, and the plain records that events carry. The layouts are
/// shared with programs that exchange them as memory: they are pinned below and never change.
/// Numbers are in the byte order of the host. What a field means beyond what stands here is for the
/// programs to know that fill it; docs/writing.md tells what becomes of it in a document.

#include <cstddef>
#include <cstdint>

/// Event types. Masks of event types have bit n set for event type n.
enum ZRT4_EVTYPE : std::uint32_t {
  ZRT4_EV_HB = 0,
  ZRT4_EV_NORMAL = 1,
  ZRT4_EV_BOR = 2,
  ZRT4_EV_EOR = 3,
  ZRT4_EV_ENV = 4,
  ZRT4_EV_UPD = 5,
  ZRT4_EV_IMAGE = 6,
  ZRT4_EV_WS = 7,
  ZRT4_EV_MCP = 8,
  ZRT4_EV_WSS = 9,
  ZRT4_EV_BL1 = 10,
  ZRT4_EV_BL2 = 11,
  ZRT4_EV_BL3 = 12,
  ZRT4_EV_PG0 = 13,
  ZRT4_EV_PG1 = 14,
  ZRT4_EV_PG2 = 15,
  ZRT4_EV_GMD = 16,
  ZRT4_EV_PHOTEN = 17,
  ZRT4_EV_PHOTWL = 18,
  ZRT4_EV_BEAM_ENERGY = 19,
  ZRT4_EV_LLRF_ML = 20,
  ZRT4_EV_BEAM_ENERGY_BYPASS = 21,
  ZRT4_EV_SPECTR_1 = 22,
  ZRT4_EV_SPECTR_2 = 23,
  ZRT4_EV_SPECTR_3 = 24,
  ZRT4_EV_SPECTR_4 = 25,
  ZRT4_EV_SPECTR_5 = 26,
  ZRT4_EV_TOROID_ML = 27,
  ZRT4_EV_28 = 28,
  ZRT4_EV_29 = 29,
  ZRT4_EV_30 = 30,
  ZRT4_EV_31 = 31,
  ZRT4_EV_EVMAX = 32
};

/// Data types of the sub-blocks of an event. Numbers below 32 are the older family, those from 33
/// the 2010 family; the missing numbers are unassigned.
enum ZRT4_SUBBLOCK_TYPE : std::uint32_t {
  ZRT4_UPD_BLOCK = 1,
  ZRT4_ENV_DICT_BLOCK = 2,
  ZRT4_ENV_BLOCK = 3,
  ZRT4_BOR_BLOCK = 4,
  ZRT4_EOR_BLOCK = 5,
  ZRT4_BLOCK_BPM = 6,
  ZRT4_BLOCK_BPM_Z = 7,
  ZRT4_BLOCK_BPM_S = 8,
  ZRT4_BLOCK_SINGLE = 9,
  ZRT4_BLOCK_TOROID = 10,
  ZRT4_BLOCK_RF_250K = 11,
  ZRT4_BLOCK_ENERGY = 12,
  ZRT4_BLOCK_IMAGE = 13,
  ZRT4_BLOCK_WS_FAST = 14,
  ZRT4_BLOCK_WS_SLOW = 15,
  ZRT4_BLOCK_CPLINTL = 16,
  ZRT4_BLOCK_GUNINTL = 17,
  ZRT4_BLOCK_MCP = 18,
  ZRT4_BLOCK_PHM = 19,
  ZRT4_BLOCK_WSS_RAW = 20,
  ZRT4_BLOCK_WSS_COR = 21,
  ZRT4_BLOCK_NAME_VALUE = 22,
  ZRT4_BLOCK_EQDATA = 23,
  ZRT4_BLOCK_IMG_ROI1 = 24,
  ZRT4_BLOCK_IMG_ROI2 = 25,
  ZRT4_BLOCK_IMG_ROI3 = 26,
  ZRT4_BLOCK_IMAGE_EXT = 27,
  ZRT4_BLOCK_GENERIC_SPECT = 28,
  ZRT4_UPD_BLOCK_DONT_USE_31 = 31,
  ZRT4_UPD_BLOCK_2010 = 33,
  ZRT4_ENV_DICT_BLOCK_2010 = 34,
  ZRT4_ENV_BLOCK_2010 = 35,
  ZRT4_BOR_BLOCK_2010 = 36,
  ZRT4_EOR_BLOCK_2010 = 37,
  ZRT4_BLOCK_BPM_2010 = 38,
  ZRT4_BLOCK_BPM_Z_2010 = 39,
  ZRT4_BLOCK_BPM_S_2010 = 40,
  ZRT4_BLOCK_1CHAN_2010 = 41,
  ZRT4_BLOCK_TOROID_2010 = 42,
  ZRT4_BLOCK_RF_250K_2010 = 43,
  ZRT4_BLOCK_ENERGY_2010 = 44,
  ZRT4_BLOCK_2CHAN_2010 = 45,
  ZRT4_BLOCK_WS_2010 = 46,
  ZRT4_BLOCK_4CHAN_2010 = 47,
  ZRT4_BLOCK_CPLINTL_2010 = 48,
  ZRT4_BLOCK_GUNINTL_2010 = 49,
  ZRT4_BLOCK_MCP_2010 = 50,
  ZRT4_BLOCK_PHM_2010 = 51,
  ZRT4_BLOCK_6CHAN_2010 = 52,
  ZRT4_BLOCK_8CHAN_2010 = 53,
  ZRT4_BLOCK_3CHAN_2010 = 60,
  ZRT4_BLOCK_5CHAN_2010 = 61,
  ZRT4_BLOCK_7CHAN_2010 = 62,
  ZRT4_BLOCK_MAX_2010 = 63
};

/// A time in two 32-bit words. In an event list: seconds and microseconds.
struct time_stamp {
  std::uint32_t timeup;
  std::uint32_t timelow;
};

/// Axis of a spectrum channel; written as DIM_START, DIM_INC, DIM_NDATA, DIM_GROUPS and
/// DIM_GROUP_INC.
struct zrt4_spect_header_2010 {
  float start;
  float inc;
  std::int32_t ndata;
  std::int32_t groups;
  float group_inc;
};

/// Extended image frame header. Fields with an element name are written as that element, those with
/// "above 0" only then.
struct zrt4_image_ext_frame_head {
  std::int32_t width;       ///< DIM_WIDTH, where `aoi_width` is not above 0
  std::int32_t height;      ///< DIM_HEIGHT, where `aoi_height` is not above 0
  std::int32_t aoi_width;   ///< of the area of interest; DIM_WIDTH, above 0
  std::int32_t aoi_height;  ///< of the area of interest; DIM_HEIGHT, above 0
  std::int32_t x_start;     ///< DIM_XSTART
  std::int32_t y_start;     ///< DIM_YSTART
  std::int32_t bpp;         ///< DIM_BPP, above 0
  std::int32_t ebitpp;      ///< DIM_EBITPP, above 0
  std::int32_t hbin;        ///< DIM_XBIN, above 0
  std::int32_t vbin;        ///< DIM_YBIN, above 0
  std::int32_t source_format;
  std::int32_t image_format;
  std::uint32_t frame;
  std::uint32_t event;
  float scale_x;
  float scale_y;
  float image_rotation;
  float fspare2;  ///< as `start` of a spectrum: DIM_START, above 0
  float fspare3;  ///< as `inc`: DIM_INC, above 0
  float fspare4;  ///< as `group_inc`: DIM_GROUP_INC, above 0
  std::int32_t image_flags;
  std::int32_t ispare2;  ///< as `groups`: DIM_GROUPS, above 0
  std::int32_t ispare3;  ///< as `ndata`: DIM_NDATA, above 0
  std::int32_t ispare4;  ///< DIM_UNSIGNED, unless it is -1
  std::int32_t length;
};

/// Environment dictionary block, older generation.
struct zrt4_env_dictionary_block {
  char env_prop[80];       ///< property name, zero-terminated
  float env_ch_abs_delta;  ///< absolute change threshold
  float env_ch_rel_delta;  ///< relative change threshold
};

/// Environment dictionary block of the 2010 generation: a wider property name, nothing else.
struct zrt4_env_dictionary_block_2010 {
  char env_prop[256];
  float env_ch_abs_delta;
  float env_ch_rel_delta;
};

static_assert(sizeof(time_stamp) == 8 && offsetof(time_stamp, timelow) == 4);
static_assert(sizeof(zrt4_spect_header_2010) == 20);
static_assert(offsetof(zrt4_spect_header_2010, group_inc) == 16);
static_assert(sizeof(zrt4_image_ext_frame_head) == 100);
static_assert(offsetof(zrt4_image_ext_frame_head, frame) == 48);
static_assert(offsetof(zrt4_image_ext_frame_head, scale_x) == 56);
static_assert(offsetof(zrt4_image_ext_frame_head, image_flags) == 80);
static_assert(offsetof(zrt4_image_ext_frame_head, length) == 96);
static_assert(sizeof(zrt4_env_dictionary_block) == 88);
static_assert(offsetof(zrt4_env_dictionary_block, env_ch_abs_delta) == 80);
static_assert(sizeof(zrt4_env_dictionary_block_2010) == 264);
static_assert(offsetof(zrt4_env_dictionary_block_2010, env_ch_abs_delta) == 256);

#endif
