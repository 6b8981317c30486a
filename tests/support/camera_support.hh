#ifndef CAMERA_SUPPORT_HH
#define CAMERA_SUPPORT_HH

// What the tests of the camera features share.

#include "support.hh"
#include "zrt4xml.hh"

namespace test {

struct feature_list : zrt4::camera_features {
  ZRT4GigEFeature& add(const char* name) {
    auto* const added = get()->emplace_back(new ZRT4GigEFeature);
    added->name = name;
    return *added;
  }
};

inline std::string shown(const ZRT4GigEFeature& feature) {
  return std::to_string(feature.type) + '|' + feature.name + '|' + feature.extension + '|' +
         feature.tooltip + '|' + feature.description;
}

inline std::vector<std::string> shown(const zrt4::camera_features& features) {
  std::vector<std::string> result;
  for (const ZRT4GigEFeature& feature : features) result.push_back(shown(feature));
  return result;
}

/// What a document reads as, a feature as "type|name|extension|tooltip|description".
inline std::vector<std::string> read(const std::string& document) {
  temporary_file file(document);
  feature_list features;
  const auto printed =
      captured([&] { EXPECT_FALSE(zrt4_fill_gige_descr(file.name(), features.get())); });
  EXPECT_EQ(printed.out, "");
  EXPECT_EQ(printed.err, "");
  return shown(features);
}

inline std::string read_one(const std::string& document) {
  const auto features = read(document);
  EXPECT_EQ(features.size(), 1U);
  return features.empty() ? "" : features.front();
}

inline std::string repeated(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

}  // namespace test

#endif
