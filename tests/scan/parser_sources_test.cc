// Where the two parsers take their documents from: texts and files, one after the other.

#include "pull_parser_support.hh"

using test::captured;
using test::output;
using test::step;
using test::trace;

TEST(PullParserFile, AnotherDocumentHasItsOwnNames) {
  test::temporary_file first("<A><B/><C/></A>");
  test::temporary_file second("<X><Y/><Z/></X>");
  SAX_File_Parser parser;
  ASSERT_FALSE(parser.start(first.name()));
  EXPECT_EQ(step(parser), "0 'A' -");
  EXPECT_EQ(step(parser), "0 'B' -");
  ASSERT_FALSE(parser.start(second.name()));
  EXPECT_EQ(step(parser), "0 'X' -");
  EXPECT_EQ(step(parser), "0 'Y' -");
  EXPECT_EQ(step(parser), "0 'Z' -");
}

// What stands behind the root of the second is no text of it, however deep the first was left.
TEST(PullParserFile, SecondDocumentStartsOutsideTheElementsOfTheFirst) {
  test::temporary_file first("<A><B><C><D>1</D></C></B></A>");
  test::temporary_file second("<X>2</X>\n\n");
  struct : SAX_File_Parser {
    const FileParseHandlers& counts() const { return handler; }
  } parser;
  ASSERT_FALSE(parser.start(first.name()));
  char* tag = nullptr;
  char* text = nullptr;
  for (int steps = 0; steps < 3; ++steps) ASSERT_EQ(parser.parse(&tag, &text), 0);
  ASSERT_FALSE(parser.start(second.name()));
  const std::string lines = trace(parser);
  EXPECT_EQ(lines, "0 'X' -\n0 'X' '2'\n0 - -\n0 - -\n-1 - -\n");
  EXPECT_EQ(parser.counts().getCharacterCount(), 1U);
  EXPECT_EQ(parser.counts().getSpaceCount(), 0U);
}

TEST(SaxMemoryParser, TextIsReadUpToItsTerminatingZero) {
  std::string text("<R>a</R>\0junk", 13);
  SAX_Memory_Parser parser(text.data());
  EXPECT_TRUE(parser.init_ok());
  EXPECT_FALSE(parser.start());
  EXPECT_EQ(trace(parser), "0 'R' -\n0 'R' 'a'\n0 - -\n0 - -\n-1 - -\n");
}

TEST(SaxMemoryParser, NullTextIsAnEmptyDocument) {
  SAX_Memory_Parser parser(nullptr);
  EXPECT_TRUE(parser.init_ok());
  const output said = captured([&] { EXPECT_TRUE(parser.start()); });
  EXPECT_EQ(said.err,
            "\nFatal Error at (file my_mem_info, line 1, char 1): invalid document structure\n"
            "scanFirst() failed\n");
}

struct UnreadableFile : testing::Test {
  static std::string message_of(const std::string& name) {
    SAX_File_Parser parser;
    std::string file = name;
    const output said = captured([&] { EXPECT_TRUE(parser.start(file.data())); });
    EXPECT_EQ(said.out, "");
    EXPECT_EQ(parser.get_error_counter(), 0);
    return said.err;
  }
};

TEST_F(UnreadableFile, MissingFile) {
  EXPECT_EQ(message_of("/nonexistent/file.xml"),
            "\nError during parsing memory stream:\nException message is:  \n"
            "unable to open primary document entity '/nonexistent/file.xml'\n");
}

TEST_F(UnreadableFile, Directory) {
  const test::kept_leak ten_bytes_of_the_scanner;
  EXPECT_EQ(message_of("/tmp"),
            "\nError during parsing memory stream:\nException message is:  \n"
            "unable to read data from file\n");
}

TEST_F(UnreadableFile, EmptyNameAndNull) {
  const char* const expected =
      "\nError during parsing memory stream:\nException message is:  \n"
      "unable to open primary document entity ''\n";
  EXPECT_EQ(message_of(""), expected);
  SAX_File_Parser parser;
  const output said = captured([&] { EXPECT_TRUE(parser.start(nullptr)); });
  EXPECT_EQ(said.err, expected);
}

TEST(SaxFileParser, ReadsUtf16) {
  std::string document("\xff\xfe");
  for (const char c : std::string("<R>a</R>")) document += {c, '\0'};
  test::in_file variant(document);
  EXPECT_FALSE(variant.start());
  EXPECT_EQ(trace(variant.parser), "0 'R' -\n0 'R' 'a'\n0 - -\n0 - -\n-1 - -\n");
}
