#ifndef PLAIN_READERS_HH
#define PLAIN_READERS_HH

// The record readers in their plainest form, to compare the library's with: one ladder of names per
// format, linear searches, whole copies. What each must do was written down here a second time, not
// copied from the library.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "plain_parser.hh"

namespace test {

struct plain_result {
  int code = 0;
  std::string out;
  std::string err;
};

inline std::int32_t plain_decimal(const char* text) {
  return static_cast<std::int32_t>(std::strtol(text, nullptr, 10));
}
inline std::uint32_t plain_mask(std::int32_t n) {
  return 1U << (static_cast<std::uint32_t>(n) % 32U);
}

/// Reads an event list; the records are never released.
inline plain_result plain_event_list(const std::string& source, bool file,
                                     std::vector<zrt4_ev_entry*>& list) {
  plain_result result;
  plain_parser parser(source, file, result.err);
  if (parser.start() || !parser.parse()) return result.code = 1 + parser.errors(), result;
  if (parser.tag().value_or("") != "BMR") {
    result.err += "WRONG root tag: " + parser.tag().value_or("") + " must be 'BMR'\n";
    return result.code = 1 + parser.errors(), result;
  }
  bool f_ev = false, f_tp = false, f_sb = false, f_ch = false;
  zrt4_ev_entry* entry = nullptr;
  zrt4_ev_sb_list* block = nullptr;
  while (parser.parse()) {
    if (!parser.tag()) continue;
    const std::string& tag = *parser.tag();
    const char* val = parser.val() ? parser.val()->c_str() : nullptr;
    if (tag == "EVENT") {
      f_ev = true;
      f_tp = f_sb = f_ch = false;
    } else if (tag == "TYPE") {
      if (!f_ev) continue;
      if (!f_tp) {
        f_tp = true;
      } else if (val != nullptr) {
        const long type = std::strtol(val, nullptr, 10);
        f_tp = type >= 0 && type <= 32;
        if (!f_tp) continue;
        entry = new zrt4_ev_entry{
            static_cast<ZRT4_EVTYPE>(type), new std::vector<zrt4_ev_sb_list*>, {0, 0}, 0, 0};
        list.push_back(entry);
      }
    } else if (f_ev && f_tp) {
      if (val != nullptr && tag == "SBLOCK") {
        if (entry == nullptr) continue;
        block = new zrt4_ev_sb_list{};
        std::strncpy(block->sb_list, val, 254);
        block->ch_list = new std::vector<char*>;
        entry->sb_list->push_back(block);
        f_ch = false;
        f_sb = true;
      } else if (val != nullptr && f_ch && tag == "CHAN") {
        block->ch_list->push_back(strdup(val));
      } else if (tag == "CHLIST") {
        f_ch = f_ch || f_sb;
      } else if (val != nullptr && entry != nullptr) {
        std::uint32_t* field = tag == "TMASK"         ? &entry->tmask
                               : tag == "MINTIMESEC"  ? &entry->min_ev_time.timeup
                               : tag == "MINTIMEUSEC" ? &entry->min_ev_time.timelow
                               : tag == "PRIORITY"    ? &entry->priority
                                                      : nullptr;
        if (field == nullptr) continue;
        if (std::strchr(val, 'x') != nullptr) {
          std::sscanf(val, " 0x%X ", field);
        } else {
          std::sscanf(val, "%u", field);
        }
      }
    }
  }
  result.code = parser.errors();
  return result;
}

/// Reads channel descriptions; the records are never released.
class plain_channel_reader {
 public:
  plain_channel_reader(bool is_file, bool shift_types, bool delete_duplicated,
                       std::vector<chan_descr_2010*>& into)
      : file(is_file), shift(shift_types), merge(delete_duplicated), list(into) {}

  plain_result read(const std::string& source) {
    plain_parser parser(source, file, result.err);
    if (parser.start() || !parser.parse()) return result.code = 1 + parser.errors(), result;
    const std::string root = parser.tag().value_or("");
    if (root != "CHANDESCRIPTIONS" && root != "DAQvariables") {
      std::ostringstream message;
      message << "WRONG root tag: '" << root << "' must be '" << static_cast<const void*>(tags[0])
              << " or DAQvariables'\n";
      result.err += message.str();
      return result.code = 1 + parser.errors(), result;
    }
    while (parser.parse()) {
      if (!parser.tag()) continue;
      const char* val = parser.val() ? parser.val()->c_str() : nullptr;
      if (root == "CHANDESCRIPTIONS") {
        element(*parser.tag(), val);
      } else {
        variable(*parser.tag(), val, parser);
      }
    }
    result.code += parser.errors();
    return result;
  }

 private:
  void merge_into(chan_descr_2010& known, bool by_or) {
    if (by_or || known.ev_type == 0) known.ev_type |= c->ev_type;
    if (by_or || known.dtype == 0) known.dtype |= c->dtype;
    known.stream |= c->stream;
    in = false;
  }

  void element(const std::string& tag, const char* val) {
    if (tag == "CHANNEL") {
      c = new chan_descr_2010;
      in = true;
      b = nullptr;
      d = nullptr;
      s = nullptr;
      return;
    }
    if (!in || val == nullptr) return;
    if (tag == "EVTYPE") {
      const auto n = plain_decimal(val);
      c->ev_type = shift ? plain_mask(n) : static_cast<std::uint32_t>(n);
    } else if (tag == "STREAM") {
      c->stream = plain_decimal(val);
    } else if (tag == "PROP") {
      chan_descr_2010* known = merge && !file ? find_chan_entry(&list, val) : nullptr;
      if (known != nullptr) return merge_into(*known, false);
      std::strncpy(c->prop_name, val, 255);
      list.push_back(c);
    } else if (tag == "SB_NAME") {
      std::strncpy(c->sb_name, val, 255);
    } else if (tag == "DTYPE") {
      const auto n = plain_decimal(val);
      c->dtype = !shift    ? static_cast<std::uint32_t>(n)
                 : n <= 31 ? plain_mask(n)
                           : 0x80000000U + plain_mask(n - 32);
    } else if (tag == "DB_KEY") {
      c->db_key = plain_decimal(val);
    } else if (tag == "COUNT") {
      c->count = plain_decimal(val);
    } else if (tag == "SETPOINT") {
      c->set_point = plain_decimal(val);
    } else if (tag == "NAME") {
      std::strncpy(c->daq_name, val, 255);
    } else if (tag == "SUBSYSTEM") {
      std::strncpy(c->subsystem, val, 63);
    } else if (tag == "DESC") {
      std::strncpy(c->prop_desc, val, 255);
    } else if (tag == "UNITS") {
      std::strncpy(c->units, val, 15);
    } else if (tag == "SIZE") {
      c->max_size = plain_decimal(val);
    } else if (tag == "BIT") {
      b = new bit_descr;
      b->bit = plain_decimal(val);
      ++c->nbits;
      c->bits.push_back(b);
    } else if (tag == "DIM") {
      d = new dim_descr;
      d->dim = plain_decimal(val);
      if (!file) s = nullptr;
      ++c->ndims;
      c->dims.push_back(d);
    } else {
      part(tag, val);
    }
  }

  // Elements of the current bit, dimension or statistic.
  void part(const std::string& tag, const char* val) {
    if (tag == "DIM_DESCR") {
      d != nullptr ? std::strncpy(d->dim_desc, val, 79) : std::strncpy(c->prop_desc, val, 255);
    } else if (tag == "STAT_DESCR") {
      if (s != nullptr) std::strncpy(s->stat_desc, val, 79);
      if (s == nullptr && !file) std::strncpy(c->prop_desc, val, 255);
    } else if (tag == "DIM_UNITS" && d != nullptr) {
      std::strncpy(d->units, val, 15);
    } else if (tag == "STAT_UNITS" && s != nullptr && (file || d != nullptr)) {
      std::strncpy(s->units, val, 15);
    } else if (tag == "BIT_NAME" && b != nullptr) {
      std::strncpy(b->bit_name, val, 63);
    } else if (tag == "BIT_DESCR" && b != nullptr) {
      std::strncpy(b->bit_desc, val, 79);
    } else if (tag == "DIM_NAME" && d != nullptr) {
      std::strncpy(d->dim_name, val, 63);
    } else if (tag == "STAT" && d != nullptr) {
      s = new stat_descr;
      s->stat = plain_decimal(val);
      ++d->nstats;
      d->stats.push_back(s);
    } else if (tag == "STAT_NAME" && d != nullptr && s != nullptr) {
      std::strncpy(s->stat_name, val, 63);
    }
  }

  void variable(const std::string& tag, const char* val, const plain_parser& parser) {
    if (tag == "DaqFloat" || tag == "DaqBits" || tag == "DaqFloatMatrix") {
      c = new chan_descr_2010;
      f_bits = tag == "DaqBits";
      f_matrix = tag == "DaqFloatMatrix";
      if (f_matrix) d = nullptr;
      in = true;
    } else if (tag == "evType" || tag == "vindo" || tag == "daqName" || tag == "subSystem" ||
               tag == "setPoint" || tag == "description" || tag == "units" || tag == "lastIndex") {
      if (in && val != nullptr) plain_property(tag, val);
    } else if (in && f_bits) {
      if (tag == "bitTitle") bit_title(val, parser);
    } else if (in && f_matrix) {
      if (tag == "dimension") dimension(parser);
      if (tag == "name" && d != nullptr && val != nullptr) std::strncpy(d->dim_name, val, 63);
    }
  }

  void plain_property(const std::string& tag, const char* val) {
    const bool of_dimension = f_matrix && d != nullptr;
    if (tag == "evType") {
      const auto n = plain_decimal(val);
      c->ev_type = shift && !file ? plain_mask(n) : static_cast<std::uint32_t>(n);
    } else if (tag == "vindo") {
      chan_descr_2010* known = find_chan_entry(&list, val);
      if (known != nullptr) return merge_into(*known, file);
      std::strncpy(c->prop_name, val, 255);
      list.push_back(c);
    } else if (tag == "daqName") {
      std::strncpy(c->daq_name, val, 255);
    } else if (tag == "subSystem") {
      std::strncpy(c->subsystem, val, 63);
    } else if (tag == "setPoint") {
      c->set_point = plain_decimal(val);
    } else if (tag == "description") {
      of_dimension ? std::strncpy(d->dim_desc, val, 79) : std::strncpy(c->prop_desc, val, 255);
    } else if (tag == "units") {
      std::strncpy(of_dimension ? d->units : c->units, val, 15);
    } else {
      c->max_size = static_cast<std::int32_t>(static_cast<std::uint32_t>(plain_decimal(val)) + 1U);
    }
  }

  void bit_title(const char* val, const plain_parser& parser) {
    const auto number = parser.attribute("bit");
    if (!number) {
      missing(file ? "No attribute: bit found for bitTitle" : "No attributebit found for bitTitle");
      return;
    }
    auto* bit = new bit_descr;
    bit->bit = plain_decimal(number->c_str());
    if (val != nullptr) std::strncpy(bit->bit_name, val, 63);
    if (val == nullptr && !file) {
      result.out += "bitTitle is not defined for bit  " + std::to_string(bit->bit) +
                    " prop:" + c->prop_name + "\n";
    }
    ++c->nbits;
    c->bits.push_back(bit);
  }

  void dimension(const plain_parser& parser) {
    const auto number = parser.attribute("id");
    if (!number) return missing("No attribute: id found for dimension");
    d = new dim_descr;
    d->dim = plain_decimal(number->c_str());
    ++c->ndims;
    c->dims.push_back(d);
  }

  void missing(const std::string& what) {
    result.err += what + " prop: " + c->prop_name + "\n";
    ++result.code;
  }

  const bool file, shift, merge;
  std::vector<chan_descr_2010*>& list;
  plain_result result;
  chan_descr_2010* c = nullptr;
  bit_descr* b = nullptr;
  dim_descr* d = nullptr;
  stat_descr* s = nullptr;
  bool in = false, f_bits = false, f_matrix = false;
};

/// Reads a dictionary; the entries are never released.
template <class Entry>
plain_result plain_dictionary(const std::string& source, bool file, std::vector<Entry*>& list) {
  plain_result result;
  plain_parser parser(source, file, result.err);
  if (parser.start() || !parser.parse()) return result.code = 1 + parser.errors(), result;
  if (parser.tag().value_or("") != "ENVINDEXDICT") {
    result.err += "WRONG root tag: '" + parser.tag().value_or("") + "' must be 'ENVINDEXDICT'\n";
    return result.code = 1 + parser.errors(), result;
  }
  Entry* ent = nullptr;
  bool f_indx = false, f_prop = false, pushed = false;
  while (parser.parse()) {
    if (!parser.tag()) continue;
    const std::string& tag = *parser.tag();
    const char* val = parser.val() ? parser.val()->c_str() : nullptr;
    if (tag == "CHANNEL") {
      if (ent == nullptr || pushed) ent = static_cast<Entry*>(std::malloc(sizeof(Entry)));
      std::memset(ent, 0, sizeof(Entry));
      ent->index = -1;
      f_indx = f_prop = pushed = false;
    } else if (ent == nullptr || val == nullptr) {
      continue;
    } else if (tag == "INDEX") {
      ent->index = plain_decimal(val);
      f_indx = true;
      if (!f_prop) continue;
      list.push_back(ent);
      f_indx = false;
      pushed = true;
    } else if (tag == "DABS") {
      std::sscanf(val, "%f", &ent->data.env_ch_abs_delta);
    } else if (tag == "DREL") {
      std::sscanf(val, "%f", &ent->data.env_ch_rel_delta);
    } else if (tag == "PROP") {
      std::strncpy(ent->data.env_prop, val, sizeof ent->data.env_prop - 1);
      f_prop = true;
      if (!f_indx) continue;
      list.push_back(ent);
      f_prop = false;
      pushed = true;
    }
  }
  result.code = parser.errors();
  return result;
}

}  // namespace test

#endif
