#include "descr_extractor.hh"

#include "support.hh"
#include "zrt4xml.hh"

namespace {

constexpr int canary = 4711;

const std::string good = "<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>";
const std::string two_channels =
    "<CHANDESCRIPTIONS><CHANNEL><EVTYPE>3</EVTYPE><PROP>A</PROP></CHANNEL>"
    "<CHANNEL><PROP>A</PROP></CHANNEL></CHANDESCRIPTIONS>";
const std::string broken = "<CHANDESCRIPTIONS><CHANNEL><PROP>B</PROP></CHANNEL>";

struct extraction : testing::Test {
  bool get(std::vector<std::string> sources, bool shift = true) {
    std::vector<char*> source;
    for (std::string& text : sources) source.push_back(text.data());
    bool failed = false;
    output = test::captured(
        [&] { failed = extractor.get_descriptions(&source, &total, out.get(), shift); });
    return failed;
  }

  descr_extractor extractor;
  zrt4::channel_list out;
  int total = canary;
  test::output output;
};

// An explicit instantiation may name what is private.
bool in_vector(descr_extractor& extractor, std::vector<int>* in, int ent);
template <bool (descr_extractor::*Member)(std::vector<int>*, int)>
struct opened {
  friend bool in_vector(descr_extractor& extractor, std::vector<int>* in, int ent) {
    return (extractor.*Member)(in, ent);
  }
};
template struct opened<&descr_extractor::in_vector>;

/// An extractor of a kind that `set_mode` refuses.
struct strange_extractor : descr_extractor {
  strange_extractor() { mode = 2; }
};

}  // namespace

using DescrExtractor = extraction;

TEST_F(DescrExtractor, StartsWithFiles) {
  EXPECT_EQ(extractor.get_mode(), EXTR_FROM_FILE);
}

TEST_F(DescrExtractor, SetModeAcceptsTheTwoModes) {
  EXPECT_FALSE(extractor.set_mode(EXTR_FROM_XML));
  EXPECT_EQ(extractor.get_mode(), 1);
  EXPECT_FALSE(extractor.set_mode(EXTR_FROM_FILE));
  EXPECT_EQ(extractor.get_mode(), 0);
}

TEST_F(DescrExtractor, SetModeRefusesOthersAndKeepsTheMode) {
  extractor.set_mode(EXTR_FROM_XML);
  for (const int mode : {-1, 2, 100}) {
    EXPECT_TRUE(extractor.set_mode(mode)) << mode;
    EXPECT_EQ(extractor.get_mode(), EXTR_FROM_XML) << mode;
  }
}

TEST_F(DescrExtractor, NoSourcesAreASuccess) {
  EXPECT_FALSE(get({}));
  EXPECT_EQ(total, 0);
  EXPECT_TRUE(out.empty());
}

TEST_F(DescrExtractor, NoSourcesWithoutTotal) {
  std::vector<char*> source;
  EXPECT_FALSE(extractor.get_descriptions(&source, nullptr, out.get(), true));
}

TEST_F(DescrExtractor, NullSourceIsNoSources) {
  EXPECT_FALSE(extractor.get_descriptions(nullptr, &total, out.get(), true));
  EXPECT_EQ(total, 0);
}

TEST_F(DescrExtractor, ReadsTexts) {
  extractor.set_mode(EXTR_FROM_XML);
  EXPECT_FALSE(get({good, two_channels}));
  EXPECT_EQ(total, 2);
  ASSERT_EQ(out.size(), 3U);
  EXPECT_STREQ(out[0].prop_name, "A");
}

TEST_F(DescrExtractor, ReadsFiles) {
  const test::temporary_file first(good);
  const test::temporary_file second(two_channels);
  EXPECT_FALSE(get({first.path(), second.path()}));
  EXPECT_EQ(total, 2);
  EXPECT_EQ(out.size(), 3U);
}

TEST_F(DescrExtractor, ModeDecidesWhatASourceIs) {
  EXPECT_TRUE(get({good}));
  extractor.set_mode(EXTR_FROM_XML);
  const test::temporary_file file(good);
  EXPECT_TRUE(get({file.path()}));
  EXPECT_TRUE(out.empty());
}

TEST_F(DescrExtractor, AnyOtherModeSkipsTheSources) {
  strange_extractor strange;
  std::string text = good;
  std::vector<char*> source{text.data()};
  EXPECT_FALSE(strange.get_descriptions(&source, &total, out.get(), true));
  EXPECT_EQ(total, 0);
  EXPECT_TRUE(out.empty());
}

TEST_F(DescrExtractor, PassesShiftOn) {
  extractor.set_mode(EXTR_FROM_XML);
  get({two_channels}, true);
  get({two_channels}, false);
  ASSERT_EQ(out.size(), 4U);
  EXPECT_EQ(out[0].ev_type, 8U);
  EXPECT_EQ(out[2].ev_type, 3U);
}

TEST_F(DescrExtractor, NeverRemovesDuplicates) {
  extractor.set_mode(EXTR_FROM_XML);
  get({two_channels});
  ASSERT_EQ(out.size(), 2U);
  EXPECT_STREQ(out[0].prop_name, out[1].prop_name);
}

TEST_F(DescrExtractor, AppendsToWhatIsThere) {
  extractor.set_mode(EXTR_FROM_XML);
  out.get()->push_back(new chan_descr_2010);
  get({good});
  EXPECT_EQ(out.size(), 2U);
}

TEST_F(DescrExtractor, AnEarlierFailureIsForgotten) {
  extractor.set_mode(EXTR_FROM_XML);
  EXPECT_FALSE(get({broken, good}));
  EXPECT_EQ(total, 1);
  EXPECT_EQ(out.size(), 2U);
  EXPECT_NE(output.err, "");
}

TEST_F(DescrExtractor, AFailureOfTheLastSourceIsAFailure) {
  extractor.set_mode(EXTR_FROM_XML);
  EXPECT_TRUE(get({good, broken}));
  EXPECT_EQ(total, canary);
  EXPECT_EQ(out.size(), 2U);
}

TEST_F(DescrExtractor, FailureWithoutTotal) {
  extractor.set_mode(EXTR_FROM_XML);
  std::string text = broken;
  std::vector<char*> source{text.data()};
  test::captured(
      [&] { EXPECT_TRUE(extractor.get_descriptions(&source, nullptr, out.get(), true)); });
  text = good;
  source[0] = text.data();
  EXPECT_FALSE(extractor.get_descriptions(&source, nullptr, out.get(), true));
}

TEST_F(DescrExtractor, AMissingFileIsAFailure) {
  EXPECT_TRUE(get({"/nonexistent/channels.xml"}));
  EXPECT_EQ(total, canary);
}

TEST_F(DescrExtractor, InVectorFindsAnElementAnywhere) {
  std::vector<int> numbers{3, 1, 2};
  for (const int number : {1, 2, 3}) EXPECT_TRUE(in_vector(extractor, &numbers, number)) << number;
  EXPECT_FALSE(in_vector(extractor, &numbers, 0));
  EXPECT_FALSE(in_vector(extractor, &numbers, 4));
}

TEST_F(DescrExtractor, NothingIsInAnEmptyVector) {
  std::vector<int> numbers;
  EXPECT_FALSE(in_vector(extractor, &numbers, 0));
}
