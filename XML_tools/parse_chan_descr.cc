#include "parse_chan_descr.hh"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "channel_fields.hh"
#include "channel_records.hh"
#include "diagnostics.hh"
#include "document_head.hh"
#include "held_exception.hh"

using zrt4::detail::set_text;

namespace {

namespace names_of = zrt4::detail::element_dialect_names;
using zrt4::detail::element_name;
using chan = chan_descr_2010;

}  // namespace

const char* const tags[18][3] = {
    /* DESCR_ROOT     */ {names_of::root},
    /* DESCR_CHAN     */ {names_of::channel},
    /* DESCR_EVTYPE   */ {element_name<&chan::ev_type>()},
    /* DESCR_STREAM   */ {element_name<&chan::stream>()},
    /* DESCR_PROP     */ {element_name<&chan::prop_name>()},
    /* DESCR_NAME     */ {element_name<&chan::daq_name>()},
    /* DESCR_DESC     */ {element_name<&chan::prop_desc>()},
    /* DESCR_UNITS    */
    {element_name<&chan::units>(), element_name<&dim_descr::units>(),
     element_name<&stat_descr::units>()},
    /* DESCR_SIZE     */ {element_name<&chan::max_size>()},
    /* DESCR_BIT      */
    {element_name<&bit_descr::bit>(), element_name<&dim_descr::dim>(),
     element_name<&stat_descr::stat>()},
    /* DESCR_BIT_NAME */
    {element_name<&bit_descr::bit_name>(), element_name<&dim_descr::dim_name>(),
     element_name<&stat_descr::stat_name>()},
    /* DESCR_BIT_DESC */
    {element_name<&bit_descr::bit_desc>(), element_name<&dim_descr::dim_desc>(),
     element_name<&stat_descr::stat_desc>()},
    /* DESCR_SB_NAME  */ {element_name<&chan::sb_name>()},
    /* DESCR_DTYPE    */ {element_name<&chan::dtype>()},
    /* DESCR_COUNT    */ {element_name<&chan::count>()},
    /* DESCR_SETPNT   */ {element_name<&chan::set_point>()},
    /* DESCR_SUBSYS   */ {element_name<&chan::subsystem>()},
    /* DESCR_DBKEY    */ {element_name<&chan::db_key>()},
};

namespace {

constexpr unsigned last_row_given_out = DESCR_DTYPE;
constexpr unsigned last_column = 2;

void tell_unowned(std::initializer_list<std::string_view> parts) {
  zrt4::detail::tell({zrt4::message_topic::unowned_records, zrt4::message_severity::error, stdout},
                     parts);
}

void release_bits(const chan_descr_2010& channel) {
  if (channel.nbits != 0) {
    for (const bit_descr* bit : channel.bits) delete bit;
  } else if (!channel.bits.empty()) {
    tell_unowned({"ERROR: nbits = 0, but bits.size() > 0", " prop: ", channel.prop_name, "\n"});
  }
}

void release_dims(const chan_descr_2010& channel) {
  if (channel.ndims != 0) {
    zrt4::detail::release_dimensions(channel);
  } else if (!channel.dims.empty()) {
    tell_unowned({"ERROR: ndims = 0, but dims.size() > 0", " prop: ", channel.prop_name, "\n"});
  }
}

}  // namespace

void zrt4::detail::release_dimensions(const chan_descr_2010& channel) {
  held_exception thrown;
  for (const dim_descr* dim : channel.dims) {
    if (dim->nstats != 0) {
      for (const stat_descr* stat : dim->stats) delete stat;
    } else if (!dim->stats.empty()) {
      // The counter says that these are not owned: a leak rather than a release of foreign records.
      thrown.of([&] {
        tell_unowned({"ERROR: nstats = 0, but stats.size() > 0 (",
                      std::to_string(dim->stats.size()), ")", " prop: ", channel.prop_name, "\n"});
      });
    }
    delete dim;
  }
  thrown.release();
}

const char* get_chan_descr_root_tag(int n, int m) {
  const auto row = static_cast<unsigned>(n);
  const auto column = static_cast<unsigned>(m);
  return row <= last_row_given_out && column <= last_column ? tags[row][column] : nullptr;
}

chan_descr_2010* find_chan_entry(std::vector<chan_descr_2010*>* list, const char* prop) {
  const auto found = std::find_if(list->begin(), list->end(), [prop](const chan_descr_2010* entry) {
    return entry != nullptr && std::strcmp(entry->prop_name, prop) == 0;
  });
  return found != list->end() ? *found : nullptr;
}

bit_descr* zrt4_clone_bit_descr(bit_descr* in) {
  if (in == nullptr) return nullptr;
  auto copy = std::make_unique<bit_descr>();
  copy->bit = in->bit;
  set_text(copy->bit_name, in->bit_name);
  set_text(copy->bit_desc, in->bit_desc);
  return copy.release();
}

stat_descr* zrt4_clone_stat_descr(stat_descr* in) {
  if (in == nullptr) return nullptr;
  auto copy = std::make_unique<stat_descr>();
  copy->stat = in->stat;
  set_text(copy->stat_name, in->stat_name);
  set_text(copy->stat_desc, in->stat_desc);
  set_text(copy->units, in->units);
  return copy.release();
}

dim_descr* zrt4_clone_dim_descr(dim_descr* in) {
  if (in == nullptr) return nullptr;
  auto copy = std::make_unique<dim_descr>();
  copy->dim = in->dim;
  set_text(copy->dim_name, in->dim_name);
  set_text(copy->dim_desc, in->dim_desc);
  set_text(copy->units, in->units);
  zrt4::detail::append_copies(copy->stats, copy->nstats, in->stats, zrt4_clone_stat_descr);
  return copy.release();
}

void zrt4::detail::release_channel(const chan_descr_2010* channel) {
  if (channel == nullptr) return;
  held_exception thrown;
  thrown.of([&] { release_bits(*channel); });
  thrown.of([&] { release_dims(*channel); });
  delete channel;
  thrown.release();
}

void clean_chan_desr_list(std::vector<chan_descr_2010*>* list) {
  if (list == nullptr) return;
  // A channel with two properties is listed twice in a row.
  list->erase(std::unique(list->begin(), list->end()), list->end());
  zrt4::detail::held_exception thrown;
  for (const chan_descr_2010* channel : *list) {
    thrown.of([channel] { zrt4::detail::release_channel(channel); });
  }
  list->clear();
  thrown.release();
}

void create_isodate(char* isodate_str, time_t* t) {
  zrt4::detail::print_iso_date(isodate_str, t);
}

void create_isodate(char* isodate_str) {
  const std::time_t now = std::time(nullptr);
  zrt4::detail::print_iso_date(isodate_str, &now);
}

void set_xml_header(std::string& str) {
  zrt4::detail::set_declaration(str);
}

void add_iso_date(std::string& str) {
  zrt4::detail::append_date_line(str);
}
