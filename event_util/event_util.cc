#include "event_util.hh"

#include <cstddef>

namespace {

constexpr const char* event_names[] = {"HB",       "NORMAL",
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

constexpr const char* unassigned = nullptr;

constexpr const char* block_names[] = {
    unassigned,      "UPD",          "ENV_DICT",      "ENV",
    "BOR",           "EOR",          "BPM",           "BPM_Z",
    "BPM_S",         "SINGLE",       "TOROID",        "RF_250K",
    "ENERGY",        "IMAGE",        "WS_FAST",       "WS_SLOW",
    "CPLINTL",       "GUNINTL",      "MCP",           "PHM",
    "WSS_RAW",       "WSS_COR",      "NAME_VALUE",    "EQDATA",
    "IMG_ROI1",      "IMG_ROI2",     "IMG_ROI3",      "IMAGE_EXT",
    "GENERIC_SPECT", unassigned,     unassigned,      "UPD_DONT_USE_31",
    unassigned,      "UPD_2010",     "ENV_DICT_2010", "ENV_2010",
    "BOR_2010",      "EOR_2010",     "BPM_2010",      "BPM_Z_2010",
    "BPM_S_2010",    "1CHAN_2010",   "TOROID_2010",   "RF_250K_2010",
    "ENERGY_2010",   "2CHAN_2010",   "WS_2010",       "4CHAN_2010",
    "CPLINTL_2010",  "GUNINTL_2010", "MCP_2010",      "PHM_2010",
    "6CHAN_2010",    "8CHAN_2010",   unassigned,      unassigned,
    unassigned,      unassigned,     unassigned,      unassigned,
    "3CHAN_2010",    "5CHAN_2010",   "7CHAN_2010",    "MAX_2010"};

static_assert(sizeof event_names / sizeof *event_names == ZRT4_EV_EVMAX + 1);
static_assert(sizeof block_names / sizeof *block_names == ZRT4_BLOCK_MAX_2010 + 1);

template <std::size_t N>
const char* name_of(const char* const (&names)[N], int number) {
  const auto index = static_cast<unsigned>(number);
  return index < N && names[index] != unassigned ? names[index] : "UNKNOWN";
}

}  // namespace

const char* event_name_itoa(int evtype) {
  return name_of(event_names, evtype);
}

const char* block_name_itoa(int dtype) {
  return name_of(block_names, dtype);
}

int get_event_struct_type(int evtype) {
  const auto type = static_cast<unsigned>(evtype);
  if (type >= ZRT4_EV_EVMAX) return ZRT4_EV_STRUCT_UNDEF;
  if (type >= ZRT4_EV_28) return ZRT4_EV_STRUCT_UNKNOWN;
  if (type <= ZRT4_EV_UPD) return ZRT4_EV_STRUCT_GLOBAL;
  const bool main_linac = type == ZRT4_EV_LLRF_ML || type == ZRT4_EV_TOROID_ML;
  return main_linac ? ZRT4_EV_STRUCT_ML : ZRT4_EV_STRUCT_LOCAL;
}
