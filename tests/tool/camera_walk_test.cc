// The tool's walk through a camera's file against the library's reader: the same features, in the
// same order, with the same texts.

#include "camera_walk.hh"

#include <algorithm>
#include <random>

#include "bad_document.hh"
#include "camera_support.hh"
#include "input_file.hh"
#include "lossless_support.hh"
#include "scan.hh"
#include "zrt4_gige_descr.hh"

namespace {

/// A feature as "type|name|extension|tooltip|description", as `test::shown` tells those of the
/// library.
class recording_walk : public camera_walk {
 public:
  std::vector<std::string> features;

 private:
  void feature_ended(const camera_feature& feature) override {
    const auto* const type =
        std::find(std::begin(FeatureTags), std::end(FeatureTags), feature.element);
    std::string line = std::to_string(type - std::begin(FeatureTags)) + "|" + kept(feature.name);
    for (const camera_feature::text& each : feature.texts) line += "|" + kept(each.value);
    features.push_back(line);
  }
  void element_began(camera_element& /*element*/, xercesc::AttributeList& /*attributes*/) override {
  }
  void element_ended(const camera_element& /*element*/) override {}

  static std::string kept(const std::string& text) { return is_mark_of_reader(text) ? "" : text; }
};

/// Well-formed documents with features that hold anything and stand anywhere.
class random_cameras {
 public:
  explicit random_cameras(unsigned seed) : random(seed) {}

  std::string next() {
    std::string text = one_in(3) ? "" : "<?xml version='1.0' encoding='UTF-8'?>\n";
    has_entities = one_in(4);
    if (has_entities) {
      text +=
          "<!DOCTYPE Camera [<!ENTITY e 'entity'><!ENTITY t '<ToolTip>from entity</ToolTip>'>"
          "<!ENTITY n ''><!ATTLIST Boolean Name CDATA 'default'>]>\n";
    }
    text += "<Camera" + attributes() + ">";
    for (unsigned i = below(12); i != 0; --i) element(text, 0);
    return text + "</Camera>\n";
  }

 private:
  unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
  bool one_in(unsigned n) { return below(n) == 0; }
  std::string one_of(const std::vector<std::string>& choices) {
    return choices[below(static_cast<unsigned>(choices.size()))];
  }

  std::string attributes() {
    const std::string name = one_of(
        {"Width", "Gain", "a b", "", " ", "Unknown", "Waiting", "caf\xc3\xa9", "&amp;&#65;"});
    std::string text = one_in(3) ? "" : " Name='" + name + "'";
    if (one_in(8)) text = " NameSpace='Standard'" + text;
    if (one_in(8)) text += " name='x'";
    return text;
  }

  std::string content() {
    std::string text =
        one_of({"", "", " ", "\n  ", "text", "other text", "Unknown", "Waiting", "a &lt; b",
                "&#10;", "<![CDATA[section]]>", "<![CDATA[]]>", "x<![CDATA[y]]>z", "one<!-- -->two",
                "<!-- only -->", "<?pi x?>behind", "caf\xc3\xa9 \xce\xa9"});
    if (has_entities && one_in(4)) text += one_of({"&e;", "&t;", "&n;", "before&e;behind"});
    return text;
  }

  void element(std::string& text, unsigned depth) {
    static const std::vector<std::string> names = {
        "Undefined", "Integer",     "Float",       "Enumeration", "Boolean",  "StringReg",
        "Command",   "IntReg",      "Int64",       "Extension",   "PvRename", "PvRename",
        "ToolTip",   "ToolTip",     "Description", "Description", "Category", "pFeature",
        "EnumEntry", "Description", "ToolTip",     "Register",    "integer"};
    const std::string name = one_of(names);
    text += "<" + name + attributes();
    if (one_in(6)) {
      text += "/>";
    } else {
      text += ">" + content();
      for (unsigned i = depth < 4 ? below(4) : 0; i != 0; --i) element(text, depth + 1);
      text += "</" + name + ">";
    }
    if (one_in(2)) text += content();
  }

  std::mt19937 random;
  bool has_entities = false;
};

class CameraWalk : public test::in_utf8 {};

std::vector<std::string> walked(const std::string& document) {
  input_file file("camera", std::string_view(document));
  recording_walk walk;
  EXPECT_EQ(scan_document(file.path(), walk, xercesc::SAXParser::Val_Never, true, {}, &walk), "");
  walk.finish();
  return walk.features;
}

std::vector<std::string> read(const std::string& document) {
  input_file file("camera", std::string_view(document));
  test::feature_list features;
  EXPECT_EQ(features.read_file(file.path()), 0);
  return test::shown(features);
}

}  // namespace

TEST_F(CameraWalk, RandomDocumentsAreReadAsTheLibraryReadsThem) {
  random_cameras cameras(1);
  std::size_t features = 0;
  std::size_t with_texts = 0;
  for (int i = 0; i < 5000 / test::random_share; ++i) {
    const std::string document = cameras.next();
    const std::vector<std::string> expected = read(document);
    ASSERT_EQ(walked(document), expected) << document;
    features += expected.size();
    with_texts += static_cast<std::size_t>(std::count_if(
        expected.begin(), expected.end(),
        [](const std::string& each) { return each.substr(each.size() - 2) != "||"; }));
  }
  EXPECT_GT(features, 10000U / test::random_share);
  EXPECT_GT(with_texts, 5000U / test::random_share);
}

TEST_F(CameraWalk, EveryExampleIsReadAsTheLibraryReadsIt) {
  std::size_t features = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(ZRT4_SOURCE_DIR "/examples/cameras")) {
    input_file file(entry.path());
    const std::string document = file.content();
    EXPECT_EQ(walked(document), read(document)) << entry.path();
    features += read(document).size();
  }
  EXPECT_GT(features, 10U);
}
