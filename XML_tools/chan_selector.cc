#include "chan_selector.hh"

#include <cstdio>
#include <cstring>

#include "diagnostics.hh"
#include "selector_index.hh"

namespace {

constexpr std::uint32_t bit(int number) {
  return 1U << (static_cast<std::uint32_t>(number) & 31U);
}

constexpr std::uint32_t slow_events =
    bit(ZRT4_EV_BOR) | bit(ZRT4_EV_EOR) | bit(ZRT4_EV_ENV) | bit(ZRT4_EV_UPD);

// Classes that a site's event-utility library may give out beyond ZRT4_EV_STRUCT_TYPE.
constexpr int first_linac_class = 10;
constexpr int last_linac_class = 15;

void say_nothing_loaded() {
  zrt4::detail::say(stdout, {"get_event_type() No descroption !!!!\n"});
}

bool main_linac_class(int structure) {
  return structure == ZRT4_EV_STRUCT_ML ||
         (structure >= first_linac_class && structure <= last_linac_class);
}

}  // namespace

chan_selector::chan_selector() : index(std::make_unique<zrt4::detail::channel_index>()) {}

chan_selector::~chan_selector() {
  clean_chan_desr_list(&descr);
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
  if ((static_cast<std::uint32_t>(ev_types) & bit(ev_type)) == 0) return false;
  return zrt4::detail::found_by_daq_name(ev_type) ? index->has_daq_name(chan)
                                                  : index->has_property(chan);
}

int chan_selector::get_event_type(char* chan) {
  if (descr.empty()) {
    say_nothing_loaded();
    return 0;
  }
  const std::uint32_t types = index->event_types(chan);
  if (types == 0) std::printf("CHANNEL %s NOT FOUND\n", chan != nullptr ? chan : "(null)");
  return static_cast<int>(types);
}

int chan_selector::get_data_type(char* chan) {
  if (descr.empty()) {
    say_nothing_loaded();
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
  return (types & slow_events) != 0 ? 1 : 0;
}

int chan_selector::is_channel_ml(int num) {
  char* const name = get_channel(num);
  if (name == nullptr) return -1;
  const auto types = static_cast<std::uint32_t>(get_event_type(name));
  if (types == 0) return -1;
  if (std::strstr(name, ".ML") != nullptr) return 1;
  for (int type = 0; type < 32; ++type) {
    if ((types & bit(type)) != 0 && main_linac_class(get_event_struct_type(type))) return 1;
  }
  return 0;
}

int chan_selector::get_subchannels(int num) {
  const int slow = is_channel_slow(num);
  if (slow == 1) return 1;
  if (slow == -1) return 0;
  return static_cast<int>(descr[static_cast<unsigned>(num)]->dims.size());
}
