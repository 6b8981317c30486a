#ifndef DIMENSION_PARAMETERS_HH
#define DIMENSION_PARAMETERS_HH

// What a dump adds to the dimensions of channels whose parameters it is given. Readers skip it.

#include <cstdint>
#include <string_view>
#include <variant>

#include "event.hh"

namespace zrt4::detail {

template <class Record>
struct dimension_parameter {
  std::string_view element;
  std::variant<std::int32_t Record::*, float Record::*, std::int32_t (*)(const Record&)> value;
  bool (*is_written)(const Record&) = nullptr;  ///< null: always
};

namespace tables {

using spectrum = zrt4_spect_header_2010;
using image = zrt4_image_ext_frame_head;

constexpr dimension_parameter<spectrum> spectrum_parameters[] = {
    {"DIM_START", &spectrum::start},         {"DIM_INC", &spectrum::inc},
    {"DIM_NDATA", &spectrum::ndata},         {"DIM_GROUPS", &spectrum::groups},
    {"DIM_GROUP_INC", &spectrum::group_inc},
};

template <auto Field>
bool positive(const image& head) {
  return head.*Field > 0;
}

inline bool sign_is_known(const image& head) {
  return head.ispare4 != -1;
}

// The area of interest is the image where there is one.
inline std::int32_t seen_width(const image& head) {
  return head.aoi_width > 0 ? head.aoi_width : head.width;
}
inline std::int32_t seen_height(const image& head) {
  return head.aoi_height > 0 ? head.aoi_height : head.height;
}

constexpr dimension_parameter<image> image_parameters[] = {
    {"DIM_XSTART", &image::x_start},
    {"DIM_WIDTH", seen_width},
    {"DIM_XBIN", &image::hbin, positive<&image::hbin>},
    {"DIM_YSTART", &image::y_start},
    {"DIM_HEIGHT", seen_height},
    {"DIM_YBIN", &image::vbin, positive<&image::vbin>},
    {"DIM_BPP", &image::bpp, positive<&image::bpp>},
    {"DIM_EBITPP", &image::ebitpp, positive<&image::ebitpp>},
    {"DIM_UNSIGNED", &image::ispare4, sign_is_known},
    {"DIM_START", &image::fspare2, positive<&image::fspare2>},
    {"DIM_INC", &image::fspare3, positive<&image::fspare3>},
    {"DIM_NDATA", &image::ispare3, positive<&image::ispare3>},
    {"DIM_GROUPS", &image::ispare2, positive<&image::ispare2>},
    {"DIM_GROUP_INC", &image::fspare4, positive<&image::fspare4>},
};

}  // namespace tables

}  // namespace zrt4::detail

#endif
