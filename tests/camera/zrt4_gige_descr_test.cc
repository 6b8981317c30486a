#include "zrt4_gige_descr.hh"

#include <vector>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "camera_support.hh"

namespace {

using test::feature_list;
using test::read;
using test::read_one;
using test::repeated;
using test::shown;

}  // namespace

TEST(GigeTables, FeatureTags) {
  EXPECT_EQ(FEATURE_TYPE_MAX, 9);
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_UNDEF], "Undefined");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_INT], "Integer");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_FLOAT], "Float");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_ENUMER], "Enumeration");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_BOOL], "Boolean");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_STRING], "StringReg");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_COMMAND], "Command");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_REGISTER], "IntReg");
  EXPECT_STREQ(FeatureTags[FEATURE_TYPE_LONG], "Int64");
}

TEST(GigeTables, FeatureTypeNumbers) {
  EXPECT_EQ(FEATURE_TYPE_UNDEF, 0);
  EXPECT_EQ(FEATURE_TYPE_INT, 1);
  EXPECT_EQ(FEATURE_TYPE_FLOAT, 2);
  EXPECT_EQ(FEATURE_TYPE_ENUMER, 3);
  EXPECT_EQ(FEATURE_TYPE_BOOL, 4);
  EXPECT_EQ(FEATURE_TYPE_STRING, 5);
  EXPECT_EQ(FEATURE_TYPE_COMMAND, 6);
  EXPECT_EQ(FEATURE_TYPE_REGISTER, 7);
  EXPECT_EQ(FEATURE_TYPE_LONG, 8);
}

TEST(GigeTables, MoreTags) {
  EXPECT_EQ(MORE_TAGS_MAX, 4);
  EXPECT_EQ(MORE_TAGS_EXTENSION, 0);
  EXPECT_EQ(MORE_TAGS_PVRENAME, 1);
  EXPECT_EQ(MORE_TAGS_TOOLTIP, 2);
  EXPECT_EQ(MORE_TAGS_DESCRIPTION, 3);
  EXPECT_STREQ(MoreTags[0], "Extension");
  EXPECT_STREQ(MoreTags[1], "PvRename");
  EXPECT_STREQ(MoreTags[2], "ToolTip");
  EXPECT_STREQ(MoreTags[3], "Description");
}

TEST(GigeTables, Attributes) {
  EXPECT_EQ(ATTRIBUTE_MAX, 1);
  EXPECT_STREQ(Attributes[ATTRIBUTE_NAME], "Name");
}

TEST(GigeFeature, StartsUndefinedAndEmpty) {
  EXPECT_EQ(shown(ZRT4GigEFeature()), "0||||");
}

TEST(GigeFill, NullArgumentsAreRefusedSilently) {
  feature_list features;
  char name[] = "any";
  const auto printed = test::captured([&] {
    EXPECT_TRUE(zrt4_fill_gige_descr(nullptr, features.get()));
    EXPECT_TRUE(zrt4_fill_gige_descr(name, nullptr));
    EXPECT_TRUE(zrt4_fill_gige_descr(nullptr, nullptr));
  });
  EXPECT_EQ(printed.out, "");
  EXPECT_EQ(printed.err, "");
}

TEST(GigeFill, EveryFeatureElement) {
  EXPECT_THAT(read("<r><Undefined Name='u'/><Integer Name='i'/><Float Name='f'/>"
                   "<Enumeration Name='e'/><Boolean Name='b'/><StringReg Name='s'/>"
                   "<Command Name='c'/><IntReg Name='r'/><Int64 Name='l'/></r>"),
              testing::ElementsAre("0|u|||", "1|i|||", "2|f|||", "3|e|||", "4|b|||", "5|s|||",
                                   "6|c|||", "7|r|||", "8|l|||"));
}

TEST(GigeFill, ElementNamesMatchExactly) {
  EXPECT_THAT(read("<r><integer Name='a'/><Integers Name='b'/><Intege Name='c'/>"
                   "<INTEGER Name='d'/><x:Integer Name='e'/></r>"),
              testing::IsEmpty());
}

TEST(GigeFill, TheRootMayBeAFeature) {
  EXPECT_EQ(read_one("<Float Name='f'/>"), "2|f|||");
}

TEST(GigeFill, FeaturesAreFoundAtAnyDepth) {
  EXPECT_THAT(read("<a><b><Integer Name='x'><c><Float Name='y'/></c></Integer></b></a>"),
              testing::ElementsAre("1|x|||", "2|y|||"));
}

TEST(GigeFill, EveryTextOfAFeature) {
  EXPECT_EQ(read_one("<r><Integer Name='n'><PvRename>p</PvRename><ToolTip>t</ToolTip>"
                     "<Description>d</Description></Integer></r>"),
            "1|n|p|t|d");
}

TEST(GigeFill, TextsApplyToTheFeatureFoundLastNotToTheirParent) {
  EXPECT_THAT(read("<r><Integer Name='outer'><Float Name='inner'/><ToolTip>t</ToolTip>"
                   "</Integer><Description>d</Description></r>"),
              testing::ElementsAre("1|outer|||", "2|inner||t|d"));
}

TEST(GigeFill, PvRenameTakesItsNameAttribute) {
  EXPECT_EQ(read_one("<Integer Name='n'><PvRename Name='p'/></Integer>"), "1|n|p||");
}

TEST(GigeFill, PvRenameWithNameAttributeDropsItsText) {
  EXPECT_EQ(read_one("<Integer Name='n'><PvRename Name='p'>text</PvRename></Integer>"), "1|n|p||");
}

TEST(GigeFill, PvRenameNamesAFeatureWithoutName) {
  EXPECT_EQ(read_one("<Integer><PvRename Name='p'>text</PvRename></Integer>"), "1|p|text||");
}

TEST(GigeFill, ALaterNameAttributeFillsAWaitingExtension) {
  EXPECT_EQ(read_one("<Integer Name='n'><PvRename/><Value Name='v'/></Integer>"), "1|n|v||");
}

TEST(GigeFill, ASurplusNameAttributeIsDropped) {
  EXPECT_EQ(read_one("<Integer Name='n'><Value Name='v'/><ToolTip Name='w'/></Integer>"), "1|n|||");
}

TEST(GigeFill, NameAttributeMatchesExactly) {
  EXPECT_EQ(read_one("<Integer name='a' NAME='b' Names='c' x:Name='d' Nam='e'/>"), "1||||");
}

TEST(GigeFill, NameIsFoundAmongOtherAttributes) {
  EXPECT_EQ(read_one("<Integer Access='RW' Zoom='1' Name='n' Base='2'/>"), "1|n|||");
}

TEST(GigeFill, NameAttributesBeforeAnyFeatureAreIgnored) {
  EXPECT_EQ(read_one("<r Name='a'><Group Name='b'/><Integer/></r>"), "1||||");
}

TEST(GigeFill, AnUnnamedFeatureTakesTheNextNameAnywhere) {
  EXPECT_EQ(read_one("<r><Integer><Value/></Integer><a><b Name='far'/></a></r>"), "1|far|||");
}

TEST(GigeFill, AnUnnamedFeatureHasAnEmptyNameAndIsNotListed) {
  test::temporary_file file("<r><Integer/><Float Name='f'/></r>");
  feature_list features;
  EXPECT_FALSE(zrt4_fill_gige_descr(file.name(), features.get()));
  EXPECT_THAT(shown(features), testing::ElementsAre("1||||", "2|f|||"));
  EXPECT_EQ(test::captured([&] { zrt4_dump_gige_descr(features.get()); }).out,
            "[1] Name:'f' type:2 ToolTip:'' Description:''\n");
}

TEST(GigeFill, ANameThatReadsUnknownGivesWayToTheNext) {
  EXPECT_EQ(read_one("<Integer Name='Unknown'/>"), "1||||");
  EXPECT_EQ(read_one("<Integer Name='Unknown'><Value Name='v'/></Integer>"), "1|v|||");
}

TEST(GigeFill, ANameThatReadsWaitingStaysButEndsEmpty) {
  EXPECT_EQ(read_one("<Integer Name='Waiting'><Value Name='v'/></Integer>"), "1||||");
}

TEST(GigeFill, AnEmptyNameIsAName) {
  EXPECT_EQ(read_one("<Integer Name=''><Value Name='v'/></Integer>"), "1||||");
}

TEST(GigeFill, MarkersAreRemovedOnlyWhenExact) {
  EXPECT_EQ(read_one("<Integer Name='Unknown '><PvRename> Waiting</PvRename>"
                     "<ToolTip>Waiting?</ToolTip><Description>unknown</Description></Integer>"),
            "1|Unknown | Waiting|Waiting?|unknown");
  EXPECT_EQ(read_one("<Integer Name='n'><PvRename>Unknown</PvRename><ToolTip>Unknown</ToolTip>"
                     "<Description>Unknown</Description></Integer>"),
            "1|n|||");
}

TEST(GigeFill, ATextThatReadsWaitingIsReplacedByTheNextText) {
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip>Waiting</ToolTip>next</Integer>"), "1|n||next|");
}

TEST(GigeFill, ATextThatReadsUnknownClosesTheField) {
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip>Unknown</ToolTip>next</Integer>"), "1|n|||");
}

TEST(GigeFill, TextsFillExtensionThenToolTipThenDescription) {
  EXPECT_EQ(read_one("<Integer Name='n'><Description/><ToolTip/><PvRename/>1<x/>2<x/>3<x/>4"
                     "</Integer>"),
            "1|n|1|2|3");
}

TEST(GigeFill, TextsAreDroppedWhenNothingWaits) {
  EXPECT_EQ(read_one("<r>a<Integer Name='n'>b<Value>c</Value></Integer>d</r>"), "1|n|||");
}

TEST(GigeFill, AnEmptyToolTipTakesTheWhiteSpaceAfterIt) {
  EXPECT_EQ(read_one("<Integer Name='n'>\n  <ToolTip/>\n  <Value>c</Value></Integer>"),
            "1|n||\n  |");
}

TEST(GigeFill, WhiteSpaceInsideCountsAsText) {
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip> </ToolTip>late</Integer>"), "1|n|| |");
}

TEST(GigeFill, ATextlessFieldThatNothingFillsEndsEmpty) {
  EXPECT_EQ(read_one("<Integer Name='n'><PvRename/><ToolTip/><Description/></Integer>"), "1|n|||");
}

TEST(GigeFill, ANewFeatureLeavesTheWaitingFieldOfTheOldOneEmpty) {
  EXPECT_THAT(read("<r><Integer Name='n'><ToolTip/></Integer><Float Name='m'/>text</r>"),
              testing::ElementsAre("1|n|||", "2|m|||"));
}

TEST(GigeFill, MoreTagsBeforeAnyFeatureAreIgnored) {
  EXPECT_EQ(read_one("<r><ToolTip>t</ToolTip><PvRename>p</PvRename><Description>d</Description>"
                     "<Integer Name='n'/></r>"),
            "1|n|||");
}

TEST(GigeFill, ASecondDescriptionReplacesTheFirst) {
  EXPECT_EQ(read_one("<Integer Name='n'><Description>one</Description>"
                     "<Description>two</Description></Integer>"),
            "1|n|||two");
}

TEST(GigeFill, ASecondEmptyDescriptionDropsTheFirst) {
  EXPECT_EQ(read_one("<Integer Name='n'><Description>one</Description><Description/></Integer>"),
            "1|n|||");
}

TEST(GigeFill, ASecondTextDoesNotReopenAField) {
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip>one<b/>two</ToolTip>three</Integer>"),
            "1|n||one|");
}

TEST(GigeFill, ExtensionElementsChangeNothing) {
  EXPECT_EQ(read_one("<Integer Name='n'><Extension>e</Extension></Integer>"), "1|n|||");
  EXPECT_EQ(read_one("<Integer Name='n'><Extension><PvRename>p</PvRename></Extension></Integer>"),
            "1|n|p||");
  EXPECT_EQ(read_one("<Integer Name='n'><PvRename>p</PvRename><Extension>e</Extension></Integer>"),
            "1|n|p||");
}

TEST(GigeFill, MoreTagNamesMatchExactly) {
  EXPECT_EQ(read_one("<Integer Name='n'><Tooltip>t</Tooltip><pvRename>p</pvRename>"
                     "<Descriptions>d</Descriptions><x:ToolTip>q</x:ToolTip></Integer>"),
            "1|n|||");
}

TEST(GigeFill, CommentsAndInstructionsAreNoText) {
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip><!-- c --><?p i?></ToolTip>late</Integer>"),
            "1|n||late|");
}

TEST(GigeFill, ACharacterDataSectionIsNoText) {
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip><![CDATA[cd]]></ToolTip></Integer>"), "1|n|||");
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip><![CDATA[cd]]>after</ToolTip></Integer>"),
            "1|n||after|");
}

TEST(GigeFill, ACharacterDataSectionSplitsAText) {
  EXPECT_EQ(read_one("<Integer Name='n'><ToolTip>before<![CDATA[cd]]>after</ToolTip></Integer>"),
            "1|n||before|");
}

TEST(GigeFill, ReferencesArePartOfTheText) {
  EXPECT_EQ(read_one("<Integer Name='&lt;n&gt;'><ToolTip>a &amp; b &#65;&#x42;</ToolTip>"
                     "</Integer>"),
            "1|<n>||a & b AB|");
}

TEST(GigeFill, EntitiesOfTheDocumentArePartOfTheText) {
  EXPECT_EQ(read_one("<!DOCTYPE Integer [<!ENTITY unit 'us'>]>"
                     "<Integer Name='t_&unit;'><ToolTip>Time, &unit; only</ToolTip></Integer>"),
            "1|t_us||Time, us only|");
}

TEST(GigeFill, AnEntityMayBringFeatures) {
  EXPECT_THAT(read("<!DOCTYPE r [<!ENTITY two '<Integer Name=\"a\"/><Float Name=\"b\"/>'>]>"
                   "<r>&two;&two;</r>"),
              testing::ElementsAre("1|a|||", "2|b|||", "1|a|||", "2|b|||"));
}

TEST(GigeFill, DefaultAttributesCount) {
  EXPECT_EQ(read_one("<!DOCTYPE Integer [<!ATTLIST Integer Name CDATA 'dflt'>]><Integer/>"),
            "1|dflt|||");
}

TEST(GigeFill, WhiteSpaceBetweenDeclaredElementsCountsAsText) {
  EXPECT_EQ(read_one("<!DOCTYPE Integer [<!ELEMENT Integer (ToolTip)><!ELEMENT ToolTip EMPTY>]>"
                     "<Integer Name='n'><ToolTip/> </Integer>"),
            "1|n|| |");
}

TEST(GigeFill, NothingIsValidated) {
  EXPECT_EQ(read_one("<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><Integer Name='n'/></r>"), "1|n|||");
}

TEST(GigeFill, TextsAreInTheLocalCodePage) {
  xercesc::XMLPlatformUtils::Initialize();
  char* local = xercesc::XMLString::transcode(u"gr\u00f6\u00dfe \u20ac");
  const std::string expected = "1|" + std::string(local) + "||" + local + "|";
  xercesc::XMLString::release(&local);
  xercesc::XMLPlatformUtils::Terminate();
  EXPECT_EQ(read_one("<Integer Name='gr\u00f6\u00dfe \u20ac'><ToolTip>gr\u00f6\u00dfe \u20ac"
                     "</ToolTip></Integer>"),
            expected);
}

TEST(GigeFill, LongTextsAreKeptWhole) {
  const std::string text = repeated("0123456789", 100000);
  EXPECT_EQ(read_one("<Integer Name='n'><Description>" + text + "</Description></Integer>"),
            "1|n|||" + text);
}

TEST(GigeFill, TheListIsEmptiedWithoutReleasingItsRecords) {
  test::temporary_file file("<Integer Name='n'/>");
  ZRT4GigEFeature mine;
  mine.name = "mine";
  feature_list features;
  features.get()->push_back(&mine);
  EXPECT_FALSE(zrt4_fill_gige_descr(file.name(), features.get()));
  EXPECT_EQ(shown(features), std::vector<std::string>{"1|n|||"});
  EXPECT_EQ(mine.name, "mine");
}

TEST(GigeDump, NothingForNullOrEmpty) {
  feature_list features;
  EXPECT_EQ(test::captured([&] {
              zrt4_dump_gige_descr(nullptr);
              zrt4_dump_gige_descr(features.get());
            }).out,
            "");
}

TEST(GigeDump, WithAndWithoutExtension) {
  feature_list features;
  auto& first = features.add("n");
  first.type = FEATURE_TYPE_LONG;
  first.extension = "e";
  first.tooltip = "t";
  first.description = "d";
  auto& second = features.add("m");
  second.type = FEATURE_TYPE_FLOAT;
  second.tooltip = "u";
  second.description = "f";
  const auto printed = test::captured([&] { zrt4_dump_gige_descr(features.get()); });
  EXPECT_EQ(printed.out,
            "[0] Name:'n' Extension:'e' type:8 ToolTip:'t' Description:'d'\n"
            "[1] Name:'m' type:2 ToolTip:'u' Description:'f'\n");
  EXPECT_EQ(printed.err, "");
}

TEST(GigeDump, AnIntegerWithNameAndExtensionOnly) {
  test::temporary_file file("<Integer Name='n'><PvRename>e</PvRename></Integer>");
  feature_list features;
  EXPECT_FALSE(zrt4_fill_gige_descr(file.name(), features.get()));
  EXPECT_EQ(test::captured([&] { zrt4_dump_gige_descr(features.get()); }).out,
            "[0] Name:'n' Extension:'e' type:1 ToolTip:'' Description:''\n");
}

TEST(GigeDump, UnnamedFeaturesKeepTheirNumber) {
  feature_list features;
  features.add("").extension = "e";
  features.add("n");
  features.add("").tooltip = "t";
  features.add("m");
  EXPECT_EQ(test::captured([&] { zrt4_dump_gige_descr(features.get()); }).out,
            "[1] Name:'n' type:0 ToolTip:'' Description:''\n"
            "[3] Name:'m' type:0 ToolTip:'' Description:''\n");
}

TEST(GigeDump, TextsAreNoFormats) {
  feature_list features;
  features.add("%s%n").tooltip = "%d";
  EXPECT_EQ(test::captured([&] { zrt4_dump_gige_descr(features.get()); }).out,
            "[0] Name:'%s%n' type:0 ToolTip:'%d' Description:''\n");
}

TEST(GigeDump, NullRecordsAreSkipped) {
  feature_list features;
  features.get()->push_back(nullptr);
  features.add("n");
  EXPECT_EQ(test::captured([&] { zrt4_dump_gige_descr(features.get()); }).out,
            "[1] Name:'n' type:0 ToolTip:'' Description:''\n");
}

TEST(GigeClean, NothingForNullOrEmpty) {
  std::vector<ZRT4GigEFeature*> features;
  zrt4_clean_gige_descr(nullptr);
  zrt4_clean_gige_descr(&features);
  EXPECT_TRUE(features.empty());
}

TEST(GigeClean, ReleasesEveryRecordAndEmptiesTheList) {
  std::vector<ZRT4GigEFeature*> features{new ZRT4GigEFeature, nullptr, new ZRT4GigEFeature};
  zrt4_clean_gige_descr(&features);
  EXPECT_TRUE(features.empty());
}

TEST(GigeExamples, Minimal) {
  feature_list features;
  EXPECT_FALSE(zrt4_fill_gige_descr(
      std::string(ZRT4_SOURCE_DIR "/examples/cameras/minimal.xml").data(), features.get()));
  EXPECT_EQ(test::captured([&] { zrt4_dump_gige_descr(features.get()); }).out,
            "[0] Name:'ExposureTime' Extension:'EXP.TIME' type:2"
            " ToolTip:'Exposure time, in microseconds'"
            " Description:'Rounded to the row time of the sensor.'\n"
            "[1] Name:'PacketSize' Extension:'NET.PACKET_SIZE' type:1 ToolTip:'' Description:''\n"
            "[2] Name:'TriggerMode' type:3 ToolTip:'Waits for a trigger before a frame'"
            " Description:''\n"
            "[3] Name:'AcquisitionStart' type:6 ToolTip:'' Description:''\n");
}

TEST(GigeExamples, AreaScan) {
  feature_list features;
  EXPECT_FALSE(zrt4_fill_gige_descr(
      std::string(ZRT4_SOURCE_DIR "/examples/cameras/area_scan.xml").data(), features.get()));
  ASSERT_EQ(features.size(), 333U);
  int renamed = 0;
  int with_tool_tip = 0;
  int described = 0;
  std::vector<int> of_type(FEATURE_TYPE_MAX);
  for (const auto& feature : features) {
    EXPECT_NE(feature.name, "");
    renamed += feature.extension.empty() ? 0 : 1;
    with_tool_tip += feature.tooltip.empty() ? 0 : 1;
    described += feature.description.empty() ? 0 : 1;
    ++of_type.at(static_cast<std::size_t>(feature.type));
  }
  EXPECT_EQ(renamed, 299);
  EXPECT_EQ(with_tool_tip, 318);
  EXPECT_EQ(described, 36);
  EXPECT_THAT(of_type, testing::ElementsAre(0, 74, 56, 50, 59, 20, 31, 5, 38));
  EXPECT_EQ(shown(features[100]),
            "2|ExposureTime|EXP.TIME|Exposure time, in microseconds|"
            "Rounded to the row time of the sensor; read back for the true value.");
}
