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
  std::string_view meaning;  ///< for a person who reads a document
  std::variant<std::int32_t Record::*, float Record::*, std::int32_t (*)(const Record&)> value;
  bool (*is_written)(const Record&) = nullptr;  ///< null: always
};

namespace tables {

using spectrum = zrt4_spect_header_2010;
using image = zrt4_image_ext_frame_head;

constexpr dimension_parameter<spectrum> spectrum_parameters[] = {
    {"DIM_START", "start of the axis", &spectrum::start},
    {"DIM_INC", "step of the axis", &spectrum::inc},
    {"DIM_NDATA", "number of values", &spectrum::ndata},
    {"DIM_GROUPS", "number of groups", &spectrum::groups},
    {"DIM_GROUP_INC", "step from group to group", &spectrum::group_inc},
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
    {"DIM_XSTART", "first column of the image", &image::x_start},
    {"DIM_WIDTH", "width of the image, or of its area of interest", seen_width},
    {"DIM_XBIN", "columns in one", &image::hbin, positive<&image::hbin>},
    {"DIM_YSTART", "first row of the image", &image::y_start},
    {"DIM_HEIGHT", "height of the image, or of its area of interest", seen_height},
    {"DIM_YBIN", "rows in one", &image::vbin, positive<&image::vbin>},
    {"DIM_BPP", "bits per pixel", &image::bpp, positive<&image::bpp>},
    {"DIM_EBITPP", "effective bits per pixel", &image::ebitpp, positive<&image::ebitpp>},
    {"DIM_UNSIGNED", "whether pixels are without sign", &image::ispare4, sign_is_known},
    {"DIM_START", "start of the axis", &image::fspare2, positive<&image::fspare2>},
    {"DIM_INC", "step of the axis", &image::fspare3, positive<&image::fspare3>},
    {"DIM_NDATA", "number of values", &image::ispare3, positive<&image::ispare3>},
    {"DIM_GROUPS", "number of groups", &image::ispare2, positive<&image::ispare2>},
    {"DIM_GROUP_INC", "step from group to group", &image::fspare4, positive<&image::fspare4>},
};

}  // namespace tables

}  // namespace zrt4::detail

#endif
