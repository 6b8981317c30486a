#include "writable.hh"

#include "latin1.hh"
#include "message.hh"

namespace {

class findings {
 public:
  explicit findings(const std::string& name) : file(name) {}

  void text(const std::string& channel, const char* field, const char* content) {
    bool fatal = false;
    const std::string why = unwritable(content, fatal);
    if (why.empty()) return;
    complain(file, "channel '" + channel + "', field " + field + ": the text " + why);
    result.wholly = false;
    result.at_all = result.at_all && !fatal;
  }

  writable result;

 private:
  const std::string& file;
};

}  // namespace

writable check_channels(const std::string& file, const zrt4::channel_list& channels) {
  findings found(file);
  for (const chan_descr_2010& channel : channels) {
    const std::string name = channel.prop_name;
    found.text(name, "PROP", channel.prop_name);
    found.text(name, "NAME", channel.daq_name);
    found.text(name, "SB_NAME", channel.sb_name);
    found.text(name, "SUBSYSTEM", channel.subsystem);
    found.text(name, "UNITS", channel.units);
    found.text(name, "DESC", channel.prop_desc);
    for (const bit_descr* bit : channel.bits) {
      found.text(name, "BIT_NAME", bit->bit_name);
      found.text(name, "BIT_DESCR", bit->bit_desc);
    }
    for (const dim_descr* dim : channel.dims) {
      found.text(name, "DIM_NAME", dim->dim_name);
      found.text(name, "DIM_UNITS", dim->units);
      found.text(name, "DIM_DESCR", dim->dim_desc);
      for (const stat_descr* stat : dim->stats) {
        found.text(name, "STAT_NAME", stat->stat_name);
        found.text(name, "STAT_UNITS", stat->units);
        found.text(name, "STAT_DESCR", stat->stat_desc);
      }
    }
  }
  return found.result;
}

template <class Entry>
writable check_dictionary(const std::string& file,
                          const zrt4::basic_env_dictionary<Entry>& entries) {
  findings found(file);
  for (const Entry& entry : entries) {
    found.text(entry.data.env_prop, "PROP", entry.data.env_prop);
  }
  return found.result;
}

template writable check_dictionary(const std::string&, const zrt4::env_dictionary&);
template writable check_dictionary(const std::string&, const zrt4::env_dictionary_2010&);
