#ifndef GIGE_SUPPORT_HH
#define GIGE_SUPPORT_HH

// What the tests of the camera features share.

#include "support.hh"
#include "zrt4_gige_descr.hh"

namespace test {

class feature_list : public std::vector<ZRT4GigEFeature*> {
 public:
  feature_list() = default;
  feature_list(const feature_list&) = delete;
  feature_list& operator=(const feature_list&) = delete;
  ~feature_list() { zrt4_clean_gige_descr(this); }

  ZRT4GigEFeature& add(const char* name) {
    push_back(new ZRT4GigEFeature);
    back()->name = name;
    return *back();
  }
};

inline std::string shown(const ZRT4GigEFeature& feature) {
  return std::to_string(feature.type) + '|' + feature.name + '|' + feature.extension + '|' +
         feature.tooltip + '|' + feature.description;
}

inline std::vector<std::string> shown(const std::vector<ZRT4GigEFeature*>& features) {
  std::vector<std::string> result;
  for (const auto* feature : features) result.push_back(shown(*feature));
  return result;
}

/// What a document reads as, a feature as "type|name|extension|tooltip|description".
inline std::vector<std::string> read(const std::string& document) {
  temporary_file file(document);
  feature_list features;
  const auto printed =
      captured([&] { EXPECT_FALSE(zrt4_fill_gige_descr(file.name(), &features)); });
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
