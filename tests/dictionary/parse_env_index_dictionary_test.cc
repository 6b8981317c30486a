#include "parse_env_index_dictionary.hh"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

#include "comma_locale.hh"
#include "env_dictionary_support.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

namespace {

template <class Generation>
struct from_text : Generation {
  static constexpr bool is_text = true;
  static int take(std::string document, std::vector<typename Generation::entry*>* list) {
    return Generation::read(document.data(), list);
  }
};

template <class Generation>
struct from_file : Generation {
  static constexpr bool is_text = false;
  static int take(const std::string& document, std::vector<typename Generation::entry*>* list) {
    test::temporary_file file(document);
    return Generation::readf(file.name(), list);
  }
};

struct reader_names {
  template <class Reader>
  static std::string GetName(int) {
    return std::string(Reader::title) + (Reader::is_text ? "_text" : "_file");
  }
};

template <class Entry>
struct reading {
  int code = -1;
  test::output said;
  zrt4::basic_env_dictionary<Entry> list;
};

template <class Reader>
reading<typename Reader::entry> read(const std::string& document) {
  reading<typename Reader::entry> result;
  result.said = test::captured([&] { result.code = Reader::take(document, result.list.get()); });
  return result;
}

// Reads `content` as the content of the root; nothing may be printed.
template <class Reader>
reading<typename Reader::entry> read_content(const std::string& content) {
  auto result = read<Reader>("<ENVINDEXDICT>" + content + "</ENVINDEXDICT>");
  EXPECT_EQ(result.code, 0) << content;
  EXPECT_EQ(result.said.out, "");
  EXPECT_EQ(result.said.err, "");
  return result;
}

template <class Reader>
float delta_read_from(const std::string& text) {
  const auto result = read_content<Reader>("<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DABS>" + text +
                                           "</DABS></CHANNEL>");
  return result.list[0].data.env_ch_abs_delta;
}

std::uint32_t bits_of(float number) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

template <class Entry>
void expect_entry(const Entry& entry, int index, const std::string& property, float absolute,
                  float relative) {
  EXPECT_EQ(entry.index, index);
  std::string field(sizeof entry.data.env_prop, '\0');
  property.copy(field.data(), property.size());
  EXPECT_EQ(std::string(entry.data.env_prop, sizeof entry.data.env_prop), field);
  EXPECT_EQ(entry.data.env_ch_abs_delta, absolute);
  EXPECT_EQ(entry.data.env_ch_rel_delta, relative);
}

template <class Reader>
struct EnvIndexDictRead : testing::Test {};
using readers = testing::Types<from_text<test::older>, from_file<test::older>,
                               from_text<test::y2010>, from_file<test::y2010>>;
TYPED_TEST_SUITE(EnvIndexDictRead, readers, reader_names);

}  // namespace

TEST(EnvIndexDictNames, Values) {
  EXPECT_EQ(ENV_INDX_ROOT, 0);
  EXPECT_EQ(ENV_INDX_CHAN, 1);
  EXPECT_EQ(ENV_INDX_INDX, 2);
  EXPECT_EQ(ENV_INDX_PROP, 3);
  EXPECT_EQ(ENV_INDX_DABS, 4);
  EXPECT_EQ(ENV_INDX_DREL, 5);
}

TEST(EnvIndexDictEntry, Layout) {
  using older = zrt4_env_index_dictionary_entry;
  using wider = zrt4_env_index_dictionary_entry_2010;
  EXPECT_EQ(offsetof(older, data), 4U);
  EXPECT_EQ(offsetof(wider, data), 4U);
  EXPECT_EQ(sizeof(zrt4_env_dictionary_block::env_prop), 80U);
  EXPECT_EQ(sizeof(zrt4_env_dictionary_block_2010::env_prop), 256U);
}

TYPED_TEST(EnvIndexDictRead, AnEmptyRootHasNoEntries) {
  EXPECT_TRUE(read_content<TypeParam>("").list.empty());
  EXPECT_TRUE(read_content<TypeParam>("\n\t ").list.empty());
  const auto result = read<TypeParam>("<ENVINDEXDICT/>");
  EXPECT_EQ(result.code, 0);
  EXPECT_TRUE(result.list.empty());
}

TYPED_TEST(EnvIndexDictRead, OneChannel) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><INDEX>7</INDEX><PROP>ENV/TEMP.1</PROP>"
      "<DABS>0.5</DABS><DREL>0.01</DREL></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 7, "ENV/TEMP.1", 0.5F, 0.01F);
}

TYPED_TEST(EnvIndexDictRead, ADocumentAsItIsWritten) {
  const auto result = read<TypeParam>(
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n"
      "<ENVINDEXDICT>\n"
      "\t<isodate>2021-12-01T13:45:07</isodate>\n"
      "<CHANNEL>\n<INDEX>7</INDEX>\n<PROP>ENV/TEMP.1</PROP>\n"
      "<DABS>0.500000</DABS>\n<DREL>0.010000</DREL>\n</CHANNEL>\n"
      "<CHANNEL>\n<INDEX>8</INDEX>\n<PROP>ENV/TEMP.2</PROP>\n"
      "<DABS>-1.250000</DABS>\n<DREL>0.000000</DREL>\n</CHANNEL>\n"
      "</ENVINDEXDICT>\n\n");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.said.err, "");
  ASSERT_EQ(result.list.size(), 2U);
  expect_entry(result.list[0], 7, "ENV/TEMP.1", 0.5F, 0.01F);
  expect_entry(result.list[1], 8, "ENV/TEMP.2", -1.25F, 0.0F);
}

TYPED_TEST(EnvIndexDictRead, AppendsToWhatIsInTheList) {
  auto* first = test::new_entry<typename TypeParam::entry>(1, "FIRST", 0, 0);
  typename TypeParam::list list;
  list.get()->push_back(first);
  EXPECT_EQ(TypeParam::take("<ENVINDEXDICT><CHANNEL><INDEX>2</INDEX><PROP>B</PROP></CHANNEL>"
                            "</ENVINDEXDICT>",
                            list.get()),
            0);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(&list[0], first);
  expect_entry(list[0], 1, "FIRST", 0, 0);
  expect_entry(list[1], 2, "B", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, ElementsMayComeInAnyOrder) {
  const char* const orders[] = {
      "<INDEX>3</INDEX><PROP>P</PROP><DABS>1</DABS><DREL>2</DREL>",
      "<PROP>P</PROP><INDEX>3</INDEX><DABS>1</DABS><DREL>2</DREL>",
      "<DABS>1</DABS><DREL>2</DREL><INDEX>3</INDEX><PROP>P</PROP>",
      "<DREL>2</DREL><PROP>P</PROP><DABS>1</DABS><INDEX>3</INDEX>",
      "<INDEX>3</INDEX><DREL>2</DREL><PROP>P</PROP><DABS>1</DABS>",
  };
  for (const std::string order : orders) {
    const auto result = read_content<TypeParam>("<CHANNEL>" + order + "</CHANNEL>");
    ASSERT_EQ(result.list.size(), 1U) << order;
    expect_entry(result.list[0], 3, "P", 1, 2);
  }
}

TYPED_TEST(EnvIndexDictRead, DeltasDefaultToZero) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP></CHANNEL>"
      "<CHANNEL><INDEX>2</INDEX><PROP>B</PROP><DREL>3</DREL></CHANNEL>");
  ASSERT_EQ(result.list.size(), 2U);
  expect_entry(result.list[0], 1, "A", 0, 0);
  expect_entry(result.list[1], 2, "B", 0, 3);
}

TYPED_TEST(EnvIndexDictRead, AChannelNeedsIndexAndProperty) {
  const test::kept_leak last_incomplete_channel;
  EXPECT_TRUE(read_content<TypeParam>("<CHANNEL><INDEX>1</INDEX><DABS>1</DABS></CHANNEL>"
                                      "<CHANNEL><PROP>A</PROP><DREL>1</DREL></CHANNEL>"
                                      "<CHANNEL/><CHANNEL><INDEX/><PROP/></CHANNEL>")
                  .list.empty());
}

TYPED_TEST(EnvIndexDictRead, AnIncompleteChannelLeavesNothingToTheNext) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><INDEX>1</INDEX><DABS>5</DABS><DREL>6</DREL></CHANNEL>"
      "<CHANNEL><PROP>LONGER.NAME</PROP></CHANNEL>"
      "<CHANNEL><PROP>B</PROP><INDEX>2</INDEX></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 2, "B", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, ElementsBeforeAnyChannelAreIgnored) {
  const test::kept_leak last_incomplete_channel;
  const auto result = read_content<TypeParam>(
      "<INDEX>9</INDEX><PROP>EARLY</PROP><DABS>1</DABS><DREL>2</DREL>"
      "<CHANNEL><INDEX>1</INDEX></CHANNEL>");
  EXPECT_TRUE(result.list.empty());
}

TYPED_TEST(EnvIndexDictRead, NestingDoesNotMatter) {
  const auto result = read_content<TypeParam>(
      "<GROUP><CHANNEL/><INDEX>1</INDEX><X><PROP>A</PROP></X></GROUP><DABS>4</DABS>"
      "<CHANNEL><INDEX>2</INDEX><CHANNEL><PROP>B</PROP><INDEX>3</INDEX></CHANNEL></CHANNEL>"
      "<DREL>5</DREL>");
  ASSERT_EQ(result.list.size(), 2U);
  expect_entry(result.list[0], 1, "A", 4, 0);
  expect_entry(result.list[1], 3, "B", 0, 5);
}

TYPED_TEST(EnvIndexDictRead, NamesMatchWholeAndInTheirCase) {
  const char* const others[] = {"channel", "CHANNELS", "CHANNE", "x:CHANNEL", "isodate"};
  for (const std::string other : others) {
    EXPECT_TRUE(
        read_content<TypeParam>("<" + other + "><INDEX>1</INDEX><PROP>A</PROP></" + other + ">")
            .list.empty())
        << other;
  }
  const auto result = read_content<TypeParam>(
      "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><Index>2</Index><prop>B</prop><PROPS>C</PROPS>"
      "<dabs>1</dabs><DABSOLUTE>1</DABSOLUTE><Drel>1</Drel><DRE>1</DRE></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 1, "A", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, IndexIsADecimalNumber) {
  const struct {
    const char* text;
    int index;
  } rows[] = {
      {"7", 7},
      {"-7", -7},
      {"+7", 7},
      {" \n7", 7},
      {"7 ", 7},
      {"7x", 7},
      {"x7", 0},
      {"0x10", 0},
      {"010", 10},
      {"1.9", 1},
      {"2147483647", INT_MAX},
      {"-2147483648", INT_MIN},
  };
  for (const auto& row : rows) {
    const auto result = read_content<TypeParam>("<CHANNEL><PROP>A</PROP><INDEX>" +
                                                std::string(row.text) + "</INDEX></CHANNEL>");
    ASSERT_EQ(result.list.size(), 1U) << row.text;
    EXPECT_EQ(result.list[0].index, row.index) << row.text;
  }
}

TYPED_TEST(EnvIndexDictRead, AnIndexBeyondTheRangeOfLongSaturatesBeforeItIsCut) {
  const struct {
    const char* text;
    int with_64_bits;
    int with_32_bits;
  } rows[] = {
      {"2147483648", INT_MIN, INT_MAX},
      {"4294967303", 7, INT_MAX},
      {"9223372036854775808", -1, INT_MAX},
      {"-9223372036854775809", 0, INT_MIN},
  };
  for (const auto& row : rows) {
    const auto result = read_content<TypeParam>("<CHANNEL><PROP>A</PROP><INDEX>" +
                                                std::string(row.text) + "</INDEX></CHANNEL>");
    ASSERT_EQ(result.list.size(), 1U) << row.text;
    EXPECT_EQ(result.list[0].index, sizeof(long) == 8 ? row.with_64_bits : row.with_32_bits);
  }
}

TYPED_TEST(EnvIndexDictRead, ATextThatIsNoIndexStillCountsAsOne) {
  const auto result =
      read_content<TypeParam>("<CHANNEL><INDEX>none</INDEX><PROP>A</PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 0, "A", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, DeltasAreReadAsScanfReadsThem) {
  const float infinity = std::numeric_limits<float>::infinity();
  const struct {
    const char* text;
    float delta;
  } rows[] = {
      {"0.5", 0.5F},
      {"-0.5", -0.5F},
      {"+0.5", 0.5F},
      {" \n\t0.5", 0.5F},
      {"0.5 ", 0.5F},
      {"0.5V", 0.5F},
      {".5", 0.5F},
      {"5.", 5.0F},
      {"-.25e1", -2.5F},
      {"1e3", 1000.0F},
      {"1E-2", 0.01F},
      {"0x1p-1", 0.5F},
      {"0x10", 16.0F},
      {"-0", -0.0F},
      {"1,5", 1.0F},
      {"inf", infinity},
      {"-Infinity", -infinity},
      {"1e39", infinity},
      {"-1e39", -infinity},
      {"1e-46", 0.0F},
      {"1.4e-45", std::numeric_limits<float>::denorm_min()},
      {"16777217", 16777216.0F},
      {"16777217.000000001", 16777218.0F},
      {"0.1", 0.1F},
      {"340282346638528859811704183484516925440", std::numeric_limits<float>::max()},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(bits_of(delta_read_from<TypeParam>(row.text)), bits_of(row.delta)) << row.text;
  }
  EXPECT_TRUE(std::isnan(delta_read_from<TypeParam>("nan")));
  EXPECT_TRUE(std::isnan(delta_read_from<TypeParam>("-NAN")));
}

TYPED_TEST(EnvIndexDictRead, ATextThatIsNoDeltaLeavesItAsItWas) {
  for (const char* text : {"none", "-", "+", ".", "e5", "--1", "$1", "- 1"}) {
    EXPECT_EQ(bits_of(delta_read_from<TypeParam>(text)), 0U) << text;
    EXPECT_EQ(bits_of(delta_read_from<TypeParam>("2.5</DABS><DABS>" + std::string(text))),
              bits_of(2.5F))
        << text;
  }
}

TYPED_TEST(EnvIndexDictRead, TheLastDeltaWins) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><DABS>1</DABS><DABS>2</DABS><INDEX>1</INDEX><PROP>A</PROP>"
      "<DREL>3</DREL><DREL>4</DREL></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 1, "A", 2, 4);
}

TYPED_TEST(EnvIndexDictRead, RandomDeltaTextsAreReadAsScanfReadsThem) {
  std::mt19937 random(42);
  const std::string alphabet = "0123456789012345678900..--+eExXinfa pP ";
  std::vector<std::string> texts;
  for (int i = 0; i < 4000; ++i) {
    std::string text(1, "0123456789.-"[random() % 12]);
    for (auto length = random() % 14; length > 0; --length) {
      text += alphabet[random() % alphabet.size()];
    }
    texts.push_back(text);
  }
  for (int i = 0; i < 4000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    float number = 0;
    std::memcpy(&number, &bits, sizeof number);
    char text[80];
    std::snprintf(text, sizeof text, i % 2 != 0 ? "%.9g" : "%.7f", static_cast<double>(number));
    texts.emplace_back(text);
  }
  std::string content;
  for (const auto& text : texts) {
    content += "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><DREL>" + text + "</DREL></CHANNEL>";
  }
  const auto result = read_content<TypeParam>(content);
  ASSERT_EQ(result.list.size(), texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    float expected = 0;
    std::sscanf(texts[i].c_str(), "%f", &expected);
    EXPECT_EQ(bits_of(result.list[i].data.env_ch_rel_delta), bits_of(expected)) << texts[i];
  }
}

TYPED_TEST(EnvIndexDictRead, DeltasFollowTheDecimalPointOfTheLocale) {
  const test::comma_locale comma;
  if (!comma.active()) GTEST_SKIP() << "no locale with a decimal comma can be made here";
  EXPECT_EQ(delta_read_from<TypeParam>("0,5"), 0.5F);
  EXPECT_EQ(delta_read_from<TypeParam>("1.5"), 1.0F);
}

TYPED_TEST(EnvIndexDictRead, PropertiesAreCutAtTheFieldsLength) {
  constexpr std::size_t longest = TypeParam::longest;
  for (const std::size_t length :
       {std::size_t{1}, std::size_t{78}, std::size_t{79}, std::size_t{80}, std::size_t{100},
        std::size_t{254}, std::size_t{255}, std::size_t{256}, std::size_t{5000}}) {
    std::string name;
    for (std::size_t i = 0; i < length; ++i) name += static_cast<char>('A' + i % 26);
    const auto result =
        read_content<TypeParam>("<CHANNEL><INDEX>1</INDEX><PROP>" + name + "</PROP></CHANNEL>");
    ASSERT_EQ(result.list.size(), 1U);
    expect_entry(result.list[0], 1, name.substr(0, longest), 0, 0);
  }
}

TYPED_TEST(EnvIndexDictRead, APropertyOfAHundredCharacters) {
  const std::string name = std::string(79, 'a') + std::string(21, 'b');
  const auto result =
      read_content<TypeParam>("<CHANNEL><INDEX>1</INDEX><PROP>" + name + "</PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  EXPECT_STREQ(result.list[0].data.env_prop,
               TypeParam::longest == 79 ? std::string(79, 'a').c_str() : name.c_str());
}

TYPED_TEST(EnvIndexDictRead, PropertiesKeepTheirBlanks) {
  const auto result =
      read_content<TypeParam>("<CHANNEL><INDEX>1</INDEX><PROP> A B </PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 1, " A B ", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, ASecondPropertyAfterTheIndexAppendsTheEntryAgain) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><INDEX>1</INDEX><PROP>LONGER.NAME</PROP><PROP>B</PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 2U);
  EXPECT_EQ(&result.list[0], &result.list[1]);
  expect_entry(result.list[0], 1, "B", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, ASecondIndexAfterThePropertyAppendsTheEntryAgain) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><PROP>A</PROP><INDEX>1</INDEX><INDEX>2</INDEX><INDEX>3</INDEX></CHANNEL>");
  ASSERT_EQ(result.list.size(), 3U);
  EXPECT_EQ(&result.list[0], &result.list[1]);
  EXPECT_EQ(&result.list[0], &result.list[2]);
  expect_entry(result.list[0], 3, "A", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, RepeatingTheElementThatCameFirstOnlyChangesTheEntry) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><INDEX>1</INDEX><PROP>A</PROP><INDEX>2</INDEX></CHANNEL>"
      "<CHANNEL><PROP>B</PROP><INDEX>3</INDEX><PROP>C</PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 2U);
  expect_entry(result.list[0], 2, "A", 0, 0);
  expect_entry(result.list[1], 3, "C", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, AfterARepeatedFirstElementTheOtherAppendsAgain) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><PROP>A</PROP><INDEX>1</INDEX><PROP>B</PROP><INDEX>2</INDEX></CHANNEL>");
  ASSERT_EQ(result.list.size(), 2U);
  EXPECT_EQ(&result.list[0], &result.list[1]);
  expect_entry(result.list[0], 2, "B", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, ACommentInAChannelStartsItAnew) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL><!-- vacuum --><INDEX>1</INDEX><PROP>A</PROP></CHANNEL>"
      "<CHANNEL>text<INDEX>2</INDEX><PROP>B</PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 2U);
  expect_entry(result.list[0], 1, "A", 0, 0);
  expect_entry(result.list[1], 2, "B", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, AttributesAreIgnored) {
  const auto result = read_content<TypeParam>(
      "<CHANNEL INDEX='5' PROP='X'><INDEX u='1'>1</INDEX><PROP>A</PROP></CHANNEL>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 1, "A", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, TextsAreInTheDeclaredEncoding) {
  const auto result = read<TypeParam>(
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?><ENVINDEXDICT>"
      "<CHANNEL><INDEX>1</INDEX><PROP>PLAIN~!{}</PROP></CHANNEL></ENVINDEXDICT>");
  ASSERT_EQ(result.list.size(), 1U);
  expect_entry(result.list[0], 1, "PLAIN~!{}", 0, 0);
}

TYPED_TEST(EnvIndexDictRead, AWrongRootIsToldAndReturnsOne) {
  const auto result =
      read<TypeParam>("<ENVDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP></CHANNEL></ENVDICT>");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.said.err, "WRONG root tag: 'ENVDICT' must be 'ENVINDEXDICT'\n");
  EXPECT_EQ(result.said.out, "");
  EXPECT_TRUE(result.list.empty());
}

TYPED_TEST(EnvIndexDictRead, TheRootMustMatchExactly) {
  for (const char* root : {"envindexdict", "ENVINDEXDICTS", "ENVINDEXDIC", "CHANNEL"}) {
    const auto result = read<TypeParam>("<" + std::string(root) + "/>");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.said.err,
              "WRONG root tag: '" + std::string(root) + "' must be 'ENVINDEXDICT'\n");
  }
}

TYPED_TEST(EnvIndexDictRead, AnErrorAtTheRootAddsItsCount) {
  const auto result = read<TypeParam>("<ENVINDEXDICT");
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.said.err, testing::StartsWith("\nFatal Error at (file "));
  EXPECT_THAT(result.said.err, testing::Not(testing::HasSubstr("WRONG root")));
}

TYPED_TEST(EnvIndexDictRead, ADocumentThatBreaksOffKeepsWhatWasRead) {
  const auto result = read<TypeParam>(
      "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP></CHANNEL>"
      "<CHANNEL><INDEX>2</INDEX><PROP>B</PROP><DABS>3</DABS>");
  EXPECT_GT(result.code, 0);
  EXPECT_THAT(result.said.err, testing::StartsWith("\nFatal Error at (file "));
  ASSERT_EQ(result.list.size(), 2U);
  expect_entry(result.list[0], 1, "A", 0, 0);
  expect_entry(result.list[1], 2, "B", 3, 0);
}

TYPED_TEST(EnvIndexDictRead, ALaterErrorReturnsTheBareCount) {
  const auto result = read<TypeParam>(
      "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP></WRONG></ENVINDEXDICT>");
  EXPECT_EQ(result.code, 1);
  ASSERT_EQ(result.list.size(), 1U);
}

TYPED_TEST(EnvIndexDictRead, EveryShorterDocumentFails) {
  const test::kept_leak last_incomplete_channel;
  const std::string whole =
      "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP></CHANNEL></ENVINDEXDICT>";
  const std::size_t complete = whole.find("</PROP>");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto result = read<TypeParam>(whole.substr(0, length));
    EXPECT_GT(result.code, 0) << length;
    EXPECT_EQ(result.list.size(), length < complete ? 0U : 1U) << length;
  }
}

TYPED_TEST(EnvIndexDictRead, ManyChannels) {
  std::string content;
  for (int i = 0; i < 2000; ++i) {
    const std::string number = std::to_string(i);
    content += "<CHANNEL>\n<INDEX>" + number + "</INDEX>\n<PROP>ENV/" + number + "</PROP>\n<DABS>" +
               number + ".5</DABS>\n<DREL>-" + number + "</DREL>\n</CHANNEL>\n";
  }
  const auto result = read_content<TypeParam>(content);
  ASSERT_EQ(result.list.size(), 2000U);
  for (int i = 0; i < 2000; ++i) {
    expect_entry(result.list[static_cast<std::size_t>(i)], i, "ENV/" + std::to_string(i),
                 static_cast<float>(i) + 0.5F, static_cast<float>(-i));
  }
}

namespace {

template <class Generation>
struct EnvIndexDictReadText : testing::Test {};
template <class Generation>
struct EnvIndexDictReadFile : testing::Test {};
using generations = testing::Types<test::older, test::y2010>;
TYPED_TEST_SUITE(EnvIndexDictReadText, generations, test::titles);
TYPED_TEST_SUITE(EnvIndexDictReadFile, generations, test::titles);

}  // namespace

TYPED_TEST(EnvIndexDictReadText, NullIsAnEmptyText) {
  typename TypeParam::list list;
  int code = 0;
  const auto said = test::captured([&] { code = TypeParam::read(nullptr, list.get()); });
  EXPECT_EQ(code, 2);
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(said.err,
            "\nFatal Error at (file my_mem_info, line 1, char 1): invalid document structure\n"
            "scanFirst() failed\n");
}

TYPED_TEST(EnvIndexDictReadText, LeavesTheTextAlone) {
  const std::string document =
      "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP></CHANNEL></ENVINDEXDICT>";
  std::string given = document;
  typename TypeParam::list list;
  EXPECT_EQ(TypeParam::read(given.data(), list.get()), 0);
  EXPECT_EQ(given, document);
}

TYPED_TEST(EnvIndexDictReadFile, AMissingFileFails) {
  char name[] = "/tmp/zrt4_no_such_folder/dictionary.xml";
  typename TypeParam::list list;
  int code = 0;
  const auto said = test::captured([&] { code = TypeParam::readf(name, list.get()); });
  EXPECT_EQ(code, 1);
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(said.out, "");
  EXPECT_THAT(said.err, testing::StartsWith("\nError during parsing memory stream:\n"
                                            "Exception message is:  \n"));
  EXPECT_THAT(said.err, testing::HasSubstr(name));
}

TYPED_TEST(EnvIndexDictReadFile, AFolderFails) {
  const test::kept_leak of_the_scanner;  // it loses the name of a file that it cannot read
  char name[] = "/tmp";
  typename TypeParam::list list;
  int code = 0;
  const auto said = test::captured([&] { code = TypeParam::readf(name, list.get()); });
  EXPECT_EQ(code, 1);
  EXPECT_TRUE(list.empty());
  EXPECT_NE(said.err, "");
}

TYPED_TEST(EnvIndexDictReadFile, ANullNameFails) {
  typename TypeParam::list list;
  int code = 0;
  const auto said = test::captured([&] { code = TypeParam::readf(nullptr, list.get()); });
  EXPECT_EQ(code, 1);
  EXPECT_NE(said.err, "");
}
