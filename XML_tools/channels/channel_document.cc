#include "channel_document.hh"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string_view>

#include "attr_tags_functions.hh"
#include "number_text.hh"
#include "parse_chan_descr.hh"
#include "xml_writer.hh"

namespace zrt4::detail {

namespace {

using chan = chan_descr_2010;
using spectrum = zrt4_spect_header_2010;
using image = zrt4_image_ext_frame_head;

std::string_view text_of(const char* text) {
  return text;
}
number_text text_of(std::int32_t number) {
  return decimal(number);
}
number_text text_of(std::uint32_t number) {
  return decimal(static_cast<std::int32_t>(number));
}
number_text text_of(float number) {
  return scientific(static_cast<double>(number));
}

/// The tags of an element as the compiler spells them out. Writing one copies its whole memory,
/// which takes a machine word or two instead of a call, and goes on behind its text.
class line_tags {
 public:
  static constexpr std::size_t longest_name = 13;
  static constexpr std::size_t opening_room = longest_name + 3;
  static constexpr std::size_t closing_room = longest_name + 4;

  template <std::size_t Size>
  constexpr line_tags(const char (&name)[Size]) : length(Size - 1) {
    static_assert(Size - 1 <= longest_name);
    opening[0] = closing[0] = '<';
    closing[1] = '/';
    for (std::size_t i = 0; i < length; ++i) opening[i + 1] = closing[i + 2] = name[i];
    opening[length + 1] = closing[length + 2] = '>';
    closing[length + 3] = '\n';
  }

  char* write_opening(char* at) const {
    std::memcpy(at, opening, opening_room);
    return at + length + 2;
  }
  char* write_closing(char* at) const {
    std::memcpy(at, closing, closing_room);
    return at + length + 4;
  }

 private:
  std::size_t length;
  char opening[opening_room]{};
  char closing[closing_room]{};
};

constexpr std::size_t longest_value = sizeof(chan::prop_name) - 1;
constexpr std::size_t line_room = line_tags::opening_room + longest_value + line_tags::closing_room;

/// One line `<name>value</name>` of a record, left out where `written` says so.
template <class Record>
struct leaf {
  line_tags tags;
  char* (*write_value)(char* at, const Record& record);
  bool (*written)(const Record& record) = nullptr;
};

// `Value` is a field or a function of the record.
template <auto Value, class Record>
char* put(char* at, const Record& record) {
  const auto value = text_of(std::invoke(Value, record));
  return at + std::string_view(value).copy(at, longest_value);
}

template <auto Field, class Record>
bool positive(const Record& record) {
  return record.*Field > 0;
}

template <class Record, std::size_t Count>
void append_leaves(std::string& out, const leaf<Record> (&leaves)[Count], const Record& record) {
  char lines[Count * line_room];
  char* at = lines;
  for (const leaf<Record>& one : leaves) {
    if (one.written != nullptr && !one.written(record)) continue;
    at = one.tags.write_opening(at);
    at = one.write_value(at, record);
    at = one.tags.write_closing(at);
  }
  out.append(lines, at);
}

// The element dialect.

constexpr leaf<chan> channel_elements[] = {
    {"STREAM", put<&chan::stream>},      {"EVTYPE", put<&chan::ev_type>},
    {"DTYPE", put<&chan::dtype>},        {"DB_KEY", put<&chan::db_key>},
    {"COUNT", put<&chan::count>},        {"SB_NAME", put<&chan::sb_name>},
    {"PROP", put<&chan::prop_name>},     {"NAME", put<written_daq_name>},
    {"SETPOINT", put<&chan::set_point>}, {"SUBSYSTEM", put<&chan::subsystem>},
    {"UNITS", put<&chan::units>},        {"DESC", put<&chan::prop_desc>},
    {"SIZE", put<&chan::max_size>},
};

constexpr leaf<bit_descr> bit_elements[] = {
    {"BIT_NAME", put<&bit_descr::bit_name>},
    {"BIT_DESCR", put<&bit_descr::bit_desc>},
};

constexpr leaf<dim_descr> dim_elements[] = {
    {"DIM_NAME", put<&dim_descr::dim_name>},
    {"DIM_UNITS", put<&dim_descr::units>},
    {"DIM_DESCR", put<&dim_descr::dim_desc>},
};

constexpr leaf<stat_descr> stat_elements[] = {
    {"STAT_NAME", put<&stat_descr::stat_name>},
    {"STAT_UNITS", put<&stat_descr::units>},
    {"STAT_DESCR", put<&stat_descr::stat_desc>},
};

constexpr leaf<spectrum> spectrum_elements[] = {
    {"DIM_START", put<&spectrum::start>},         {"DIM_INC", put<&spectrum::inc>},
    {"DIM_NDATA", put<&spectrum::ndata>},         {"DIM_GROUPS", put<&spectrum::groups>},
    {"DIM_GROUP_INC", put<&spectrum::group_inc>},
};

// The area of interest is the image where there is one.
std::int32_t seen_width(const image& head) {
  return head.aoi_width > 0 ? head.aoi_width : head.width;
}
std::int32_t seen_height(const image& head) {
  return head.aoi_height > 0 ? head.aoi_height : head.height;
}
bool sign_is_known(const image& head) {
  return head.ispare4 != -1;
}

constexpr leaf<image> image_elements[] = {
    {"DIM_XSTART", put<&image::x_start>},
    {"DIM_WIDTH", put<seen_width>},
    {"DIM_XBIN", put<&image::hbin>, positive<&image::hbin>},
    {"DIM_YSTART", put<&image::y_start>},
    {"DIM_HEIGHT", put<seen_height>},
    {"DIM_YBIN", put<&image::vbin>, positive<&image::vbin>},
    {"DIM_BPP", put<&image::bpp>, positive<&image::bpp>},
    {"DIM_EBITPP", put<&image::ebitpp>, positive<&image::ebitpp>},
    {"DIM_UNSIGNED", put<&image::ispare4>, sign_is_known},
    {"DIM_START", put<&image::fspare2>, positive<&image::fspare2>},
    {"DIM_INC", put<&image::fspare3>, positive<&image::fspare3>},
    {"DIM_NDATA", put<&image::ispare3>, positive<&image::ispare3>},
    {"DIM_GROUPS", put<&image::ispare2>, positive<&image::ispare2>},
    {"DIM_GROUP_INC", put<&image::fspare4>, positive<&image::fspare4>},
};

/// The dimension parameters of each channel: those of the first usable entry with its DAQ name.
class parameter_table {
  auto name_of() const {
    return [this](std::uint32_t at) { return used[at]->name; };
  }

 public:
  explicit parameter_table(const std::vector<dim_params*>* entries) {
    if (entries == nullptr) return;
    for (const dim_params* entry : *entries) {
      if (!usable(entry)) continue;
      const auto next = static_cast<std::uint32_t>(used.size());
      if (slots.find_or_add(entry->name, next, name_of()) == next) used.push_back(entry);
    }
  }

  const dim_params* find(const char* daq_name) const {
    const std::uint32_t at = slots.find(daq_name, name_of());
    return at != text_slots::none ? used[at] : nullptr;
  }

 private:
  static bool usable(const dim_params* entry) {
    return entry != nullptr && entry->name != nullptr && entry->num != 0 &&
           (entry->params != nullptr || entry->iparams != nullptr);
  }

  std::vector<const dim_params*> used;
  text_slots slots;
};

class element_writer {
 public:
  static constexpr const char* root = "CHANDESCRIPTIONS";

  explicit element_writer(const std::vector<dim_params*>* dims) : parameters(dims) {}

  void append(std::string& out, const chan& channel, std::size_t position) const {
    START_TAGN(out, "CHANNEL");
    append_leaves(out, channel_elements, channel);
    for (const bit_descr* bit : channel.bits) {
      begin_numbered(out, "BIT", bit->bit);
      append_leaves(out, bit_elements, *bit);
      END_TAGN(out, "BIT");
    }
    const dim_params* entry = parameters.find(written_daq_name(channel));
    if (!channel.dims.empty()) {
      for (const dim_descr* dim : channel.dims) append_dimension(out, *dim, entry);
    } else if (entry != nullptr) {
      append_bare_dimensions(out, *entry, position);
    }
    END_TAGN(out, "CHANNEL");
  }

 private:
  // The line end stays inside the element's text, as readers of these files have always seen it.
  static void begin_numbered(std::string& out, const char* name, std::int32_t number) {
    START_TAG(out, name);
    out += decimal(number);
    out += '\n';
  }

  static void append_dimension(std::string& out, const dim_descr& dim, const dim_params* entry) {
    begin_numbered(out, "DIM", dim.dim);
    append_leaves(out, dim_elements, dim);
    for (const stat_descr* stat : dim.stats) {
      begin_numbered(out, "STAT", stat->stat);
      append_leaves(out, stat_elements, *stat);
      END_TAGN(out, "STAT");
    }
    if (entry != nullptr && dim.dim >= 0 && entry->num > dim.dim) {
      if (entry->params != nullptr) {
        append_leaves(out, spectrum_elements, entry->params[dim.dim]);
      } else {
        append_leaves(out, image_elements, entry->iparams[dim.dim]);
      }
    }
    END_TAGN(out, "DIM");
  }

  // Of the image heads, the one at the channel's position in the list is written for every
  // dimension: that is how callers lay them out for channels without described dimensions.
  static void append_bare_dimensions(std::string& out, const dim_params& entry,
                                     std::size_t position) {
    for (std::int32_t i = 0; i < entry.num; ++i) {
      begin_numbered(out, "DIM", i);
      if (entry.params != nullptr) append_leaves(out, spectrum_elements, entry.params[i]);
      if (entry.iparams != nullptr) append_leaves(out, image_elements, entry.iparams[position]);
      END_TAGN(out, "DIM");
    }
  }

  const parameter_table parameters;
};

// The variable dialect.

bool is_array(const chan& channel) {
  return channel.max_size > 1;
}
std::int32_t first_index(const chan& /*channel*/) {
  return 0;
}
std::int32_t last_index(const chan& channel) {
  return channel.max_size - 1;
}
std::int32_t frequency(const chan& channel) {
  const int structure = get_event_struct_type(static_cast<int>(channel.ev_type));
  return structure == ZRT4_EV_STRUCT_LOCAL || structure == ZRT4_EV_STRUCT_ML ? -1 : 1;
}

constexpr leaf<chan> variable_elements[] = {
    {"evType", put<&chan::ev_type>},
    {"vindo", put<&chan::prop_name>},
    {"daqName", put<written_daq_name>},
    {"DBKey", put<&chan::db_key>},
    {"setPoint", put<&chan::set_point>},
    {"sbName", put<&chan::sb_name>},
    {"subSystem", put<&chan::subsystem>},
    {"description", put<&chan::prop_desc>},
    {"units", put<&chan::units>},
    {"firstIndex", put<first_index>, is_array},
    {"lastIndex", put<last_index>, is_array},
};

constexpr leaf<dim_descr> dimension_elements[] = {
    {"name", put<&dim_descr::dim_name>},
    {"description", put<&dim_descr::dim_desc>},
    {"units", put<&dim_descr::units>},
};

class variable_writer {
 public:
  static constexpr const char* root = "DAQvariables";

  void append(std::string& out, const chan& channel, std::size_t /*position*/) {
    const char* const kind = kind_of(channel);
    START_TAGN(out, kind);
    append_leaves(out, variable_elements, channel);
    for (const bit_descr* bit : channel.bits) {
      const number_text number = decimal(bit->bit);
      value[0] = number.c_str();
      START_TAG_ATTRNS(out, "bitTitle", &bit_attribute, &value);
      out += bit->bit_desc;
      END_TAGN(out, "bitTitle");
    }
    for (const dim_descr* dim : channel.dims) {
      const number_text number = decimal(dim->dim);
      value[0] = number.c_str();
      START_TAG_ATTRNNS(out, "dimension", &dimension_attribute, &value);
      append_leaves(out, dimension_elements, *dim);
      END_TAGN(out, "dimension");
    }
    append_leaf(out, "freq", decimal(frequency(channel)));
    END_TAGN(out, kind);
  }

 private:
  static const char* kind_of(const chan& channel) {
    if (channel.max_size != 1) return "DaqFloatMatrix";
    return channel.bits.empty() ? "DaqFloat" : "DaqBits";
  }

  const std::vector<const char*> bit_attribute{"bit"};
  const std::vector<const char*> dimension_attribute{"id"};
  std::vector<const char*> value{nullptr};
};

// What the first channels took tells well enough how long a document becomes; when they are the
// only long ones, no more is asked for than the channels themselves take twice.
constexpr std::size_t measured_channels = 64;

std::size_t length_with(std::size_t channels, const std::string& measured) {
  const std::size_t each = measured.size() / measured_channels;
  return channels * std::min(each + each / 8, 2 * sizeof(chan));
}

template <class Writer>
std::string document_of(const std::vector<chan*>& list, bool dated, Writer writer,
                        std::string* destination) {
  std::string out = begin_document(destination);
  START_TAGN(out, Writer::root);
  if (dated) add_iso_date(out);
  for_each_property(list, [&](const chan& channel, std::size_t position) {
    if (position == measured_channels) expect_length(out, length_with(list.size(), out));
    writer.append(out, channel, position);
  });
  END_TAGN(out, Writer::root);
  end_document(out);
  return out;
}

}  // namespace

std::string chan_descr_document(const std::vector<chan*>& list, int format, bool in_file,
                                const std::vector<dim_params*>* dims, std::string* destination) {
  if (format == MORV_FORMAT) return document_of(list, false, variable_writer(), destination);
  return document_of(list, in_file, element_writer(dims), destination);
}

}  // namespace zrt4::detail
