#include "writable.hh"

#include <string_view>
#include <type_traits>

#include "channel_fields.hh"
#include "dictionary_fields.hh"
#include "latin1.hh"

namespace {

class text_check {
 public:
  void text(const std::string& channel, std::string_view field, const char* content) {
    bool fatal = false;
    const std::string why = unwritable(content, fatal);
    if (why.empty()) return;
    result.losses.push_back("channel '" + channel + "', field " + std::string(field) +
                            ": the text " + why);
    result.wholly = false;
    result.at_all = result.at_all && !fatal;
  }

  /// All texts of a channel, or of what belongs to one.
  template <class Record>
  void record(const std::string& channel, const Record& record) {
    for (const auto& field : zrt4::detail::fields_of(&record)) {
      zrt4::detail::with_value(field.member, record, [&](const auto& value) {
        if constexpr (std::is_array_v<std::remove_reference_t<decltype(value)>>) {
          text(channel, field.element, value);
        }
      });
    }
  }

  writable result;
};

}  // namespace

writable check_channels(const zrt4::channel_list& channels) {
  text_check texts;
  for (const chan_descr_2010& channel : channels) {
    const std::string name = channel.prop_name;
    texts.record(name, channel);
    for (const bit_descr* bit : channel.bits) texts.record(name, *bit);
    for (const dim_descr* dim : channel.dims) {
      texts.record(name, *dim);
      for (const stat_descr* stat : dim->stats) texts.record(name, *stat);
    }
  }
  return texts.result;
}

template <class Entry>
writable check_dictionary(const zrt4::basic_env_dictionary<Entry>& entries) {
  text_check texts;
  for (const Entry& entry : entries) {
    texts.text(entry.data.env_prop, zrt4::detail::env_index_names[ENV_INDX_PROP],
               entry.data.env_prop);
  }
  return texts.result;
}

template writable check_dictionary(const zrt4::env_dictionary&);
template writable check_dictionary(const zrt4::env_dictionary_2010&);
