#include "chan_selector.hh"

#include <cstdio>

#include "diagnostics.hh"
#include "selector_index.hh"
#include "selector_rules.hh"
#include "type_masks.hh"

using zrt4::message_severity;
using zrt4::message_topic;
using zrt4::detail::found_by_daq_name;
using zrt4::detail::has_bit;
using zrt4::detail::is_main_linac;
using zrt4::detail::is_slow;
using zrt4::detail::tell;

namespace {

void tell_nothing_loaded() {
  tell({message_topic::nothing_loaded, message_severity::error, stdout},
       {"get_event_type() No descroption !!!!\n"});
}

void tell_not_found(const char* channel) {
  tell({message_topic::not_found, message_severity::error, stdout, false},
       {"CHANNEL ", channel != nullptr ? channel : "(null)", " NOT FOUND\n"});
}

}  // namespace

chan_selector::chan_selector() : index(std::make_unique<zrt4::detail::channel_index>()) {}

chan_selector::~chan_selector() {
  try {
    clean_chan_desr_list(&descr);
  } catch (...) {  // of a receiver of messages: all is released, and nobody is left to tell
  }
}

int chan_selector::size() {
  return static_cast<int>(descr.size());
}

void chan_selector::set_shift(bool new_shift) {
  shift = new_shift;
}

bool chan_selector::change_mode(int new_mode) {
  return set_mode(new_mode);
}

void chan_selector::dump(char* file_name, int dump_mode, int format) {
  dump_chan_desr(&descr, file_name, dump_mode, format, -1, nullptr, nullptr);
}

bool chan_selector::set_descriptions(std::vector<char*>* source, int* total) {
  const bool failed = get_descriptions(source, total, &descr, shift);
  index->update(descr);
  if (failed) return true;
  std::uint32_t types = 0;
  for (const chan_descr_2010* channel : descr) types |= channel->ev_type;
  ev_types = static_cast<int>(static_cast<std::uint32_t>(ev_types) | types);
  return false;
}

bool chan_selector::find_channel(int ev_type, char* chan) {
  if (descr.empty()) return true;
  if (!has_bit(static_cast<std::uint32_t>(ev_types), ev_type)) return false;
  return found_by_daq_name(ev_type) ? index->has_daq_name(chan) : index->has_property(chan);
}

int chan_selector::get_event_type(char* chan) {
  if (descr.empty()) {
    tell_nothing_loaded();
    return 0;
  }
  const std::uint32_t types = index->event_types(chan);
  if (types == 0) tell_not_found(chan);
  return static_cast<int>(types);
}

int chan_selector::get_data_type(char* chan) {
  if (descr.empty()) {
    tell_nothing_loaded();
    return 0;
  }
  return static_cast<int>(index->data_type(chan));
}

char* chan_selector::get_channel(int num) {
  const auto position = static_cast<unsigned>(num);
  return position < descr.size() ? descr[position]->daq_name : nullptr;
}

char* chan_selector::get_prop(int num) {
  const auto position = static_cast<unsigned>(num);
  return position < descr.size() ? descr[position]->prop_name : nullptr;
}

bool chan_selector::set_counter(int num, int cnt) {
  const auto position = static_cast<unsigned>(num);
  if (position >= descr.size()) return true;
  descr[position]->count = cnt;
  return false;
}

int chan_selector::is_channel_slow(int num) {
  char* const name = get_channel(num);
  if (name == nullptr) return -1;
  const auto types = static_cast<std::uint32_t>(get_event_type(name));
  if (types == 0) return -1;
  return is_slow(types) ? 1 : 0;
}

int chan_selector::is_channel_ml(int num) {
  char* const name = get_channel(num);
  if (name == nullptr) return -1;
  const auto types = static_cast<std::uint32_t>(get_event_type(name));
  if (types == 0) return -1;
  return is_main_linac(name, types) ? 1 : 0;
}

int chan_selector::get_subchannels(int num) {
  const int slow = is_channel_slow(num);
  if (slow == 1) return 1;
  if (slow == -1) return 0;
  return static_cast<int>(descr[static_cast<unsigned>(num)]->dims.size());
}
