#include "parse_chan_descr.hh"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "diagnostics.hh"
#include "channel_records.hh"

using zrt4::detail::say;
using zrt4::detail::set_text;

const char* const tags[18][3] = {
    /* DESCR_ROOT     */ {"CHANDESCRIPTIONS", nullptr, nullptr},
    /* DESCR_CHAN     */ {"CHANNEL", nullptr, nullptr},
    /* DESCR_EVTYPE   */ {"EVTYPE", nullptr, nullptr},
    /* DESCR_STREAM   */ {"STREAM", nullptr, nullptr},
    /* DESCR_PROP     */ {"PROP", nullptr, nullptr},
    /* DESCR_NAME     */ {"NAME", nullptr, nullptr},
    /* DESCR_DESC     */ {"DESC", nullptr, nullptr},
    /* DESCR_UNITS    */ {"UNITS", "DIM_UNITS", "STAT_UNITS"},
    /* DESCR_SIZE     */ {"SIZE", nullptr, nullptr},
    /* DESCR_BIT      */ {"BIT", "DIM", "STAT"},
    /* DESCR_BIT_NAME */ {"BIT_NAME", "DIM_NAME", "STAT_NAME"},
    /* DESCR_BIT_DESC */ {"BIT_DESCR", "DIM_DESCR", "STAT_DESCR"},
    /* DESCR_SB_NAME  */ {"SB_NAME", nullptr, nullptr},
    /* DESCR_DTYPE    */ {"DTYPE", nullptr, nullptr},
    /* DESCR_COUNT    */ {"COUNT", nullptr, nullptr},
    /* DESCR_SETPNT   */ {"SETPOINT", nullptr, nullptr},
    /* DESCR_SUBSYS   */ {"SUBSYSTEM", nullptr, nullptr},
    /* DESCR_DBKEY    */ {"DB_KEY", nullptr, nullptr},
};

namespace {

constexpr unsigned last_row_given_out = DESCR_DTYPE;
constexpr unsigned last_column = 2;

void release_bits(const chan_descr_2010& channel) {
  if (channel.nbits != 0) {
    for (const bit_descr* bit : channel.bits) delete bit;
  } else if (!channel.bits.empty()) {
    say(stdout, {"ERROR: nbits = 0, but bits.size() > 0", " prop: ", channel.prop_name, "\n"});
  }
}

void release_dims(const chan_descr_2010& channel) {
  if (channel.ndims != 0) {
    zrt4::detail::release_dimensions(channel);
  } else if (!channel.dims.empty()) {
    say(stdout, {"ERROR: ndims = 0, but dims.size() > 0", " prop: ", channel.prop_name, "\n"});
  }
}

}  // namespace

void zrt4::detail::release_dimensions(const chan_descr_2010& channel) {
  for (const dim_descr* dim : channel.dims) {
    if (dim->nstats != 0) {
      for (const stat_descr* stat : dim->stats) delete stat;
    } else if (!dim->stats.empty()) {
      // The counter says that these are not owned: a leak rather than a release of foreign records.
      say(stdout, {"ERROR: nstats = 0, but stats.size() > 0 (", std::to_string(dim->stats.size()),
                   ")", " prop: ", channel.prop_name, "\n"});
    }
    delete dim;
  }
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
  release_bits(*channel);
  release_dims(*channel);
  delete channel;
}

void clean_chan_desr_list(std::vector<chan_descr_2010*>* list) {
  if (list == nullptr) return;
  // A channel with two properties is listed twice in a row.
  list->erase(std::unique(list->begin(), list->end()), list->end());
  for (const chan_descr_2010* channel : *list) zrt4::detail::release_channel(channel);
  list->clear();
}
