#include "xml_writer.hh"

#include <unistd.h>

#include "support.hh"
#include "system_calls.hh"

using test::calls;
using namespace zrt4::detail;

namespace {

const std::string declaration = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n";

struct writing : testing::Test {
  writing() { calls = {}; }
  ~writing() override { calls = {}; }

  static bool write_watched(const std::string& document) {
    bool arrived = false;
    calls.watch([&] { arrived = write_document(test::collector, document); });
    return arrived;
  }
};

}  // namespace

using XmlWriter = writing;

TEST_F(XmlWriter, ALeafIsALine) {
  std::string out = "before\n";
  append_leaf(out, "INDEX", "7");
  append_leaf(out, "PROP", "");
  append_leaf(out, "DESC", "a < b & \"c\"");
  EXPECT_EQ(out, "before\n<INDEX>7</INDEX>\n<PROP></PROP>\n<DESC>a < b & \"c\"</DESC>\n");
}

TEST_F(XmlWriter, ATagIsItsThreeParts) {
  std::string out = "before";
  append_tag(out, "</", "CHANNEL", ">\n");
  EXPECT_EQ(out, "before</CHANNEL>\n");
}

TEST_F(XmlWriter, ADocumentBeginsWithItsDeclarationAndEndsWithAnEmptyLine) {
  std::string document = begin_document(nullptr);
  EXPECT_EQ(document, declaration);
  end_document(document);
  EXPECT_EQ(document, declaration + "\n");
}

TEST_F(XmlWriter, ADocumentTakesOverTheMemoryOfAnEmptyString) {
  std::string destination;
  destination.reserve(1000);
  const char* const memory = destination.data();
  const std::string document = begin_document(&destination);
  EXPECT_EQ(document, declaration);
  EXPECT_EQ(document.data(), memory);
  EXPECT_EQ(destination, "");
}

TEST_F(XmlWriter, AStringThatHoldsATextKeepsIt) {
  std::string destination = "a text that stands before the document";
  EXPECT_EQ(begin_document(&destination), declaration);
  EXPECT_EQ(destination, "a text that stands before the document");
}

TEST_F(XmlWriter, RoomIsMadeForTheLengthExpected) {
  std::string document = begin_document(nullptr);
  for (const std::size_t length : {10'000U, 5'000'000U, 100U}) {
    const std::size_t before = document.capacity();
    expect_length(document, length);
    EXPECT_GE(document.capacity(), length);
    EXPECT_GE(document.capacity(), before);
    EXPECT_EQ(document, declaration);
  }
}

// What is written may well be shorter: records that are listed again are not written again.
TEST_F(XmlWriter, ALengthThatNoStringHasIsNoReasonToThrow) {
  std::string text = "text";
  for (const std::size_t length : {text.max_size() + 1, std::string::npos}) {
    EXPECT_NO_THROW(expect_length(text, length));
    EXPECT_EQ(text, "text");
  }
}

TEST_F(XmlWriter, AFileHasTheDocumentBeforeItIsClosed) {
  test::temporary_file file("");
  std::FILE* const open = std::fopen(file.name(), "w");
  write_document(open, declaration);
  EXPECT_EQ(file.content(), declaration);
  std::fclose(open);
  EXPECT_EQ(file.content(), declaration);
}

TEST_F(XmlWriter, ADescriptorGetsTheDocument) {
  test::temporary_file file("");
  std::FILE* const open = std::fopen(file.name(), "w");
  EXPECT_TRUE(write_document(fileno(open), "whole"));
  EXPECT_EQ(file.content(), "whole");
  std::fclose(open);
}

TEST_F(XmlWriter, ADescriptorMayTakeItPieceByPiece) {
  calls.write_results = {1, 3, 2};
  EXPECT_TRUE(write_watched("0123456789"));
  EXPECT_EQ(calls.written, "0123456789");
  EXPECT_TRUE(calls.write_results.empty());
}

TEST_F(XmlWriter, AFailedWriteIsToldAndTheLast) {
  calls.write_results = {4, -1, 3};
  EXPECT_FALSE(write_watched("0123456789"));
  EXPECT_EQ(calls.written, "0123");
  EXPECT_EQ(calls.write_results.size(), 1U);
}

TEST_F(XmlWriter, AWriteThatTakesNothingIsTheLast) {
  calls.write_results = {4, 0, 3};
  EXPECT_TRUE(write_watched("0123456789"));
  EXPECT_EQ(calls.written, "0123");
  EXPECT_EQ(calls.write_results.size(), 1U);
}
