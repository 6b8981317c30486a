#ifndef HANDMADE_CHANNELS_HH
#define HANDMADE_CHANNELS_HH

// Channel description records made by hand, held and released with the test.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "parse_chan_descr.hh"

namespace test {

template <std::size_t Size>
void set(char (&field)[Size], const std::string& text) {
  field[text.copy(field, Size - 1)] = '\0';
}

class records {
 public:
  records() = default;
  records(const records&) = delete;
  records& operator=(const records&) = delete;

  chan_descr_2010& add(const std::string& prop, const std::string& name = "") {
    auto& one = *channels.emplace_back(std::make_unique<chan_descr_2010>());
    set(one.prop_name, prop);
    set(one.daq_name, name);
    list.push_back(&one);
    return one;
  }

  bit_descr& add_bit(chan_descr_2010& channel, int number, const std::string& name,
                     const std::string& description) {
    auto& one = *bits.emplace_back(std::make_unique<bit_descr>());
    one.bit = number;
    set(one.bit_name, name);
    set(one.bit_desc, description);
    channel.bits.push_back(&one);
    ++channel.nbits;
    return one;
  }

  dim_descr& add_dim(chan_descr_2010& channel, int number, const std::string& name = "",
                     const std::string& description = "", const std::string& units = "") {
    auto& one = *dims.emplace_back(std::make_unique<dim_descr>());
    one.dim = number;
    set(one.dim_name, name);
    set(one.dim_desc, description);
    set(one.units, units);
    channel.dims.push_back(&one);
    ++channel.ndims;
    return one;
  }

  stat_descr& add_stat(dim_descr& dim, int number, const std::string& name,
                       const std::string& description, const std::string& units) {
    auto& one = *stats.emplace_back(std::make_unique<stat_descr>());
    one.stat = number;
    set(one.stat_name, name);
    set(one.stat_desc, description);
    set(one.units, units);
    dim.stats.push_back(&one);
    ++dim.nstats;
    return one;
  }

  std::vector<chan_descr_2010*> list;

 private:
  std::vector<std::unique_ptr<chan_descr_2010>> channels;
  std::vector<std::unique_ptr<bit_descr>> bits;
  std::vector<std::unique_ptr<dim_descr>> dims;
  std::vector<std::unique_ptr<stat_descr>> stats;
};

inline constexpr const char* declaration = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n";

/// The document into a string, in which `<isodate>` lines never stand.
inline std::string dumped(records& from, int format, std::vector<dim_params*>* dims = nullptr) {
  std::string document;
  if (dump_chan_desr(&from.list, nullptr, DUMP_XML_FILE, format, -1, &document, dims) != 0) {
    return "failed";
  }
  return document;
}

}  // namespace test

#endif
