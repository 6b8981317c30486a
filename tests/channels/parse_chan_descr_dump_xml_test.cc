// The XML documents of channel descriptions, to the byte, in both dialects.

#include <cmath>
#include <limits>

#include "channel_records.hh"
#include "comma_locale.hh"
#include "own_locale.hh"
#include "support.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

using test::dumped;
using test::records;
using testing::HasSubstr;
using testing::Not;

namespace {

using image = zrt4_image_ext_frame_head;
using spectrum = zrt4_spect_header_2010;

/// What stands between the root's tags.
std::string body(records& from, int format, std::vector<dim_params*>* dims = nullptr) {
  const std::string root = format == ZRT4_FORMAT ? "CHANDESCRIPTIONS" : "DAQvariables";
  const std::string head = std::string(test::declaration) + "<" + root + ">\n";
  const std::string tail = "</" + root + ">\n\n";
  const std::string document = dumped(from, format, dims);
  if (document.size() < head.size() + tail.size()) return "too short: " + document;
  EXPECT_EQ(document.substr(0, head.size()), head);
  EXPECT_EQ(document.substr(document.size() - tail.size()), tail);
  return document.substr(head.size(), document.size() - head.size() - tail.size());
}

std::string elements(records& from, std::vector<dim_params*>* dims = nullptr) {
  return body(from, ZRT4_FORMAT, dims);
}

std::string variables(records& from) {
  return body(from, MORV_FORMAT);
}

/// The DIM elements of the last channel, as the element dialect writes them.
std::string dimensions(records& from, std::vector<dim_params*> dims) {
  const std::string text = elements(from, &dims);
  const std::size_t begin = text.rfind("</SIZE>\n") + 8;
  return text.substr(begin, text.rfind("</CHANNEL>\n") - begin);
}

const std::string bare_channel =
    "<CHANNEL>\n<STREAM>0</STREAM>\n<EVTYPE>0</EVTYPE>\n<DTYPE>0</DTYPE>\n<DB_KEY>-1</DB_KEY>\n"
    "<COUNT>0</COUNT>\n<SB_NAME></SB_NAME>\n<PROP>P</PROP>\n<NAME>D</NAME>\n"
    "<SETPOINT>0</SETPOINT>\n<SUBSYSTEM></SUBSYSTEM>\n<UNITS></UNITS>\n<DESC></DESC>\n"
    "<SIZE>1</SIZE>\n</CHANNEL>\n";

struct full_channel : records {
  full_channel() : one(add("FAC/DEV/LOC/PROP", "DAQ.NAME")) {
    one.stream = -1;
    one.ev_type = 0xffffffff;
    one.dtype = 0x80000002;
    one.db_key = 42;
    one.count = 7;
    one.set_point = 1;
    one.max_size = 1;
    test::set(one.sb_name, "SERVER");
    test::set(one.subsystem, "RF");
    test::set(one.units, "mm");
    test::set(one.prop_desc, "a description");
  }
  chan_descr_2010& one;
};

const std::string full_elements =
    "<CHANNEL>\n<STREAM>-1</STREAM>\n<EVTYPE>-1</EVTYPE>\n<DTYPE>-2147483646</DTYPE>\n"
    "<DB_KEY>42</DB_KEY>\n<COUNT>7</COUNT>\n<SB_NAME>SERVER</SB_NAME>\n"
    "<PROP>FAC/DEV/LOC/PROP</PROP>\n<NAME>DAQ.NAME</NAME>\n<SETPOINT>1</SETPOINT>\n"
    "<SUBSYSTEM>RF</SUBSYSTEM>\n<UNITS>mm</UNITS>\n<DESC>a description</DESC>\n<SIZE>1</SIZE>\n";

const std::string full_variables =
    "<evType>-1</evType>\n<vindo>FAC/DEV/LOC/PROP</vindo>\n<daqName>DAQ.NAME</daqName>\n"
    "<DBKey>42</DBKey>\n<setPoint>1</setPoint>\n<sbName>SERVER</sbName>\n"
    "<subSystem>RF</subSystem>\n<description>a description</description>\n<units>mm</units>\n";

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

// The element dialect

TEST(ElementDialect, BareChannel) {
  records from;
  from.add("P", "D");
  EXPECT_EQ(elements(from), bare_channel);
}

TEST(ElementDialect, EveryFieldInOrder) {
  full_channel from;
  EXPECT_EQ(elements(from), full_elements + "</CHANNEL>\n");
}

TEST(ElementDialect, ChannelsInListOrder) {
  records from;
  from.add("Q", "1");
  from.add("P", "2");
  const std::string text = elements(from);
  EXPECT_LT(text.find("<PROP>Q</PROP>"), text.find("<PROP>P</PROP>"));
}

TEST(ElementDialect, LongestTexts) {
  records from;
  auto& one = from.add(std::string(255, 'p'), std::string(255, 'd'));
  test::set(one.sb_name, std::string(255, 's'));
  test::set(one.prop_desc, std::string(255, 't'));
  test::set(one.subsystem, std::string(63, 'u'));
  test::set(one.units, std::string(15, 'v'));
  from.add_bit(one, 1, std::string(63, 'b'), std::string(79, 'c'));
  const std::string text = elements(from);
  for (const std::string& leaf : {"<PROP>" + std::string(255, 'p') + "</PROP>\n",
                                  "<NAME>" + std::string(255, 'd') + "</NAME>\n",
                                  "<SB_NAME>" + std::string(255, 's') + "</SB_NAME>\n",
                                  "<DESC>" + std::string(255, 't') + "</DESC>\n",
                                  "<SUBSYSTEM>" + std::string(63, 'u') + "</SUBSYSTEM>\n",
                                  "<UNITS>" + std::string(15, 'v') + "</UNITS>\n",
                                  "<BIT_NAME>" + std::string(63, 'b') + "</BIT_NAME>\n",
                                  "<BIT_DESCR>" + std::string(79, 'c') + "</BIT_DESCR>\n"}) {
    EXPECT_THAT(text, HasSubstr(leaf));
  }
}

TEST(ElementDialect, LongestNumbers) {
  records from;
  auto& one = from.add("P", "D");
  one.stream = std::numeric_limits<std::int32_t>::min();
  one.count = std::numeric_limits<std::int32_t>::max();
  EXPECT_THAT(elements(from), HasSubstr("<STREAM>-2147483648</STREAM>\n"));
  EXPECT_THAT(elements(from), HasSubstr("<COUNT>2147483647</COUNT>\n"));
}

TEST(ElementDialect, NothingIsEscaped) {
  records from;
  test::set(from.add("P", "D").prop_desc, "a < b & \"c\" \xe4");
  EXPECT_THAT(elements(from), HasSubstr("<DESC>a < b & \"c\" \xe4</DESC>\n"));
}

TEST(ElementDialect, Bits) {
  full_channel from;
  from.add_bit(from.one, 3, "ON", "is on");
  from.add_bit(from.one, -1, "", "");
  EXPECT_EQ(elements(from),
            full_elements +
                "<BIT>3\n<BIT_NAME>ON</BIT_NAME>\n<BIT_DESCR>is on</BIT_DESCR>\n</BIT>\n"
                "<BIT>-1\n<BIT_NAME></BIT_NAME>\n<BIT_DESCR></BIT_DESCR>\n</BIT>\n</CHANNEL>\n");
}

TEST(ElementDialect, DimensionsAndStatistics) {
  full_channel from;
  auto& time = from.add_dim(from.one, 0, "time", "time axis", "s");
  from.add_stat(time, 1, "mean", "mean value", "ms");
  from.add_stat(time, 2, "", "", "");
  from.add_dim(from.one, 5);
  EXPECT_EQ(
      elements(from),
      full_elements +
          "<DIM>0\n<DIM_NAME>time</DIM_NAME>\n<DIM_UNITS>s</DIM_UNITS>\n"
          "<DIM_DESCR>time axis</DIM_DESCR>\n"
          "<STAT>1\n<STAT_NAME>mean</STAT_NAME>\n<STAT_UNITS>ms</STAT_UNITS>\n"
          "<STAT_DESCR>mean value</STAT_DESCR>\n</STAT>\n"
          "<STAT>2\n<STAT_NAME></STAT_NAME>\n<STAT_UNITS></STAT_UNITS>\n<STAT_DESCR></STAT_DESCR>\n"
          "</STAT>\n</DIM>\n"
          "<DIM>5\n<DIM_NAME></DIM_NAME>\n<DIM_UNITS></DIM_UNITS>\n<DIM_DESCR></DIM_DESCR>\n</"
          "DIM>\n"
          "</CHANNEL>\n");
}

TEST(ElementDialect, BitsStandBeforeDimensions) {
  records from;
  auto& one = from.add("P", "D");
  from.add_dim(one, 1);
  from.add_bit(one, 2, "", "");
  const std::string text = elements(from);
  EXPECT_LT(text.find("<BIT>2\n"), text.find("<DIM>1\n"));
}

TEST(ElementDialect, VectorsDecideAndNotCounters) {
  records from;
  auto& one = from.add("P", "D");
  from.add_bit(one, 2, "", "");
  from.add_stat(from.add_dim(one, 3), 4, "", "", "");
  one.nbits = one.ndims = one.dims[0]->nstats = 0;
  for (const char* tag : {"<BIT>2\n", "<DIM>3\n", "<STAT>4\n"}) {
    EXPECT_THAT(elements(from), HasSubstr(tag));
  }
  records empty;
  auto& other = empty.add("P", "D");
  other.nbits = other.ndims = 7;
  EXPECT_EQ(elements(empty), bare_channel);
}

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

// The variable dialect

TEST(VariableDialect, Float) {
  full_channel from;
  EXPECT_EQ(variables(from), "<DaqFloat>\n" + full_variables + "<freq>1</freq>\n</DaqFloat>\n");
}

TEST(VariableDialect, BareFloat) {
  records from;
  from.add("P", "D");
  EXPECT_EQ(
      variables(from),
      "<DaqFloat>\n<evType>0</evType>\n<vindo>P</vindo>\n<daqName>D</daqName>\n"
      "<DBKey>-1</DBKey>\n<setPoint>0</setPoint>\n<sbName></sbName>\n<subSystem></subSystem>\n"
      "<description></description>\n<units></units>\n<freq>1</freq>\n</DaqFloat>\n");
}

TEST(VariableDialect, BitsWriteTheDescription) {
  full_channel from;
  from.add_bit(from.one, 3, "ON", "is on");
  from.add_bit(from.one, -4, "", "");
  EXPECT_EQ(variables(from), "<DaqBits>\n" + full_variables +
                                 "<bitTitle bit=\"3\">is on</bitTitle>\n"
                                 "<bitTitle bit=\"-4\"></bitTitle>\n"
                                 "<freq>1</freq>\n</DaqBits>\n");
}

TEST(VariableDialect, Matrix) {
  full_channel from;
  from.one.max_size = 8;
  auto& time = from.add_dim(from.one, 0, "time", "time axis", "s");
  from.add_stat(time, 1, "mean", "mean value", "ms");
  from.add_dim(from.one, -1);
  EXPECT_EQ(variables(from),
            "<DaqFloatMatrix>\n" + full_variables +
                "<firstIndex>0</firstIndex>\n<lastIndex>7</lastIndex>\n"
                "<dimension id=\"0\">\n<name>time</name>\n<description>time axis</description>\n"
                "<units>s</units>\n</dimension>\n"
                "<dimension id=\"-1\">\n<name></name>\n<description></description>\n"
                "<units></units>\n</dimension>\n<freq>1</freq>\n</DaqFloatMatrix>\n");
}

TEST(VariableDialect, KindAndIndices) {
  struct {
    int max_size;
    bool bits;
    const char* kind;
    const char* last;
  } const cases[] = {
      {1, false, "DaqFloat", ""},        {1, true, "DaqBits", ""},
      {0, false, "DaqFloatMatrix", ""},  {0, true, "DaqFloatMatrix", ""},
      {-5, false, "DaqFloatMatrix", ""}, {2, true, "DaqFloatMatrix", "1"},
      {8, false, "DaqFloatMatrix", "7"}, {2147483647, false, "DaqFloatMatrix", "2147483646"}};
  for (const auto& one : cases) {
    records from;
    auto& channel = from.add("P", "D");
    channel.max_size = one.max_size;
    if (one.bits) from.add_bit(channel, 0, "", "");
    const std::string text = variables(from);
    const std::string kind = one.kind;
    EXPECT_EQ(text.substr(0, kind.size() + 3), "<" + kind + ">\n") << one.max_size;
    EXPECT_EQ(text.substr(text.size() - kind.size() - 4), "</" + kind + ">\n") << one.max_size;
    EXPECT_EQ(text.find("bitTitle") != std::string::npos, one.bits);
    if (*one.last == '\0') {
      EXPECT_THAT(text, Not(HasSubstr("Index"))) << one.max_size;
    } else {
      EXPECT_THAT(text, HasSubstr("<firstIndex>0</firstIndex>\n<lastIndex>" +
                                  std::string(one.last) + "</lastIndex>\n"));
    }
  }
}

TEST(VariableDialect, BitsThenDimensionsThenFrequency) {
  records from;
  auto& one = from.add("P", "D");
  from.add_dim(one, 1);
  from.add_bit(one, 2, "", "");
  const std::string text = variables(from);
  EXPECT_LT(text.find("</units>\n<bitTitle bit=\"2\">"), text.find("<dimension id=\"1\">"));
  EXPECT_THAT(text, HasSubstr("</dimension>\n<freq>1</freq>\n</DaqBits>\n"));
}

TEST(VariableDialect, VectorsDecideAndNotCounters) {
  records from;
  auto& one = from.add("P", "D");
  one.nbits = one.ndims = 3;
  EXPECT_THAT(variables(from), HasSubstr("<DaqFloat>\n"));
  from.add_bit(one, 0, "", "");
  one.nbits = 0;
  EXPECT_THAT(variables(from), HasSubstr("<DaqBits>\n"));
}

// The type is taken as a number here, whatever it was read as.
TEST(VariableDialect, FrequencyByTheClassOfTheEventType) {
  for (unsigned event = 0; event < 70; ++event) {
    records from;
    from.add("P", "D").ev_type = event;
    const int structure = get_event_struct_type(static_cast<int>(event));
    const std::string freq = structure == 1 || structure == 3 ? "-1" : "1";
    EXPECT_THAT(variables(from), HasSubstr("<freq>" + freq + "</freq>\n")) << event;
  }
  records from;
  from.add("P", "D").ev_type = 6;
  EXPECT_THAT(variables(from), HasSubstr("<freq>-1</freq>\n"));
}

// A document far longer than what its first channels let expect

TEST(BothDialects, LongDocuments) {
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    records from;
    std::string single;
    std::string expected;
    for (int n = 0; n < 400; ++n) {
      records alone;
      for (records* into : {&from, &alone}) {
        auto& one = into->add("P" + std::to_string(n), "D");
        for (int bit = 0; n > 100 && bit < 50; ++bit) {
          into->add_bit(one, bit, std::string(60, 'n'), std::string(70, 'd'));
        }
      }
      expected += body(alone, format);
    }
    EXPECT_EQ(body(from, format), expected);
  }
}

TEST(BothDialects, LongChannelsFirstReserveNoMoreThanTheRecordsTakeTwice) {
  constexpr std::size_t channels = 10'000;
  constexpr std::size_t long_channels = 64;
  records from;
  for (std::size_t n = 0; n < channels; ++n) {
    auto& one = from.add("P" + std::to_string(n), "D");
    for (int bit = 0; n < long_channels && bit < 200; ++bit) {
      from.add_bit(one, bit, std::string(60, 'n'), std::string(70, 'd'));
    }
  }
  for (const int format : {ZRT4_FORMAT, MORV_FORMAT}) {
    std::string document;
    EXPECT_EQ(dump_chan_desr(&from.list, nullptr, DUMP_XML_FILE, format, -1, &document, nullptr),
              0);
    EXPECT_GT(document.size(), 2'000'000U);
    EXPECT_LE(document.capacity(), 2 * channels * sizeof(chan_descr_2010));
  }
}
