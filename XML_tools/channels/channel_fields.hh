#ifndef CHANNEL_FIELDS_HH
#define CHANNEL_FIELDS_HH

// The fields of a channel and of what belongs to it, each once. Both dialects' readers and writers,
// completing one channel from another, and what the tool shows, compares and checks follow these
// tables. A new field is a member of the record and a row here.

#include <cstdint>
#include <string_view>
#include <variant>

#include "event_util.hh"
#include "record_fields.hh"

namespace zrt4::detail {

/// What makes a field of a channel more than its text or number.
enum class field_role {
  plain,
  number_of_record,  // its element starts the record
  description,       // without a record it is the channel's
  event_type,        // a number, or the mask that it becomes
  data_type,
  property,      // the key, which says whether the channel is known
  daq_name,      // never written empty
  database_key,  // known when it is above 0
  size,          // the variable dialect tells its last index
};

template <class Record>
struct channel_field {
  // Texts of these sizes; another one is added here.
  std::variant<char (Record::*)[16], char (Record::*)[32], char (Record::*)[64],
               char (Record::*)[80], char (Record::*)[128], char (Record::*)[256],
               std::int32_t Record::*, std::uint32_t Record::*>
      member;
  std::string_view name;     ///< of the member
  listed row;                ///< as a value of a record, for programs: JSON, diff, stat
  std::string_view element;  ///< of the element dialect, whose order is that of the table
  std::string_view meaning;  ///< for a person who writes a document
  listed variable = {};      ///< of the variable dialect
  field_role role = field_role::plain;
  bool variable_is_read = true;  ///< not only written
};

namespace tables {

using chan = chan_descr_2010;

// Rows of a table, one line for what all fields have and one for more.
// clang-format off
constexpr channel_field<chan> channel[] = {
    // member           its name     row                   element      meaning
    //                               variable            more
    {&chan::stream,    "stream",    {"stream", 5},        "STREAM",    "data stream, a number or a mask"},
    {&chan::ev_type,   "ev_type",   {"event_type", 3},    "EVTYPE",    "event type",
                                    {"evType", 1},       field_role::event_type},
    {&chan::dtype,     "dtype",     {"data_type", 4},     "DTYPE",     "data type",
                                    {},                  field_role::data_type},
    {&chan::db_key,    "db_key",    {"db_key", 12},       "DB_KEY",    "database key; -1 is none",
                                    {"DBKey", 4},        field_role::database_key, false},
    {&chan::count,     "count",     {"count", 13},        "COUNT",     "counter"},
    {&chan::sb_name,   "sb_name",   {"server_block", 7},  "SB_NAME",   "server block that delivers the channel",
                                    {"sbName", 6},       field_role::plain, false},
    {&chan::prop_name, "prop_name", {"property", 1},      "PROP",      "control-system property, the key",
                                    {"vindo", 2},        field_role::property},
    {&chan::daq_name,  "daq_name",  {"name", 2},          "NAME",      "name inside the DAQ",
                                    {"daqName", 3},      field_role::daq_name},
    {&chan::set_point, "set_point", {"set_point", 11},    "SETPOINT",  "not 0: a set point",
                                    {"setPoint", 5}},
    {&chan::subsystem, "subsystem", {"subsystem", 6},     "SUBSYSTEM", "subsystem",
                                    {"subSystem", 7}},
    {&chan::units,     "units",     {"units", 9},         "UNITS",     "units of the values",
                                    {"units", 9}},
    {&chan::prop_desc, "prop_desc", {"description", 8},   "DESC",      "description",
                                    {"description", 8}},
    {&chan::max_size,  "max_size",  {"size", 10},         "SIZE",      "values per sample",
                                    {"lastIndex", 10},   field_role::size},
};

// A bit's title in the variable dialect is no field: it is read as the name, and written from the
// description.
constexpr channel_field<bit_descr> bit[] = {
    {&bit_descr::bit,       "bit",       {"number", 1},      "BIT",        "a bit",
                                         {},                field_role::number_of_record},
    {&bit_descr::bit_name,  "bit_name",  {"name", 2},        "BIT_NAME",   "name of the bit"},
    {&bit_descr::bit_desc,  "bit_desc",  {"description", 3}, "BIT_DESCR",  "description of the bit"},
};

constexpr channel_field<dim_descr> dimension[] = {
    {&dim_descr::dim,       "dim",       {"number", 1},      "DIM",        "a dimension",
                                         {},                field_role::number_of_record},
    {&dim_descr::dim_name,  "dim_name",  {"name", 2},        "DIM_NAME",   "name of the dimension",
                                         {"name", 1}},
    {&dim_descr::units,     "units",     {"units", 4},       "DIM_UNITS",  "units of the dimension",
                                         {"units", 3}},
    {&dim_descr::dim_desc,  "dim_desc",  {"description", 3}, "DIM_DESCR",  "description of the dimension",
                                         {"description", 2}, field_role::description},
};

constexpr channel_field<stat_descr> statistic[] = {
    {&stat_descr::stat,      "stat",      {"number", 1},      "STAT",       "a statistic",
                                          {},                field_role::number_of_record},
    {&stat_descr::stat_name, "stat_name", {"name", 2},        "STAT_NAME",  "name of the statistic"},
    {&stat_descr::units,     "units",     {"units", 4},       "STAT_UNITS", "units of the statistic"},
    {&stat_descr::stat_desc, "stat_desc", {"description", 3}, "STAT_DESCR", "description of the statistic",
                                          {},                field_role::description},
};
// clang-format on

}  // namespace tables

/// The table of a type of record.
constexpr auto& fields_of(const chan_descr_2010*) {
  return tables::channel;
}
constexpr auto& fields_of(const bit_descr*) {
  return tables::bit;
}
constexpr auto& fields_of(const dim_descr*) {
  return tables::dimension;
}
constexpr auto& fields_of(const stat_descr*) {
  return tables::statistic;
}

template <class Record, class Value>
constexpr const Record* record_of(Value Record::* /*member*/) {
  return nullptr;
}

/// The row of a member: `field_of<&dim_descr::units>()`.
template <auto Member>
constexpr const auto* field_of() {
  const auto& fields = fields_of(record_of(Member));
  for (const auto& field : fields) {
    const auto* member = std::get_if<decltype(Member)>(&field.member);
    if (member != nullptr && *member == Member) return &field;
  }
  return static_cast<decltype(&fields[0])>(nullptr);
}

/// The name that a member's element has in the element dialect.
template <auto Member>
constexpr const char* element_name() {
  return field_of<Member>()->element.data();
}

/// What else the two dialects have.
namespace element_dialect_names {
constexpr const char* root = "CHANDESCRIPTIONS";
constexpr const char* channel = "CHANNEL";
}  // namespace element_dialect_names

namespace variable_dialect_names {
constexpr const char* root = "DAQvariables";
constexpr const char* number = "DaqFloat";
constexpr const char* bits = "DaqBits";
constexpr const char* matrix = "DaqFloatMatrix";
constexpr const char* bit_title = "bitTitle";
constexpr const char* bit_attribute = "bit";
constexpr const char* dimension = "dimension";
constexpr const char* dimension_attribute = "id";
constexpr const char* first_index = "firstIndex";
constexpr const char* frequency = "freq";
}  // namespace variable_dialect_names

}  // namespace zrt4::detail

#endif
