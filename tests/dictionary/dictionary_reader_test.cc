// Dictionaries: the records that documents give.

#include "dictionary_reading.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

using test::EnvIndexDictRead;
using test::expect_entry;
using test::read;
using test::read_content;

TYPED_TEST_SUITE(EnvIndexDictRead, test::dictionary_readers, test::reader_names);

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
TYPED_TEST_SUITE(EnvIndexDictReadText, test::generations, test::titles);
TYPED_TEST_SUITE(EnvIndexDictReadFile, test::generations, test::titles);

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
