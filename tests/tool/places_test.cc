// Where records stand in their documents.

#include "places.hh"

#include "input_file.hh"
#include "support.hh"

namespace {

struct found_places {
  std::vector<std::string> lines;    ///< "LINE:COLUMN" of each record
  std::vector<std::string> sources;  ///< the XML of each record
};

found_places places_in(const std::string& document) {
  const zrt4::xml_session session;
  const test::temporary_file on_disk(document);
  input_file file(on_disk.path());
  const document_kind kind = kind_of(file);
  const test::kept_leak of_the_readers;
  const loaded_document loaded = traits_of(kind).load(file);
  const std::string text = utf8_text(file);
  found_places found;
  for (const record_place& each : places_of(loaded.rows, record_places(file, kind, text))) {
    found.lines.push_back(std::to_string(each.line) + ":" + std::to_string(each.column));
    found.sources.push_back(each.begin < each.end ? text.substr(each.begin, each.end - each.begin)
                                                  : "");
  }
  return found;
}

std::string utf16(const std::string& ascii) {
  std::string wide = "\xff\xfe";
  for (const char c : ascii) (wide += c) += '\0';
  return wide;
}

using testing::ElementsAre;

}  // namespace

TEST(Places, ChannelsOfTheElementDialect) {
  const found_places found = places_in(
      "<CHANDESCRIPTIONS>\n  <CHANNEL><PROP>A</PROP></CHANNEL>\n<CHANNEL\n><PROP>B</PROP>\n"
      "</CHANNEL></CHANDESCRIPTIONS>");
  EXPECT_THAT(found.lines, ElementsAre("2:12", "4:2"));
  EXPECT_THAT(found.sources, ElementsAre("<CHANNEL><PROP>A</PROP></CHANNEL>",
                                         "<CHANNEL\n><PROP>B</PROP>\n</CHANNEL>"));
}

TEST(Places, EveryOtherKind) {
  EXPECT_THAT(
      places_in("<DAQvariables>\n<DaqFloat><vindo>A</vindo></DaqFloat>\n"
                "<DaqBits><vindo>B</vindo></DaqBits></DAQvariables>")
          .sources,
      ElementsAre("<DaqFloat><vindo>A</vindo></DaqFloat>", "<DaqBits><vindo>B</vindo></DaqBits>"));
  EXPECT_THAT(places_in("<BMR>\n\n<EVENT><TYPE>1</TYPE></EVENT></BMR>").lines, ElementsAre("3:8"));
  EXPECT_THAT(places_in("<ENVINDEXDICT>\n<CHANNEL><INDEX>7</INDEX><PROP>A</PROP></CHANNEL>"
                        "</ENVINDEXDICT>")
                  .lines,
              ElementsAre("2:10"));
  EXPECT_THAT(
      places_in("<Camera>\n<Group><Integer Name=\"A\"><ToolTip>t</ToolTip></Integer>"
                "<Command Name=\"B\"/></Group></Camera>")
          .sources,
      ElementsAre("<Integer Name=\"A\"><ToolTip>t</ToolTip></Integer>", "<Command Name=\"B\"/>"));
}

TEST(Places, ElementsWithoutARecordAreSkipped) {
  EXPECT_THAT(places_in("<CHANDESCRIPTIONS>\n<CHANNEL><NAME>none</NAME></CHANNEL>\n"
                        "<CHANNEL><PROP> A </PROP></CHANNEL>\n<CHANNEL/>\n"
                        "<CHANNEL><PROP>B</PROP></CHANNEL></CHANDESCRIPTIONS>")
                  .lines,
              ElementsAre("3:10", "5:10"));
  EXPECT_THAT(places_in("<BMR>\n<EVENT/>\n<EVENT><TYPE> 4 </TYPE></EVENT></BMR>").lines,
              ElementsAre("3:8"));
}

TEST(Places, AChannelThatIsMergedStandsWhereItStoodFirst) {
  EXPECT_THAT(places_in("<DAQvariables>\n<DaqFloat><vindo>A</vindo></DaqFloat>\n"
                        "<DaqFloat><vindo>A</vindo></DaqFloat>\n"
                        "<DaqFloat><vindo>B</vindo></DaqFloat></DAQvariables>")
                  .lines,
              ElementsAre("2:11", "4:11"));
}

TEST(Places, RecordsBeforeADamageHaveTheirs) {
  EXPECT_THAT(places_in("<CHANDESCRIPTIONS>\n<CHANNEL><PROP>A</PROP></CHANNEL>\n<CHANNEL>").lines,
              ElementsAre("2:10"));
}

TEST(Places, SourcesInAnyEncodingAndWithAnyLineEnds) {
  const std::string channel = "<CHANNEL><PROP>A</PROP><DESC>Gr\u00f6\u00dfe</DESC></CHANNEL>";
  EXPECT_THAT(places_in("<?xml version='1.0' encoding='ISO-8859-1'?><CHANDESCRIPTIONS>\xf6\r\n\r"
                        "<CHANNEL><PROP>A</PROP><DESC>Gr\xf6\xdf"
                        "e</DESC></CHANNEL></CHANDESCRIPTIONS>")
                  .sources,
              ElementsAre(channel));
  EXPECT_THAT(places_in("\xef\xbb\xbf<CHANDESCRIPTIONS>\xf0\x9d\x84\x9e" + channel + "\xc3\xb6" +
                        channel + "</CHANDESCRIPTIONS>")
                  .sources,
              ElementsAre(channel, channel));
  EXPECT_THAT(places_in(utf16("<CHANDESCRIPTIONS>\n<CHANNEL><PROP>A</PROP></CHANNEL>"
                              "</CHANDESCRIPTIONS>"))
                  .sources,
              ElementsAre("<CHANNEL><PROP>A</PROP></CHANNEL>"));
}

TEST(Places, WhatAnEntityStandsForHasNoSource) {
  const zrt4::xml_session session;
  const test::temporary_file on_disk(
      "<!DOCTYPE CHANDESCRIPTIONS [<!ENTITY c '<CHANNEL><PROP>A</PROP></CHANNEL>'>]>\n"
      "<CHANDESCRIPTIONS>&c;<CHANNEL><PROP>B</PROP></CHANNEL></CHANDESCRIPTIONS>");
  input_file file(on_disk.path());
  const std::string text = utf8_text(file);
  const auto found = record_places(file, document_kind::channels, text);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].end, 0U);
  EXPECT_EQ(text.substr(found[1].begin, found[1].end - found[1].begin),
            "<CHANNEL><PROP>B</PROP></CHANNEL>");
}

TEST(Places, ARecordInsideAnotherHasNoSourceOfItsOwn) {
  const std::string inner = "<Integer Name=\"B\"/>";
  EXPECT_THAT(places_in("<Camera><Integer Name=\"A\">" + inner + "</Integer></Camera>").sources,
              ElementsAre("<Integer Name=\"A\">" + inner + "</Integer>", ""));
}
