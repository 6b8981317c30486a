#include "known_elements.hh"

#include "event_util.hh"
#include "parse_ev_list.hh"

namespace {

constexpr known_element starts_record(std::string_view name, std::string_view needs,
                                      std::string_view needs_too = {}) {
  return {name, text_role::none, 0, {}, nullptr, {needs, needs_too}};
}

template <class Record, class Text>
constexpr std::size_t kept(Text Record::*) {
  return sizeof(Text) - 1;
}

constexpr auto number = text_role::number;
constexpr auto name = text_role::name;
constexpr auto property = text_role::property;

// One less than the record could hold: the reader has always cut here.
constexpr std::size_t kept_of_server_block = kept(&zrt4_ev_sb_list::sb_list) - 1;

constexpr known_element events[] = {
    {"BMR"},
    starts_record("EVENT", "TYPE"),
    {"TYPE", text_role::event_type},
    {"TMASK", number},
    {"MINTIMESEC", number},
    {"MINTIMEUSEC", number},
    {"PRIORITY", number},
    {"SBLOCK", name, kept_of_server_block},
    {"CHLIST"},
    {"CHAN", name},
};

using chan = chan_descr_2010;

constexpr known_element channels[] = {
    {"CHANDESCRIPTIONS"},
    starts_record("CHANNEL", "PROP"),
    {"EVTYPE", text_role::event_type},
    {"DTYPE", text_role::data_type},
    {"STREAM", number},
    {"PROP", property, kept(&chan::prop_name)},
    {"SB_NAME", name, kept(&chan::sb_name)},
    {"DB_KEY", number},
    {"COUNT", number},
    {"SETPOINT", number},
    {"NAME", name, kept(&chan::daq_name)},
    {"SUBSYSTEM", name, kept(&chan::subsystem)},
    {"DESC", name, kept(&chan::prop_desc)},
    {"UNITS", name, kept(&chan::units)},
    {"SIZE", number},
    {"BIT", number},
    {"BIT_NAME", name, kept(&bit_descr::bit_name)},
    {"BIT_DESCR", name, kept(&bit_descr::bit_desc)},
    {"DIM", number},
    {"DIM_NAME", name, kept(&dim_descr::dim_name)},
    {"DIM_DESCR", name, kept(&dim_descr::dim_desc)},
    {"DIM_UNITS", name, kept(&dim_descr::units)},
    {"STAT", number},
    {"STAT_NAME", name, kept(&stat_descr::stat_name)},
    {"STAT_DESCR", name, kept(&stat_descr::stat_desc)},
    {"STAT_UNITS", name, kept(&stat_descr::units)},
    // Written, and skipped when read.
    {"isodate"},
    {"DIM_START"},
    {"DIM_INC"},
    {"DIM_NDATA"},
    {"DIM_GROUPS"},
    {"DIM_GROUP_INC"},
    {"DIM_XSTART"},
    {"DIM_WIDTH"},
    {"DIM_XBIN"},
    {"DIM_YSTART"},
    {"DIM_HEIGHT"},
    {"DIM_YBIN"},
    {"DIM_BPP"},
    {"DIM_EBITPP"},
    {"DIM_UNSIGNED"},
};

constexpr known_element variables[] = {
    {"DAQvariables"},
    starts_record("DaqFloat", "vindo"),
    starts_record("DaqBits", "vindo"),
    starts_record("DaqFloatMatrix", "vindo"),
    {"evType", text_role::event_type},
    {"vindo", property, kept(&chan::prop_name)},
    {"daqName", name, kept(&chan::daq_name)},
    {"subSystem", name, kept(&chan::subsystem)},
    {"setPoint", number},
    {"description", name, kept(&dim_descr::dim_desc), "dimension"},
    {"description", name, kept(&chan::prop_desc)},
    {"units", name, kept(&chan::units)},
    {"lastIndex", number},
    {"bitTitle", name, kept(&bit_descr::bit_name), {}, "bit"},
    {"dimension", text_role::none, 0, {}, "id"},
    {"name", name, kept(&dim_descr::dim_name)},
    // Written, and skipped when read.
    {"isodate"},
    {"DBKey"},
    {"sbName"},
    {"firstIndex"},
    {"freq"},
};

// The older records hold less; what they cut is worth knowing.
constexpr known_element dictionary[] = {
    {"ENVINDEXDICT"},  starts_record("CHANNEL", "INDEX", "PROP"),
    {"INDEX", number}, {"PROP", property, kept(&zrt4_env_dictionary_block::env_prop)},
    {"DABS", number},  {"DREL", number},
    {"isodate"},
};

}  // namespace

constexpr known_elements event_elements(events);
constexpr known_elements channel_elements(channels);
constexpr known_elements variable_elements(variables);
constexpr known_elements dictionary_elements(dictionary);
constexpr known_elements camera_elements;
