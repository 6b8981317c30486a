// written_documents FOLDER NUMBER [SEED]: so many random documents as the library's writers write
// them, KIND_NUMBER.xml each, for validators. What a number may be at all is in them; event and
// data types are ones that exist, or their masks.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include "parse_env_index_dictionary.hh"
#include "random_channels.hh"

namespace {

class document_writer {
 public:
  document_writer(std::string into, unsigned seed) : folder(std::move(into)), random(seed) {}

  bool write(int number) {
    switch (number % 4) {
      case 0:
        return write_channels(number, "channels", ZRT4_FORMAT);
      case 1:
        return write_channels(number, "variables", MORV_FORMAT);
      case 2:
        return write_dictionary<zrt4_env_index_dictionary_entry>(number, dump_env_index_dict);
      default:
        return write_dictionary<zrt4_env_index_dictionary_entry_2010>(number,
                                                                      dump_env_index_dict_2010);
    }
  }

 private:
  std::string file(const char* kind, int number) const {
    return folder + "/" + kind + "_" + std::to_string(number) + ".xml";
  }

  bool write_channels(int number, const char* kind, int format) {
    test::records from;
    random.fill(from, random.below(12));
    for (chan_descr_2010* channel : from.list) {
      channel->ev_type = event_type();
      channel->dtype = data_type();
    }
    std::deque<dim_params> entries;
    std::deque<std::vector<zrt4_spect_header_2010>> spectra;
    std::deque<std::vector<zrt4_image_ext_frame_head>> images;
    std::vector<dim_params*> dims;
    for (chan_descr_2010* channel : from.list) {
      if (random.below(3) != 0) continue;
      const auto dimensions = static_cast<std::size_t>(1 + random.below(4));
      // An image head is asked for by dimension or by the channel's position in the list.
      const std::size_t heads = std::max(dimensions, from.list.size());
      dim_params& entry = entries.emplace_back();
      entry.name = channel->daq_name;
      entry.num = static_cast<std::int32_t>(dimensions);
      if (random.below(3) != 0) {
        for (auto& each : spectra.emplace_back(dimensions)) fill(each);
        entry.params = spectra.back().data();
      }
      if (random.below(3) != 0) {
        for (auto& each : images.emplace_back(heads)) fill(each);
        entry.iparams = images.back().data();
      }
      dims.push_back(&entry);
    }
    std::string name = file(kind, number);
    return dump_chan_desr(&from.list, name.data(), DUMP_XML_FILE, format, -1, nullptr, &dims) == 0;
  }

  template <class Entry>
  bool write_dictionary(int number,
                        int (*dump)(std::vector<Entry*>*, char*, int, int, std::string*)) {
    std::vector<Entry> entries(static_cast<std::size_t>(random.below(12)));
    std::vector<Entry*> list;
    for (Entry& entry : entries) {
      entry.index = random.number();
      test::set(entry.data.env_prop, random.text_or_none(sizeof entry.data.env_prop - 1));
      entry.data.env_ch_abs_delta = fraction();
      entry.data.env_ch_rel_delta = fraction();
      list.push_back(&entry);
    }
    std::string name = file("dictionary", number);
    return dump(&list, name.data(), ENV_INDX_DUMP_XML_FILE, -1, nullptr) == 0;
  }

  std::uint32_t event_type() {
    const int type = random.below(ZRT4_EV_EVMAX);
    return random.below(2) == 0 ? static_cast<std::uint32_t>(type) : 1U << type;
  }

  std::uint32_t data_type() {
    int type = 0;
    do {
      type = random.below(ZRT4_BLOCK_MAX_2010 + 1);
    } while (type != 0 && std::strcmp(block_name_itoa(type), "UNKNOWN") == 0);
    if (type == 0 || random.below(2) == 0) return static_cast<std::uint32_t>(type);
    return type < 32 ? 1U << type : 0x80000000U + (1U << (type - 32));
  }

  float fraction() {
    using limits = std::numeric_limits<float>;
    const float odd[] = {0,
                         -0.F,
                         limits::infinity(),
                         -limits::infinity(),
                         limits::quiet_NaN(),
                         -limits::quiet_NaN(),
                         limits::max(),
                         limits::lowest(),
                         limits::denorm_min()};
    if (random.below(4) == 0) return odd[random.below(static_cast<int>(std::size(odd)))];
    return static_cast<float>(random.number()) / 1000.F;
  }

  void fill(zrt4_spect_header_2010& head) {
    head = {fraction(), fraction(), random.number(), random.number(), fraction()};
  }

  void fill(zrt4_image_ext_frame_head& head) {
    head = {};
    for (std::int32_t* each : {&head.width, &head.height, &head.aoi_width, &head.aoi_height,
                               &head.x_start, &head.y_start, &head.bpp, &head.ebitpp, &head.hbin,
                               &head.vbin, &head.ispare2, &head.ispare3, &head.ispare4}) {
      *each = random.number();
    }
    for (float* each : {&head.fspare2, &head.fspare3, &head.fspare4}) *each = fraction();
  }

  const std::string folder;
  test::random_channels random;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: written_documents FOLDER NUMBER [SEED]\n", stderr);
    return 2;
  }
  document_writer writer(argv[1], argc > 3 ? static_cast<unsigned>(std::atoi(argv[3])) : 1);
  const int documents = std::atoi(argv[2]);
  for (int i = 0; i < documents; ++i) {
    if (!writer.write(i)) return 1;
  }
  return 0;
}
