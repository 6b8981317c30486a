// Dimensions of written channels, with the parameters that a caller gives for them.

#include <cmath>
#include <limits>

#include "channel_documents.hh"
#include "comma_locale.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

using test::dumped;
using test::elements;
using test::records;
using testing::HasSubstr;
using testing::Not;

namespace {

using image = zrt4_image_ext_frame_head;
using spectrum = zrt4_spect_header_2010;

/// The DIM elements of the last channel, as the element dialect writes them.
std::string dimensions(records& from, std::vector<dim_params*> dims) {
  const std::string text = elements(from, &dims);
  const std::size_t begin = text.rfind("</SIZE>\n") + 8;
  return text.substr(begin, text.rfind("</CHANNEL>\n") - begin);
}

spectrum axis(float start) {
  return {start, 0.5F, 3, 4, -1e-20F};
}

std::string axis_leaves(const std::string& start) {
  return "<DIM_START>" + start +
         "</DIM_START>\n<DIM_INC>5.000000e-01</DIM_INC>\n<DIM_NDATA>3</DIM_NDATA>\n"
         "<DIM_GROUPS>4</DIM_GROUPS>\n<DIM_GROUP_INC>-1.000000e-20</DIM_GROUP_INC>\n";
}

/// Only what is always written.
image plain_image(int width) {
  image head{};
  head.width = width;
  head.height = 20;
  head.x_start = 1;
  head.y_start = 2;
  head.ispare4 = -1;
  return head;
}

std::string plain_image_leaves(int width) {
  return "<DIM_XSTART>1</DIM_XSTART>\n<DIM_WIDTH>" + std::to_string(width) +
         "</DIM_WIDTH>\n<DIM_YSTART>2</DIM_YSTART>\n<DIM_HEIGHT>20</DIM_HEIGHT>\n";
}

struct parameters : dim_params {
  parameters(std::string channel, int count, spectrum* axes, image* images)
      : channel_name(std::move(channel)) {
    name = channel_name.data();
    num = count;
    params = axes;
    iparams = images;
  }
  parameters(const parameters&) = delete;
  parameters& operator=(const parameters&) = delete;

 private:
  std::string channel_name;
};

}  // namespace

// Dimension parameters of described dimensions

namespace {

struct DescribedDimensions : testing::Test {
  DescribedDimensions() { from.add_dim(from.add("P", "D"), 1); }
  records from;
  spectrum axes[3] = {axis(0), axis(1), axis(2)};
  image images[3] = {plain_image(10), plain_image(11), plain_image(12)};
  const std::string bare =
      "<DIM>1\n<DIM_NAME></DIM_NAME>\n<DIM_UNITS></DIM_UNITS>\n"
      "<DIM_DESCR></DIM_DESCR>\n";
};

}  // namespace

TEST_F(DescribedDimensions, NoParameters) {
  std::vector<dim_params*> none;
  EXPECT_EQ(dimensions(from, none), bare + "</DIM>\n");
  EXPECT_EQ(elements(from, nullptr), elements(from, &none));
}

TEST_F(DescribedDimensions, SpectrumOfTheDimensionsNumber) {
  parameters entry("D", 3, axes, nullptr);
  EXPECT_EQ(dimensions(from, {&entry}), bare + axis_leaves("1.000000e+00") + "</DIM>\n");
}

TEST_F(DescribedDimensions, ImageOfTheDimensionsNumber) {
  parameters entry("D", 3, nullptr, images);
  EXPECT_EQ(dimensions(from, {&entry}), bare + plain_image_leaves(11) + "</DIM>\n");
}

TEST_F(DescribedDimensions, SpectrumHidesTheImage) {
  parameters entry("D", 3, axes, images);
  EXPECT_EQ(dimensions(from, {&entry}), bare + axis_leaves("1.000000e+00") + "</DIM>\n");
}

TEST_F(DescribedDimensions, ParametersFollowTheStatistics) {
  from.add_stat(*from.list[0]->dims[0], 4, "", "", "");
  parameters entry("D", 3, axes, nullptr);
  const std::string text = dimensions(from, {&entry});
  EXPECT_LT(text.find("</STAT>"), text.find("<DIM_START>"));
}

TEST_F(DescribedDimensions, TheNumberMustBeBelowTheCount) {
  parameters two("D", 2, axes, nullptr);
  EXPECT_THAT(dimensions(from, {&two}), HasSubstr("<DIM_START>"));
  parameters one("D", 1, axes, nullptr);
  EXPECT_EQ(dimensions(from, {&one}), bare + "</DIM>\n");
  parameters negative("D", -1, axes, nullptr);
  EXPECT_EQ(dimensions(from, {&negative}), bare + "</DIM>\n");
}

TEST_F(DescribedDimensions, ANegativeNumberHasNoParameters) {
  from.list[0]->dims[0]->dim = -1;
  parameters entry("D", 3, axes, nullptr);
  EXPECT_THAT(dimensions(from, {&entry}), Not(HasSubstr("<DIM_START>")));
  parameters negative("D", std::numeric_limits<int>::min(), axes, nullptr);
  EXPECT_THAT(dimensions(from, {&negative}), Not(HasSubstr("<DIM_START>")));
}

TEST_F(DescribedDimensions, EachDimensionHasItsOwn) {
  from.add_dim(*from.list[0], 0);
  parameters entry("D", 3, axes, nullptr);
  const std::string text = dimensions(from, {&entry});
  EXPECT_LT(text.find("<DIM_START>1.000000e+00<"), text.find("<DIM_START>0.000000e+00<"));
}

// Which entry belongs to a channel

TEST_F(DescribedDimensions, ByDaqNameExactly) {
  for (const char* name : {"P", "d", "DD", "", "D "}) {
    parameters entry(name, 3, axes, nullptr);
    EXPECT_EQ(dimensions(from, {&entry}), bare + "</DIM>\n") << name;
  }
}

TEST_F(DescribedDimensions, ByTheNameWrittenForAChannelWithoutOne) {
  from.list[0]->daq_name[0] = '\0';
  parameters entry("!!!UNDEFINED!!!", 3, axes, nullptr);
  EXPECT_EQ(dimensions(from, {&entry}), bare + axis_leaves("1.000000e+00") + "</DIM>\n");
  parameters nameless("", 3, axes, nullptr);
  EXPECT_EQ(dimensions(from, {&nameless}), bare + "</DIM>\n");
}

TEST_F(DescribedDimensions, TheFirstUsableEntry) {
  parameters without_name("D", 3, axes, nullptr);
  without_name.name = nullptr;
  parameters without_count("D", 0, axes, images);
  parameters without_arrays("D", 3, nullptr, nullptr);
  parameters other("E", 3, axes, nullptr);
  parameters first("D", 3, nullptr, images);
  parameters second("D", 3, axes, nullptr);
  EXPECT_EQ(
      dimensions(from, {&without_name, &without_count, &without_arrays, &other, &first, &second}),
      bare + plain_image_leaves(11) + "</DIM>\n");
}

TEST_F(DescribedDimensions, AnEntryThatDoesNotReachTheDimensionHidesLaterOnes) {
  parameters first("D", 1, axes, nullptr);
  parameters second("D", 3, axes, nullptr);
  EXPECT_EQ(dimensions(from, {&first, &second}), bare + "</DIM>\n");
}

// Dimension parameters of channels without described dimensions

namespace {

struct BareDimensions : testing::Test {
  BareDimensions() {
    from.add("P0", "D0");
    from.add("P1", "D1");
  }
  records from;
  spectrum axes[2] = {axis(0), axis(1)};
  image images[2] = {plain_image(10), plain_image(11)};
};

}  // namespace

TEST_F(BareDimensions, OneForEachSpectrum) {
  parameters entry("D1", 2, axes, nullptr);
  EXPECT_EQ(dimensions(from, {&entry}), "<DIM>0\n" + axis_leaves("0.000000e+00") +
                                            "</DIM>\n<DIM>1\n" + axis_leaves("1.000000e+00") +
                                            "</DIM>\n");
}

TEST_F(BareDimensions, TheImageIsThatOfTheChannelsPosition) {
  parameters entry("D1", 2, nullptr, images);
  EXPECT_EQ(dimensions(from, {&entry}), "<DIM>0\n" + plain_image_leaves(11) + "</DIM>\n<DIM>1\n" +
                                            plain_image_leaves(11) + "</DIM>\n");
}

TEST_F(BareDimensions, ThePositionCountsSkippedChannels) {
  test::set(from.list[1]->prop_name, "P0");
  from.add("P2", "D2");
  image three[3] = {plain_image(10), plain_image(11), plain_image(12)};
  parameters entry("D2", 1, nullptr, three);
  EXPECT_EQ(dimensions(from, {&entry}), "<DIM>0\n" + plain_image_leaves(12) + "</DIM>\n");
}

TEST_F(BareDimensions, SpectrumAndImage) {
  parameters entry("D1", 1, axes, images);
  EXPECT_EQ(dimensions(from, {&entry}),
            "<DIM>0\n" + axis_leaves("0.000000e+00") + plain_image_leaves(11) + "</DIM>\n");
}

TEST_F(BareDimensions, NoneForANegativeCount) {
  parameters entry("D1", -1, axes, images);
  EXPECT_EQ(dimensions(from, {&entry}), "");
}

TEST_F(BareDimensions, NoneWithoutEntry) {
  parameters entry("D0", 1, axes, images);
  EXPECT_EQ(dimensions(from, {&entry}), "");
}

TEST_F(BareDimensions, VariableDialectHasNone) {
  parameters entry("D1", 2, axes, images);
  std::vector<dim_params*> dims{&entry};
  EXPECT_EQ(dumped(from, MORV_FORMAT, &dims), dumped(from, MORV_FORMAT));
}

// Image leaves

namespace {

struct ImageLeaves : testing::Test {
  ImageLeaves() { from.add("P", "D"); }
  std::string leaves() {
    parameters entry("D", 1, nullptr, &head);
    const std::string text = dimensions(from, {&entry});
    return text.substr(7, text.size() - 7 - 7);
  }
  records from;
  image head = plain_image(10);
};

}  // namespace

TEST_F(ImageLeaves, OnlyFourAreAlwaysWritten) {
  EXPECT_EQ(leaves(), plain_image_leaves(10));
}

TEST_F(ImageLeaves, AllInOrder) {
  head = {10, 20, 30, 40, -5,   -6,   2,    12, 3, 4, 99, 99, 99,
          99, 99, 99, 99, 1.5F, 2.5F, 3.5F, 99, 7, 8, 1,  99};
  EXPECT_EQ(leaves(),
            "<DIM_XSTART>-5</DIM_XSTART>\n<DIM_WIDTH>30</DIM_WIDTH>\n<DIM_XBIN>3</DIM_XBIN>\n"
            "<DIM_YSTART>-6</DIM_YSTART>\n<DIM_HEIGHT>40</DIM_HEIGHT>\n<DIM_YBIN>4</DIM_YBIN>\n"
            "<DIM_BPP>2</DIM_BPP>\n<DIM_EBITPP>12</DIM_EBITPP>\n<DIM_UNSIGNED>1</DIM_UNSIGNED>\n"
            "<DIM_START>1.500000e+00</DIM_START>\n<DIM_INC>2.500000e+00</DIM_INC>\n"
            "<DIM_NDATA>8</DIM_NDATA>\n<DIM_GROUPS>7</DIM_GROUPS>\n"
            "<DIM_GROUP_INC>3.500000e+00</DIM_GROUP_INC>\n");
}

TEST_F(ImageLeaves, AreaOfInterestBeforeTheWholeImage) {
  head.aoi_width = 1;
  EXPECT_THAT(leaves(), HasSubstr("<DIM_WIDTH>1</DIM_WIDTH>\n"));
  EXPECT_THAT(leaves(), HasSubstr("<DIM_HEIGHT>20</DIM_HEIGHT>\n"));
  head.aoi_width = 0;
  head.aoi_height = 1;
  EXPECT_THAT(leaves(), HasSubstr("<DIM_WIDTH>10</DIM_WIDTH>\n"));
  EXPECT_THAT(leaves(), HasSubstr("<DIM_HEIGHT>1</DIM_HEIGHT>\n"));
  head.aoi_width = head.aoi_height = -3;
  EXPECT_EQ(leaves(), plain_image_leaves(10));
}

TEST_F(ImageLeaves, WrittenOnlyAboveZero) {
  struct {
    const char* name;
    std::int32_t image::*field;
  } const numbers[] = {{"DIM_XBIN", &image::hbin},     {"DIM_YBIN", &image::vbin},
                       {"DIM_BPP", &image::bpp},       {"DIM_EBITPP", &image::ebitpp},
                       {"DIM_NDATA", &image::ispare3}, {"DIM_GROUPS", &image::ispare2}};
  for (const auto& one : numbers) {
    for (const int value : {-1, 0, 1}) {
      head = plain_image(10);
      head.*one.field = value;
      const bool written = leaves().find(one.name) != std::string::npos;
      EXPECT_EQ(written, value > 0) << one.name << value;
    }
  }
  struct {
    const char* name;
    float image::*field;
  } const reals[] = {{"DIM_START", &image::fspare2},
                     {"DIM_INC", &image::fspare3},
                     {"DIM_GROUP_INC", &image::fspare4}};
  for (const auto& one : reals) {
    for (const float value : {-1.0F, -0.0F, 0.0F, 1e-44F, NAN, INFINITY}) {
      head = plain_image(10);
      head.*one.field = value;
      const bool written = leaves().find("<" + std::string(one.name) + ">") != std::string::npos;
      EXPECT_EQ(written, value > 0) << one.name << value;
    }
  }
}

TEST_F(ImageLeaves, UnsignedUnlessNotKnown) {
  for (const int value : {0, 1, 2, -2}) {
    head.ispare4 = value;
    EXPECT_THAT(leaves(),
                HasSubstr("<DIM_UNSIGNED>" + std::to_string(value) + "</DIM_UNSIGNED>\n"));
  }
  head.ispare4 = -1;
  EXPECT_THAT(leaves(), Not(HasSubstr("DIM_UNSIGNED")));
}

// Numbers of spectrum leaves

namespace {

std::string start_leaf(float value) {
  records from;
  from.add("P", "D");
  spectrum one = axis(value);
  parameters entry("D", 1, &one, nullptr);
  const std::string text = dimensions(from, {&entry});
  const std::size_t begin = text.find("<DIM_START>") + 11;
  return text.substr(begin, text.find('<', begin) - begin);
}

}  // namespace

TEST(SpectrumLeaves, ScientificNumbers) {
  EXPECT_EQ(start_leaf(0), "0.000000e+00");
  EXPECT_EQ(start_leaf(-0.0F), "-0.000000e+00");
  EXPECT_EQ(start_leaf(1234567.0F), "1.234567e+06");
  EXPECT_EQ(start_leaf(0.1F), "1.000000e-01");
  EXPECT_EQ(start_leaf(-3.4028235e38F), "-3.402823e+38");
  EXPECT_EQ(start_leaf(1e-45F), "1.401298e-45");
  EXPECT_EQ(start_leaf(INFINITY), "inf");
  EXPECT_EQ(start_leaf(-INFINITY), "-inf");
  EXPECT_EQ(start_leaf(NAN), "nan");
}

TEST(SpectrumLeaves, DecimalPointOfTheLocale) {
  const test::comma_locale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a decimal comma";
  EXPECT_EQ(start_leaf(1.5F), "1,500000e+00");
}

TEST(SpectrumLeaves, AllFiveWhateverTheirValues) {
  records from;
  from.add("P", "D");
  spectrum nothing{};
  parameters entry("D", 1, &nothing, nullptr);
  EXPECT_EQ(dimensions(from, {&entry}),
            "<DIM>0\n<DIM_START>0.000000e+00</DIM_START>\n<DIM_INC>0.000000e+00</DIM_INC>\n"
            "<DIM_NDATA>0</DIM_NDATA>\n<DIM_GROUPS>0</DIM_GROUPS>\n"
            "<DIM_GROUP_INC>0.000000e+00</DIM_GROUP_INC>\n</DIM>\n");
}

// The documented example

TEST(WritingPage, ShowsWhatIsWritten) {
  std::ifstream page(ZRT4_SOURCE_DIR "/docs/writing.md");
  std::ostringstream text;
  text << page.rdbuf();
  const std::string fence = "```text\n";
  const std::size_t begin = text.str().find(fence) + fence.size();
  const std::string shown = text.str().substr(begin, text.str().find("```", begin) - begin);

  records from;
  from.add_dim(from.add("P", "D"), 0, "time", "", "us");
  spectrum one{0, 1, 2048, 1, 0};
  parameters entry("D", 1, &one, nullptr);
  EXPECT_EQ(dimensions(from, {&entry}), shown);
}
