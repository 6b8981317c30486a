#ifndef EVENT_UTIL_HH
#define EVENT_UTIL_HH

/// Channel description records, and the three functions of the event-utility library, which a site
/// may replace by its own. Texts are zero-terminated, in the local code page. What holds for the
/// whole library stands in docs/contract.md.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "event.hh"
#include "zrt4_export.hh"

/// Structure class of an event type, see `get_event_struct_type`. A site's own library may give out
/// further numbers; `chan_selector` takes 10 to 15 for classes of the main linac.
enum ZRT4_EV_STRUCT_TYPE {
  ZRT4_EV_STRUCT_UNKNOWN = 0,
  ZRT4_EV_STRUCT_LOCAL = 1,
  ZRT4_EV_STRUCT_GLOBAL = 2,
  ZRT4_EV_STRUCT_ML = 3,
  ZRT4_EV_STRUCT_UNDEF = 4
};

/// One bit of a bit-field channel.
struct bit_descr {
  std::int32_t bit = 0;  ///< bit number
  char bit_name[64] = {};
  char bit_desc[80] = {};
};

/// One statistic of a dimension.
struct stat_descr {
  std::int32_t stat = 0;  ///< statistic number
  char stat_name[64] = {};
  char stat_desc[80] = {};
  char units[16] = {};
};

/// One dimension of an array channel. `nstats` counts the records of `stats` and decides whether
/// they are released with the list: only where it is not zero. Who appends one counts it.
struct dim_descr {
  std::int32_t dim = 0;  ///< dimension number
  char dim_name[64] = {};
  char dim_desc[80] = {};
  char units[16] = {};
  std::int32_t nstats = 0;
  std::vector<stat_descr*> stats;
};

/// One channel. `nbits` and `ndims` count the records of `bits` and `dims` and decide whether they
/// are released with the list: only where the counter is not zero. Who appends one counts it.
struct chan_descr_2010 {
  std::int32_t stream = 0;    ///< data stream, number or mask; merged by bitwise OR
  std::uint32_t ev_type = 0;  ///< event type number, or the mask 1 << number when read shifted
  std::int32_t count = 0;     ///< counter attached to the channel
  std::uint32_t dtype = 0;    ///< data type number, or a mask when read shifted
  std::int32_t db_key = -1;   ///< database key, -1 when there is none
  char prop_name[256] = {};   ///< control-system property, the key of a channel
  char daq_name[256] = {};    ///< name inside the DAQ
  char prop_desc[256] = {};   ///< free description
  char units[16] = {};
  std::int32_t max_size = 1;  ///< values per sample
  std::int32_t nbits = 0;
  std::vector<bit_descr*> bits;
  std::int32_t ndims = 0;
  std::vector<dim_descr*> dims;
  char sb_name[256] = {};      ///< server block that delivers the channel
  std::int32_t set_point = 0;  ///< not 0: a set point
  char subsystem[64] = {};
};

/// Dimension parameters of one channel, handed to a dump. The caller owns everything.
struct dim_params {
  char* name = nullptr;                      ///< DAQ name of the channel
  std::int32_t num = 0;                      ///< number of dimensions; 0: the entry is ignored
  zrt4_spect_header_2010* params = nullptr;  ///< `num` of them, by dimension number; may be null
  /// `num` of them, by dimension number; or, for a channel without described dimensions, as many as
  /// the dumped list has channels, by the channel's position in it; may be null. Not used for
  /// described dimensions beside `params`.
  zrt4_image_ext_frame_head* iparams = nullptr;
};

/// A channel description as a blob: 8 bytes of header in host byte order, then the XML text.
struct zrt4_xml_chan_descr_header {
  std::uint32_t pattern;  ///< 0xCDECDEF2 or 0xCDECDEF3
  std::int32_t length;    ///< bytes of the whole blob, header included
  char xml[1];            ///< length - 8 bytes of text, not necessarily zero-terminated
};

/// Display name of an event type number: its enumerator without "ZRT4_EV_" ("HB", "NORMAL", ...,
/// "28" to "31", "EVMAX"); "UNKNOWN" for any other number. The text is constant and never freed.
ZRT4_EXPORT const char* event_name_itoa(int evtype);

/// Display name of a data type number: its enumerator without "ZRT4_" and without the word "BLOCK"
/// and the underscore beside it ("UPD", "BPM_Z", "1CHAN_2010", ...); "UNKNOWN" for an unassigned
/// number. The text is constant.
ZRT4_EXPORT const char* block_name_itoa(int dtype);

/// Structure class of an event type number, a `ZRT4_EV_STRUCT_TYPE`: global for HB, NORMAL, BOR,
/// EOR, ENV and UPD; ML for LLRF_ML and TOROID_ML; local for every other named type from IMAGE to
/// SPECTR_5; unknown for 28 to 31; undefined for 32 and every number outside 0 to 32.
ZRT4_EXPORT int get_event_struct_type(int evtype);

static_assert(sizeof(bit_descr) == 148 && offsetof(bit_descr, bit_desc) == 68);
static_assert(sizeof(stat_descr) == 164 && offsetof(stat_descr, units) == 148);
static_assert(offsetof(dim_descr, units) == 148 && offsetof(dim_descr, nstats) == 164);
static_assert(offsetof(dim_descr, stats) == 168);
static_assert(offsetof(chan_descr_2010, prop_name) == 20);
static_assert(offsetof(chan_descr_2010, units) == 788);
static_assert(offsetof(chan_descr_2010, nbits) == 808);
static_assert(offsetof(zrt4_xml_chan_descr_header, xml) == 8);
#ifndef _GLIBCXX_DEBUG  // the checked standard library has larger vectors
static_assert(sizeof(dim_descr) == (sizeof(void*) == 8 ? 192 : 180));
static_assert(offsetof(chan_descr_2010, bits) == (sizeof(void*) == 8 ? 816 : 812));
static_assert(offsetof(chan_descr_2010, ndims) == (sizeof(void*) == 8 ? 840 : 824));
static_assert(offsetof(chan_descr_2010, dims) == (sizeof(void*) == 8 ? 848 : 828));
static_assert(offsetof(chan_descr_2010, sb_name) == (sizeof(void*) == 8 ? 872 : 840));
static_assert(offsetof(chan_descr_2010, subsystem) == (sizeof(void*) == 8 ? 1132 : 1100));
static_assert(sizeof(chan_descr_2010) == (sizeof(void*) == 8 ? 1200 : 1164));
static_assert(sizeof(dim_params) == (sizeof(void*) == 8 ? 32 : 16));
#endif

#endif
