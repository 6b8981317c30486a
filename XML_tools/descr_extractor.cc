#include "descr_extractor.hh"

#include <algorithm>

namespace {

using reader = int (*)(char*, std::vector<chan_descr_2010*>*, bool, bool);

reader reader_of(int mode) {
  if (mode == EXTR_FROM_FILE) return parse_descr_list_readf;
  if (mode == EXTR_FROM_XML) return parse_descr_list_read;
  return nullptr;
}

}  // namespace

descr_extractor::descr_extractor() = default;

descr_extractor::~descr_extractor() = default;

bool descr_extractor::set_mode(int new_mode) {
  if (new_mode != EXTR_FROM_FILE && new_mode != EXTR_FROM_XML) return true;
  mode = new_mode;
  return false;
}

int descr_extractor::get_mode() {
  return mode;
}

bool descr_extractor::get_descriptions(std::vector<char*>* source, int* total,
                                       std::vector<chan_descr_2010*>* out, bool shift) {
  int good = 0;
  const reader read = reader_of(mode);
  if (source != nullptr && read != nullptr) {
    int last = 0;
    for (char* text_or_name : *source) {
      last = read(text_or_name, out, shift, false);
      if (last == 0) ++good;
    }
    if (last != 0) return true;
  }
  if (total != nullptr) *total = good;
  return false;
}

bool descr_extractor::in_vector(std::vector<int>* in, int ent) {
  return std::find(in->begin(), in->end(), ent) != in->end();
}
